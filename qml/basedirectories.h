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
    Q_PROPERTY(QString dataHome READ dataHome CONSTANT)
    Q_PROPERTY(QString configHome READ configHome CONSTANT)
    Q_PROPERTY(QString cacheHome READ cacheHome CONSTANT)
    Q_PROPERTY(QString stateHome READ stateHome CONSTANT)
    Q_PROPERTY(QString runtimeDir READ runtimeDir CONSTANT)
    Q_PROPERTY(QStringList dataDirs READ dataDirs CONSTANT)
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
