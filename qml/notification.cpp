#include "notification.h"

#include "applicationlist.h"
#include "iconsource.h"
#include "imagestore.h"
#include "notificationimage.h"

namespace {

constexpr int longestText = 1024;
constexpr int longestBody = 16 * 1024;
constexpr int mostActions = 32;

QString shortened(const QString &text, int length = longestText)
{
    if (text.size() <= length)
        return text;
    return text.left(text.at(length - 1).isHighSurrogate() ? length - 1 : length);
}

// Hints are what the sender put there, of whatever type: one of a wrong type counts as missing.
QString text(const QVariantMap &hints, const QString &key)
{
    const QVariant hint = hints.value(key);
    return hint.userType() == QMetaType::QString ? shortened(hint.toString()) : QString();
}

double number(const QVariantMap &hints, const QString &key, double otherwise)
{
    const QVariant hint = hints.value(key);
    switch (hint.userType()) {
    case QMetaType::Bool:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return hint.toDouble();
    default:
        return otherwise;
    }
}

int urgencyOf(const QVariantMap &hints)
{
    const double urgency = number(hints, QStringLiteral("urgency"), 1);
    return urgency >= 0 && urgency <= 2 ? int(urgency) : 1;
}

int progressOf(const QVariantMap &hints)
{
    const double value = number(hints, QStringLiteral("value"), -1);
    return value >= 0 ? int(qMin(value, 100.0)) : -1;
}

QString firstText(const QStringList &texts)
{
    for (const QString &text : texts) {
        if (!text.isEmpty())
            return text;
    }
    return {};
}

QImage firstImage(const QVariantMap &hints, const QStringList &keys)
{
    for (const QString &key : keys) {
        const QImage image = notificationImage(hints.value(key));
        if (!image.isNull())
            return image;
    }
    return {};
}

std::shared_ptr<const QString> stored(const QImage &image)
{
    if (image.isNull())
        return {};
    return { new QString(ImageStore::add(image)), [](const QString *source) {
                ImageStore::remove(*source);
                delete source;
            } };
}

// Ids of desktop entries are sent with and without their ending.
const QLatin1String desktopSuffix(".desktop");

QString desktopEntryOf(const QVariantMap &hints)
{
    QString id = text(hints, QStringLiteral("desktop-entry"));
    if (id.endsWith(desktopSuffix))
        id.chop(desktopSuffix.size());
    return id;
}

} // namespace

void NotificationPost::shorten()
{
    for (QString *text : { &appName, &appIcon, &summary })
        *text = shortened(*text);
    body = shortened(body, longestBody);
    actions = actions.mid(0, 2 * mostActions);
    for (QString &text : actions)
        text = shortened(text);
}

Notification::Notification(const NotificationPost &post)
    : id(post.id)
    , replacesId(post.replacesId)
    , appName(post.appName)
    , summary(post.summary)
    , body(post.body)
    , actions(post.actions)
    , category(text(post.hints, QStringLiteral("category")))
    , desktopEntry(desktopEntryOf(post.hints))
    , urgency(urgencyOf(post.hints))
    , progress(progressOf(post.hints))
    , transient(number(post.hints, QStringLiteral("transient"), 0) != 0)
    , resident(number(post.hints, QStringLiteral("resident"), 0) != 0)
    , time(QDateTime::currentDateTime())
    , _icon(firstText({ text(post.hints, QStringLiteral("image-path")),
                        text(post.hints, QStringLiteral("image_path")), post.appIcon }))
{
    // The standard's order, in which the oldest hint comes after the icons.
    QImage image = firstImage(post.hints,
                              { QStringLiteral("image-data"), QStringLiteral("image_data") });
    if (image.isNull() && _icon.isEmpty())
        image = firstImage(post.hints, { QStringLiteral("icon_data") });
    _picture = stored(image);
}

QString Notification::iconSource() const
{
    if (_picture)
        return *_picture;
    if (!_icon.isEmpty() || desktopEntry.isEmpty())
        return ::iconSource(_icon);
    return ApplicationList::shared()->iconSource(desktopEntry);
}

QVariantList Notification::buttons() const
{
    QVariantList buttons;
    for (int i = 0; i + 1 < actions.size(); i += 2) {
        if (actions.at(i) != QLatin1String("default") && !actions.at(i + 1).isEmpty()) {
            buttons += QVariantMap { { QStringLiteral("key"), actions.at(i) },
                                     { QStringLiteral("text"), actions.at(i + 1) } };
        }
    }
    return buttons;
}

bool Notification::offers(const QString &key) const
{
    for (int i = 0; i + 1 < actions.size(); i += 2) {
        if (actions.at(i) == key)
            return true;
    }
    return false;
}
