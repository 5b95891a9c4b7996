#include "fuzz.h"

#include <quorvane/notifications/notificationmanager.h>
#include <quorvane/notifications/notificationserver.h>

#include <QSet>
#include <QSortFilterProxyModel>

// Calls of strangers with any arguments, and a view that reads everything at each change. What is
// pending is kept beside the manager and compared.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const auto anyText
            = [&] { return QString::fromStdString(input.ConsumeRandomLengthString(16)); };
    const auto anyId = [&] { return input.ConsumeIntegralInRange<uint>(0, 8) - 1; };

    xdg::NotificationManager manager;
    auto *server = manager.findChild<XdgNotificationServer *>();
    QSortFilterProxyModel view;
    view.setSourceModel(&manager);
    QSet<uint> pending;
    uint lastId = 0;

    QObject::connect(server, &XdgNotificationServer::NotificationClosed,
                     [&pending](uint id) { pending.remove(id); });
    const auto readAll = [&view] {
        for (int row = 0; row < view.rowCount(); ++row) {
            for (int role = Qt::DisplayRole; role <= xdg::NotificationManager::AppIdRole; ++role)
                view.index(row, 0).data(role);
        }
    };
    QObject::connect(&manager, &xdg::NotificationManager::notificationsChanged, readAll);
    // This one is closed in the middle of its replacement, and let go.
    const uint victim = anyId();
    QObject::connect(&manager, &QAbstractItemModel::dataChanged, &manager, [&] {
        readAll();
        if (pending.contains(victim)) {
            manager.close(victim);
            turnEventLoop();
        }
    });

    while (input.remaining_bytes() > 0) {
        const uint id = anyId();
        const int kind = input.ConsumeIntegralInRange(0, 3);
        if (kind == 0) {
            const QVariant hints[]
                    = { anyText(), id, QVariant(), QVariantMap(), QByteArray(9, 'x') };
            if (!pending.contains(id))
                pending += ++lastId;
            const uint answer = server->Notify(anyText(), id, anyText(), anyText(), anyText(),
                                               anyText().split(','),
                                               { { anyText(), input.PickValueInArray(hints) } },
                                               input.ConsumeIntegralInRange(-1, 1));
            require(answer == lastId);
        } else if (kind == 1) {
            server->CloseNotification(id);
        } else if (kind == 2) {
            manager.returnAction(id, anyText());
        } else {
            turnEventLoop();
        }
        const QList<uint> listed = manager.listPending();
        require(manager.listAction(id).isEmpty() || pending.contains(id));
        require(QSet<uint>(listed.cbegin(), listed.cend()) == pending);
        require(view.rowCount() == listed.size() && manager.nbNotifications() == listed.size());
    }
    return 0;
}
