#include <quorvane/desktop/desktopentries.h>
#include <quorvane/desktop/desktopfilter.h>
#include <quorvane/desktop/entry.h>
#include <quorvane/notifications/notificationmanager.h>
#include <quorvane/notifications/notificationsinterface.h>
#include <quorvane/statusnotifier/statusnotifierhost.h>
#include <quorvane/statusnotifier/statusnotifierwatcher.h>

#include "desktopfixture.h"

#include <malloc.h>

using xdg::DesktopEntries;

// What this process holds, in numbers.
static QMap<QString, qint64> held()
{
    const struct mallinfo2 heap = mallinfo2();
    const QDir files("/proc/self/fd", {}, QDir::Unsorted, QDir::AllEntries | QDir::System);
    return { { "KiB of heap", qint64(heap.uordblks + heap.hblkhd) / 1024 },
             { "open files", files.count() } };
}

// A shell that uses the whole library at once, with programs that come and go.
struct Soak
{
    Soak()
    {
        filter.setModel(&applications);
        QObject::connect(
                &applications, &DesktopEntries::rowsInserted, &filter, [this](auto, int row) {
                    const QVariant entry = applications.index(row).data(DesktopEntries::EntryRole);
                    entries += entry.value<const xdg::Entry *>();
                });
    }

    // A minute of use, then the end of all that was begun. Says what is held after that.
    QMap<QString, qint64> minute()
    {
        for (const QDeadlineTimer end(60000); !end.hasExpired(); QTest::qWait(50))
            turn(turns++);
        for (auto &item : items)
            item.reset();
        for (int row = 0; row < applications.rowCount(); ++row)
            QFile::remove(applications.index(row).data(DesktopEntries::PathRole).toString());
        while (notifications.nbNotifications() > 0)
            notifications.close(notifications.listPending().value(0));
        for (const QAbstractItemModel *model : models) {
            if (!QTest::qWaitFor([model] { return model->rowCount() == 0; }, 60000))
                qFatal("Rows are left.");
        }
        qDeleteAll(std::exchange(entries, {})); // By design nobody else does.
        return held();
    }

    void turn(int number)
    {
        useFile(QString::number(number / 5), number % 5);
        // One notification comes or replaces another, and the oldest goes.
        service.Notify("soak", number % 3 ? 0 : number / 2, "icon", QString::number(number), "body",
                       { "key", "Key" }, { { "image", QByteArray(1000, 'x') } }, number % 4 * 100);
        notifications.returnAction(notifications.listPending().value(0), "key");
        // The oldest tray item is killed for a new one.
        items[number % 8].reset(new QProcess);
        items[number % 8]->start(TRAYPEER, { "item", "soak" });
        host.activate(1, 2, "soak", 0);
        for (const QAbstractItemModel *model : models) {
            for (int cell = 0; cell < model->rowCount() * 10; ++cell)
                model->index(cell / 10, 0).data(Qt::UserRole + 1 + cell % 10);
        }
    }

    // The life of an application: it comes, is started, changes, is stopped, goes.
    void useFile(const QString &name, int step)
    {
        const QStringList programs { "Exec=sleep 60", "Exec=true", "Exec=/nonexistent" };
        const QString path = fixture.path("home/applications/" + name + ".desktop");
        if (step == 1)
            applications.start(path);
        else if (step == 3)
            applications.stop(path);
        else if (step == 4)
            QFile::remove(path);
        else
            fixture.app(name, { programs[name.toInt() % 3], "Name=" + QString(step + 1, 'n') });
    }

    int turns = 0;
    const DesktopFixture fixture;
    const QString first = fixture.app("first"); // The folder is there before it is watched.
    DesktopEntries applications;
    xdg::DesktopFilter filter;
    xdg::NotificationManager notifications;
    xdg::StatusNotifierWatcher watcher;
    xdg::StatusNotifierHost host;
    const QList<QAbstractItemModel *> models { &applications, &filter, &notifications, &host };
    OrgFreedesktopNotificationsInterface service {
        "org.freedesktop.Notifications", "/org/freedesktop/Notifications",
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, "peer")
    };
    QScopedPointer<QProcess> items[8];
    QSet<const xdg::Entry *> entries; // Those of the rows, and those that were dropped.
};

// soak MINUTES: says how what it holds grew since the first minute, and fails if it did.
int main(int argc, char **argv)
{
    qInstallMessageHandler([](auto, auto &, auto &) {});
    const QCoreApplication application(argc, argv);
    QTextStream out(stdout);
    Soak soak;
    const QMap<QString, qint64> first = soak.minute();
    bool grew = false;
    for (int minute = 2; minute <= QString(argv[1]).toInt(); ++minute) {
        const QMap<QString, qint64> now = soak.minute();
        for (auto it = now.cbegin(); it != now.cend(); ++it) {
            grew |= it.value() - first[it.key()] > (it.key() == "KiB of heap" ? 64 : 0);
            out << first[it.key()] << " -> " << it.value() << ' ' << it.key() << ", ";
        }
        out << soak.turns << " turns" << Qt::endl;
    }
    return grew ? 1 : 0;
}
