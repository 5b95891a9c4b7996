#pragma once

#include <quorvaneshell/quorvaneshell_export.h>
#include <quorvaneshell/rows/listmodel.h>

#include <QStringList>
#include <QVariantList>

#include <memory>

namespace quorvane {

class ApplicationsPrivate;

/*! \ingroup shell
    \brief The installed applications as a launcher, a menu or a dock shows them: found, sorted,
    searched, launched and stopped.

    The applications are the desktop entries below "applications" in the data directories, by the
    rules of the
    [Desktop Entry](https://specifications.freedesktop.org/desktop-entry-spec/latest/),
    [Base Directory](https://specifications.freedesktop.org/basedir-spec/latest/) and
    [Desktop Menu](https://specifications.freedesktop.org/menu-spec/latest/) specifications. A file in
    a more important directory hides those of its id in the others. Entries with Hidden, those without
    a name, those with neither a command line nor a bus name, and those whose program or TryExec is not
    installed are no applications. Folders are looked into 8 levels deep and up to 1,000 in all, each
    place once, wherever links lead; a file has 1 MB at most, and what is no regular file is passed
    over. Data directories, desktop (XDG_CURRENT_DESKTOP) and language (LANGUAGE, LC_MESSAGES; LC_COLLATE
    for the order) are those that the process began with.

    The rows are sorted by \a name as the user's language sorts, without regard to case; \a search puts
    the best first, and \a order what is used most.

    <b>What changes.</b> The list is complete after construction and stays right: a file, an override or
    a folder that comes, changes or goes shows within a second, as rows that are inserted, removed,
    moved or changed, or as a change of the layout where it would take more than 100 such steps. The
    model is never reset. categoriesChanged() comes first, then what happens to the rows, then
    countChanged(), once. All models of a process share one list, one inotify instance and one thread,
    which reads what has changed. They know the programs that any of them has launched.

    Where Qt runs without GLib's main loop (QT_NO_GLIB) a warning says so once, and Qt's own watcher
    tells of files that come and go, but not of those that are written in place.

    <b>Slots</b> on any signal may search, launch and delete the model; what they ask for is shown after
    it. Only signals that tell what is about to come (rowsAboutToBeInserted() and the like) are no place
    for that.

    | Role | Name | Type | Value |
    | ---- | ---- | ---- | ----- |
    | AppIdRole | appId | QString | the desktop file id without ".desktop": "kde-foo" for kde/foo.desktop; it names the application in all methods |
    | NameRole, Qt::DisplayRole | name | QString | the name in the user's language; never empty |
    | GenericNameRole | genericName | QString | what it is, such as "Web Browser", in the user's language; may be empty |
    | CommentRole | comment | QString | a sentence in the user's language; may be empty |
    | KeywordsRole | keywords | QStringList | words in the user's language |
    | CategoriesRole | categories | QStringList | all categories in the entry, registered or not |
    | IconSourceRole | iconSource | QString | URL of the icon for an Image or icon(); that of a generic icon for an application without one |
    | Qt::DecorationRole | | QIcon | the icon of \a iconSource; where that is missing, a tile with the first letter of the name |
    | Qt::ToolTipRole | | QString | the comment, or else the generic name; plain text |
    | TerminalRole | terminal | bool | whether it runs in a terminal |
    | ActionsRole | actions | QVariantList | maps with "id", for invoke(), "text", in the user's language, and "iconSource", empty for an action without an icon |
    | RunningRole | running | bool | whether a program of it that was launched in this process runs |
    | PidRole | pid | qint64 | the process id of the one that was launched last, 0 if none runs |
    | PathRole | path | QString | the path of the desktop entry |

    Rows can't be edited. */
class QUORVANE_SHELL_EXPORT Applications : public ListModel
{
    Q_OBJECT

    /*! What the user has typed; empty at first and for all rows.

        It is words in any order, of which each begins a word of name, generic name, keywords, comment
        or full name (X-GNOME-FullName) or, with three letters or more, a word of the id or stands
        anywhere in the name. Neither case nor accents matter, and no character is special: "c++" and
        "(" are words.

        The rows are ordered by the place where the text is found, so that row 0 is the one to launch:
        1. exactly that name
        2. the beginning of the name, the shortest first
        3. the beginning of a word of the name
        4. generic name, first its beginning, and keywords
        5. comment and full name
        6. id
        7. anywhere within the name

        Of several words, that which is found in the last of these places counts. What is equal is sorted
        by name. searchChanged() comes when the rows are the new ones. */
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY searchChanged)

    /*! The category that is shown, any that stands in an entry or in \a categories; empty at first and
        for all rows. categoryChanged() comes when the rows are the new ones. */
    Q_PROPERTY(QString category READ category WRITE setCategory NOTIFY categoryChanged)

    /*! The main categories of the Desktop Menu Specification that occur, in the order of their
        categoryName(), whatever \a search and \a category are. Audio and Video are in AudioVideo. */
    Q_PROPERTY(QStringList categories READ categories NOTIFY categoriesChanged)

