#include "categoryname.h"

#include <glib.h>

#include <memory>

namespace {

struct Category
{
    const char *id;
    const char *name;
    const char *directory; // The base name of its file, which menu packages agree on.
};

constexpr Category categories[] = {
    { "AudioVideo", "Sound & Video", "AudioVideo" },
    { "Audio", "Sound", "Audio" },
    { "Video", "Video", "Video" },
    { "Development", "Programming", "Development" },
    { "Education", "Education", "Education" },
    { "Game", "Games", "Game" },
    { "Graphics", "Graphics", "Graphics" },
    { "Network", "Internet", "Network" },
    { "Office", "Office", "Office" },
    { "Science", "Science", "GnomeScience" },
    { "Settings", "Settings", "Settings" },
    { "System", "System Tools", "System-Tools" },
    { "Utility", "Accessories", "Utility" },
};

QString nameInFile(const char *directory)
{
    const std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)> file(g_key_file_new(),
                                                                      g_key_file_unref);
    const QByteArray path = QByteArray("desktop-directories/") + directory + ".directory";
    if (!g_key_file_load_from_data_dirs(file.get(), path.constData(), nullptr,
                                        G_KEY_FILE_KEEP_TRANSLATIONS, nullptr))
        return {};
    const std::unique_ptr<char, decltype(&g_free)> name(
            g_key_file_get_locale_string(file.get(), G_KEY_FILE_DESKTOP_GROUP,
                                         G_KEY_FILE_DESKTOP_KEY_NAME, nullptr, nullptr),
            g_free);
    return QString::fromUtf8(name.get());
}

} // namespace

QString categoryName(const QString &category)
{
    for (const Category &known : categories) {
        if (category != QLatin1String(known.id))
            continue;
        const QString name = nameInFile(known.directory);
        return name.isEmpty() ? QString::fromLatin1(known.name) : name;
    }
    return category;
}
