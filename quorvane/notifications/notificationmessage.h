#pragma once

#include <quorvane/quorvane_export.h>

#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace xdg {

/*! \ingroup notifications
    \brief One pending notification: what was posted, its id, and its expiry.

    xdg::NotificationManager creates and owns the messages of the service and shows their values as
    rows. A message never deletes itself; it says expired(), and its owner acts on it.

    A deadline that has started stays. Each update() with a positive time-out adds one more, and the
    message expires at the earliest of them, so an update can shorten its life but not lengthen it.
    All of a message happens on its own thread. */
class QUORVANE_EXPORT NotificationMessage : public QObject
{
    Q_OBJECT

public:
    /*! Stores the values as they are and starts the expiry: \a timeout is in milliseconds, and 0
        or less means that the message never expires. The id is 0 until setId(). */
    explicit NotificationMessage(const QString &app_name, const QString &app_icon,
                                 const QString &summary, const QString &body,
                                 const QStringList &actions, const QVariantMap &hints, int timeout,
                                 QObject *parent = nullptr);

    /*! Takes over new values and starts one more expiry if \a timeout is positive.

        The values are gone through in the order of the arguments, and each one that changed gives
        its signal at once, before the next is looked at. The body is an exception: it is taken
        over, and bodyChanged() emitted, also when it is the same, but it is left as it is when the
        stored body equals \a app_name. */
    void update(const QString &app_name, const QString &app_icon, const QString &summary,
                const QString &body, const QStringList &actions, const QVariantMap &hints,
                int timeout);

    /*! The display name of the application that posted. */
    QString appName() const;

    /*! The name or the file URL of an icon, may be empty. */
    QString appIcon() const;

    /*! The title. */
    QString summary() const;

    /*! The text, as the application sent it. */
    QString body() const;

    /*! The actions, keys and texts alternating; see xdg::NotificationActions. */
    QStringList actions() const;

    /*! The hints by name. Bare structures, such as that of "image-data", are held as
        \c QDBusArgument. */
    QVariantMap hints() const;

    /*! The id that the manager gave. */
    uint id() const;

    /*! Sets the id; emits nothing. */
    void setId(uint id);

Q_SIGNALS:
    void appNameChanged(QString appName);
    void appIconChanged(QString appIcon);
    void summaryChanged(QString summary);
    void bodyChanged(QString body);
    void actionsChanged(QStringList actions);
    void hintsChanged(QVariantMap hints);

    /*! The time-out of the last update differs from the one before. Earlier deadlines run on. */
    void timeoutChanged(int timeout);

    /*! A deadline has passed; \a obj is the message itself. Comes once for each deadline, from the
        event loop, until the message is destroyed. */
    void expired(QObject *obj);

private Q_SLOTS:
    void _expired();

private:
    void _startExpiry();

    QString _appName;
    QString _appIcon;
    QString _summary;
    QString _body;
    QStringList _actions;
    QVariantMap _hints;
    uint _id = 0;
    int _timeout;
};

} // namespace xdg
