#pragma once

#include <quorvane/desktop/entry.h>
#include <quorvane/quorvane_export.h>

#include <QFileSystemWatcher>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

namespace xdg {

/*! \ingroup desktop
    \brief A registry of the desktop entries in a set of watched directories.

    addDirectory() registers the *.desktop files of a directory and watches it; from then on files
    that come and go are registered and dropped from the event loop. The registry sees files come
    and go only: what changes inside a file is reported by its Entry, whose signals are passed on.

    Entries are keyed by their application id (the file name without its last suffix), over all
    directories together: there is never more than one entry of a name. The \e id of an entry is
    the rank of its key in ascending, case-sensitive order. It is valid for the moment only, since
    each insertion and removal shifts the ids behind it.

    No entry is ever deleted. One that is dropped from the registry stays alive, with its program
    and its watch, and whatever it reports is still passed on. */
class QUORVANE_EXPORT Entries : public QObject
{
    Q_OBJECT

public:
    explicit Entries(QObject *parent = nullptr);
    ~Entries() override;

    /*! Registers the file \a path, without looking into it. Returns 0 when it was added and -1 when
        it was refused.

        A path that is no file, or whose suffix is not "desktop", is refused with a warning. If
        there is an entry of the same base name already, the file is refused silently or, with
        \a replace, takes its place: the old entry is removed with its signals first. Emits
        startCreateEntry() and endCreateEntry(), both when the entry is registered already. */
    int add(const QString &path, bool replace = false);

    /*! Registers the *.desktop files of the directory \a path by add(), in order of their names
        without regard to case, and watches the directory. Hidden files are left out. Blanks around
        the path are ignored. Returns 0, or -1 if it is no directory, which is then not watched. */
    int addDirectory(const QString &path, bool replace = false);

    /*! Drops the entry with the base name of \a path, in whichever directory it lies, between
        startRemoveEntry() and endRemoveEntry(). The Entry itself stays alive. A name that is not
        registered is announced with the id -1, and nothing is dropped. */
    void unregister(const QString &path);

    /*! The entry with the id \a id, null if there is none. It is not owned by the caller. */
    Entry *getEntry(int id) const;

    /*! All entries in order of their ids. */
    QList<Entry *> getEntries();

    /*! The number of entries. */
    int count() const;

Q_SIGNALS:
    /*! Passes on Entry::dataChanged() of the entry with the application id \a appid. */
    void entryDataChanged(QString appid, QString key, QString value);

    /*! Passes on Entry::raiseProcess(). */
    void raiseProcess(int pid);

    /*! The entry \a id has been registered. */
    void startCreateEntry(int id);

    /*! Follows startCreateEntry(). */
    void endCreateEntry(int id);

    /*! The entry \a id will be dropped; it is still counted. */
    void startRemoveEntry(int id);

    /*! The entry that had the \a id has been dropped. */
    void endRemoveEntry(int id);

private Q_SLOTS:
    void _directoryChanged(const QString &path);
    void _entryDataChanged(QString key, QString value);

private:
    void _compact();
    int _indexOf(const QString &key) const;

    QString _spare; // Unused; keeps the layout of the class.
    QFileSystemWatcher _watcher;
    QMap<QString, Entry *> _entries;
};

} // namespace xdg
