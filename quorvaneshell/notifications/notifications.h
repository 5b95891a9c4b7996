#pragma once

#include <quorvaneshell/quorvaneshell_export.h>
#include <quorvaneshell/rows/listmodel.h>

#include <QStringList>
#include <QVariantMap>

#include <memory>

namespace quorvane {

class NotificationsPrivate;

/*! \ingroup shell
    \brief The notification service of a session for a shell, after the Desktop Notifications
    Specification 1.2, and the list of what is pending, newest first.

    Constructing one is all that is needed: it asks for "org.freedesktop.Notifications", for any
    program that posts, and "com.zovar.NotificationManager", for programs that answer, without waiting
    for either. What another process has is taken over when that one leaves. All objects of a process
    show the same notifications of one service, which ends with the last of them; what is set on one is
    set on all.

    | Role | Name | Type | Value |
    | ---- | ---- | ---- | ----- |
    | IdRole | id | uint | number of the notification, never another's: in a delegate model.id |
    | AppNameRole | appName | string | the program's name for people |
    | SummaryRole, Qt::DisplayRole | summary | string | the title, plain text |
    | BodyRole | body | string | the text as it was sent, markup and all |
    | Qt::ToolTipRole | | string | the body without its markup |
    | StyledBodyRole | styledBody | string | the body for Text.StyledText: b, i, u, line breaks, links to http and https |
    | IconSourceRole | iconSource | string | URL for an Image: the picture sent, else the icon sent, else that of the desktop entry; may be empty |
    | Qt::DecorationRole | | QIcon | the same picture or icon |
    | UrgencyRole | urgency | int | an Urgency: Low, Normal or Critical; Normal where the program said nothing |
    | ProgressRole | progress | int | 0 to 100 (hint "value"), -1 without |
    | CategoryRole | category | string | such as "email.arrived"; may be empty |
    | DesktopEntryRole | desktopEntry | string | id of the program's desktop entry, without ".desktop"; may be empty |
    | IsTransientRole | isTransient | bool | whether it is for the moment only, not for a list that is kept |
    | ResidentRole | resident | bool | whether it stays when an action is chosen |
    | ActionsRole | actions | list of maps | the buttons, see below |
    | HasDefaultRole | hasDefault | bool | whether a click on the notification itself means invoke(id, "default") |
    | TimeRole | time | QDateTime | when it was posted, or replaced |
    | TimeoutRole | timeout | int | how long it stays from then on, in milliseconds; 0 for no such time, as for all critical ones |
    | UnreadRole | unread | bool | whether it has not been marked as read since it was posted, or replaced |
    | ExpiredRole | expired | bool | whether its time is over and it is kept all the same, see keepExpired |

    A map in \c actions has "id", for invoke(), "text", and "iconSource": the URL of an icon if the
    program has asked for icons (hint "action-icons"), else empty. The actions "default" and
    "inline-reply" and those without a text are left out. Hints that are missing or of the wrong type
    count as not sent.

    A post is answered at once and is in the list at the next turn of the event loop, with all that
    came in the meantime: a thousand at a time are one insertion. One that replaces keeps id and row,
    and its time-out is the new one. A replaces_id that isn't pending gets an id of its own; if the
    same program uses that number again, which scripts do, it means the same notification. So does a
    post with the hint "x-canonical-private-synchronous" or "x-dunst-stack-tag" that one of the same
    program has. What becomes of a notification is told to the program that posted it alone.

    Of what is sent the first 1,024 characters of a text are kept, 16,384 of a body (32,768 with 50
    links in styledBody), 8 combining marks on a letter, 32 actions with 100 characters each (those
    whose keys are longer together are left out), the first 64 hints, and pictures of at most 320
    pixels a side; one of more than 40 MB counts as not sent. All pictures together have 32 MB; beyond
    it the oldest lose theirs. A picture's file is read once, when the post comes and in a thread:
    iconSource follows, with dataChanged().

    Rows are inserted, removed and changed; where it would take more than 100 such steps the layout
    changes; the model is never reset. dataChanged() names the roles that changed.

    Slots may do anything, such as close a notification or delete this object. A change from inside a
    signal is in the list at once, except from inside those of a model, where it comes after them; only
    signals that tell what is about to come are no place for it. posted(), replaced(), expired() and closed()
    come one after another, after the signals of the model, and closed() alone for what is closed by
    then. */
class QUORVANE_SHELL_EXPORT Notifications : public ListModel
{
    Q_OBJECT

