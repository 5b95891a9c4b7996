#pragma once

#include <QObject>
#include <QVariantMap>

namespace quorvane {

// An object of this process on the session bus, under a well-known name and the path that the name
// spells: "org.example.Thing" at "/org/example/Thing". Only the object's adaptors are exported; they
// have to be there before.
//
// A name that another has is waited for in the bus's queue, so that no call goes astray between the
// two. A path that another object of this process has is tried again whenever the name changes
// hands. Nothing here waits for an answer. The object outlives the service or its last call.
class BusService : public QObject
{
    Q_OBJECT

public:
    BusService(const QString &name, QObject *object, QObject *parent = nullptr);
    ~BusService() override;

    // Whether calls to the name reach the object.
    bool isRegistered() const;

    // Who has the name otherwise: "name", that of the program, and "pid". Empty while nobody has it,
    // or the object itself, and until the bus has told.
    QVariantMap owner() const;

Q_SIGNALS:
    // isRegistered() or owner() may have changed.
    void changed();

private:
    void _claim();
    void _setOwner(const QString &owner);

    const QString _name;
    const QString _path;
    QObject *const _object;
    bool _exported = false;
    QString _owner; // Unique name of the connection.
    QVariantMap _process;
};

} // namespace quorvane
