#pragma once

#include <QDateTime>
#include <QDeadlineTimer>
#include <QStringList>
#include <QVariantMap>

#include <memory>

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

    // Cuts what is longer than any shell shows, so that nobody fills the memory.
    void shorten();
};

// One pending notification: what its post says, read and made safe once.
struct Notification
{
    explicit Notification(const NotificationPost &post);

    // The picture that came with it, else an icon, else that of the desktop entry. A URL, or empty.
    QString iconSource() const;
    // {key, text} of those that make buttons.
    QVariantList buttons() const;
    bool offers(const QString &key) const;
    bool isCritical() const { return urgency == 2; }

    uint id;
    uint replacesId; // As the sender said; may be a number of its own invention.
    QString appName;
    QString summary;
    QString body;
    QStringList actions;
    QString category;
    QString desktopEntry;
    int urgency;  // 0 low, 1 normal, 2 critical.
    int progress; // 0 to 100, -1 for none.
    bool transient;
    bool resident;
    QDateTime time;
    QDeadlineTimer deadline = QDeadlineTimer::Forever;

private:
    QString _icon;
    std::shared_ptr<const QString> _picture; // Its URL; in the store as long as this lives.
};
