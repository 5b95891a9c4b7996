#include "desktopfile_p.h"

#include <quorvaneshell/pictures/regularfile_p.h>

#include <glib.h>

namespace quorvane {

namespace {

constexpr qint64 largestFile = 1 << 20;

} // namespace

DesktopFile::DesktopFile(const QString &path)
{
    const QByteArray data = readRegularFile(path, largestFile);
    if (data.isEmpty())
        return;
    _file.reset(g_key_file_new());
    if (!g_key_file_load_from_data(_file.get(), data.constData(), size_t(data.size()),
                                   G_KEY_FILE_NONE, nullptr))
        _file.reset();
}

bool DesktopFile::hasGroup(const QByteArray &group) const
{
    return g_key_file_has_group(_file.get(), group.constData());
}

bool DesktopFile::hasKey(const char *key) const
{
    return g_key_file_has_key(_file.get(), mainGroup, key, nullptr);
}

QByteArray DesktopFile::text(const char *key, const QByteArray &group) const
{
    g_autofree gchar *text = g_key_file_get_string(_file.get(), group.constData(), key, nullptr);
    return text;
}

QString DesktopFile::localText(const char *key, const QByteArray &group) const
{
    g_autofree gchar *text
            = g_key_file_get_locale_string(_file.get(), group.constData(), key, nullptr, nullptr);
    return QString::fromUtf8(text).trimmed();
}

QStringList DesktopFile::list(const QByteArray &key, const QByteArray &group) const
{
    if (!isValid())
        return {};
    g_auto(GStrv) texts = g_key_file_get_string_list(_file.get(), group.constData(),
                                                     key.constData(), nullptr, nullptr);
    QStringList list;
    for (auto *text = texts; text && *text; ++text) {
        if (**text)
            list += QString::fromUtf8(*text);
    }
    return list;
}

// GLib's own function for this cuts at escaped semicolons too.
QStringList DesktopFile::localList(const char *key) const
{
    g_autofree gchar *locale = g_key_file_get_locale_for_key(_file.get(), mainGroup, key, nullptr);
    return list(locale ? QByteArray(key) + '[' + QByteArray(locale) + ']' : QByteArray(key));
}

bool DesktopFile::flag(const char *key) const
{
    return g_key_file_get_boolean(_file.get(), mainGroup, key, nullptr);
}

QByteArray DesktopFile::actionGroup(const QString &action)
{
    return action.isEmpty() ? QByteArray(mainGroup) : "Desktop Action " + action.toUtf8();
}

void DesktopFile::Deleter::operator()(GKeyFile *file) const
{
    g_key_file_free(file);
}

} // namespace quorvane
