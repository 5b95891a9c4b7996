#pragma once

#include "patience.h"

// Data directories for one test, which the environment points to, and those of the configuration in
// their folders "etc": home comes first in the search for an application id, then one, then two.
class DesktopFixture
{
public:
    DesktopFixture()
    {
        qputenv("XDG_DATA_HOME", path("home").toLocal8Bit());
        qputenv("XDG_CONFIG_HOME", path("home/etc").toLocal8Bit());
        qputenv("XDG_DATA_DIRS", (path("one") + ':' + path("two")).toLocal8Bit());
        qputenv("XDG_CONFIG_DIRS", (path("one/etc") + ':' + path("two/etc")).toLocal8Bit());
    }

    QString path(const QString &relative) const { return _root.filePath(relative); }

    // Writes a file with the lines in the group "Desktop Entry"; a line "[...]" begins another.
    QString write(const QString &relative, const QStringList &lines = {}) const
    {
        return writeBytes(relative, "[Desktop Entry]\n" + lines.join('\n').toUtf8() + '\n');
    }
    QString writeBytes(const QString &relative, const QByteArray &content) const
    {
        QFile file(path(relative));
        QDir().mkpath(QFileInfo(file).path());
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("Can't write %s", qPrintable(file.fileName()));
        // A second write in the same millisecond is a change like any other.
        file.flush();
        file.setFileTime(QDateTime::currentDateTime().addSecs(++_writes),
                         QFile::FileModificationTime);
        return file.fileName();
    }
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
    QStringList report(const QString &name, const QString &kind = "argument") const
    {
        QFile file(path(name));
        if (!QTest::qWaitFor([&file] { return file.exists(); }, 30000)
            || !file.open(QIODevice::ReadOnly))
            return { "no report" };
        const QString text = QString::fromUtf8(file.readAll());
        file.remove();
        const QRegularExpression beginning('^' + kind + ' ');
        return text.split('\n').filter(beginning).replaceInStrings(beginning, QString());
    }

private:
    QTemporaryDir _root;
    mutable int _writes = 0;
};
