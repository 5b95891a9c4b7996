#pragma once

#include "environment.h"

#include <QStringList>
#include <QTemporaryDir>

// Data and configuration directories for one test: home comes first in the search for an
// application id, then one, then two. The environment points there for the life of the fixture.
class DesktopFixture
{
public:
    DesktopFixture();

    QString path(const QString &relative) const { return _root.filePath(relative); }

    // Writes a file with the lines in the group "Desktop Entry"; a line "[...]" begins another.
    QString write(const QString &relative, const QStringList &lines = {}) const;
    QString writeBytes(const QString &relative, const QByteArray &content) const;
    QString app(const QString &name, const QStringList &lines = {}) const
    {
        return write("home/applications/" + name + ".desktop", lines);
    }

    // A command that runs the child; it reports to the file of that name.
    QString childCommand(const QString &name, const QString &arguments = {}) const
    {
        return CHILD " " + path(name) + ' ' + arguments;
    }
    // Waits for the report of a child and takes it away: its arguments or its variables.
    QStringList report(const QString &name, const QString &kind = "argument") const;

    Environment environment;

private:
    QTemporaryDir _root;
    mutable int _writes = 0;
};
