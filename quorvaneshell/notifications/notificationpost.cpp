#include "notificationpost_p.h"

#include "styledbody_p.h"

namespace quorvane {

namespace {

constexpr int longestText = 1024;
constexpr int longestBody = 16 * 1024;
constexpr int longestAction = 100;
constexpr int mostActions = 32;
constexpr int longestKeys = mostActions * longestAction;

QString readable(const QString &text, int length)
{
    return withoutPiledMarks(shortened(text, length));
}

} // namespace

void NotificationPost::shorten()
{
    for (QString *text : { &appName, &appIcon, &summary })
        *text = readable(*text, longestText);
    body = readable(body, longestBody);

    // A key is sent back as it came, or not at all.
    QStringList kept;
    int keys = 0;
    for (int i = 0; i + 1 < qMin(int(actions.size()), 2 * mostActions); i += 2) {
        keys += int(actions.at(i).size());
        if (keys > longestKeys)
            break;
        kept << actions.at(i) << readable(actions.at(i + 1), longestAction);
    }
    actions = kept;
}

QString NotificationPost::stackTag() const
{
    const QString tag = hints.text(QStringLiteral("x-canonical-private-synchronous"));
    return tag.isEmpty() ? hints.text(QStringLiteral("x-dunst-stack-tag")) : tag;
}

} // namespace quorvane
