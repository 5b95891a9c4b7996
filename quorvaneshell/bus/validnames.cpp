#include "validnames_p.h"

#include <QRegularExpression>

namespace quorvane {

bool isBusName(const QString &text)
{
    constexpr int maximalLength = 255;
    static const QRegularExpression form(
            QStringLiteral("^(:[\\w-]+(\\.[\\w-]+)+|[A-Za-z_-][\\w-]*(\\.[A-Za-z_-][\\w-]*)+)\\z"));
    return text.size() <= maximalLength && form.match(text).hasMatch();
}

bool isObjectPath(const QString &text)
{
    constexpr int maximalLength = 1000;
    static const QRegularExpression form(QStringLiteral("^(/|(/\\w+)+)\\z"));
    return text.size() <= maximalLength && form.match(text).hasMatch();
}

} // namespace quorvane