    /*! Whether to show also what this desktop does not show, by NoDisplay, OnlyShowIn and NotShowIn;
        false at first. showAllChanged() comes when the rows are the new ones. */
    Q_PROPERTY(bool showAll READ showAll WRITE setShowAll NOTIFY showAllChanged)

    /*! What comes first; ByName at first. orderChanged() comes when the rows are the new ones.

        With ByUse the application with the greatest use does: the sum over its launches of
        2^(-age / 14 days), so that a launch counts half after two weeks. What is equal, as all is that
        was never launched, is sorted by name. While something is searched the place where it is found
        counts before that, and among beginnings of names use before the length.

        A launch counts when it has succeeded, and the row moves: when the program has started or, on
        the bus, answered; by whichever model of this process, if any of them has the order ByUse just
        then. While none has, nothing is recorded, and no file read or written.

        The user's shells share the numbers, in quorvane/application-usage.json below XDG_STATE_HOME, or
        else ~/.local/state: read when the first model of a process gets this order, written, with what
        others have written added, two seconds after a launch and when the last such model goes. What
        others have launched shows after that. The file has the 500 applications that are used most, and
        none whose use has sunk below a hundredth of a launch, as it has 93 days after a single one. One
        that is damaged, larger than 1 MB, or that can't be written is as none: the order then lasts as
        long as the models do. */
    Q_PROPERTY(quorvane::Applications::Order order READ order WRITE setOrder NOTIFY orderChanged)

public:
    /*! The roles; the table above says what they hold. */
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
    Q_ENUM(Roles)

    /*! What comes first, see \a order. */
    enum Order {
        ByName, //!< In the order of the names.
        ByUse   //!< What is launched most and lately.
    };
    Q_ENUM(Order)

    /*! Reads the applications, unless another model of the process has done so; returns when they are
        there. For the thread of the QCoreApplication, which has to be there before. */
    explicit Applications(QObject *parent = nullptr);
    /*! What was launched goes on. */
    ~Applications() override;

    QString search() const;
    void setSearch(const QString &search);

    QString category() const;
    void setCategory(const QString &category);

    QStringList categories() const;

    bool showAll() const;
    void setShowAll(bool showAll);

    Order order() const;
    void setOrder(quorvane::Applications::Order order);

    /*! The number of rows; 0 below a row. */
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /*! The value of a role, see the table above; invalid for any other. */
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /*! The names in the table above. */
    QHash<int, QByteArray> roleNames() const override;

    /*! The row of an application; -1 for one that has none now, or is not installed. */
    Q_INVOKABLE int indexOf(const QString &appId) const;

    /*! All roles of an application by their names, as get() has those of a row, for one that has no row
        now, too; empty for one that is not installed. */
    Q_INVOKABLE QVariantMap find(const QString &appId) const;

    /*! The id of the installed application, shown or not, to which a window or a process belongs; empty
        where none fits, and where two fit equally.

        The class is that of WM_CLASS under X11, or the app_id of a Wayland toplevel. Of the two texts
        of WM_CLASS the second, the class, mostly tells more; the app of a browser only has a name in
        the first, the instance: ask with that where it begins with `crx_` or has `__` in it. The class
        may be empty, to ask for a process alone. \a pid is the process as this one sees it: a window
        in a sandbox may give a number of its own (_NET_WM_PID), so take what the display server knows.
        0 is for none. A process of another user says nothing, nor does one that has ended or lets
        nobody look into it; then the class decides alone.

        A process in a sandbox (.flatpak-info, or the control group of a snap) or in a mounted AppImage
        belongs to an application that starts the like, and any other process to none of these. Among
        those left each of these in turn decides between what the ones before it found, or finds:
        1. the id, exactly, also with ".desktop"
        2. the id in another case, with "-" for blanks
        3. StartupWMClass, in any case
        4. the last part of a reverse-domain id: "firefox" for org.mozilla.firefox, and the other way
           round
        5. the app of a browser by id or address (`crx_ID`, `chrome-ID-PROFILE`,
           `chrome-HOST__PATH-PROFILE`) and the game of Steam by number (`steam_app_NUMBER`), as Exec
           has them
        6. the name of the program that Exec starts
        7. the name of the unit of systemd that the process began, as desktops give it
           (`app-LAUNCHER-ID-RANDOM.scope` and the like); what a terminal has started is not the
           terminal's
        8. the program that runs against the one that Exec starts, with its arguments, and without what
           they go through: env, a shell, an interpreter, java -jar, wine, electron, flatpak run, snap
           run, gtk-launch and the like
        9. the sandbox, and the file of an AppImage

        In 2 to 6, and again in 7 to 9, applications that are shown come before those that are not.

        What the process says of itself is read from /proc, up to 64 KB of each file (256 KB of the list of
        mounts), without waiting for anybody. It takes less than a millisecond, but for the first call
        after a change of the applications, which makes an index of them. */
    Q_INVOKABLE QString identify(const QString &windowClass, qint64 pid = 0) const;

    /*! The name under which people know a main category ("Sound & Video" for AudioVideo): in the
        user's language where a menu package has installed the category's .directory file, else in
        English. Any other category is its own name. */
    Q_INVOKABLE QString categoryName(const QString &category) const;

