#include "applicationusage_p.h"

#include <quorvane/basedir/basedir.h>
#include <quorvaneshell/pictures/regularfile_p.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QSaveFile>

#include <algorithm>
#include <cmath>
#include <glib.h>

namespace quorvane {

namespace {

constexpr double halfLife = 14.0 * 24 * 60 * 60 * 1000;
constexpr double leastScore = 0.01;
constexpr double mostScore = 1e6;
constexpr int mostEntries = 500;
constexpr int longestId = 255;
constexpr qint64 largestFile = 1 << 20;

// What is launched within this time is written at once, in milliseconds.
constexpr int delay = 2000;
constexpr int lockTime = 1000;

QWeakPointer<ApplicationUsage> &made()
{
    static QWeakPointer<ApplicationUsage> made;
    return made;
}

QString usagePath()
{
    const QString folder = xdg::stateHome();
    return QDir::isAbsolutePath(folder)
                   ? folder + QStringLiteral("/quorvane/application-usage.json")
                   : QString();
}

void add(Uses *uses, const QString &appId, const Use &more)
{
    Use &use = (*uses)[appId];
    const qint64 time = qMax(use.time, more.time);
    use = { use.scoreAt(time) + more.scoreAt(time), time };
}

Uses readUses(const QString &path)
{
    const auto now = double(QDateTime::currentMSecsSinceEpoch());
    const QJsonObject file = QJsonDocument::fromJson(readRegularFile(path, largestFile)).object();
    Uses uses;
    for (auto entry = file.constBegin(); entry != file.constEnd(); ++entry) {
        const QJsonArray values = entry.value().toArray();
        const double score = values.at(0).toDouble();
        // A clock that was wrong once puts nothing first for ever.
        const double time = qBound(0.0, values.at(1).toDouble(), now);
        if (score > 0 && entry.key().size() <= longestId)
            uses.insert(entry.key(), { qMin(score, mostScore), qint64(time) });
    }
    return uses;
}

Uses lasting(Uses uses)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    for (auto use = uses.begin(); use != uses.end();) {
        if (use->scoreAt(now) < leastScore)
            use = uses.erase(use);
        else
            ++use;
    }
    if (uses.size() <= mostEntries)
        return uses;
    QStringList ids = uses.keys();
    std::nth_element(ids.begin(), ids.begin() + mostEntries, ids.end(),
                     [&uses](const QString &one, const QString &other) {
                         return uses.value(one).rank() > uses.value(other).rank();
                     });
    std::for_each(ids.cbegin() + mostEntries, ids.cend(),
                  [&uses](const QString &id) { uses.remove(id); });
    return uses;
}

bool writeUses(const QString &path, const Uses &uses)
{
    if (uses.isEmpty())
        return QFile::remove(path) || !QFileInfo::exists(path);
    QJsonObject object;
    for (auto use = uses.cbegin(); use != uses.cend(); ++use)
        object.insert(use.key(), QJsonArray { use->score, double(use->time) });
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // What somebody uses is nobody else's business.
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    file.write(QJsonDocument(object).toJson());
    return file.commit();
}

} // namespace

double Use::scoreAt(qint64 when) const
{
    return score * std::exp2(double(time - when) / halfLife);
}

double Use::rank() const
{
    return std::log2(score) + double(time) / halfLife;
}

QSharedPointer<ApplicationUsage> ApplicationUsage::shared()
{
    QSharedPointer<ApplicationUsage> usage = made().toStrongRef();
    if (!usage) {
        usage.reset(new ApplicationUsage);
        made() = usage;
    }
    return usage;
}

ApplicationUsage::ApplicationUsage()
    : _path(usagePath())
    , _uses(_path.isEmpty() ? Uses() : readUses(_path))
{
    _timer.setSingleShot(true);
    _timer.setInterval(delay);
    connect(&_timer, &QTimer::timeout, this, [this] { _save(); });
}

ApplicationUsage::~ApplicationUsage()
{
    _writer.waitForDone();
    if (_timer.isActive())
        _save(_path, _changes, &_uses);
}

void ApplicationUsage::launched(const QString &appId)
{
    if (const QSharedPointer<ApplicationUsage> usage = made().toStrongRef())
        usage->_add(appId);
}

void ApplicationUsage::sort(std::vector<ApplicationPointer> *applications) const
{
    const auto used = [this](const ApplicationPointer &application) {
        return _uses.contains(application->appId);
    };
    const auto end = std::stable_partition(applications->begin(), applications->end(), used);
    std::stable_sort(applications->begin(), end,
                     [this](const ApplicationPointer &one, const ApplicationPointer &other) {
                         return _uses.value(one->appId).rank() > _uses.value(other->appId).rank();
                     });
}

void ApplicationUsage::forget(const QString &appId)
{
    _uses.remove(appId);
    _changes.launches.remove(appId);
    _changes.forgotten.insert(appId);
    _forgot();
}

void ApplicationUsage::forgetAll()
{
    _uses.clear();
    _changes = { true, {}, {} };
    _forgot();
}

void ApplicationUsage::_add(const QString &appId)
{
    const Use launch { 1, QDateTime::currentMSecsSinceEpoch() };
    add(&_uses, appId, launch);
    add(&_changes.launches, appId, launch);
    if (!_timer.isActive())
        _timer.start();
    Q_EMIT changed();
}

void ApplicationUsage::_forgot()
{
    _timer.start();
    _save();
    Q_EMIT changed();
}

// In the thread, so that nobody waits for the disk.
void ApplicationUsage::_save()
{
    // What comes while it writes is written after it.
    if (_saving) {
        _timer.start();
        return;
    }
    _timer.stop();
    _saving = true;
    _writer.start([this, changes = std::exchange(_changes, {})] {
        Uses saved;
        const bool done = _save(_path, changes, &saved);
        QMetaObject::invokeMethod(
                this,
                [this, saved, done] {
                    _saving = false;
                    // Others may have launched something. It shows with the next launch here.
                    if (!done)
                        return;
                    _uses = saved;
                    for (auto use = _changes.launches.cbegin(); use != _changes.launches.cend();
                         ++use)
                        add(&_uses, use.key(), *use);
                },
                Qt::QueuedConnection);
    });
}

// May be called in any thread. Adds to what others have written meanwhile.
bool ApplicationUsage::_save(const QString &path, const Changes &changes, Uses *saved)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).path());
    if (path.isEmpty() || g_mkdir_with_parents(folder.constData(), 0700) != 0)
        return false;
    QLockFile lock(path + QStringLiteral(".lock"));
    lock.tryLock(lockTime);
    Uses uses = changes.forgetsAll ? Uses() : readUses(path);
    for (const QString &appId : changes.forgotten)
        uses.remove(appId);
    for (auto use = changes.launches.cbegin(); use != changes.launches.cend(); ++use)
        add(&uses, use.key(), *use);
    *saved = lasting(std::move(uses));
    return writeUses(path, *saved);
}

} // namespace quorvane