    /*! Whether programs reach this process: it has "org.freedesktop.Notifications". False at first;
        another process may have the service. */
    Q_PROPERTY(bool registered READ isRegistered NOTIFY registeredChanged)

    /*! Who has the service otherwise: a map with "name" and "pid" of the program. Empty without
        anybody, and until the bus has told. */
    Q_PROPERTY(QVariantMap owner READ owner NOTIFY ownerChanged)

    /*! How long, in milliseconds, a notification stays whose sender leaves it to the shell. 0, as at
        first: until it is dismissed. Critical ones stay in any case. Counts for those that come. */
    Q_PROPERTY(int defaultTimeout READ defaultTimeout WRITE setDefaultTimeout NOTIFY
                       defaultTimeoutChanged)

    /*! How many are kept at most, 1,000 at first, 1 at least. Beyond it the oldest are closed, the
        critical as well, as Undefined; those that have expired before all others. */
    Q_PROPERTY(int limit READ limit WRITE setLimit NOTIFY limitChanged)

    /*! Whether what expires stays in the list, up to limit, with its picture and with the role expired;
        what is transient does not. False at first; counts for what expires from then on. Its program
        is told that it has expired, and it has no actions any more, but for a resident one as long as
        its program is on the bus. dismiss(), clear() and close() take it out of the list, without
        a word to its program; so does the program itself when it closes it. One that replaces
        it is pending again, with its id and in its row. */
    Q_PROPERTY(bool keepExpired READ keepExpired WRITE setKeepExpired NOTIFY keepExpiredChanged)

    /*! How many in the list are unread. */
    Q_PROPERTY(int unreadCount READ unreadCount NOTIFY unreadCountChanged)

    /*! Whether the user does not want to be disturbed. False at first. */
    Q_PROPERTY(bool doNotDisturb READ doNotDisturb WRITE setDoNotDisturb NOTIFY doNotDisturbChanged)

    /*! The programs that ask for silence, such as for a presentation, the oldest first: maps with "appId",
        the id of the program's desktop entry, without ".desktop", and "reason", both plain text. Each ends when
        its program says so or leaves the bus. At most 16 of a program and 256 of all are accepted.
        Programs call Inhibit() and UnInhibit() of "org.freedesktop.Notifications", as some desktops
        have them. */
    Q_PROPERTY(QVariantList inhibitions READ inhibitions NOTIFY inhibitionsChanged)

    /*! Whether there is a reason for silence: doNotDisturb, or inhibitions. Programs see it as the property
        Inhibited. Notifications come into the list all the same; NotificationPopups pops up only
        what is critical. */
    Q_PROPERTY(bool inhibited READ isInhibited NOTIFY inhibitedChanged)

    /*! What programs are told that the shell shows, in the standard's words. At first "actions",
        "body", "body-hyperlinks", "body-markup", "icon-static" and "persistence". Many ask once, so
        it is to be set before the event loop runs; without "actions" most send none. A shell that
        shows the icons of actions adds "action-icons". */
    Q_PROPERTY(QStringList capabilities READ capabilities WRITE setCapabilities NOTIFY
                       capabilitiesChanged)

public:
    /*! What data() gives; see the table. */
    enum Roles {
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
        TimeRole,
        TimeoutRole,
        UnreadRole,
        ExpiredRole
    };
    Q_ENUM(Roles)

    /*! The standard's urgencies. */
    enum Urgency {
        Low,
        Normal,
        Critical /*!< Stays until somebody closes it. */
    };
    Q_ENUM(Urgency)

    /*! Why a notification is out of the list, in the standard's numbers. Another process may give any
        other number at "com.zovar.NotificationManager". */
    enum CloseReason : uint {
        Expired = 1, /*!< Its time was over. */
        Dismissed,   /*!< The user has done with it. */
        Closed,      /*!< Its program closed it. */
        Undefined    /*!< Anything else: here, that it was one too many. */
    };
    Q_ENUM(CloseReason)

    /*! Asks for the names on the bus, unless another object of the process has done so. What is
        pending there is in the list already. */
    explicit Notifications(QObject *parent = nullptr);

