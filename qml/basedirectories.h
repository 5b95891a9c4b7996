#pragma once

#include <quorvane/basedir/basedir.h>

#include <QObject>

/*! \ingroup shell
    \brief The base directories, as a singleton of the QML module.

    They follow the environment, which tells nobody when it changes: each access reads it anew, but no
    binding hears of a change. Each property is the function of its name in the namespace xdg. */
class BaseDirectories : public QObject
{
    Q_OBJECT

    /*! The user's data files: XDG_DATA_HOME, or ~/.local/share. */
    Q_PROPERTY(QString dataHome READ dataHome CONSTANT)

    /*! The user's configuration: XDG_CONFIG_HOME, or ~/.config. */
    Q_PROPERTY(QString configHome READ configHome CONSTANT)

    /*! The user's cached data: XDG_CACHE_HOME, or ~/.cache. */
    Q_PROPERTY(QString cacheHome READ cacheHome CONSTANT)

    /*! The user's state files: XDG_STATE_HOME, or ~/.local/state. */
    Q_PROPERTY(QString stateHome READ stateHome CONSTANT)

    /*! The user's sockets: XDG_RUNTIME_DIR. Without it the text "/run/user/%i", which names no
        directory, and a warning of Qt's at each access. */
    Q_PROPERTY(QString runtimeDir READ runtimeDir CONSTANT)

    /*! The system's data directories without dataHome: XDG_DATA_DIRS, or /usr/local/share and
        /usr/share. */
    Q_PROPERTY(QStringList dataDirs READ dataDirs CONSTANT)

    /*! The system's configuration directories without configHome: XDG_CONFIG_DIRS, or /etc/xdg. */
    Q_PROPERTY(QStringList configDirs READ configDirs CONSTANT)

public:
    explicit BaseDirectories(QObject *parent = nullptr)
        : QObject(parent)
    {
    }

    QString dataHome() const { return xdg::dataHome(); }
    QString configHome() const { return xdg::configHome(); }
    QString cacheHome() const { return xdg::cacheHome(); }
    QString stateHome() const { return xdg::stateHome(); }
    QString runtimeDir() const { return xdg::runtimeDir(); }
    QStringList dataDirs() const { return xdg::dataDirs(); }
    QStringList configDirs() const { return xdg::configDirs(); }
};
