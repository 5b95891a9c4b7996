#pragma once

#include <QDateTime>
#include <QImage>
#include <QStringList>
#include <QVariantList>

#include <memory>
#include <vector>

namespace quorvane {

struct NotificationPost;

// Ids of desktop entries are sent with and without their ending.
QString withoutDesktopSuffix(const QString &desktopEntry);

// One pending notification: what its post says, read and made safe once.
struct Notification
{
    explicit Notification(const NotificationPost &post);

    // The picture that came with it, else an icon, else that of the desktop entry. A URL, or empty.
    QString iconSource() const;
    QString styledBody() const;
    // {id, text, iconSource} of the actions that make buttons.
    QVariantList buttons() const;
    bool offers(const QString &action) const;
    bool isCritical() const { return urgency == 2; }
    // Whether this is what another has been changed from or to since it was posted.
    bool isOfPost(const Notification &other) const;

    // The picture's file that is still to be read, by setPicture(); empty without one.
    QString pictureFile() const;
    // What was read of pictureFile(); null if it is no picture.
    void setPicture(const QImage &image);
    void dropPicture();
    qint64 pictureSize() const { return _pictureSize; }

    uint id;
    uint replacesId; // As the sender said; may be a number of its own invention.
    QString sender;
    QString stackTag;
    QString appName;
    QString summary;
    QString body;
    QStringList actions; // Keys and texts alternating.
    bool hasActionIcons; // The keys are names of icons.
    QString category;
    QString desktopEntry;
    int urgency;  // The protocol's number: 0 to 2.
    int progress; // 0 to 100, -1 for none.
    bool isTransient;
    bool resident;
    QDateTime time;
    int timeout; // In milliseconds; 0 for none.
    bool unread = true;
    bool expired = false;

private:
    void _show(const QImage &image);

    QStringList _icons;                      // Names and files, the first that is one counts.
    std::shared_ptr<const QString> _picture; // Its URL; in the store as long as this lives.
    qint64 _pictureSize = 0;                 // In bytes.
    mutable QString _styledBody;             // Once it has been asked for.
};

// Newest first. One that was changed is another pointer of the same id in the same place.
using NotificationRow = std::shared_ptr<const Notification>;
using NotificationRows = std::vector<NotificationRow>;

} // namespace quorvane