    /*! The last object of the process gives the names back; what is pending is forgotten, and nobody
        is told. */
    ~Notifications() override;

    /*! The number of rows; none below a row. */
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /*! A role of a row; invalid for a role or row that is not there. */
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /*! The names in the table. */
    QHash<int, QByteArray> roleNames() const override;

    bool isRegistered() const;
    QVariantMap owner() const;
    int defaultTimeout() const;
    void setDefaultTimeout(int milliseconds);
    int limit() const;
    void setLimit(int limit);
    bool keepExpired() const;
    void setKeepExpired(bool keepExpired);
    int unreadCount() const;
    bool doNotDisturb() const;
    void setDoNotDisturb(bool doNotDisturb);
    QVariantList inhibitions() const;
    bool isInhibited() const;
    QStringList capabilities() const;
    void setCapabilities(const QStringList &capabilities);

    /*! The row of a notification, -1 for one that is not there. */
    Q_INVOKABLE int indexOf(uint id) const;

    /*! All roles of a notification by their names; empty for one that is not there. */
    Q_INVOKABLE QVariantMap find(uint id) const;

    /*! Tells the program which action the user chose, by its id in the role actions, or "default".
        Then closes the notification as Dismissed, unless it is a resident one. Nothing happens for a
        notification that is not there, or an action that it hasn't. */
    Q_INVOKABLE void invoke(uint id, const QString &actionId);

    /*! Closes one that the user has done with, as Dismissed. Nothing happens for one that is not
        there. */
    Q_INVOKABLE void dismiss(uint id);

    /*! Dismisses all, those that are not in the list yet as well. */
    Q_INVOKABLE void clear();

    /*! Closes a notification for a reason of the shell's. Its program is told, and closed() comes.
        Nothing happens for one that is not there. */
    Q_INVOKABLE void close(uint id, quorvane::Notifications::CloseReason reason);

    /*! Ends the time of a notification at once, held or not: it is closed as Expired, or kept, see
        keepExpired. Nothing happens for one that is not there, or has expired. */
    Q_INVOKABLE void expire(uint id);

    /*! Stops the time of a notification, such as one under the pointer, until each hold() has had its
        release(). Counts for all objects of the process; what an object holds is let go with it. A
        replacement is held as well. Nothing happens for one that is not there. */
    Q_INVOKABLE void hold(uint id);

    /*! Takes back one hold() of this object. Without another it goes on with the time that was left,
        at least a second. */
    Q_INVOKABLE void release(uint id);

    /*! Says that the user has seen it. Nothing happens for one that is not there. */
    Q_INVOKABLE void markRead(uint id);

    /*! Says that the user has seen all that are in the list. */
    Q_INVOKABLE void markAllRead();

Q_SIGNALS:
    /*! registered may be another. */
    void registeredChanged();
    /*! owner may be another. */
    void ownerChanged();
    /*! defaultTimeout is another, set on any object of the process. */
    void defaultTimeoutChanged();
    /*! limit is another, set on any object of the process; comes after what it closed. */
    void limitChanged();
    /*! keepExpired is another, set on any object of the process. */
    void keepExpiredChanged();
    /*! doNotDisturb is another, set on any object of the process; comes before inhibitedChanged(). */
    void doNotDisturbChanged();
    /*! A program asks for silence, or does so no more; comes before inhibitedChanged(). */
    void inhibitionsChanged();
    /*! inhibited is another. */
    void inhibitedChanged();
    /*! unreadCount is another; comes after the signals of the model. */
    void unreadCountChanged();
    /*! What programs are told is something else, set on any object of the process. */
    void capabilitiesChanged();

    /*! It is in the list now, after rowsInserted() and countChanged(). */
    void posted(uint id);

    /*! It has other content now, in its row, after dataChanged(). */
    void replaced(uint id);

    /*! Its time is over and it stays in the list, after dataChanged(); see keepExpired. */
    void expired(uint id);

    /*! It is out of the list, after rowsRemoved() and countChanged(); see find() for no more of it.
        The reason may be a number that CloseReason has no name for. */
    void closed(uint id, quorvane::Notifications::CloseReason reason);

private:
    const std::unique_ptr<NotificationsPrivate> _d;
};

} // namespace quorvane
