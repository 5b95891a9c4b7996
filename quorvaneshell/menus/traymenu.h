#pragma once

#include "menuitem_p.h"

#include <quorvaneshell/pictures/storedpicture_p.h>
#include <quorvaneshell/quorvaneshell_export.h>
#include <quorvaneshell/rows/rowwalk_p.h>

#include <QHash>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <memory>
#include <vector>

namespace quorvane {

class MenuClient;

/*! \ingroup shell
    \brief The menu of a tray item, or of any program that exports one, as a list model.

    Speaks com.canonical.dbusmenu as its client. The menu is where service and path say; Tray.menu()
    makes one for an item. It is read at once and followed from then on: rows are inserted, removed,
    moved and changed one by one, so that an open menu does not flicker; more than 100 such steps at
    once are a change of the layout. countChanged() comes once, at the end.

    | Role        | Type   |                                                               |
    |-------------|--------|---------------------------------------------------------------|
    | label       | string | the text, without the marks of mnemonics ("_File" is "File")  |
    | enabled     | bool   | whether the row can be chosen                                 |
    | visible     | bool   | whether to show the row; hidden ones stay in the model        |
    | separator   | bool   | a line between rows, without a text                           |
    | checkable   | bool   | has a check mark or a radio button                            |
    | radio       | bool   | and it is a radio button                                      |
    | checked     | bool   | and it is set                                                 |
    | iconSource  | string | for Image: the item's picture, else its icon name; or empty   |
    | hasChildren | bool   | submenu() has a menu for this row                             |
    | shortcut    | string | the keys that do the same in the program, as in "Ctrl+S"      |

    A menu is opened with open(), shown on opened(), and closed with close(). Many programs fill their
    menus only then. Nothing waits for the program, and one that hangs keeps its rows.

    A menu comes from a stranger. Taken of it are 2,000 items in 16 levels, texts of 1,000
    characters, pictures (PNG) of 1 MB and 512 by 512 pixels, together 4 MB and 4 million pixels in a
    message, kept at 64 by 64 at most. What is beyond that is left out, and so are values of wrong
    types, items with an id that another one has, and ids below 1. Changes are taken 20 times a second
    at most, and the less often the longer they take. A layout that the program owes is asked for
    again after 30 seconds. */
class QUORVANE_SHELL_EXPORT TrayMenu : public ListModel
{
    Q_OBJECT
    /*! The bus name of the program. Both names take effect from the event loop; with an invalid one
        the menu is empty. Those of a submenu are its menu's and can't be set. */
    Q_PROPERTY(QString service READ service WRITE setService NOTIFY serviceChanged)
    /*! The object path of the menu. */
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)
    /*! Whether the rows are on their way: until the menu has been read, and from open() to opened()
        or failed(). */
    Q_PROPERTY(bool loading READ isLoading NOTIFY loadingChanged)
    /*! False when the program hasn't answered for three seconds or has no such menu; true again
        with its next answer. */
    Q_PROPERTY(bool responds READ responds NOTIFY respondsChanged)

public:
    enum Role {
        LabelRole = Qt::UserRole + 1,
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

    explicit TrayMenu(QObject *parent = nullptr);
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

    /*! Tells the program that the row was chosen. What follows, such as a new check mark, is up to
        the program. Nothing happens for a separator and for a row that is disabled, hidden, has a
        submenu or isn't there. */
    Q_INVOKABLE void trigger(int row);

    /*! The menu below a row, or null. It is the same object each time, belongs to this menu, and is
        deleted when its row goes. */
    Q_INVOKABLE quorvane::TrayMenu *submenu(int row) const;

    /*! Tells the program that this menu is about to be shown and reads what it makes of that. Then
        comes opened(), or failed() after three seconds at most; neither if it is closed before. */
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
    /*! After open(): the program doesn't answer, or has no such menu. */
    void failed();
    /*! The program asks for the menu to be shown, as for a global shortcut. Only of the topmost. */
    void activationRequested();

private:
    friend class RowWalk<TrayMenu>;
    using Wanted = std::vector<MenuItem>;

    struct Row
    {
        int id = 0;
        QVariantMap properties;
        QPointer<TrayMenu> submenu;
        std::unique_ptr<StoredPicture> picture = std::make_unique<StoredPicture>();
        QString pictureSource;
    };

    TrayMenu(int id, TrayMenu *parent);

    void _connectToService();
    void _follow(MenuClient *client);
    void _takeLayout(const MenuItem &menu);
    void _limitOpening();
    void _announce();
    void _prepared(int id, bool ok);
    void _updateLoading();
    QString _themePath() const;
    void _setItems(const std::vector<MenuItem> &items);
    static int _keyOf(const Row &row) { return row.id; }
    static int _keyOf(const MenuItem &item) { return item.id; }
    Row _makeRow(const MenuItem &item);
    void _rowsRemoved(std::vector<Row> rows);
    template<typename IsCurrent>
    void _updateRows(const Wanted &wanted, const IsCurrent &isCurrent);
    void _setProperties(const QHash<int, QVariantMap> &updates);
    void _change(int row, const QVariantMap &properties, bool hasItems);
    QPointer<TrayMenu> _assign(Row *row, const QVariantMap &properties, bool hasItems);
    static void _removeSubmenu(const QPointer<TrayMenu> &submenu);

    TrayMenu *const _root;
    const int _id = 0;
    QString _service;
    QString _path;
    QTimer _connecting;
    QTimer _opens; // While it does, no longer than it may take.
    MenuClient *_client = nullptr;
    std::vector<Row> _rows;
    RowWalk<TrayMenu> _walk { this, this };
    bool _isOpen = false;
    bool _opening = false;
    bool _loading = false;
};

} // namespace quorvane
