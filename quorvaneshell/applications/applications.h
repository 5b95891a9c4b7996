#pragma once

#include "application_p.h"

#include <quorvaneshell/quorvaneshell_export.h>
#include <quorvaneshell/rows/rowwalk_p.h>

#include <QByteArrayList>
#include <QVariantList>

namespace quorvane {

class ApplicationList;

/*! \ingroup shell
    \brief The installed applications as a launcher shows them: found, sorted, searched and started.

    The applications are the desktop entries below "applications" in the data directories, by the
    rules of the Desktop Entry and Base Directory Specifications, as GIO reads them. A file in a more
    important directory hides those of its id in the others. Entries with Hidden, those without a name
    or a command line (or bus name), and those whose program or TryExec isn't there, are no
    applications. Folders are looked into 8 levels deep and up to 1,000 in all; a file has 1 MB at
    most. The list is complete after construction and stays right: a file, an override or a folder
    that comes, changes or goes shows within a second, as rows that are inserted, removed, moved or
    changed, or as a change of the layout where it would take more than 100 such steps; the model is
    never reset. Data directories, desktop (XDG_CURRENT_DESKTOP) and language are those that the
    process began with.

    A slot on a signal may search, launch and delete the model; what it asks for is shown after it.
    Only signals that tell what is about to come are no place for it. countChanged() comes once for
    all that changed, at the end. The signals of search, category and showAll come after that, when the
    rows are the new ones.

    | Role | Name | Value |
    | ---- | ---- | ----- |
    | AppIdRole | appId | id in the sense of the Desktop Entry Specification, without ".desktop": "kde-foo" for kde/foo.desktop |
    | NameRole, Qt::DisplayRole | name | name in the user's language |
    | GenericNameRole | genericName | "Web Browser", in the user's language; may be empty |
    | CommentRole | comment | a sentence in the user's language; may be empty |
    | KeywordsRole | keywords | list of words in the user's language |
    | CategoriesRole | categories | list of categories of the Desktop Menu Specification and others |
    | IconSourceRole | iconSource | URL for an Image; a generic icon for applications without |
    | TerminalRole | terminal | whether it runs in a terminal |
    | ActionsRole | actions | list of maps with "id" and "name", for launchAction() |
    | RunningRole | running | whether a program launched in this process runs |
    | PidRole | pid | the process id of the newest, 0 if none runs |
    | PathRole | path | path of the desktop entry |

    The rows are sorted by name as the user's language sorts, without regard to case. A search orders
    them by where it finds its text before that: exactly that name; the beginning of the name, the
    shortest first; the beginning of a word in the name; in generic name (first its beginning) and
    keywords; in comment and full name (X-GNOME-FullName); in the id; anywhere within the name. Of
    several words, that which is found in the last of these places counts. */
class QUORVANE_SHELL_EXPORT Applications : public ListModel
{
    Q_OBJECT

    /*! What the user has typed: words, in any order, of which each begins a word of name, generic
        name, keywords, comment or full name or, with three letters or more, a word of the id or
        stands anywhere in the name. Neither case nor accents matter, and no character is special.
        Empty at first: all. */
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY searchChanged)

    /*! The category that is shown, any that stands in an entry or in \a categories. Empty at first:
        all. */
    Q_PROPERTY(QString category READ category WRITE setCategory NOTIFY categoryChanged)

    /*! Those of the main categories of the Desktop Menu Specification that occur, in the order of
        their names; whatever \a search and \a category are. Audio and Video are in AudioVideo. */
    Q_PROPERTY(QStringList categories READ categories NOTIFY categoriesChanged)

    /*! Whether to show what this desktop does not show: NoDisplay, OnlyShowIn, NotShowIn. False at
        first. */
    Q_PROPERTY(bool showAll READ showAll WRITE setShowAll NOTIFY showAllChanged)

public:
    enum Roles {
        AppIdRole = Qt::UserRole + 1,
        NameRole,
        GenericNameRole,
        CommentRole,
        KeywordsRole,
        CategoriesRole,
        IconSourceRole,
        TerminalRole,
        ActionsRole,
        RunningRole,
        PidRole,
        PathRole
    };

