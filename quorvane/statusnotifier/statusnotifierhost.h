#pragma once

#include <quorvane/quorvane_export.h>

#include <QAbstractListModel>
#include <QString>

#include <memory>

/*! \class OrgKdeStatusNotifierItemInterface
    \ingroup statusnotifier
    The proxy of an item with the interface \c org.kde.StatusNotifierItem. Its methods don't wait;
    each read of a property does. Its header is
    \c quorvane/statusnotifier/statusnotifieriteminterface.h. */
class QUORVANE_EXPORT OrgKdeStatusNotifierItemInterface;

/*! \class OrgKdeStatusNotifierWatcherInterface
    \ingroup statusnotifier
    The proxy of the watcher, with the interface \c org.kde.StatusNotifierWatcher. Its methods don't
    wait; each read of a property does. Its header is
    \c quorvane/statusnotifier/statusnotifierwatcherinterface.h. */
class QUORVANE_EXPORT OrgKdeStatusNotifierWatcherInterface;

namespace xdg {

class StatusNotifierHostPrivate;

/*! \ingroup statusnotifier
    \brief The tray as a list model: one row for each item that the watcher lists.

    A panel creates one host, after the watcher is up. The host registers with it, takes over its
    list and follows its signals; a new item is always the last row. If there is no watcher, the
    host warns and stays empty until one under the same name announces an item.

    | Role                    | Number | Name               | Type    |
    |-------------------------|--------|--------------------|---------|
    | CategoryRole            | 257    | category           | QString |
    | IdRole                  | 258    | idItem             | QString |
    | TitleRole               | 259    | title              | QString |
    | StatusRole              | 260    | status             | QString |
    | WindowIdRole            | 261    | windowId           | int     |
    | IconNameRole            | 262    | iconName           | QString |
    | OverlayIconNameRole     | 263    | overlayIconName    | QString |
    | AttentionIconNameRole   | 264    | attentionIconName  | QString |
    | AttentionMovieNameRole  | 265    | attentionMovieName | QString |

    The model keeps no copy of these values. Each data() is one read from the item over the bus, and
    the caller's thread waits for it: an item that is stopped holds it up for the 25 seconds of
    Qt's time-out. A read that fails gives an empty string or 0.

    Put a QSortFilterProxyModel between this model and a view. A change of an item is announced for
    the row that the item had when it was added, and the removal of an unknown item for row -1. The
    proxy drops what lies outside of the model; a view attached directly miscounts its rows.

    The host claims the bus name "org.kde.StatusNotifierHost-" and the process number together with
    a debug line of SYSTEM_TRAY(), so with that level switched off it has no bus name. The tray works
    all the same. */
class QUORVANE_EXPORT StatusNotifierHost : public QAbstractListModel
{
    Q_OBJECT

public:
    /*! What data() answers, named after the properties of the item. */
    enum Role {
        CategoryRole = Qt::UserRole + 1,
        IdRole,
        TitleRole,
        StatusRole,
        WindowIdRole,
        IconNameRole,
        OverlayIconNameRole,
        AttentionIconNameRole,
        AttentionMovieNameRole
    };

    /*! Registers with the watcher and adds the items that it lists, waiting for that list. */
    explicit StatusNotifierHost(QObject *parent = nullptr);

    /*! Leaves the bus name with the process's connection; the watcher is not told. */
    ~StatusNotifierHost() override;

    /*! The number of items, whatever \a parent is. */
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;

    /*! Reads the value of \a role from the item in the row of \a index, and waits for it. */
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    /*! The names of the base class and those of the table above. */
    QHash<int, QByteArray> roleNames() const override;

public Q_SLOTS:
    /*! Forwards a click at \a x and \a y of the screen to the item whose IdRole is \a id.

        The items are asked for their Id in the order of the rows, waiting for each, and the first
        that matches gets the click; without a match nothing happens. A \a mode of 1 calls its
        SecondaryActivate, any other its Activate; that call is not waited for. */
    void activate(int x, int y, QString id, int mode);

private:
    friend class StatusNotifierHostPrivate;

    std::unique_ptr<StatusNotifierHostPrivate> _d;
};

} // namespace xdg
