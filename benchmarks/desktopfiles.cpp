#include "desktopfiles.h"

#include <QDir>
#include <QFile>

namespace {

QByteArray desktopFile(int number)
{
    const QByteArray name = "Application " + QByteArray::number(number);
    QByteArray text = "[Desktop Entry]\nType=Application\nVersion=1.0\nName=" + name + '\n';
    for (int language = 0; language < 40; ++language) {
        const QByteArray locale { 1, static_cast<char>('a' + language % 26) };
        text += "Name[" + locale + static_cast<char>('a' + language / 26) + "]=" + name
                + " in the words that its translators found for it, language "
                + QByteArray::number(language) + '\n';
    }
    text += "Exec=/bin/true %U\nIcon=application-" + QByteArray::number(number)
            + "\nTerminal=false\nNoDisplay=false\nCategories=Utility\nKeywords=one two three\n";
    text += "Comment=" + QByteArray(qMax(0, 4096 - text.size() - 9), 'c') + '\n';
    return text;
}

QString fileName(int number)
{
    return QStringLiteral("org.example.application%1.desktop").arg(number, 5, 10, QLatin1Char('0'));
}

} // namespace

DesktopFiles::DesktopFiles(int count)
{
    QDir(_root.path()).mkpath(QStringLiteral("home/applications"));
    for (int i = 0; i < count; ++i)
        write(i);
    use();
}

QString DesktopFiles::directory() const
{
    return _root.filePath(QStringLiteral("home/applications"));
}

void DesktopFiles::use() const
{
    qputenv("XDG_DATA_HOME", QFile::encodeName(_root.filePath(QStringLiteral("home"))));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(_root.filePath(QStringLiteral("none"))));
}

QString DesktopFiles::write(int number) const
{
    QFile file(directory() + QLatin1Char('/') + fileName(number));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("Can't write %s", qPrintable(file.fileName()));
    file.write(desktopFile(number));
    return file.fileName();
}
