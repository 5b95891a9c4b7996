#include "icontheme.h"

#include <quorvane/basedir/basedir.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QRegularExpression>

#include <gio/gio.h>

#include <algorithm>
#include <memory>
#include <mutex>

namespace {

constexpr int forgetAfter = 1000; // Milliseconds.

template<typename Object, void (*release)(Object *)>
struct Release
{
    void operator()(Object *object) const { release(object); }
};

void unrefSettings(GSettings *settings)
{
    g_object_unref(settings);
}

// Empty where the desktop's schema is missing, which g_settings_new() ends the process for.
QString themeOfSettings()
{
    GSettingsSchemaSource *source = g_settings_schema_source_get_default();
    if (!source)
        return {};
    const std::unique_ptr<GSettingsSchema, Release<GSettingsSchema, g_settings_schema_unref>> schema(
            g_settings_schema_source_lookup(source, "org.gnome.desktop.interface", true));
    if (!schema || !g_settings_schema_has_key(schema.get(), "icon-theme"))
        return {};
    const std::unique_ptr<GSettings, Release<GSettings, unrefSettings>> settings(
            g_settings_new_full(schema.get(), nullptr, nullptr));
    gchar *text = g_settings_get_string(settings.get(), "icon-theme");
    const QString name = QString::fromUtf8(text);
    g_free(text);
    return name;
}

bool isInstalled(const QString &theme)
{
    const QStringList folders = QIcon::themeSearchPaths();
    return !theme.isEmpty()
           && std::any_of(folders.cbegin(), folders.cend(), [&theme](const QString &folder) {
                  return QFileInfo::exists(folder + QLatin1Char('/') + theme
                                           + QLatin1String("/index.theme"));
              });
}

// The folders of the Icon Theme Specification, which Qt leaves out in part or, on a platform of no
// desktop, altogether.
void addFolders()
{
    QStringList themes = QIcon::themeSearchPaths();
    QStringList folders { QDir::homePath() + QLatin1String("/.icons"),
                          xdg::dataHome() + QLatin1String("/icons") };
    const QStringList dataDirs = xdg::dataDirs();
    for (const QString &dir : dataDirs)
        folders.append(dir + QLatin1String("/icons"));
    for (const QString &folder : qAsConst(folders)) {
        if (!themes.contains(folder) && QFileInfo(folder).isDir())
            themes.append(folder);
    }
    QIcon::setThemeSearchPaths(themes);

    const QString pixmaps = QStringLiteral("/usr/share/pixmaps");
    const QStringList loose = QIcon::fallbackSearchPaths();
    if (!loose.contains(pixmaps))
        QIcon::setFallbackSearchPaths(loose + QStringList(pixmaps));
}

void chooseTheme()
{
    addFolders();
    const QString chosen = QIcon::themeName();
    if (!chosen.isEmpty() && chosen != QLatin1String("hicolor"))
        return;
    const QStringList themes { themeOfSettings(),        QStringLiteral("Adwaita"),
                               QStringLiteral("breeze"), QStringLiteral("Papirus"),
                               QStringLiteral("gnome"),  QStringLiteral("hicolor") };
    const auto theme = std::find_if(themes.cbegin(), themes.cend(), isInstalled);
    if (theme != themes.cend())
        QIcon::setThemeName(*theme);
}

QIcon find(const QString &name)
{
    QString bare = name;
    bare.remove(QRegularExpression(QStringLiteral("\\.(png|svg|xpm)$")));
    for (const QString &form : { name, bare, bare + QLatin1String("-symbolic") }) {
        const QIcon icon = QIcon::fromTheme(form);
        if (!icon.isNull())
            return icon;
    }
    return {};
}

} // namespace

QImage themeIcon(const QString &name, const QSize &size)
{
    static std::once_flag once;
    std::call_once(once, chooseTheme);
    // Themes are not left by way of a name.
    if (name.isEmpty() || name.contains(QLatin1Char('/')))
        return {};
    QIcon icon = find(name);
    // QIcon remembers what it did not find, but a package may bring its icons after its entry.
    static QDeadlineTimer patience;
    if (icon.isNull() && patience.hasExpired()) {
        patience.setRemainingTime(forgetAfter);
        QIcon::setThemeSearchPaths(QIcon::themeSearchPaths());
        icon = find(name);
    }
    QPixmap pixmap = icon.pixmap(size);
    pixmap.setDevicePixelRatio(1); // Another one with Qt::AA_UseHighDpiPixmaps.
    return pixmap.toImage();
}
