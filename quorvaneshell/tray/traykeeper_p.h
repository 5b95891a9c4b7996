#pragma once

#include <quorvaneshell/bus/busnames_p.h>

#include <QObject>

#include <memory>

namespace quorvane {

class TrayRegistry;
class TrayWatcher;

// Keeps the registry of the tray in this process as long as no other does. It begins with the items
// that are known from the registry before, for the sake of those that register only once.
class TrayKeeper : public QObject
{
    Q_OBJECT

public:
    // What is known outlives it.
    explicit TrayKeeper(const TrayRegistry *known);
    ~TrayKeeper() override;

private:
    void _keep();
    void _findItems();

    const TrayRegistry *const _known;
    BusNames _names;
    std::unique_ptr<TrayWatcher> _watcher;
};

} // namespace quorvane
