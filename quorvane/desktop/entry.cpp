#include <quorvane/desktop/entry.h>

#include <quorvane/basedir/basedir.h>
#include <quorvane/desktop/commandline_p.h>
#include <quorvane/desktop/entrykeys_p.h>
#include <quorvane/desktop/process_p.h>

#include <QDebug>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QSettings>

#include <new>
#include <unistd.h>

namespace {

QByteArray environmentBytes()
{
    QByteArray bytes;
    bytes.reserve(4096);
    for (char **variable = environ; variable && *variable; ++variable)
        bytes.append(*variable, static_cast<int>(qstrlen(*variable)) + 1);
    return bytes;
}

QProcessEnvironment makeChildEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("wayland-egl"));
    environment.remove(QStringLiteral("QT_IM_MODULE"));
    return environment;
}

// What the environment was when it was last copied, and the copy.
struct SharedEnvironment
{
    ~SharedEnvironment() { isGone = true; }

    QByteArray taken;
    QProcessEnvironment copy;
    static inline thread_local bool isGone = false;
};

// The entries of a registry are made in one go, while the environment stays as it is: they share
// one copy, which saves a fourth of their memory. The copy ends with its thread, which at the exit
// of the program is ahead of the static objects, whose destructors may still make an entry.
QProcessEnvironment childEnvironment()
{
    if (SharedEnvironment::isGone)
        return makeChildEnvironment();

    thread_local SharedEnvironment shared;
    const QByteArray current = environmentBytes();
    if (shared.copy.isEmpty() || current != shared.taken) {
        shared.taken = current;
        shared.copy = makeChildEnvironment();
    }
    return shared.copy;
}

QString applicationFile(const QString &dataDir, const QString &appId)
{
    return dataDir + QLatin1String("/applications/") + appId + QLatin1String(".desktop");
}

QString statusWord(QProcess::ProcessState state)
{
    switch (state) {
    case QProcess::NotRunning:
        return QStringLiteral(" stopped");
    case QProcess::Starting:
        return QStringLiteral(" starting");
    case QProcess::Running:
        return QStringLiteral(" running");
    }
    return QString();
}

} // namespace

namespace xdg {

Entry::Entry(QString path, QObject *parent)
    : QObject(parent)
    , _path(path)
    , _settings(new QSettings(path, QSettings::IniFormat, this))
    , _watcher(QStringList(path))
{
    _initialize();
}

Entry::Entry(QObject *parent)
    : QObject(parent)
{
    _initialize();
}

Entry::Entry(const Entry &other)
    : QObject(other.parent())
    , _path(other.path())
    , _settings(new QSettings(other.path(), QSettings::IniFormat, this))
    , _watcher(QStringList(other.path()))
{
    _initialize();
}

Entry::~Entry()
{
    // The process reports its end from its own destructor, when the members behind it are gone.
    _process.disconnect(this);
}

void Entry::_initialize()
{
    _process.setProcessEnvironment(childEnvironment());
    connect(&_watcher, &QFileSystemWatcher::fileChanged, this, &Entry::_desktopFileChanged,
            Qt::QueuedConnection);
    connect(&_process, &QProcess::stateChanged, this, &Entry::_processStateChanged);
}

QString Entry::path() const
{
    return _path;
}

void Entry::setDesktopFile(QString path)
{
    _path = path;
    // The reader before this one may be a child of this entry or not, and is left to itself.
    _settings = new QSettings(path, QSettings::IniFormat);
    _watcher.addPaths(QStringList(path));
    Q_EMIT iconChanged(icon());
}

QString Entry::appId() const
{
    return QFileInfo(path()).completeBaseName();
}

void Entry::setAppId(QString appId)
{
    const QStringList searched = QStringList(dataHome()) + dataDirs();
    for (const QString &dataDir : searched) {
        const QString candidate = applicationFile(dataDir, appId);
        if (QFileInfo::exists(candidate)) {
            setDesktopFile(candidate);
            return;
        }
    }
    qWarning() << QLatin1String("Can't find Desktop Entry for ") + appId;
}

QString Entry::icon() const
{
    return data(keys::icon());
}

int Entry::pid() const
{
    return static_cast<int>(_process.processId());
}

void Entry::_desktopFileChanged(QString path)
{
    if (!_settings)
        return;
    if (!QFileInfo(path).isFile()) {
        Q_EMIT removed(path);
        return;
    }
    _settings->sync();
    const QStringList askedFor = _cache.keys();
    for (const QString &key : askedFor) {
        const QString value = _value(key);
        if (value == _cache.value(key))
            continue;
        _cache.insert(key, value);
        Q_EMIT dataChanged(key, value);
    }
}

void Entry::_processStateChanged(QProcess::ProcessState newState)
{
    Q_UNUSED(newState)
    Q_EMIT dataChanged(keys::keywords(), data(keys::keywords()));
}

void Entry::start(QStringList args)
{
    QStringList exec = splitCommandLine(data(keys::exec()));
    QStringList action = splitCommandLine(data(keys::startAction()));

    if (!exec.isEmpty()) {
        const QString program = exec.takeFirst();
        const QStringList arguments = expandFieldCodes(exec, args);
        if (_process.state() == QProcess::Running)
            Q_EMIT raiseProcess(pid());
        else
            _process.start(program, arguments, QIODevice::ReadWrite);
    } else if (!action.isEmpty()) {
        const QString program = action.takeFirst();
        _process.start(program, expandFieldCodes(action, args), QIODevice::ReadWrite);
    } else {
        qWarning() << "Can't find a way to start " << _path;
    }
}

void Entry::stop(QStringList args)
{
    QStringList command = splitCommandLine(data(keys::stopAction()));
    if (!command.isEmpty()) {
        const QString program = command.takeFirst();
        _process.start(program, expandFieldCodes(command, args), QIODevice::ReadWrite);
    } else if (_process.state() != QProcess::NotRunning) {
        terminateProcess(_process.processId());
    }
}

QString Entry::data(const QString &key) const
{
    if (!_settings)
        return QString();
    if (key == keys::keywords()) {
        const QString keywords = _value(key);
        if (keywords.contains(QLatin1String("RemoteProcess")))
            return keywords;
        return keywords + statusWord(_process.state());
    }
    const QString value = _value(key);
    if (!_cache.contains(key))
        _cache.insert(key, value);
    return value;
}

// The form of QSettings has values for any QVariant, and one that claims to be larger than the memory
// throws when its group is read. A file with such a value reads as empty.
QString Entry::_value(const QString &key) const
{
    try {
        return _settings->value(key).toString();
    } catch (const std::bad_alloc &) {
        return QString();
    }
}

} // namespace xdg
