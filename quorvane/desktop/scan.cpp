#include <quorvane/desktop/scan_p.h>

#include <quorvane/desktop/entries.h>

#include <QStringList>

namespace xdg {

void scanDirectories(Entries *entries, const QStringList &systemDirs, const QString &homeDir,
                     QLatin1String folder)
{
    for (auto it = systemDirs.crbegin(); it != systemDirs.crend(); ++it)
        entries->addDirectory(*it + folder, false);
    entries->addDirectory(homeDir + folder, false);
}

} // namespace xdg