    /*! Reads the applications, unless another model of the process has done so. */
    explicit Applications(QObject *parent = nullptr);
    ~Applications() override;

    QString search() const { return _search; }
    void setSearch(const QString &search);

    QString category() const { return _category; }
    void setCategory(const QString &category);

    QStringList categories() const { return _categories; }

    bool showAll() const { return _showAll; }
    void setShowAll(bool showAll);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    /*! The same for an application that may have no row; empty for one that is not installed. */
    Q_INVOKABLE QVariantMap find(const QString &appId) const;

    /*! The name under which people know a main category ("Sound & Video" for AudioVideo): in the
        user's language where a menu package has installed the category's .directory file, else in
        English. Any other category is its own name. */
    Q_INVOKABLE QString categoryName(const QString &category) const;

    /*! Starts an application, shown or not, with \a urls to open: texts or values of type url. A text
        that begins with "/" is a path, whatever characters are in it; any other is a URL with a
        scheme, or nothing is started.

        The program is a child of this process, with its output; it goes on when this process ends. It
        has its environment, but for what is about this process alone: DESKTOP_STARTUP_ID,
        XDG_ACTIVATION_TOKEN, QT_WAYLAND_SHELL_INTEGRATION, and QT_QPA_PLATFORM if it names one
        platform; a list of alternatives such as "wayland;xcb" stays. One with Terminal gets a
        terminal: xdg-terminal-exec, x-terminal-emulator, or one that is known. One with
        DBusActivatable is started by the session bus, or by its Exec where no service has its name;
        it runs as long as the process that owns the name. A program that hands over to another
        process and ends does no longer count as running. An application that runs is started once
        more.

        What goes wrong is told by failed(), which may come before this returns. */
    Q_INVOKABLE void launch(const QString &appId, const QVariantList &urls = {});

    /*! Starts an action of the application, by its id in the role "actions"; otherwise like
        launch(). */
    Q_INVOKABLE void launchAction(const QString &appId, const QString &action);

    /*! Like launch(), but in a terminal, where the program's output can be read, and not by the bus.
        The terminal is what runs then. */
    Q_INVOKABLE void launchInTerminal(const QString &appId, const QVariantList &urls = {});

    /*! Sends SIGTERM to all programs of the application that were launched in this process. Their
        end is no failure. */
    Q_INVOKABLE void stop(const QString &appId);

Q_SIGNALS:
    void searchChanged();
    void categoryChanged();
    void categoriesChanged();
    void showAllChanged();

    /*! The application can't be launched, or its program ended with an error within two seconds.
        The message says why, in the words of GLib or of the bus. */
    void failed(const QString &appId, const QString &message);

private:
    friend class RowWalk<Applications>;
    using Wanted = std::vector<ApplicationPointer>;

    QVariantMap _values(const Application &application) const;
    QVariant _value(const Application &application, int role) const;
    QVector<int> _differences(const Application &one, const Application &other) const;

    void _listChanged();
    void _updateCategories();

    bool _isInCategory(const Application &application) const;
    Wanted _wanted() const;
    bool _show();
    static ApplicationKey _keyOf(const ApplicationPointer &application)
    {
        return { application.data() };
    }
    static ApplicationPointer _makeRow(const ApplicationPointer &item) { return item; }
    void _rowsRemoved(const Wanted &) { }
    template<typename IsCurrent>
    void _updateRows(const Wanted &wanted, const IsCurrent &isCurrent);

    void _start(const QString &appId, const QString &action, const QVariantList &urls,
                bool inTerminal);
    void _startProgram(const ApplicationPointer &application, const QString &action,
                       const QByteArrayList &uris, bool inTerminal);
    void _startByBus(const ApplicationPointer &application, const QString &action,
                     const QByteArrayList &uris);
    void _follow(const QString &appId, qint64 pid);
    void _programsChanged(const QString &appId);

    QString _search;
    QStringList _words;
    QString _category;
    QStringList _categories;
    bool _showAll = false;

    const QSharedPointer<ApplicationList> _list;
    std::vector<ApplicationPointer> _rows;
    RowWalk<Applications> _walk { this, this };
};

} // namespace quorvane
