#pragma once

#include "trayregistry_p.h"

#include <quorvaneshell/quorvaneshell_export.h>
#include <quorvaneshell/rows/listmodel.h>

#include <QCollator>
#include <QVariantMap>
#include <QVector>

class QDBusMessage;

namespace quorvane {

class TrayItem;
class TrayMenu;

/*! \ingroup shell
    \brief The tray for a shell: the items of all programs, whatever way they register, read without
    waiting.

    It takes part in the StatusNotifierItem protocol as a host. It uses the registry of another process
    where there is one, and keeps the registry itself where there is none and once that one has left.
    An item has its row from its first answer on; one that answers with an error has none, one that does
    not answer has one after three seconds. Of one program 64 items are taken, of all together 500.

    Rows stand in the order of their categories (as below, then others), in each by title, or by itemId
    without one, and of the same title by key. A title that changes later, as those of players do, leaves
    its row where it is: what stands under the pointer does not move.

    | Role | Type | Value |
    | ---- | ---- | ----- |
    | key | string | bus name and object path: unique, and the same as long as the item lives |
    | itemId | string | what the program calls the item; several may have the same |
    | title | string | may be empty |
    | status | string | Passive, Active or NeedsAttention |
    | category | string | ApplicationStatus, Communications, SystemServices, Hardware or another |
    | iconSource | string | URL for an Image; that of the attention icon while NeedsAttention |
    | overlaySource | string | URL of a small picture for a corner of the icon; mostly empty |
    | label | string | a short text for beside the icon; mostly empty |
    | toolTip | string | plain text: the item's tool tip, or else its title, or else itemId |
    | hasMenu | bool | whether menu() has something to show |
    | isMenu | bool | the item has nothing but its menu; activate() asks for that |
    | responds | bool | false after three seconds without an answer; the other values are the last |
*/
class QUORVANE_SHELL_EXPORT Tray : public ListModel
{
    Q_OBJECT

    /*! Whether there is a registry that knows this tray, so that programs find it. */
    Q_PROPERTY(bool registered READ isRegistered NOTIFY registeredChanged)

    /*! A map with "name" and "pid" of the process that keeps the registry, if it is another one; else
        empty. */
    Q_PROPERTY(QVariantMap owner READ owner NOTIFY ownerChanged)

public:
    explicit Tray(QObject *parent = nullptr);
    ~Tray() override;

    bool isRegistered() const;
    QVariantMap owner() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /*! The menu of an item, null for one without and for an unknown key. The same object each time;
        it belongs to the tray and goes with the item. */
    Q_INVOKABLE quorvane::TrayMenu *menu(const QString &key) const;

    /*! The usual click on an item, at a place on the screen. An item that is nothing but a menu gets
        contextMenu() instead. Nothing happens for an unknown key, here and in the calls below, and none
        waits for the item. */
    Q_INVOKABLE void activate(const QString &key, int x, int y);

    /*! The click of the middle button. */
    Q_INVOKABLE void secondaryActivate(const QString &key, int x, int y);

    /*! The click of the right button: menuRequested() for an item with a menu; another shows what it
        has by itself. */
    Q_INVOKABLE void contextMenu(const QString &key, int x, int y);

    /*! The mouse wheel: \a delta as in WheelEvent.angleDelta, \a orientation "vertical" or "horizontal".
        GTK's indicators, which count the other way, get it the other way. */
    Q_INVOKABLE void scroll(const QString &key, int delta,
                            const QString &orientation = QStringLiteral("vertical"));

Q_SIGNALS:
    void registeredChanged();
    void ownerChanged();

    /*! The shell is to show menu(key), at the place that the click came with. */
    void menuRequested(const QString &key, int x, int y);

private Q_SLOTS:
    void _hearItem(const QDBusMessage &signal);

private:
    struct Row
    {
        TrayItem *item;
        int category;
        QString title; // As the item came with it.
    };

    void _add(const TrayAddress &address, const QString &owner);
    void _remove(const TrayAddress &address);
    void _show(TrayItem *item);
    void _hide(TrayItem *item);
    TrayItem *_find(const QString &key) const;
    int _rowOf(const TrayItem *item) const;
    bool _isBefore(const Row &one, const Row &other) const;

    TrayRegistry _registry;
    QVector<TrayItem *> _items; // All that are registered, and
    QVector<Row> _rows;         // those that have a row.
    QCollator _collator;
};

} // namespace quorvane
