#pragma once

#include <QByteArray>
#include <QVariant>

namespace quorvane {

// The URI of what an application is to open. A text that begins with "/" is a path, whatever
// characters are in it; any other is a URL with a scheme, as a QUrl is. Empty for what is none of
// these.
QByteArray launchUri(const QVariant &target);

// The path of a file of this machine; empty for another URI.
QByteArray launchPath(const QByteArray &uri);

} // namespace quorvane
