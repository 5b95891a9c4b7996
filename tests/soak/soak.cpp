#include <quorvane/desktop/desktopentries.h>
#include <quorvane/desktop/desktopfilter.h>
#include <quorvane/desktop/entry.h>
#include <quorvane/notifications/notificationmanager.h>
#include <quorvane/notifications/notificationserver.h>
#include <quorvane/notifications/notifier.h>
#include <quorvane/statusnotifier/statusnotifierhost.h>
#include <quorvane/statusnotifier/statusnotifieritem.h>
#include <quorvane/statusnotifier/statusnotifierwatcher.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <functional>
#include <malloc.h>
#include <memory>
#include <signal.h>
#include <unistd.h>

// A shell that uses everything of the library at once, with peers in processes of their own. Once
// a minute it comes to rest and counts what it holds: nothing may grow that is not named below.

constexpr qint64 KiB = 1024;

static qint64 heap()
{
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.uordblks) + qint64(info.hblkhd);
}

static QByteArray procFile(const QString &name)
{
    QFile file("/proc/self/" + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct Sample
{
    qint64 heap = ::heap();
    qint64 rss = procFile("statm").split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
    int files = QDir("/proc/self/fd")
                        .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
                        .size();
    int children
            = procFile(QString("task/%1/children").arg(getpid())).simplified().split(' ').size();
};

// What the library leaves alive by design each time that this is done.
struct Unit
{
    const char *name;
    std::function<void()> leave;
    int count = 0;
    qint64 each = 0;
};

static void rest(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

class Soak : public QObject
{
public:
    Soak();
    int run(int minutes);

private:
    void calibrate(Unit &unit);
    void useFiles(int step);
    void useTray(int step);
    void readModels();
    Sample sample();
    qint64 named() const;

    QTemporaryDir _home;
    QMap<QByteArray, qint64> _counts;
    std::unique_ptr<xdg::DesktopEntries> _applications;
    xdg::DesktopFilter _filter;
    xdg::NotificationManager _notifications;
    xdg::StatusNotifierWatcher _watcher;
    xdg::StatusNotifierHost _host;
    QProcess _sender;
    std::unique_ptr<QProcess> _trayPeers[4];
    QSet<const xdg::Entry *> _entries; // Those of the rows and those that were dropped.
    Unit _dropped { "dropped entry", {} };
    QList<Unit> _units;
};

Soak::Soak()
{
    qputenv("XDG_DATA_HOME", _home.path().toUtf8());
    qputenv("XDG_DATA_DIRS", "/nonexistent");
    QDir(_home.path()).mkpath("applications");
    _applications = std::make_unique<xdg::DesktopEntries>();
    _filter.setModel(_applications.get());

    const auto count = [this](const char *what) { return [this, what] { ++_counts[what]; }; };
    connect(_applications.get(), &QAbstractItemModel::rowsInserted, this, count("entries added"));
    connect(_applications.get(), &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex &, int row) {
                _entries += _applications->index(row, 0)
                                    .data(xdg::DesktopEntries::EntryRole)
                                    .value<const xdg::Entry *>();
            });
    connect(_applications.get(), &QAbstractItemModel::rowsRemoved, this, count("entries removed"));
    connect(_applications.get(), &QAbstractItemModel::dataChanged, this,
            count("changes of entries and their programs"));
    connect(&_notifications, &QAbstractItemModel::rowsInserted, this, count("notifications"));
    connect(&_notifications, &QAbstractItemModel::dataChanged, this,
            count("changes by a replacement"));
    connect(&_host, &QAbstractItemModel::rowsInserted, this, count("tray items registered"));
    connect(&_host, &QAbstractItemModel::rowsRemoved, this, count("tray items gone"));
    connect(&_host, &QAbstractItemModel::dataChanged, this, count("changes of tray items"));
    auto *server = _notifications.findChild<XdgNotificationServer *>();
    connect(server, &XdgNotificationServer::ActionInvoked, this, count("actions chosen"));
    connect(server, &XdgNotificationServer::NotificationClosed, this, [this](uint, uint reason) {
        ++_counts["notifications closed, reason " + QByteArray::number(reason)];
    });

    auto *entry = new xdg::Entry(this);
    const QString path = _home.filePath("single.desktop");
    _units = {
        { "reader of a file set anew", [=] { entry->setDesktopFile(path); } },
        { "proxy of a notifier", [] { XdgNotifier notifier; } },
        { "proxy of a tray item", [] { xdg::StatusNotifierItem item; } },
        { "name of a tray that is gone",
          [this, tray = 0]() mutable {
              _watcher.RegisterStatusNotifierHost(QString("a tray that is gone %1").arg(++tray));
          } },
    };
}

void Soak::calibrate(Unit &unit)
{
    constexpr int times = 64;
    for (const bool counted : { false, true }) {
        rest(200);
        const qint64 before = heap();
        for (int i = 0; i < times; ++i)
            unit.leave();
        rest(200);
        if (counted)
            unit.each = (heap() - before) / times;
    }
}

// The life of an application in five steps: it comes, is started, changes, is stopped, goes.
void Soak::useFiles(int step)
{
    const QString path = _home.filePath(QString("applications/soak-%1.desktop").arg(step / 5));
    const char *programs[] = { "sleep 60", "true", "/nonexistent", "'sleep' \"60\" %U" };
    QFile file(path);
    switch (step % 5) {
    case 0:
    case 2:
        if (file.open(QIODevice::WriteOnly)) {
            file.write("[Desktop Entry]\nName=Soak " + QByteArray::number(step)
                       + "\nIcon=a\nCategories=" + QByteArray(1 + step % 7, 'c')
                       + "\nExec=" + programs[step / 5 % 4] + '\n');
        }
        break;
    case 1:
        _applications->start(path);
        break;
    case 3:
        _applications->stop(path);
        break;
    default:
        file.remove();
    }
}

// A peer after the other comes to the tray; each stays for four turns and is killed.
void Soak::useTray(int step)
{
    std::unique_ptr<QProcess> &peer = _trayPeers[step % 4];
    if (peer) {
        peer->kill();
        peer->waitForFinished();
    }
    peer = std::make_unique<QProcess>();
    const bool host = step % 20 == 0;
    _units.last().count += host;
    peer->start(SOAK_PEER, { host ? "host" : "item" });
}

void Soak::readModels()
{
    for (const QAbstractItemModel *model : std::initializer_list<const QAbstractItemModel *> {
                 _applications.get(), &_filter, &_notifications, &_host }) {
        const QList<int> roles = model->roleNames().keys();
        for (int row = 0; row < model->rowCount(); ++row) {
            for (const int role : roles) {
                if (role > Qt::UserRole)
                    model->index(row, 0).data(role);
            }
            ++_counts["rows read"];
        }
    }
    if (_host.rowCount() > 0)
        _host.activate(1, 2, "soak_peer", 0);
}

// All that was begun is ended, and the dropped entries are counted by deleting them.
Sample Soak::sample()
{
    kill(pid_t(_sender.processId()), SIGSTOP);
    for (auto &peer : _trayPeers)
        peer.reset();
    for (int row = 0; row < _applications->rowCount(); ++row)
        _applications->stop(
                _applications->index(row, 0).data(xdg::DesktopEntries::PathRole).toString());
    rest(500);
    const QFileInfoList files = QDir(_home.filePath("applications")).entryInfoList(QDir::Files);
    for (const QFileInfo &file : files)
        QFile::remove(file.filePath());
    const QList<uint> pending = _notifications.listPending();
    for (const uint id : pending)
        _notifications.close(id);
    rest(1500);

    const qint64 before = heap();
    qDeleteAll(_entries);
    _dropped.count += _entries.size();
    _dropped.each += before - heap(); // The sum until the end.
    _entries = {};
    return Sample();
}

qint64 Soak::named() const
{
    qint64 sum = 0;
    for (const Unit &unit : _units)
        sum += unit.count * unit.each;
    return sum;
}

int Soak::run(int minutes)
{
    for (Unit &unit : _units)
        calibrate(unit);
    _sender.start(SOAK_PEER, { "sender" });

    std::printf("minute   heap, less the named (KiB)   RSS (KiB)   files   children\n");
    Sample first, last;
    QElapsedTimer timer;
    timer.start();
    constexpr qint64 perMinute = 60000;
    int step = 0;
    for (int minute = 1; minute <= minutes; ++minute) {
        kill(pid_t(_sender.processId()), SIGCONT);
        for (; timer.elapsed() < minute * perMinute; ++step) {
            if (step % 2 == 0)
                useFiles(step / 2);
            if (step % 4 == 1)
                useTray(step / 4);
            if (step % 100 == 0) {
                for (Unit &unit : _units) {
                    unit.leave();
                    ++unit.count;
                }
            }
            readModels();
            rest(100);
        }
        last = sample();
        last.heap -= named();
        if (minute == 1)
            first = last;
        std::printf("%6d   %26.1f   %9lld   %5d   %8d\n", minute, double(last.heap) / KiB,
                    last.rss / KiB, last.files, last.children);
        std::fflush(stdout);
    }
    _sender.kill();
    _sender.waitForFinished();

    std::printf("\nDone:\n");
    for (auto it = _counts.cbegin(); it != _counts.cend(); ++it)
        std::printf("%9lld  %s\n", it.value(), it.key().constData());
    std::printf("\nLeft alive by design:\n");
    _dropped.each /= qMax(1, _dropped.count);
    _units.prepend(_dropped);
    for (const Unit &unit : qAsConst(_units))
        std::printf("%9d  %s, %lld bytes each\n", unit.count, unit.name, unit.each);

    const bool flat = last.heap - first.heap < 64 * KiB && last.rss - first.rss < 4096 * KiB
                      && last.files <= first.files && last.children <= first.children;
    std::printf("\n%s\n", flat ? "Nothing else grew." : "Something grew that is not named.");
    return flat ? 0 : 1;
}

int main(int argc, char **argv)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QLoggingCategory::setFilterRules("xdg.system_tray.debug=true");
    QCoreApplication application(argc, argv);
    return Soak().run(argc > 1 ? atoi(argv[1]) : 10);
}