    /*! Starts an application, shown or not, with \a urls to open: texts or values of type QUrl. A text
        that begins with "/" is a path, whatever characters are in it; any other is a URL with a
        scheme, or nothing is started. They take the places of the field codes; a program that takes
        one file at a time is started once for each, and one that takes none gets the files last. An
        application that runs is started once more.

        The program is a child of this process with the folder that its entry has in Path. It has this
        process's output, a session of its own, and goes on when this process ends. Its environment is that
        of this process but for what is about this process alone: DESKTOP_STARTUP_ID,
        XDG_ACTIVATION_TOKEN, QT_WAYLAND_SHELL_INTEGRATION, and QT_QPA_PLATFORM if it names one
        platform; a list of alternatives such as "wayland;xcb" stays.

        One with Terminal gets a terminal, the first that is installed of xdg-terminal-exec,
        x-terminal-emulator, kgx, gnome-terminal, konsole, xfce4-terminal, mate-terminal, foot,
        alacritty and xterm.

        One with DBusActivatable is started by the session bus, through the interface
        org.freedesktop.Application, and may take as long as it likes; where no service has its name, by
        its command line. It runs as soon as the name has an owner, as long as that process does.

        A program that hands over to another process and ends, as terminals do that are one process for
        all windows, does no longer count as running. What runs belongs to the application id, not to
        the file: an application that is updated or removed loses nothing.

        The rows tell of it by \a running and \a pid. What goes wrong is told by failed(), which may come
        before this returns. */
    Q_INVOKABLE void launch(const QString &appId, const QVariantList &urls = {});

    /*! Starts an action of the application, by its "id" in the role \a actions; otherwise like
        launch(). failed() comes for an id that is none of them. */
    Q_INVOKABLE void invoke(const QString &appId, const QString &actionId);

    /*! Like launch(), but in a terminal, where the program's output can be read, and not by the bus.
        The terminal is what runs then. */
    Q_INVOKABLE void launchInTerminal(const QString &appId, const QVariantList &urls = {});

    /*! Sends SIGTERM to all programs of the application that were launched in this process. Their
        end is no failure. Does nothing where none runs. */
    Q_INVOKABLE void stop(const QString &appId);

    /*! The ids of the installed applications that open something, the default one first; empty if there
        is none. Those that are not displayed (NoDisplay) are among them: many are there just for this.

        It takes a MIME type ("text/plain"), an absolute path, or a URL. A file of this machine has the
        type that its name and its first 16 KB give by the Shared MIME-info Database, a folder
        inode/directory, and any other URL that of its scheme (x-scheme-handler/https). On a file system
        of a server or of another program nothing is looked at, so that nobody waits: there the name
        tells, and what has no type by its name is taken for a folder.

        Handlers are found by the
        [MIME Applications Associations](https://specifications.freedesktop.org/mime-apps-spec/latest/)
        specification: first the Default Applications of all lists that are installed, then what the lists
        add, and what has the type in its entry (in the order of mimeinfo.cache where there is one),
        without what a list removes; then the same for the type's other names and for what it is a kind
        of, such as text/plain for text/html, but not for application/octet-stream, which would be all.
        Lists are read anew at each call: a change by others shows at the next. A list that is damaged,
        larger than 1 MB or no regular file is as none. */
    Q_INVOKABLE QStringList handlers(const QString &urlOrMimeType) const;

    /*! The first of handlers(); empty if there is none. */
    Q_INVOKABLE QString defaultHandler(const QString &urlOrMimeType) const;

    /*! Makes an application the default one for a MIME type, such as "x-scheme-handler/https" for web
        pages, for all programs of the user: in mimeapps.list in XDG_CONFIG_HOME, and in the list of this
        desktop there if that names another one. What else is in the files stays, comments too. Returns
        whether it was written; nothing is for an application that is not installed, for what is no MIME
        type, and into a file that can't be read as such a list. Waits until the disk has it. */
    Q_INVOKABLE bool setDefaultHandler(const QString &mimeType, const QString &appId);

    /*! Launches the default handler of a path or URL with it, as launch() does, which takes the same
        texts and values of type QUrl. Where there is none, or for what is neither, failed() comes with
        an empty id. */
    Q_INVOKABLE void open(const QVariant &url);

    /*! Forgets how much the applications were used, here and in the file, at once and whatever
        \a order is. */
    Q_INVOKABLE void forgetUse();
    /*! Forgets how much one application was used. */
    Q_INVOKABLE void forgetUse(const QString &appId);

Q_SIGNALS:
    void searchChanged();
    void categoryChanged();
    /*! Comes before the rows change. */
    void categoriesChanged();
    void showAllChanged();
    void orderChanged();

    /*! What this model was asked to launch can't be launched, or the program ended with an error
        within two seconds. The id is empty if none is known, as after open(). The message says why to people who read the language of GLib and of the bus,
        whose words it is where they have any. */
    void failed(const QString &appId, const QString &message);

private:
    friend class ApplicationsPrivate;

    const std::unique_ptr<ApplicationsPrivate> _d;
};

} // namespace quorvane
