#pragma once

#include <quorvane/desktop/entries.h>
#include <quorvane/quorvane_export.h>

#include <QObject>
#include <QString>

namespace xdg {

/*! \ingroup desktop
    \brief Starts what the autostart folders hold.

    The entries are the *.desktop files of the folder "autostart" below xdg::configDirs() and
    xdg::configHome(); the folders are watched. At construction, among files of one name the one in
    the last element of configDirs() wins, and the one in configHome() comes last of all.

    Nothing starts by itself, and of the Desktop Application Autostart Specification only the
    folders are followed: Hidden, OnlyShowIn and their like are for the caller to select by.
    The programs are children of this process and go on when the object is destroyed. When the
    process has ended they go on until they write to their output, which nobody holds open any more.
    Debug lines go to the category AUTO_START(). */
class QUORVANE_EXPORT AutoStart : public QObject
{
    Q_OBJECT

public:
    /*! Reads and watches the autostart folders; starts nothing. */
    explicit AutoStart(QObject *parent = nullptr);
    ~AutoStart() override;

public Q_SLOTS:
    /*! Calls Entry::start() on each entry whose \a key (such as "Desktop Entry/Name") has the
        \a value, both trimmed and without regard to case, in order of the application ids.

        A null key or a null value starts every entry. An empty value that is not null starts the
        entries that have the key empty or do not have it. From QML an empty text mostly arrives as
        null: give a blank there, which is trimmed to the same. */
    void start(QString key = QString(), QString value = QString());

private:
    Entries _entries;
};

} // namespace xdg
