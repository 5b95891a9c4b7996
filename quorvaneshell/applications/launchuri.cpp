#include "launchuri_p.h"

#include <QFile>
#include <QUrl>

#include <cstring>
#include <glib.h>

namespace quorvane {

QByteArray launchUri(const QVariant &target)
{
    const QString text = target.toString();
    if (text.contains(QChar(0)))
        return {};
    if (text.startsWith(QLatin1Char('/'))) {
        g_autofree gchar *uri
                = g_filename_to_uri(QFile::encodeName(text).constData(), nullptr, nullptr);
        return uri;
    }
    const QUrl url = target.userType() == QMetaType::QUrl ? target.toUrl() : QUrl(text);
    const QByteArray uri = url.toEncoded();
    if (!url.isValid() || url.scheme().isEmpty() || uri.size() <= url.scheme().size() + 1)
        return {};
    // A file has a path from the root.
    const bool isLost = url.isLocalFile() && url.host().isEmpty() && launchPath(uri).isEmpty();
    return isLost ? QByteArray() : uri;
}

QByteArray launchPath(const QByteArray &uri)
{
    const int end = int(std::strcspn(uri.constData(), "?#"));
    g_autofree gchar *host = nullptr;
    g_autofree gchar *path = g_filename_from_uri(uri.left(end).constData(), &host, nullptr);
    return host && *host && qstricmp(host, "localhost") != 0 ? QByteArray() : QByteArray(path);
}

} // namespace quorvane
