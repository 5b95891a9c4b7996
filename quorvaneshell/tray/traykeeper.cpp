#include "traykeeper_p.h"

#include "trayregistry_p.h"
#include "traywatcher_p.h"

#include <quorvaneshell/bus/asynccall_p.h>

#include <QDBusConnection>
#include <QRegularExpression>

namespace quorvane {

namespace {

bool isNameOurs(const QDBusMessage &answer)
{
    constexpr uint primaryOwner = 1;
    constexpr uint alreadyOwner = 4;
    const uint result = answer.arguments().value(0).toUInt();
    return answer.type() == QDBusMessage::ReplyMessage
           && (result == primaryOwner || result == alreadyOwner);
}

} // namespace

TrayKeeper::TrayKeeper(const TrayRegistry *known)
    : _known(known)
{
    connect(&_names, &BusNames::ownerKnown, this, [this](const QString &, const QString &owner) {
        if (owner.isEmpty() || owner == QDBusConnection::sessionBus().baseService())
            _keep();
        else
            _watcher.reset();
    });
    _names.follow(TrayRegistry::busName());
}

TrayKeeper::~TrayKeeper()
{
    if (_watcher)
        callBus(QStringLiteral("ReleaseName"), { TrayRegistry::busName() });
}

void TrayKeeper::_keep()
{
    auto watcher = std::make_unique<TrayWatcher>();
    // Not while this or another tray of this process does.
    if (!QDBusConnection::sessionBus().registerObject(TrayRegistry::path(), watcher.get()))
        return;
    const QVector<TrayAddress> items = _known->items();
    for (const TrayAddress &item : items)
        watcher->add(item);
    _watcher = std::move(watcher);
    whenAnswered(TrayRegistry::requestName(TrayRegistry::busName()), this,
                 [this](const QDBusMessage &answer) {
                     if (isNameOurs(answer))
                         _findItems();
                     else
                         _watcher.reset();
                 });
}

// Most items register again with a new registry. Those that don't are known by their names.
void TrayKeeper::_findItems()
{
    whenAnswered(callBus(QStringLiteral("ListNames")), this, [this](const QDBusMessage &answer) {
        static const QRegularExpression itemName(QStringLiteral(
                "^org\\.(quorvane\\..+|(kde|freedesktop)\\.StatusNotifierItem)-\\d+(-\\d+)?\\z"));
        const QStringList names = answer.arguments().value(0).toStringList().filter(itemName).mid(
                0, TrayRegistry::mostListed);
        for (const QString &name : names) {
            if (_watcher)
                _watcher->add(TrayAddress::fromText(name));
        }
    });
}

} // namespace quorvane
