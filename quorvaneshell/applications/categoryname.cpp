#include "categoryname_p.h"

#include "applicationfolders_p.h"
#include "desktopfile_p.h"

#include <quorvaneshell/search/usercollator_p.h>

#include <algorithm>
#include <glib.h>
#include <map>

namespace quorvane {

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

// The file in the user's data directory comes before the others.
QString nameInFile(const char *directory)
{
    const QString name = QLatin1Char('/') + QLatin1String(directory) + QLatin1String(".directory");
    const QStringList folders = dataFolders(QStringLiteral("desktop-directories"));
    for (const QString &folder : folders) {
        const DesktopFile file(folder + name);
        if (file.isValid())
            return file.localText(G_KEY_FILE_DESKTOP_KEY_NAME);
    }
    return {};
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

QString mainCategory(const QString &category)
{
    const auto is
            = [&category](const Category &known) { return category == QLatin1String(known.id); };
    if (std::none_of(std::begin(categories), std::end(categories), is))
        return {};
    const bool isHalf = category == QLatin1String("Audio") || category == QLatin1String("Video");
    return isHalf ? QStringLiteral("AudioVideo") : category;
}

QStringList sortedByName(QStringList categories)
{
    std::map<QString, QString> names;
    for (const QString &category : std::as_const(categories))
        names.emplace(category, categoryName(category));
    const QCollator collator = userCollator();
    std::sort(categories.begin(), categories.end(), [&](const QString &one, const QString &other) {
        return collator.compare(names[one], names[other]) < 0;
    });
    return categories;
}

} // namespace quorvane
