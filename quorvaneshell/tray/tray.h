#pragma once

#include <quorvaneshell/quorvaneshell_export.h>
#include <quorvaneshell/rows/listmodel.h>

#include <QString>
#include <QVariantMap>

#include <memory>

namespace quorvane {

class TrayMenu;
class TrayPrivate;

/*! \ingroup shell
    \brief The tray for a shell: the items of all programs, whatever way they register, read without
    waiting.

    It takes part in the StatusNotifierItem protocol (org.kde, as on freedesktop.org) as a host. It uses
    the registry of another process where there is one, and keeps the registry itself where there is none
    and once that one has left. An item has its row from its first answer on; one that answers with an
    error has none, one that does not answer has one after three seconds. It is the same item, in one
    row, if it registers under two names. Of one program 64 items are taken, of all together 500.

    Rows stand in the order of their categories (as below, then others), in each by title, or by itemId
    without one, and of the same title by key. A title that changes later, as those of players do, leaves
    its row where it is: what stands under the pointer does not move. Changes of values are announced
    with the roles that changed, and the model is never reset.

    | Role | Name | Type | Value |
    | ---- | ---- | ---- | ----- |
    | KeyRole | key | string | bus name and object path: unique, and the same as long as the item lives |
    | ItemIdRole | itemId | string | what the program calls the item; several may have the same |
    | TitleRole | title | string | the name for people; may be empty |
    | StatusRole | status | Tray::Status | whether it wants to be seen; Active where it says nothing that is known |
    | CategoryRole | category | string | ApplicationStatus, Communications, SystemServices, Hardware or another |
    | IconSourceRole | iconSource | string | URL for an Image; that of the attention icon while NeedsAttention. Another one when the icon's file is written anew |
    | OverlaySourceRole | overlaySource | string | URL of a small picture for a corner of the icon; mostly empty |
    | LabelRole | label | string | a short text for beside the icon; mostly empty |
    | ToolTipRole | toolTip | string | plain text of one or more lines: the item's tool tip, or else its title, or else itemId |
    | HasMenuRole | hasMenu | bool | whether menu() has something to show; not so where a program has GTK's own kind of menu alone |
    | IsMenuRole | isMenu | bool | the item has nothing but its menu; activate() asks for that |
    | RespondsRole | responds | bool | false after three seconds without an answer; the other values are the last |
    | Qt::DisplayRole | | string | title, or itemId without one |
    | Qt::DecorationRole | | QIcon | that of iconSource |
    | Qt::ToolTipRole | | string | as toolTip |

    What items tell comes from strangers: texts are cut to 1,000 characters, of pictures up to 1,024
    pixels a side the largest up to 256 is taken, and what is of a wrong type is left out. Show texts as
    plain text. Nothing waits for an item.

    A slot may delete the tray, except in a signal that tells what is about to come. */
class QUORVANE_SHELL_EXPORT Tray : public ListModel
{
    Q_OBJECT

    /*! Whether there is a registry that knows this tray, so that programs find it. */
    Q_PROPERTY(bool registered READ isRegistered NOTIFY registeredChanged)

    /*! A map with "name" and "pid" of the process that keeps the registry, if it is another one; else
        empty. */
    Q_PROPERTY(QVariantMap owner READ owner NOTIFY ownerChanged)

public:
    /*! Described above. */
    enum Roles {
        KeyRole = Qt::UserRole + 1,
        ItemIdRole,
        TitleRole,
        StatusRole,
        CategoryRole,
        IconSourceRole,
        OverlaySourceRole,
        LabelRole,
        ToolTipRole,
        HasMenuRole,
        IsMenuRole,
        RespondsRole
    };
    Q_ENUM(Roles)

    /*! Whether an item wants to be seen, as StatusNotifierItem has it. */
    enum Status {
        Passive,       /*!< Nothing goes on: to be hidden, or to stand back. */
        Active,        /*!< To be shown. */
        NeedsAttention /*!< The user should look: to be shown in a way that stands out. */
    };
    Q_ENUM(Status)

    /*! A tray with the items that there are, as soon as they have answered. Several trays, in one
        process or more, show the same. */
    explicit Tray(QObject *parent = nullptr);
    ~Tray() override;

    bool isRegistered() const;
    QVariantMap owner() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    /*! The row of an item, or -1. */
    Q_INVOKABLE int indexOf(const QString &key) const;

    /*! All roles of an item by their names; empty for an unknown key. */
    Q_INVOKABLE QVariantMap find(const QString &key) const;

    /*! The menu of an item, null for one without and for an unknown key. The same object each time;
        it belongs to the tray and goes with the item. */
    Q_INVOKABLE quorvane::TrayMenu *menu(const QString &key) const;

    /*! The usual click on an item, at a place on the screen. An item that is nothing but a menu gets
        contextMenu() instead, and so does one that turns out to know no such click.

        Nothing happens for an unknown key, here and in the calls below, and none waits for the item.
        After each the item is read again. What goes wrong comes as failed(). */
    Q_INVOKABLE void activate(const QString &key, int x, int y);

    /*! The click of the middle button. Nothing happens for an item that knows no such click. */
    Q_INVOKABLE void secondaryActivate(const QString &key, int x, int y);

    /*! The click of the right button: menuRequested() for an item with a menu; another shows what it
        has by itself. */
    Q_INVOKABLE void contextMenu(const QString &key, int x, int y);

    /*! The mouse wheel: \a delta in eighths of a degree, as in QWheelEvent::angleDelta(). GTK's
        indicators, which count the other way, get it the other way. Nothing happens for an item that
        knows no wheel. */
    Q_INVOKABLE void scroll(const QString &key, int delta,
                            Qt::Orientation orientation = Qt::Vertical);

Q_SIGNALS:
    void registeredChanged();
    void ownerChanged();

    /*! The shell is to show menu(key), at the place that the click came with. */
    void menuRequested(const QString &key, int x, int y);

    /*! A click on an item came to nothing: the item has answered it with an error, or has answered
        nothing at all for a few seconds, neither clicks nor what it is asked for besides. An item that
        only has the click wait, as for a dialog that it opened, is none that failed. Of several clicks
        without an answer this is told once. The message is for people, in plain text. */
    void failed(const QString &key, const QString &message);

private:
    friend class TrayPrivate;

    const std::unique_ptr<TrayPrivate> _d;
};

} // namespace quorvane
