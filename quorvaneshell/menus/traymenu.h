#pragma once

#include <quorvaneshell/quorvaneshell_export.h>
#include <quorvaneshell/rows/listmodel.h>

#include <QString>

#include <memory>

namespace quorvane {

class MenuRows;
class TrayMenuPrivate;

/*! \ingroup shell
    \brief The menu of a tray item, or of any program that exports one, as a list model.

    Speaks com.canonical.dbusmenu as its client. The menu is where service and path say; Tray::menu()
    gives that of an item. It is read at once and followed from then on: rows are inserted, removed,
    moved and changed one by one, so that an open menu does not flicker; more than 100 such steps at
    once are a change of the layout. The model is never reset, and countChanged() comes once, at the
    end.

    | Role | Name | Type | Value |
    | ---- | ---- | ---- | ----- |
    | IdRole | id | int | what the program calls the row: above 0, and no other row of the menu has it |
    | LabelRole | label | string | the text, without the marks of mnemonics ("_File" is "File") |
    | MnemonicLabelRole | mnemonicLabel | string | the text as Qt's menus take it ("_File" is "&File"), a literal "&" doubled |
    | EnabledRole | enabled | bool | whether the row can be chosen |
    | VisibleRole | visible | bool | whether to show the row; hidden ones stay in the model |
    | SeparatorRole | separator | bool | a line between rows, without a text |
    | CheckableRole | checkable | bool | has a check mark or a radio button |
    | RadioRole | radio | bool | and it is a radio button |
    | CheckedRole | checked | bool | and it is set |
    | IconSourceRole | iconSource | string | URL for an Image: the row's picture, else its icon name; or empty. An icon that is not found is not seen |
    | HasChildrenRole | hasChildren | bool | submenu() has a menu for this row |
    | ShortcutRole | shortcut | string | the keys that do the same in the program, as in "Ctrl+S"; it handles them itself |
    | Qt::DisplayRole | | string | as label |
    | Qt::DecorationRole | | QIcon | that of iconSource |
    | Qt::ToolTipRole | | string | as label, for views that cut it |

    A menu is opened with open(), shown on opened(), and closed with close(). Many programs fill their
    menus only then. Nothing waits for the program, and one that hangs keeps its rows. When it leaves
    the bus, the rows go. It is not started, whatever service says.

    A menu comes from a stranger. Taken of it are 2,000 items in 16 levels, texts of 1,000
    characters, pictures (PNG) of 1 MB and 512 by 512 pixels, together 4 MB and 4 million pixels in a
    message, kept at 64 by 64 at most. What is beyond that is left out, and so are values of wrong
    types, items with an id that another one has, and ids below 1. Changes are taken 20 times a second
    at most, and the less often the longer they take. A layout that the program owes is asked for
    again after 30 seconds. Show texts as plain text.

    A slot may delete the menu, except in a signal that tells what is about to come. */
class QUORVANE_SHELL_EXPORT TrayMenu : public ListModel
{
    Q_OBJECT

    /*! The bus name of the program; empty by default. Both names take effect from the event loop,
        together; with an invalid one the menu is empty. Those of a submenu are its menu's and can't
        be set. */
    Q_PROPERTY(QString service READ service WRITE setService NOTIFY serviceChanged)
    /*! The object path of the menu; empty by default. */
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)
    /*! Whether the rows are on their way: until the menu has been read, and from open() to opened()
        or failed(). */
    Q_PROPERTY(bool loading READ isLoading NOTIFY loadingChanged)
    /*! False when the program hasn't answered for three seconds or has no such menu; true again
        with its next answer. */
    Q_PROPERTY(bool responds READ responds NOTIFY respondsChanged)

public:
    /*! Described above. */
    enum Roles {
        IdRole = Qt::UserRole + 1,
        LabelRole,
        MnemonicLabelRole,
        EnabledRole,
        VisibleRole,
        SeparatorRole,
        CheckableRole,
        RadioRole,
        CheckedRole,
        IconSourceRole,
        HasChildrenRole,
        ShortcutRole
    };
    Q_ENUM(Roles)

    /*! An empty menu, until it has a service and a path. */
    explicit TrayMenu(QObject *parent = nullptr);
    /*! Takes its submenus with it. */
    ~TrayMenu() override;

    QString service() const;
    void setService(const QString &service);
    QString path() const;
    void setPath(const QString &path);
    bool isLoading() const;
    bool responds() const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    /*! The row with this id, or -1. Rows of submenus have none here. */
    Q_INVOKABLE int indexOf(int id) const;

    /*! All roles of the row with this id by their names; empty where there is none. */
    Q_INVOKABLE QVariantMap find(int id) const;

    /*! Tells the program that the row was chosen. What follows, such as a new check mark, is up to
        the program. Nothing happens for a separator and for a row that is disabled, hidden, has a
        submenu or isn't there. */
    Q_INVOKABLE void trigger(int row);

    /*! The menu below a row, or null. It is the same object each time, belongs to this menu, and is
        emptied and then deleted when its row goes. */
    Q_INVOKABLE quorvane::TrayMenu *submenu(int row) const;

    /*! Tells the program that this menu is about to be shown and reads what it makes of that. Then
        comes opened(), or failed() after three seconds at most; neither if it is closed before. To be
        called of each submenu, too. */
    Q_INVOKABLE void open();

    /*! Tells the program that this menu isn't shown any more. Nothing happens if it isn't open. */
    Q_INVOKABLE void close();

Q_SIGNALS:
    void serviceChanged();
    void pathChanged();
    void loadingChanged();
    void respondsChanged();
    /*! After open(): the rows are right, and the menu can be shown. */
    void opened();
    /*! After open(): the program doesn't answer, or has no such menu. The menu is closed. */
    void failed();
    /*! The program asks for the menu to be shown, as for a global shortcut. Only of the topmost. */
    void activationRequested();

private:
    friend class MenuRows;
    friend class TrayMenuPrivate;

    TrayMenu(int id, TrayMenu *parent);

    const std::unique_ptr<TrayMenuPrivate> _d;
};

} // namespace quorvane
