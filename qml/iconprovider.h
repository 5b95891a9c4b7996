#pragma once

#include <QQuickImageProvider>

#include <atomic>
#include <memory>

class QQmlEngine;

// The pictures of image://quorvane for Image, at the size in pixels that its sourceSize makes on its
// screen, in their own proportions:
//
// - icon/NAME: an icon by its name in the theme, an absolute path, or a file URL (no other scheme).
//   Paths may come without an ending, names with one: ".png", ".svg" or ".xpm".
// - icon/NAME/FOLDER: the same, but looked for in the folder first, which is flat or has the
//   folders of the theme hicolor.
// - pixels/NUMBER: a picture of ImageStore.
//
// What is missing, unreadable or too large becomes a tile, without a warning. Only regular files are
// read, and of those no more than 32 million pixels. A query behind may have two parts:
//
// - color=COLOR: the colour in which icons of one grey are shown, which are made for one colour
//   scheme: symbolic ones, and many of the tray. Other pictures stay as they are.
// - label=TEXT: the tile for a missing picture has the first letter of this, and a colour that
//   depends on it; without a label it is grey and blank.
//
// Without a sourceSize files and pixels have their own size, and the icons of themes 64 pixels.
class IconProvider : public QQuickImageProvider
{
public:
    explicit IconProvider(const QQmlEngine *engine);

    // Comes from the GUI thread, or from Qt Quick's for an asynchronous Image.
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;

private:
    QImage _icon(const QString &id, QSize *size, const QSize &requestedSize) const;
    QImage _themeIcon(const QString &name, const QSize &size) const;

    std::shared_ptr<std::atomic_bool> _engineEnds = std::make_shared<std::atomic_bool>(false);
};
