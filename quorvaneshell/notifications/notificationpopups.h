#pragma once

#include <quorvaneshell/notifications/notifications.h>

namespace quorvane {

class NotificationPopupsPrivate;

/*! \ingroup shell
    \brief The notifications that a shell pops up, newest first: each for a while, a few at a time.

    It shows what is posted and replaced from its making on, of the process's one service; see
    Notifications, which also has what there is to be done with them. The roles are the same:

    | Role | Name | Type | Value |
    | ---- | ---- | ---- | ----- |
    | those of Notifications::Roles | as there | as there | as there |

    What is posted pops up at the next turn of the event loop, with all that came in the meantime. What is
    replaced is shown anew: in its row, if it has one, with its time from the start. What is closed or
    has expired is out of the model at once. What is critical stays until then.

    A notification that is transient ends with its pop-up, since nothing else shows it: as Dismissed when
    the pop-up is closed, as Expired when its time is over or it has to make room or may not
    pop up at all.

    Rows are inserted, removed and changed, never reset; slots may do anything, as with those of
    Notifications. */
class QUORVANE_SHELL_EXPORT NotificationPopups : public ListModel
{
    Q_OBJECT

    /*! How many there are at most, 4 at first, 1 at least. The oldest that is not critical makes room
        for a new one; without such a one the oldest, which comes back when there is room again. */
    Q_PROPERTY(int maximum READ maximum WRITE setMaximum NOTIFY maximumChanged)

    /*! How long one is shown, in milliseconds: 6,000 at first, 0 for until it is closed. A notification
        that expires sooner is gone sooner. Counts for those that come. */
    Q_PROPERTY(int duration READ duration WRITE setDuration NOTIFY durationChanged)

    /*! Whether the pointer is over them: all times stand still, those of the notifications as well, and
        go on afterwards with a second at least. Nothing makes room meanwhile: what finds none comes
        afterwards. False at first. */
    Q_PROPERTY(bool held READ isHeld WRITE setHeld NOTIFY heldChanged)

    /*! Whether only what is critical pops up, as it is while Notifications::inhibited is true. What is
        there and isn't goes, and does not come back. False at first. */
    Q_PROPERTY(bool quiet READ isQuiet WRITE setQuiet NOTIFY quietChanged)

    /*! Whether only what is transient pops up, even of what is critical: while a list of the others is in
        view. What is there and isn't goes, and does not come back. False at first. */
    Q_PROPERTY(bool transientOnly READ isTransientOnly WRITE setTransientOnly NOTIFY
                       transientOnlyChanged)

public:
    /*! What is pending by now does not pop up. */
    explicit NotificationPopups(QObject *parent = nullptr);
    ~NotificationPopups() override;

    /*! The number of rows; none below a row. */
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /*! A role of a row; invalid for a role or row that is not there. */
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /*! Those of Notifications. */
    QHash<int, QByteArray> roleNames() const override;

    int maximum() const;
    void setMaximum(int maximum);
    int duration() const;
    void setDuration(int milliseconds);
    bool isHeld() const;
    void setHeld(bool held);
    bool isQuiet() const;
    void setQuiet(bool quiet);
    bool isTransientOnly() const;
    void setTransientOnly(bool transientOnly);

    /*! The row of a notification's pop-up, -1 for one that has none. */
    Q_INVOKABLE int indexOf(uint id) const;

    /*! All roles of a notification that pops up, by their names; else empty. */
    Q_INVOKABLE QVariantMap find(uint id) const;

    /*! Takes a pop-up away. The notification stays, unless it is a transient one. Nothing happens for one
        that has no pop-up. */
    Q_INVOKABLE void close(uint id);

Q_SIGNALS:
    /*! maximum is another. */
    void maximumChanged();
    /*! duration is another. */
    void durationChanged();
    /*! held is another. */
    void heldChanged();
    /*! quiet is another. */
    void quietChanged();
    /*! transientOnly is another. */
    void transientOnlyChanged();

private:
    const std::unique_ptr<NotificationPopupsPrivate> _d;
};

} // namespace quorvane
