#pragma once

#include <QDateTime>
#include <QDeadlineTimer>
#include <QImage>
#include <QStringList>
#include <QVariantMap>

#include <memory>

namespace quorvane {

// A call of Notify, and the id that it is answered with.
struct NotificationPost
{
    QString appName;
    uint replacesId = 0;
    QString appIcon;
    QString summary;
    QString body;
    QStringList actions; // Keys and texts alternating.
    QVariantMap hints;
    int timeout = -1;
    uint id = 0;
    QString sender; // Unique name on the bus; empty for a post of this process.

    // Cuts what is longer than any shell shows, so that nobody fills the memory.
    void shorten();
    // What a program calls the one notification that it shows anew each time; mostly empty.
    QString stackTag() const;
};

// One pending notification: what its post says, read and made safe once.
struct Notification
{
    explicit Notification(const NotificationPost &post);

    // The picture that came with it, else an icon, else that of the desktop entry. A URL, or empty.
    QString iconSource() const;
    QString styledBody() const;
    // The picture's file that is still to be read, by setPicture(); empty without one.
    QString pictureFile() const;
    // What was read of pictureFile(); null if it is no picture.
    void setPicture(const QImage &image);
    void dropPicture();
    qint64 pictureSize() const { return _pictureSize; }
    // {key, text} of those that make buttons.
    QVariantList buttons() const;
    bool offers(const QString &key) const;
    bool isCritical() const { return urgency == 2; }

    uint id;
    uint replacesId; // As the sender said; may be a number of its own invention.
    QString sender;
    QString stackTag;
    QString appName;
    QString summary;
    QString body;
    QStringList actions;
    QString category;
    QString desktopEntry;
    int urgency;  // 0 low, 1 normal, 2 critical.
    int progress; // 0 to 100, -1 for none.
    bool isTransient;
    bool resident;
    QDateTime time;
    QDeadlineTimer deadline = QDeadlineTimer::Forever;

private:
    void _show(const QImage &image);

    QStringList _icons;                      // Names and files, the first that is one counts.
    std::shared_ptr<const QString> _picture; // Its URL; in the store as long as this lives.
    qint64 _pictureSize = 0;                 // In bytes.
    mutable QString _styledBody;             // Once it has been asked for.
};

} // namespace quorvane
