#include "fuzz.h"

#include <quorvane/notifications/notificationactions.h>
#include <quorvane/notifications/notificationmanager.h>
#include <quorvane/notifications/notificationserver.h>

#include <QPoint>
#include <QSet>
#include <QSortFilterProxyModel>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    startApplication(argc, argv);
    return 0;
}

// Views can't ask for rows that are not there, but anybody with an index of yesterday can.
template<typename Model>
class Open : public Model
{
public:
    using Model::createIndex;
};

static QStringList takeStrings(FuzzedDataProvider &input)
{
    QStringList strings;
    for (int i = input.ConsumeIntegralInRange(0, 5); i > 0; --i)
        strings += takeString(input, 8);
    return strings;
}

static QVariantMap takeHints(FuzzedDataProvider &input)
{
    QVariantMap hints;
    for (int i = input.ConsumeIntegralInRange(0, 3); i > 0; --i) {
        const QVariant values[] = { takeString(input, 8),
                                    input.ConsumeIntegral<int>(),
                                    QVariant(),
                                    takeString(input, 8).toUtf8(),
                                    hints,
                                    QPoint(1, 2) };
        hints.insert(takeString(input, 4), input.PickValueInArray(values));
    }
    return hints;
}

static uint takeId(FuzzedDataProvider &input)
{
    return input.ConsumeBool() ? input.ConsumeIntegralInRange<uint>(0, 8)
                               : input.ConsumeIntegral<uint>();
}

static void tryActions(FuzzedDataProvider &input)
{
    Open<xdg::NotificationActions> actions;
    for (int i = 0; i < 2; ++i) {
        const QStringList list = takeStrings(input);
        actions.setActionslist(list);
        require(actions.rowCount() == list.size() / 2);
        actions.data(actions.createIndex(input.ConsumeIntegral<int>(), 0),
                     input.ConsumeIntegralInRange(0, 300));
    }
}

// One call of a peer or of a view. What is pending is kept beside the manager and compared.
static void step(FuzzedDataProvider &input, Open<xdg::NotificationManager> &manager,
                 QSet<uint> &pending, uint &lastId)
{
    auto *server = manager.findChild<XdgNotificationServer *>();
    const uint id = takeId(input);
    switch (input.ConsumeIntegralInRange(0, 7)) {
    case 0:
    case 1: {
        QObject *contexts[] = { &manager, &manager, server, nullptr };
        QObject *context = input.PickValueInArray(contexts);
        const bool replaces = id != 0 && pending.contains(id); // It may close in the middle.
        const int timeout = input.ConsumeBool() ? input.ConsumeIntegralInRange(-1, 1) : 0;
        const QString name = takeString(input), text = takeString(input);
        const uint answer = xdg::serverNotify(context, name, id, text, text, text,
                                              takeStrings(input), takeHints(input), timeout);
        if (context == &manager && !replaces)
            pending += ++lastId;
        require(answer == (context == &manager ? lastId : 0));
        break;
    }
    case 2:
        manager.close(id, input.ConsumeIntegral<uint>());
        break;
    case 3:
        manager.returnAction(id, takeString(input));
        break;
    case 4:
        server->CloseNotification(id);
        break;
    case 5:
        require(pending.contains(id) || manager.listAction(id).isEmpty());
        break;
    case 6:
        manager.data(manager.createIndex(input.ConsumeIntegral<int>(), 0),
                     input.ConsumeIntegralInRange(0, 300));
        break;
    default:
        turnEventLoop();
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    tryActions(input);

    Open<xdg::NotificationManager> manager;
    QSortFilterProxyModel view;
    view.setSourceModel(&manager);
    QSet<uint> pending;
    uint lastId = 0;
    QObject::connect(manager.findChild<XdgNotificationServer *>(),
                     &XdgNotificationServer::NotificationClosed,
                     [&pending](uint id) { pending.remove(id); });
    // A listener that closes a notification in the middle of an update, and lets it go.
    const uint victim = takeId(input);
    QObject::connect(&manager, &QAbstractItemModel::dataChanged, &manager, [&] {
        if (pending.contains(victim)) {
            manager.close(victim);
            turnEventLoop();
        }
    });
    // A view that reads everything at each change.
    const auto read = [&manager, &view] {
        for (int row = 0; row < view.rowCount(); ++row)
            view.index(row, 0).data(xdg::NotificationManager::BodyRole);
        for (int row = -1; row <= manager.rowCount(); ++row)
            manager.data(manager.index(row, 0), xdg::NotificationManager::HintsRole);
    };
    QObject::connect(&manager, &xdg::NotificationManager::notificationsChanged, read);
    QObject::connect(&manager, &QAbstractItemModel::dataChanged, read);

    for (int i = 0; i < 50 && input.remaining_bytes() > 0; ++i) {
        step(input, manager, pending, lastId);
        require(manager.nbNotifications() == pending.size() && view.rowCount() == pending.size());
        const QList<uint> listed = manager.listPending();
        require(QSet<uint>(listed.cbegin(), listed.cend()) == pending);
    }
    const QList<uint> left = manager.listPending();
    for (const uint id : left)
        manager.close(id);
    turnEventLoop();
    require(manager.rowCount() == 0);
    return 0;
}
