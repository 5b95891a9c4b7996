#pragma once

#include <quorvaneshell/bus/busnames_p.h>

#include <QMap>
#include <QObject>
#include <QVariantList>

namespace quorvane {

// The programs that ask for silence, each as long as it has its name on the bus.
class NotificationInhibitions : public QObject
{
    Q_OBJECT

public:
    NotificationInhibitions();

    bool isEmpty() const { return _inhibitions.isEmpty(); }
    // Maps as in Notifications::inhibitions, the oldest first.
    QVariantList values() const;

    // The number of a new one, which is never 0; 0 if there are too many.
    uint add(const QString &program, const QString &desktopEntry, const QString &reason);
    // Nothing happens for one that is another program's.
    void remove(const QString &program, uint number);

Q_SIGNALS:
    void changed();

private:
    struct Inhibition
    {
        QString program; // Unique name on the bus.
        QVariantMap value;
    };

    void _removeOf(const QString &program);

    QMap<uint, Inhibition> _inhibitions;
    uint _lastNumber = 0;
    BusNames _programs;
};

} // namespace quorvane
