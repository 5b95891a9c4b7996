#include "notification_p.h"

#include "notificationimage_p.h"
#include "notificationpost_p.h"
#include "styledbody_p.h"

#include <quorvaneshell/applications/applicationlist_p.h>
#include <quorvaneshell/pictures/iconsource_p.h>
#include <quorvaneshell/pictures/imagestore_p.h>

#include <QUrl>

#include <algorithm>

namespace quorvane {

namespace {

int urgencyOf(const NotificationHints &hints)
{
    const double urgency = hints.number(QStringLiteral("urgency"), 1);
    return urgency >= 0 && urgency <= 2 ? int(urgency) : 1;
}

int progressOf(const NotificationHints &hints)
{
    const double value = hints.number(QStringLiteral("value"), -1);
    return value >= 0 ? int(qMin(value, 100.0)) : -1;
}

// What stands for a file of this machine; empty for the name of an icon.
QString localFile(const QString &icon)
{
    const bool isUrl = icon.startsWith(QLatin1String("file:"));
    const QString path = isUrl ? QUrl(icon).toLocalFile() : icon;
    return path.startsWith(QLatin1Char('/')) ? path : QString();
}

// The standard's order, in which the oldest hint comes after the icons.
QImage pictureOf(const NotificationHints &hints, bool hasIcons)
{
    QStringList names { QStringLiteral("image-data"), QStringLiteral("image_data") };
    if (!hasIcons)
        names += QStringLiteral("icon_data");
    for (const QString &name : std::as_const(names)) {
        const QImage image = notificationImage(hints.image(name));
        if (!image.isNull())
            return image;
    }
    return {};
}

QStringList iconsOf(const NotificationPost &post)
{
    QStringList icons { post.hints.text(QStringLiteral("image-path")),
                        post.hints.text(QStringLiteral("image_path")), post.appIcon };
    icons.removeAll(QString());
    return icons;
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

} // namespace

QString withoutDesktopSuffix(const QString &desktopEntry)
{
    const QLatin1String suffix(".desktop");
    return desktopEntry.endsWith(suffix) ? desktopEntry.chopped(suffix.size()) : desktopEntry;
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
    , hasActionIcons(post.hints.flag(QStringLiteral("action-icons")))
    , category(post.hints.text(QStringLiteral("category")))
    , desktopEntry(withoutDesktopSuffix(post.hints.text(QStringLiteral("desktop-entry"))))
    , urgency(urgencyOf(post.hints))
    , progress(progressOf(post.hints))
    , isTransient(post.hints.flag(QStringLiteral("transient")))
    , resident(post.hints.flag(QStringLiteral("resident")))
    , time(QDateTime::currentDateTime())
    , timeout(isCritical() ? 0 : qMax(0, post.timeout))
    , _icons(iconsOf(post))
{
    _show(pictureOf(post.hints, !_icons.isEmpty()));
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

QVariantList Notification::buttons() const
{
    QVariantList buttons;
    for (int i = 0; i + 1 < actions.size(); i += 2) {
        const QString &key = actions.at(i);
        const QString &text = actions.at(i + 1);
        // The text of an answer would be lost.
        if (text.isEmpty() || key == QLatin1String("default")
            || key == QLatin1String("inline-reply"))
            continue;
        const bool hasIcon = hasActionIcons && localFile(key).isEmpty();
        buttons += QVariantMap { { QStringLiteral("id"), key },
                                 { QStringLiteral("text"), text },
                                 { QStringLiteral("iconSource"),
                                   hasIcon ? quorvane::iconSource(key) : QString() } };
    }
    return buttons;
}

bool Notification::offers(const QString &action) const
{
    for (int i = 0; i + 1 < actions.size(); i += 2) {
        if (actions.at(i) == action)
            return true;
    }
    return false;
}

bool Notification::isOfPost(const Notification &other) const
{
    return id == other.id && time == other.time && pictureFile() == other.pictureFile();
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

} // namespace quorvane
