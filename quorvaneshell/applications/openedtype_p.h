#pragma once

#include <QString>

namespace quorvane {

// The MIME type under which there are handlers for a path, a URL or a MIME type: that of a file of
// this machine, by its name and its first 16 KB, x-scheme-handler/<scheme> for any other URL, a MIME
// type without its parameters. Empty for a device or a pipe.
//
// Only regular files on local disks are read and looked at at all, so that nobody waits for a server:
// elsewhere the name tells, and what has no type by its name is taken for a folder.
QString openedType(const QString &urlOrMimeType);

} // namespace quorvane
