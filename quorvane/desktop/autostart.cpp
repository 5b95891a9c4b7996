#include <quorvane/desktop/autostart.h>

#include <quorvane/basedir/basedir.h>
#include <quorvane/basedir/logging.h>
#include <quorvane/desktop/entry.h>
#include <quorvane/desktop/scan_p.h>

namespace {

QString comparable(const QString &text)
{
    return text.trimmed().toLower();
}

} // namespace

namespace xdg {

AutoStart::AutoStart(QObject *parent)
    : QObject(parent)
{
    qCDebug(AUTO_START) << "Create Auto start";
    scanDirectories(&_entries, configDirs(), configHome(), QLatin1String("/autostart"));
}

AutoStart::~AutoStart() = default;

void AutoStart::start(QString key, QString value)
{
    qCDebug(AUTO_START) << "Start " << key << value;
    // Null, not empty: an empty text is something to compare with.
    const bool all = key.isNull() || value.isNull();
    const QList<Entry *> entries = _entries.getEntries();
    for (Entry *entry : entries) {
        if (all) {
            qCDebug(AUTO_START) << "Start app " << entry->appId();
        } else if (comparable(entry->data(key)) == comparable(value)) {
            qCDebug(AUTO_START) << "Start app " << entry->appId() << "with" << key << value;
        } else {
            continue;
        }
        entry->start(QStringList());
    }
}

} // namespace xdg
