#pragma once

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QVariantMap>

namespace quorvane {

// Calls over the session bus that nobody waits for.

// Calls an object of a running program; nothing is started for it. The names have to be valid. An
// answer may come at any time: the error for a program that has none comes when it ends.
QDBusPendingCall callAsync(const QString &service, const QString &path, const QString &interface,
                           const QString &method, const QVariantList &arguments = {});
// Calls the bus itself, org.freedesktop.DBus.
QDBusPendingCall callBus(const QString &method, const QVariantList &arguments = {});

// What the bus answers to GetNameOwner and to GetConnectionUnixProcessID.
QString ownerIn(const QDBusMessage &answer);
QVariantMap processIn(const QDBusMessage &answer);

// Gives the answer of a call, or the error that came in its place, to a function of a QDBusMessage.
// The function is not called when the context has gone by then.
template<typename Function>
void whenAnswered(const QDBusPendingCall &call, QObject *context, Function function)
{
    // Without a bus there is an error at once, of which a watcher doesn't tell.
    if (call.isFinished()) {
        QMetaObject::invokeMethod(
                context, [call, function] { function(call.reply()); }, Qt::QueuedConnection);
        return;
    }
    auto *watcher = new QDBusPendingCallWatcher(call, context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, function] {
        watcher->deleteLater();
        function(watcher->reply());
    });
}

// Gives the owner of a bus name, a unique name, to a function; empty without one.
template<typename Function>
void whenOwnerKnown(const QString &name, QObject *context, Function function)
{
    whenAnswered(callBus(QStringLiteral("GetNameOwner"), { name }), context,
                 [function](const QDBusMessage &answer) { function(ownerIn(answer)); });
}

// Gives {name, pid} of the process with a unique name to a function; empty for one that has gone.
template<typename Function>
void whenProcessKnown(const QString &uniqueName, QObject *context, Function function)
{
    whenAnswered(callBus(QStringLiteral("GetConnectionUnixProcessID"), { uniqueName }), context,
                 [function](const QDBusMessage &answer) { function(processIn(answer)); });
}

// Tells a function whether two unique names are of one process; not when either has gone.
template<typename Function>
void whenComparedProcesses(const QString &one, const QString &other, QObject *context,
                           Function function)
{
    whenProcessKnown(one, context, [other, context, function](const QVariantMap &process) {
        whenProcessKnown(other, context, [process, function](const QVariantMap &otherProcess) {
            function(!process.isEmpty() && process == otherProcess);
        });
    });
}

} // namespace quorvane
