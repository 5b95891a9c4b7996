#pragma once

#include <quorvane/desktop/entries.h>
#include <quorvane/desktop/entry.h>
#include <quorvane/quorvane_export.h>

#include <QAbstractListModel>
#include <QString>
#include <QStringList>

namespace xdg {

/*! \ingroup desktop
    \brief The installed applications as a list model, one row per desktop entry.

    The rows are the *.desktop files of the folder "applications" below xdg::dataDirs() and
    xdg::dataHome(), in ascending, case-sensitive order of their application ids; the folders are
    watched. At construction, among files of one name the one in the \e last element of dataDirs()
    wins over those before it, and the one in dataHome() comes last of all. Later a file that
    arrives or changes folder takes the row over from the one that had it.

    Entries that are not to be displayed and entries without a name have rows too: hide them with
    DesktopFilter.

    | Role | Number | Name | Value |
    | ---- | ------ | ---- | ----- |
    | PathRole | 257 | path | path of the file |
    | NameRole, Qt::DisplayRole | 258, 0 | name | "Desktop Entry/Name" |
    | IconRole | 259 | appIcon | "Desktop Entry/Icon" |
    | CategoryRole | 260 | category | "Desktop Entry/Categories", one opaque text |
    | NoDisplayRole | 261 | noDisplay | "Desktop Entry/NoDisplay", a text and not a bool |
    | KeywordsRole | 262 | keywords | "Desktop Entry/Keywords" with the status word of Entry |
    | ExecRole | 263 | exec | "Desktop Entry/Exec" as it stands in the file |
    | DesktopFileRole | 264 | desktopFile | path of the file |
    | AppIdRole | 265 | appId | application id |
    | AppNameRole | 266 | appName | "Desktop Entry/Name" |
    | EntryRole | 267 | entry | the Entry, as const xdg::Entry * |

    dataChanged() of the model names the one role of the key that changed; the roles 0, 258 and 266
    change together and only 258 is named.

    \b Rows. An insertion is announced when the model counts the new row already, and a removal
    is over for the views before the model stops counting the row: between two turns of the event
    loop all is consistent, while a slot that is connected to the row signals sees the row at both
    ends. categoriesChanged() follows each of them, and after a removal its list still counts the
    row that went. */
class QUORVANE_EXPORT DesktopEntries : public QAbstractListModel
{
    Q_OBJECT

    /*! Every "Desktop Entry/Categories" that occurs, in the order of the rows: one element per
        distinct text, which is not split, and an empty one for entries without the key. */
    Q_PROPERTY(QStringList categories READ categories NOTIFY categoriesChanged)

public:
    enum Roles {
        PathRole = Qt::UserRole + 1,
        NameRole,
        IconRole,
        CategoryRole,
        NoDisplayRole,
        KeywordsRole,
        ExecRole,
        DesktopFileRole,
        AppIdRole,
        AppNameRole,
        EntryRole
    };

    /*! Reads and watches the application folders. A folder that does not exist now is not noticed
        later. */
    explicit DesktopEntries(QObject *parent = nullptr);
    ~DesktopEntries() override;

    QStringList categories();

    /*! The number of entries, whatever the \a parent. */
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;

    /*! The value of the role table, invalid for a row without an entry. An unknown \a role gives an
        invalid QVariant too, with a warning. */
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    /*! start() was called for the program \a pid, which runs already. */
    void raiseProcess(int pid);

    /*! Comes after each insertion and removal of a row, and ahead of dataChanged() when the
        categories of an entry changed. */
    void categoriesChanged(QStringList categories);

private Q_SLOTS:
    bool _contains(QString path);
    QStringList _getEntriesFrom(QString path = QLatin1String(""));
    void _dataChanged(QString appid, QString item, QString value);

public Q_SLOTS:
    /*! Calls Entry::start() on the entry with exactly this \a path. An unknown path does
        nothing. */
    void start(QString path, const QStringList &args = QStringList());

    /*! Calls Entry::stop() on the first entry that has this \a path, or whose process id is the
        number that \a path is the text of. If there is none and \a path is a number greater than
        0, that process gets a SIGTERM, whoever started it. */
    void stop(QString path, const QStringList &args = QStringList());

    /*! The value of \a key, such as "Desktop Entry/Name", of the entry with the application id
        \a appid; null if there is none. */
    QString appIdData(QString appid, QString key);

private:
    Entries _entries;
    QString _spare; // Unused; keeps the layout of the class.
};

} // namespace xdg
