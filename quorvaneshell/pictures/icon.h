#pragma once

#include <quorvaneshell/quorvaneshell_export.h>

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QObject>
#include <QSize>
#include <QStringList>

#include <functional>

namespace quorvane {

/*! \ingroup shell
    \brief The icon of a role iconSource, for everything of Qt that shows a QIcon.

    \a source is such a URL, with any of its parts `?color=`, `?label=` and `?missing=`, or a name in
    the icon theme, an absolute path, or a file URL. \a label and \a color say the same as the parts
    and are taken in their place: the tile for a missing icon has the first letter of the label, and
    icons of a single grey are shown in the colour. An empty source gives a null icon.

    Making the icon reads nothing. It is found and read when it is painted, in the size of that in
    pixels, fractional ratios of a screen included, and in its own proportions; actualSize() is
    always the size that is asked for, and disabled and selected icons are made by the style.

    Files are read in threads, within these limits: regular files of up to 20 MB with PNG, JPEG,
    WebP, XPM or SVG, each of which takes a second and 64 MB at most. Painting waits for them, so
    that most icons are there at once, but never long: 30 ms for one icon, and for all together
    100 ms, which are regained at a fifth of the time that passes. What takes longer is shown as its
    tile meanwhile, and IconWatcher tells when it has come. ListModel, and so each model of this
    library, announces Qt::DecorationRole then by itself.

    Painting an icon again reads nothing: 64 MB of pixels are kept, those that were used last. They
    are dropped when QIcon::themeName() or another of its settings for themes has changed, so that
    the next painting shows the new theme. A picture that was replaced has another source. What was
    missing is looked for again when it is painted more than two seconds later.

    For the GUI thread, as all of QIcon. */
QUORVANE_SHELL_EXPORT QIcon icon(const QString &source, const QString &label = {},
                                 const QColor &color = {});

/*! \ingroup shell
    \brief Reads the picture of a source, as icon() takes it, in a thread, and gives it to a function.

    The picture is as large as fits into \a size in pixels, in its own proportions. One side may be 0
    for any length; without a size files and pictures from the bus have their own, and icons of themes
    64 pixels. What is missing, unreadable or beyond the limits of icon() comes as a tile, or empty
    with `?missing=empty`, never null.

    \a done is called once, in the thread that calls this, which needs an event loop, and never before
    this returns. It is not called when \a context, an object of that thread, has gone by then; what
    nobody waits for any more is not read. Any thread may call this while there is an application. */
QUORVANE_SHELL_EXPORT void readIcon(const QString &source, const QSize &size, QObject *context,
                                    std::function<void(const QImage &)> done);

/*! \ingroup shell
    \brief Tells when icons that were painted as a tile, because reading them took long, have come.

    A button, for instance, has its QWidget::update() connected to iconsRead(); a model of one's own
    announces Qt::DecorationRole.

    For the GUI thread. */
class QUORVANE_SHELL_EXPORT IconWatcher : public QObject
{
    Q_OBJECT

public:
    explicit IconWatcher(QObject *parent = nullptr);

Q_SIGNALS:
    /*! Icons with these sources look otherwise from now on: what shows one of them is to be painted
        again. Once for all that came in a turn of the event loop. */
    void iconsRead(const QStringList &sources);
};

} // namespace quorvane
