#pragma once

#include "notification_p.h"

#include <quorvaneshell/quorvaneshell_export.h>
#include <quorvaneshell/rows/listmodel.h>

#include <QSharedPointer>
#include <QVector>

namespace quorvane {

class ApplicationList;
class NotificationList;

/*! \ingroup shell
    \brief The notification service of a session for a shell, after the Desktop Notifications
    Specification 1.2, and the list of what is pending, newest first.

    Constructing one is all that is needed: it asks for "org.freedesktop.Notifications", for any
    program that posts, and "com.zovar.NotificationManager", for programs that answer, without waiting
    for either. What another process has is taken over when that one leaves. All objects of a process
    show the same notifications of one service, which ends with the last of them; what is set on one is
    set on all.

    | Role | Name | Value |
    | ---- | ---- | ----- |
    | IdRole | id | number of the notification, never another's: in a delegate model.id |
    | AppNameRole | appName | the program's name for people |
    | SummaryRole | summary | the title, plain text |
    | BodyRole | body | the text as it was sent, markup and all |
    | StyledBodyRole | styledBody | the same for Text.StyledText: b, i, u, line breaks, links to http and https |
    | IconSourceRole | iconSource | URL for an Image: the picture sent, else the icon sent, else that of the desktop entry; may be empty |
    | UrgencyRole | urgency | 0 low, 1 normal, 2 critical |
    | ProgressRole | progress | 0 to 100 (hint "value"), -1 without |
    | CategoryRole | category | such as "email.arrived"; may be empty |
    | DesktopEntryRole | desktopEntry | id of the program's desktop entry, without ".desktop"; may be empty |
    | IsTransientRole | isTransient | whether it is for the moment only, not for a list that is kept |
    | ResidentRole | resident | whether it stays when an action is chosen |
    | ActionsRole | actions | list of maps with "key" and "text", without "default", "inline-reply" and empty texts |
    | HasDefaultRole | hasDefault | whether a click on the notification itself means invoke(id, "default") |
    | TimeRole | time | QDateTime of the post, or of the one that replaced it |

    A post is answered at once and is in the list at the next turn of the event loop, with all that
    came in the meantime: a thousand at a time are one insertion. One that replaces keeps id and row,
    and its time-out is the new one. A replaces_id that isn't pending gets an id of its own; if the
    same program uses that number again, which scripts do, it means the same notification. So does a
    post with the hint "x-canonical-private-synchronous" or "x-dunst-stack-tag" that one of the same
    program has.

    Of what is sent the first 1,024 characters of a text are kept, 16,384 of a body, 8 combining marks
    on a letter, 32 actions with 100 characters each (those whose keys are longer together are left
    out), and pictures of at most 320 pixels a side. All pictures together have 32 MB; beyond it the
    oldest lose theirs. A picture's file is read once, when the post comes and in a thread: the role
    iconSource follows, with dataChanged(). What becomes of a notification is told to the program that
    posted it alone.

    Slots may do anything, such as post, close or delete this object. A change from inside a signal is
    in the list at once, except from inside those of a model, where it comes after them. posted(),
    replaced() and closed() come one after another, and the first two not for what is closed by then. */
class QUORVANE_SHELL_EXPORT Notifications : public ListModel
{
    Q_OBJECT

    /*! Whether programs reach this object. Another process may have the service. */
    Q_PROPERTY(bool registered READ isRegistered NOTIFY registeredChanged)

    /*! Who has the service otherwise: a map with "name" and "pid" of the program. Empty without
        anybody. */
    Q_PROPERTY(QVariantMap owner READ owner NOTIFY ownerChanged)

    /*! How long, in milliseconds, a notification stays whose sender leaves it to the shell. 0, as at
        first: until it is dismissed. Critical ones stay in any case. Counts for those that come. */
    Q_PROPERTY(int defaultTimeout READ defaultTimeout WRITE setDefaultTimeout NOTIFY
                       defaultTimeoutChanged)

    /*! How many are kept at most, 1,000 at first, 1 at least. Beyond it the oldest are closed, the
        critical as well, with the protocol's reason 4 (undefined). */
    Q_PROPERTY(int limit READ limit WRITE setLimit NOTIFY limitChanged)

    /*! What programs are told that the shell shows, in the standard's words. At first "actions",
        "body", "body-hyperlinks", "body-markup", "icon-static" and "persistence". Many ask once. */
    Q_PROPERTY(QStringList capabilities READ capabilities WRITE setCapabilities NOTIFY
                       capabilitiesChanged)

public:
    enum Role {
        IdRole = Qt::UserRole + 1,
        AppNameRole,
        SummaryRole,
        BodyRole,
        StyledBodyRole,
        IconSourceRole,
        UrgencyRole,
        ProgressRole,
        CategoryRole,
        DesktopEntryRole,
        IsTransientRole,
        ResidentRole,
        ActionsRole,
        HasDefaultRole,
        TimeRole
    };

    /*! The protocol's reasons; closed() has any number that another program gave. */
    enum CloseReason { Expired = 1, Dismissed, Closed, Undefined };
    Q_ENUM(CloseReason)

    explicit Notifications(QObject *parent = nullptr);
    ~Notifications() override;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    bool isRegistered() const;
    QVariantMap owner() const;
    int defaultTimeout() const;
    void setDefaultTimeout(int milliseconds);
    int limit() const;
    void setLimit(int limit);
    QStringList capabilities() const;
    void setCapabilities(const QStringList &capabilities);

    /*! What a call of Notify does; the id of the post is not read. Returns the id. */
    uint post(const NotificationPost &post);

    /*! Takes notification id out, for one of the protocol's reasons or any other number. Programs are
        told on the bus. Nothing happens for an id that isn't pending. */
    void close(uint id, uint reason);

    /*! The ids of all that is pending, in ascending order. */
    QList<uint> pending();

    /*! The actions of one as they were sent, keys and texts alternating; empty for an unknown id. */
    QStringList actionsOf(uint id);

    /*! The row of a notification, -1 for one that is not there. */
    Q_INVOKABLE int indexOf(uint id) const;

    /*! Closes one that the user has done with, with reason 2. Nothing happens for an unknown id. */
    Q_INVOKABLE void dismiss(uint id);

    /*! Tells the program which action the user chose, then dismisses the notification unless it is a
        resident one. Nothing happens for an unknown id, or a key that the notification hasn't. */
    Q_INVOKABLE void invoke(uint id, const QString &key);

    /*! Dismisses all. */
    Q_INVOKABLE void clear();

Q_SIGNALS:
    void registeredChanged();
    void ownerChanged();
    void defaultTimeoutChanged();
    void limitChanged();
    void capabilitiesChanged();

    /*! It is in the list now. */
    void posted(uint id);

    /*! It has other content now, after dataChanged(). */
    void replaced(uint id);

    /*! It is out of the list: 1 expired, 2 dismissed, 3 closed by its program, 4 for the limit, or any
        number that a program gave at com.zovar.NotificationManager. */
    void closed(uint id, uint reason);

private:
    using Rows = QVector<std::shared_ptr<const Notification>>;

    void _follow();
    void _removeGone(const Rows &wanted);
    void _insertNew(const Rows &wanted);
    void _change(const Rows &wanted);

    const QSharedPointer<NotificationList> _list;
    Rows _rows;                                          // As was announced.
    const QSharedPointer<ApplicationList> _applications; // For the icons of desktop entries.
    bool _following = false;
    bool _behind = false;
};

} // namespace quorvane
