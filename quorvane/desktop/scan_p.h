#pragma once

class QLatin1String;
class QString;
#include <QStringList>

namespace xdg {

class Entries;

// Adds the folder (with its leading slash) of each system directory, from the last to the first,
// and then that of the user's directory. The first directory scanned wins a base name, so the list
// is walked from its end.
void scanDirectories(Entries *entries, const QStringList &systemDirs, const QString &homeDir,
                     QLatin1String folder);

} // namespace xdg
