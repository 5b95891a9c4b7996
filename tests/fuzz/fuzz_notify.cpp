#include "fuzz.h"

#include <quorvane/notifications/notificationactions.h>
#include <quorvane/notifications/notificationmanager.h>
#include <quorvane/notifications/notificationserver.h>

#include <QSet>
#include <QSortFilterProxyModel>

static QString takeString(FuzzedDataProvider &input)
{
    return QString::fromStdString(input.ConsumeRandomLengthString(16));
}

// Views can't ask for rows that are not there, but anybody with an index of yesterday can.
static void readRows(const QAbstractItemModel &model, const QModelIndex &stale)
{
    for (int role = Qt::DisplayRole; role < Qt::UserRole + 10; ++role) {
        for (int row = 0; row < model.rowCount(); ++row)
            model.index(row, 0).data(role);
        stale.data(role);
    }
}

static void tryActions(const QStringList &more, const QStringList &fewer)
{
    xdg::NotificationActions actions;
    actions.setActionslist(more);
    const QModelIndex last = actions.index(actions.rowCount() - 1, 0);
    actions.setActionslist(fewer);
    require(actions.rowCount() == fewer.size() / 2);
    readRows(actions, last);
}

// One call of a peer or of a view. What is pending is kept beside the manager and compared.
static void step(FuzzedDataProvider &input, xdg::NotificationManager &manager, QSet<uint> &pending,
                 uint &lastId)
{
    auto *server = manager.findChild<XdgNotificationServer *>();
    const uint id = input.ConsumeBool() ? input.ConsumeIntegralInRange<uint>(0, 8)
                                        : input.ConsumeIntegral<uint>();
    const QString text = takeString(input);
    switch (input.ConsumeIntegralInRange(0, 6)) {
    case 0:
    case 1: {
        QObject *contexts[] = { &manager, &manager, server, nullptr };
        QObject *context = input.PickValueInArray(contexts);
        const QVariant hints[] = { text, id, QVariant(), text.toUtf8(), QVariantMap() };
        const QVariant hint = input.PickValueInArray(hints);
        const bool replaces = id != 0 && pending.contains(id); // It may close in the middle.
        const uint answer = xdg::serverNotify(context, text, id, text, text, text, text.split(','),
                                              { { takeString(input), hint } },
                                              input.ConsumeIntegralInRange(-1, 1));
        if (context == &manager && !replaces)
            pending += ++lastId;
        require(answer == (context == &manager ? lastId : 0));
        break;
    }
    case 2:
        manager.close(id, input.ConsumeIntegral<uint>());
        break;
    case 3:
        manager.returnAction(id, text);
        break;
    case 4:
        server->CloseNotification(id);
        break;
    case 5:
        require(pending.contains(id) || manager.listAction(id).isEmpty());
        break;
    default:
        turnEventLoop();
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const QString actions = takeString(input);
    tryActions(actions.split(','), takeString(input).split(','));

    xdg::NotificationManager manager;
    QSortFilterProxyModel view;
    view.setSourceModel(&manager);
    QSet<uint> pending;
    uint lastId = 0;
    QObject::connect(manager.findChild<XdgNotificationServer *>(),
                     &XdgNotificationServer::NotificationClosed,
                     [&pending](uint id) { pending.remove(id); });
    // A listener that closes a notification in the middle of an update, and lets it go.
    const auto victim = input.ConsumeIntegralInRange<uint>(0, 8);
    QObject::connect(&manager, &QAbstractItemModel::dataChanged, &manager, [&] {
        if (pending.contains(victim)) {
            manager.close(victim);
            turnEventLoop();
        }
    });

    // A view that reads everything at each change.
    QModelIndex last;
    const auto read = [&] { readRows(view, last); };
    QObject::connect(&manager, &xdg::NotificationManager::notificationsChanged, read);
    QObject::connect(&manager, &QAbstractItemModel::dataChanged, read);

    for (int i = 0; i < 50 && input.remaining_bytes() > 0; ++i) {
        step(input, manager, pending, lastId);
        require(manager.nbNotifications() == pending.size() && view.rowCount() == pending.size());
        const QList<uint> listed = manager.listPending();
        require(QSet<uint>(listed.cbegin(), listed.cend()) == pending);
        if (manager.rowCount() > last.row())
            last = manager.index(manager.rowCount() - 1, 0);
    }
    return 0;
}
