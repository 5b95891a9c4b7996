#pragma once

#include <quorvane/quorvane_export.h>

#include <QFileSystemWatcher>
#include <QMap>
#include <QMetaType>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>

class QSettings;

namespace xdg {

/*! \ingroup desktop
    \brief One desktop entry: a file that is read and watched, and the program that it describes.

    An entry is bound to a file by its constructor, by setDesktopFile(), or by setAppId(), which
    looks the file up in the data directories. From then on data() answers for any key of the file,
    dataChanged() reports what changed on disk, start() launches the program and stop() ends it.
    Files follow the Desktop Entry Specification, but are read by QSettings in
    QSettings::IniFormat and by nothing else: quotes, backslashes, commas and semicolons mean what
    they mean there, and there is no lookup of localised keys.

    <b>Keys</b> have the form "group/name", for instance "Desktop Entry/Icon" or
    "Desktop Action Stop/Exec". Any key may be asked for.

    <b>Status words.</b> The key "Desktop Entry/Keywords" carries the state of the program: behind
    the text of the file stands " stopped", " starting" or " running", with its leading blank. Only
    keywords that contain "RemoteProcess" stay as they are. Every change of state is reported as a
    dataChanged() of that key.

    <b>The program.</b> An entry has one child process for all that it runs: the main command, the
    start action and the stop action. The environment of the child is that of the application at
    the time when the entry was constructed, with QT_QPA_PLATFORM set to wayland-egl and without
    QT_IM_MODULE. On X11 a Qt program ends at once with that, unless its command sets another platform
    by env. The child ends with its entry: destroying an entry kills the program.

    An entry lives on the thread that created it and needs a running event loop there. */
class QUORVANE_EXPORT Entry : public QObject
{
    Q_OBJECT

    /*! The name of the file without directory and without its last suffix. Setting it looks the
        file up, see setAppId(). The notify signal is never emitted. */
    Q_PROPERTY(QString appId READ appId WRITE setAppId NOTIFY appIdChanged)

    /*! The value of "Desktop Entry/Icon". The notify signal comes from setDesktopFile() and
        setAppId() alone; a change on disk comes as dataChanged(). */
    Q_PROPERTY(QString icon READ icon NOTIFY iconChanged)

    /*! The path of the file. The notify signal is never emitted. */
    Q_PROPERTY(QString desktopFile READ path WRITE setDesktopFile NOTIFY desktopFileChanged)

public:
    /*! Binds the new entry to the file at \a path, which QSettings reads at once. The file need not
        exist. */
    explicit Entry(QString path, QObject *parent = nullptr);

    /*! An entry without a file: every value is a null string until setDesktopFile() or setAppId()
        has bound it. */
    explicit Entry(QObject *parent = nullptr);

    /*! A new entry over the same file and with the same parent as \a other. It starts with a
        process of its own that has not run. */
    Entry(const Entry &other);

    /*! Kills the program if it runs, and waits for its end. Emits nothing. */
    ~Entry() override;

    /*! The path of the file, as it was given or found; null for an entry without a file. */
    QString path() const;

    /*! Binds the entry to the file at \a path and emits iconChanged(), whether the icon differs or
        not.

        The file need not exist. A file that the entry was bound to before stays watched, and the
        keys that were asked for are compared with the new file at the next change. The reader of
        the file lives until the end of the process. */
    void setDesktopFile(QString path);

    /*! The application id: the file name without directory and last suffix, so
        org.example.App for org.example.App.desktop. */
    QString appId() const;

    /*! Binds the entry to the first file applications/\a appId.desktop in xdg::dataHome() and then
        in xdg::dataDirs(), from the first to the last, and emits iconChanged().

        When there is none, a warning is written and the entry keeps what it had. */
    void setAppId(QString appId);

    /*! The value of "Desktop Entry/Icon". */
    QString icon() const;

    /*! The process id of the program, 0 while there is none. Inside the dataChanged() that tells of
        its end it is still the old number. */
    int pid() const;

Q_SIGNALS:
    /*! The value of \a key is now \a value: in the file, for a key that was asked for through
        data(), or by a change of the program's state, for "Desktop Entry/Keywords".

        A change of the file reports the keys in ascending order. A key that is gone has an empty
        value. A change of the keywords in the file is not reported. */
    void dataChanged(QString key, QString value);

    /*! start() was called while the program \a pid runs already: whoever shows windows may raise
        the program's. */
    void raiseProcess(int pid);

    /*! The watched file \a path is gone, or is no file any more. The entry keeps its values. */
    void removed(QString path);

    /*! Never emitted. */
    void appIdChanged(QString appId);

    /*! The entry was bound to a file whose icon is \a icon. */
    void iconChanged(QString icon);

    /*! Never emitted. */
    void desktopFileChanged(QString desktopFile);

private Q_SLOTS:
    void _desktopFileChanged(QString path);
    void _processStateChanged(QProcess::ProcessState newState);

public Q_SLOTS:
    /*! Launches the program of "Desktop Entry/Exec", or without such a command that of
        "Desktop Action Start/Exec".

        The command is split into words by white space, quotes and backslashes. Among the words
        behind the program %f and %u become the first of \a args; %F and %U take none; %d, %D, %n,
        %N, %v and %m are dropped, %i and %c with a warning. All else reaches the program as it is,
        %k and %% too. Arguments that no code asks for are dropped.

        dataChanged() for the keywords follows each change of state: " starting" from within this
        call, then " running" and " stopped". A program that can't be launched goes from " starting"
        to " stopped", and an empty program name changes nothing at all. If the program of
        "Desktop Entry/Exec" runs already, raiseProcess() is emitted and nothing else happens; a
        start action that runs already gives Qt's warning alone. An entry without any command writes
        a warning.

        To start a program again when it has ended, do so from the event loop and not from within
        the dataChanged() that tells of its end: its process is not free yet. */
    void start(QStringList args);

    /*! Ends the program and returns at once; the " stopped" comes through dataChanged().

        Without a "Desktop Action Stop/Exec" the program gets a SIGTERM, and nothing more if it
        does not obey; its own children get none. Inside the dataChanged() of " starting" this has no
        effect, as the program has no number yet. With a stop action, that command is run instead,
        with \a args for its field codes as in start(). It runs in the entry's one process, so it has
        no effect as long as the program itself runs there: it suits a start command that hands over
        to a service and returns. */
    void stop(QStringList args);

    /*! The value of \a key as last read from the file, empty for a key that the file does not have
        and null while the entry has no file. Asking for a key makes dataChanged() report its
        changes. */
    QString data(const QString &key) const; // A slot for QML. clazy:exclude=const-signal-or-slot

private:
    void _initialize();
    QString _value(const QString &key) const;

    QString _path;
    QSettings *_settings = nullptr;
    QFileSystemWatcher _watcher;
    QProcess _process;
    mutable QMap<QString, QString> _cache; // What changes are told by; no read is answered from it.
};

} // namespace xdg

Q_DECLARE_METATYPE(const xdg::Entry *)
