#pragma once

#include <QHash>
#include <QVariantMap>

#include <vector>

class QDBusMessage;

namespace quorvane {

// One item of a menu with what is below it, as com.canonical.dbusmenu describes it.
struct MenuItem
{
    int id = 0;
    // Under the names of the protocol, and only those that TrayMenu shows; each is of its right type.
    // A shortcut is a text ("Ctrl+S").
    QVariantMap properties;
    std::vector<MenuItem> children;
};

// The menu in an answer to GetLayout, within the bounds that TrayMenu names; without children if it
// isn't such an answer. Ids are greater than 0 and occur once: of two items with the same id only the
// first is there.
MenuItem readLayout(const QDBusMessage &answer);

// What a signal ItemsPropertiesUpdated changes, by id. A property that goes back to its default has an
// invalid value.
QHash<int, QVariantMap> readPropertyUpdates(const QDBusMessage &signal);

} // namespace quorvane
