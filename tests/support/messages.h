#pragma once

#include <QStringList>
#include <QtGlobal>

// Records what goes through Qt's message handler for the life of a test: "category level: text".
class Messages
{
public:
    ~Messages()
    {
        qInstallMessageHandler(_before);
        take();
    }

    // What was recorded since the last call.
    static QStringList take() { return std::exchange(_recorded, {}); }

private:
    static void _record(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        static const char *const levels[] = { "debug", "warning", "critical", "fatal", "info" };
        _recorded += QStringLiteral("%1 %2: %3").arg(context.category, levels[type], text);
    }

    static inline QStringList _recorded;
    const QtMessageHandler _before = qInstallMessageHandler(_record);
};
