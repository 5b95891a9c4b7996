#include <quorvane/statusnotifier/busname_p.h>

#include <QRegularExpression>
#include <QString>

namespace xdg {

bool isBusName(const QString &text)
{
    constexpr int maximalLength = 255;
    static const QRegularExpression form(
            QStringLiteral("^:?[A-Za-z0-9_-]+(\\.[A-Za-z0-9_-]+)+\\z"));
    return text.size() <= maximalLength && form.match(text).hasMatch();
}

} // namespace xdg
