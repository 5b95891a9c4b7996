#include "notification_p.h"

#include "notificationimage_p.h"
#include "styledbody_p.h"

#include <quorvaneshell/applications/applicationlist_p.h>
#include <quorvaneshell/pictures/iconsource_p.h>
#include <quorvaneshell/pictures/imagestore_p.h>

#include <QUrl>

namespace quorvane {

namespace {

constexpr int longestText = 1024;
constexpr int longestBody = 16 * 1024;
constexpr int longestAction = 100;
constexpr int mostActions = 32;
constexpr int longestKeys = mostActions * longestAction;

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

QStringList texts(const QVariantMap &hints, const QStringList &keys)
{
    QStringList texts;
    for (const QString &key : keys)
        texts += text(hints, key);
    return texts;
}

// What stands for a file of this machine; empty for the name of an icon.
QString localFile(const QString &icon)
{
    const bool isUrl = icon.startsWith(QLatin1String("file:"));
    const QString path = isUrl ? QUrl(icon).toLocalFile() : icon;
    return path.startsWith(QLatin1Char('/')) ? path : QString();
}

QImage firstImage(const QVariantMap &hints, const QStringList &keys)
{
    for (const QString &key : keys) {
        const QImage image = notificationImage(hints.value(key).value<QImage>());
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
        *text = withoutPiledMarks(shortened(*text));
    body = withoutPiledMarks(shortened(body, longestBody));

    // A key is sent back as it came, or not at all.
    QStringList kept;
    int keys = 0;
    for (int i = 0; i + 1 < qMin(actions.size(), 2 * mostActions); i += 2) {
        keys += actions.at(i).size();
        if (keys > longestKeys)
            break;
        kept << actions.at(i) << withoutPiledMarks(shortened(actions.at(i + 1), longestAction));
    }
    actions = kept;
}

QString NotificationPost::stackTag() const
{
    const QStringList tags = texts(hints, { QStringLiteral("x-canonical-private-synchronous"),
                                            QStringLiteral("x-dunst-stack-tag") });
    return tags.first().isEmpty() ? tags.last() : tags.first();
}

Notification::Notification(const NotificationPost &post)
    : id(post.id)
    , replacesId(post.replacesId)
    , sender(post.sender)
    , stackTag(post.stackTag())
    , appName(post.appName)
    , summary(post.summary)
    , body(post.body)
    , actions(post.actions)
    , category(text(post.hints, QStringLiteral("category")))
    , desktopEntry(desktopEntryOf(post.hints))
    , urgency(urgencyOf(post.hints))
    , progress(progressOf(post.hints))
    , isTransient(number(post.hints, QStringLiteral("transient"), 0) != 0)
    , resident(number(post.hints, QStringLiteral("resident"), 0) != 0)
    , time(QDateTime::currentDateTime())
    , _icons(texts(post.hints, { QStringLiteral("image-path"), QStringLiteral("image_path") }))
{
    _icons += post.appIcon;
    _icons.removeAll(QString());
    // The standard's order, in which the oldest hint comes after the icons.
    QImage image = firstImage(post.hints,
                              { QStringLiteral("image-data"), QStringLiteral("image_data") });
    if (image.isNull() && _icons.isEmpty())
        image = firstImage(post.hints, { QStringLiteral("icon_data") });
    _show(image);
}

QString Notification::iconSource() const
{
    if (_picture)
        return *_picture;
    const auto name = std::find_if(_icons.begin(), _icons.end(),
                                   [](const QString &icon) { return localFile(icon).isEmpty(); });
    if (name != _icons.end())
        return quorvane::iconSource(*name);
    return desktopEntry.isEmpty() ? QString() : ApplicationList::shared()->iconSource(desktopEntry);
}

QString Notification::styledBody() const
{
    if (_styledBody.isEmpty())
        _styledBody = quorvane::styledBody(body);
    return _styledBody;
}

QString Notification::pictureFile() const
{
    return _picture || _icons.isEmpty() ? QString() : localFile(_icons.first());
}

void Notification::setPicture(const QImage &image)
{
    _icons.removeFirst();
    _show(image);
}

void Notification::dropPicture()
{
    _show(QImage());
    while (!pictureFile().isEmpty())
        _icons.removeFirst();
}

void Notification::_show(const QImage &image)
{
    _picture = stored(image);
    _pictureSize = image.sizeInBytes();
}

QVariantList Notification::buttons() const
{
    QVariantList buttons;
    for (int i = 0; i + 1 < actions.size(); i += 2) {
        // The text of an answer would be lost.
        const bool isButton = actions.at(i) != QLatin1String("default")
                              && actions.at(i) != QLatin1String("inline-reply");
        if (isButton && !actions.at(i + 1).isEmpty()) {
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

} // namespace quorvane
