#include <quorvane/basedir/basedir.h>

namespace {

// The variables hold bytes that are UTF-8 by convention, whatever the locale says.
QString environmentText(const char *variable)
{
    return QString::fromUtf8(qgetenv(variable));
}

QString userName()
{
    const QString user = environmentText("USER");
    return user.isEmpty() ? QStringLiteral("root") : user;
}

QString homeDir()
{
    const QString home = environmentText("HOME");
    if (!home.isEmpty())
        return home;
    const QString user = userName();
    return user == QLatin1String("root") ? QStringLiteral("/root") : QLatin1String("/home/") + user;
}

QString directory(const char *variable, QLatin1String fallback)
{
    const QString value = environmentText(variable);
    return value.isEmpty() ? homeDir() + fallback : value;
}

QStringList directories(const char *variable, const QStringList &fallback)
{
    const QString value = environmentText(variable);
    if (value.isEmpty())
        return fallback;
    return value.split(QLatin1Char(':'), Qt::KeepEmptyParts, Qt::CaseSensitive);
}

} // namespace

namespace xdg {

QString dataHome()
{
    return directory("XDG_DATA_HOME", QLatin1String("/.local/share"));
}

QString configHome()
{
    return directory("XDG_CONFIG_HOME", QLatin1String("/.config"));
}

QString cacheHome()
{
    return directory("XDG_CACHE_HOME", QLatin1String("/.cache"));
}

QString stateHome()
{
    return directory("XDG_STATE_HOME", QLatin1String("/.local/state"));
}

QString runtimeDir()
{
    // "%i" is no place marker of arg(): the text stays as it is, and Qt warns at every call.
    const QString fallback = QStringLiteral("/run/user/%i").arg(userName());
    const QString value = environmentText("XDG_RUNTIME_DIR");
    return value.isEmpty() ? fallback : value;
}

QStringList dataDirs()
{
    return directories("XDG_DATA_DIRS",
                       { QStringLiteral("/usr/local/share"), QStringLiteral("/usr/share") });
}

QStringList configDirs()
{
    return directories("XDG_CONFIG_DIRS", { QStringLiteral("/etc/xdg") });
}

} // namespace xdg
