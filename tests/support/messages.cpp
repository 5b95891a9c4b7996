#include "messages.h"

namespace {

QStringList &recorded()
{
    static QStringList messages;
    return messages;
}

void record(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    static const char *const levels[] = { "debug", "warning", "critical", "fatal", "info" };
    recorded() += QStringLiteral("%1 %2: %3").arg(context.category, levels[type], text);
}

} // namespace

Messages::Messages()
    : _before(qInstallMessageHandler(record))
{
    recorded().clear();
}

Messages::~Messages()
{
    qInstallMessageHandler(_before);
}

QStringList Messages::take()
{
    QStringList taken;
    taken.swap(recorded());
    return taken;
}
