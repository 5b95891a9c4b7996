#include "desktopfixture.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

DesktopFixture::DesktopFixture()
{
    const QByteArray home = path("home").toLocal8Bit();
    const QByteArray dirs = path("one").toLocal8Bit() + ':' + path("two").toLocal8Bit();
    environment.set("XDG_DATA_HOME", home);
    environment.set("XDG_CONFIG_HOME", home);
    environment.set("XDG_DATA_DIRS", dirs);
    environment.set("XDG_CONFIG_DIRS", dirs);
}

QString DesktopFixture::write(const QString &relative, const QStringList &lines) const
{
    const QString text = QStringLiteral("[Desktop Entry]\n") + lines.join('\n') + '\n';
    return writeBytes(relative, text.toUtf8());
}

QString DesktopFixture::writeBytes(const QString &relative, const QByteArray &content) const
{
    QFile file(path(relative));
    QDir().mkpath(QFileInfo(file).path());
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("Can't write %s", qPrintable(file.fileName()));
    // A second write in the same millisecond is a change like any other.
    file.flush();
    file.setFileTime(QDateTime::currentDateTime().addSecs(++_writes), QFile::FileModificationTime);
    return file.fileName();
}

QString DesktopFixture::app(const QString &name, const QStringList &lines) const
{
    return write("home/applications/" + name + ".desktop", lines);
}

QString DesktopFixture::childCommand(const QString &name, const QString &arguments) const
{
    return QStringLiteral("%1 %2 %3").arg(CHILD, path(name), arguments);
}

QStringList DesktopFixture::reportOf(const QString &name, const QString &kind) const
{
    QFile file(path(name));
    QStringList report;
    if (!file.open(QIODevice::ReadOnly))
        return report;
    const QStringList lines = QString::fromUtf8(file.readAll()).split('\n');
    for (const QString &line : lines) {
        if (line.startsWith(kind + ' '))
            report += line.mid(kind.size() + 1);
    }
    return report;
}
