#include "desktopfixture.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

DesktopFixture::DesktopFixture()
{
    for (const char *home : { "XDG_DATA_HOME", "XDG_CONFIG_HOME" })
        environment.set(home, path("home").toLocal8Bit());
    for (const char *dirs : { "XDG_DATA_DIRS", "XDG_CONFIG_DIRS" })
        environment.set(dirs, (path("one") + ':' + path("two")).toLocal8Bit());
}

QString DesktopFixture::write(const QString &relative, const QStringList &lines) const
{
    return writeBytes(relative, "[Desktop Entry]\n" + lines.join('\n').toUtf8() + '\n');
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

QStringList DesktopFixture::report(const QString &name, const QString &kind) const
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
