#pragma once

#include <QDBusServiceWatcher>
#include <QHash>
#include <QObject>
#include <QQueue>

namespace quorvane {

// Who owns names on the session bus, of those that are followed. Nothing waits for the bus, which
// is asked for a few names at a time.
class BusNames : public QObject
{
    Q_OBJECT

public:
    explicit BusNames(QObject *parent = nullptr);

    // The bus itself has a name, too, under which it is no program.
    static QString ofBus();

    // A name that is followed twice is let go twice. It has to be a valid one.
    void follow(const QString &name);
    void unfollow(const QString &name);
    // A unique name; empty without an owner, and until the bus has told.
    QString owner(const QString &name) const;

Q_SIGNALS:
    // What the bus tells of a name that is followed, and again whenever that changes. Empty for
    // none.
    void ownerKnown(const QString &name, const QString &owner);

private:
    struct Name
    {
        int followers = 0;
        bool isKnown = false;
        QString owner;
    };

    void _askNext();
    void _set(const QString &name, const QString &owner);

    QHash<QString, Name> _names;
    QQueue<QString> _waiting;
    int _asked = 0;
    QString _comer; // Of the change that is being told.
    QDBusServiceWatcher _watcher;
};

} // namespace quorvane
