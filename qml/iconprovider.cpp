#include "iconprovider.h"

#include "icontheme.h"
#include "imagestore.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QQmlEngine>
#include <QSemaphore>
#include <QThread>
#include <QUrlQuery>

#include <iterator>

namespace {

constexpr int defaultExtent = 64;
constexpr int largestExtent = 4096;
constexpr qint64 mostPixels = Q_INT64_C(32) * 1024 * 1024;

// Each dark enough for a white letter.
constexpr QRgb tileColors[] = { 0xff3b6fd4, 0xff0f7c8f, 0xff2e7d4f, 0xff8a5a12, 0xffb4472f,
                                0xffb03a73, 0xff7a4fc2, 0xff4a5fa8, 0xff56701c, 0xff8d4b94 };

// The side of a square icon. A sourceSize may have one side only.
int extent(const QSize &requested)
{
    const int least = qMin(requested.width(), requested.height());
    const int asked = least > 0 ? least : qMax(requested.width(), requested.height());
    return asked > 0 ? qMin(asked, largestExtent) : defaultExtent;
}

QSize fitted(const QSize &size, const QSize &requested)
{
    const auto side
            = [](int asked) { return asked > 0 ? qMin(asked, largestExtent) : largestExtent; };
    const QSize room(side(requested.width()), side(requested.height()));
    const bool isAsked = requested.width() > 0 || requested.height() > 0;
    if (!isAsked && size.width() <= room.width() && size.height() <= room.height())
        return size;
    return size.scaled(room, Qt::KeepAspectRatio).expandedTo({ 1, 1 });
}

QImage scaled(const QImage &image, const QSize &size)
{
    if (image.isNull() || image.size() == size)
        return image;
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// The file of that path, or with an ending of pictures; nothing else than regular files.
QString pictureFile(const QString &path)
{
    for (const char *ending : { "", ".svg", ".png", ".xpm" }) {
        const QString file = path + QLatin1String(ending);
        if (QFileInfo(file).isFile())
            return file;
    }
    return {};
}

QImage readFile(const QString &path, QSize *size, const QSize &requested)
{
    const QString file = pictureFile(path);
    if (file.isEmpty())
        return {};
    QImageReader reader(file);
    reader.setDecideFormatFromContent(true);
    *size = reader.size();
    const bool isScalable = reader.format().startsWith("svg");
    if (size->isEmpty() || (!isScalable && qint64(size->width()) * size->height() > mostPixels))
        return {};
    const QSize wanted = fitted(*size, requested);
    if (isScalable || wanted.width() < size->width())
        reader.setScaledSize(wanted);
    return scaled(reader.read(), wanted);
}

// How well an icon of a folder like "48x48" or "scalable" suits: less is better, and a larger one is
// better than a smaller one.
int misfit(const QString &folder, int extent)
{
    const int own = folder.section(QLatin1Char('x'), 0, 0).toInt();
    if (own == 0 || own >= extent)
        return qMax(0, own - extent);
    return largestExtent + extent - own;
}

// Tray items bring folders with icons, either flat or like a theme but without the index of one.
QString fileInFolder(const QString &folder, const QString &name, int extent)
{
    QString best = pictureFile(folder + QLatin1Char('/') + name);
    if (!best.isEmpty())
        return best;
    int leastMisfit = INT_MAX;
    int left = 1000; // Folders, so that no tree holds up the shell.
    const QDir::Filters folders = QDir::Dirs | QDir::NoDotAndDotDot;
    QDirIterator sizes(folder + QLatin1String("/hicolor"), folders);
    while (sizes.hasNext() && left-- > 0) {
        QDirIterator contexts(sizes.next(), folders);
        const int itsMisfit = misfit(sizes.fileName(), extent);
        while (contexts.hasNext() && left-- > 0) {
            const QString file = pictureFile(contexts.next() + QLatin1Char('/') + name);
            if (!file.isEmpty() && itsMisfit < leastMisfit) {
                leastMisfit = itsMisfit;
                best = file;
            }
        }
    }
    return best;
}

// Whether all that is to be seen has one grey, as icons for panels of one colour scheme have.
bool isOfOneGrey(const QImage &picture)
{
    const QImage image = picture.convertToFormat(QImage::Format_ARGB32);
    int darkest = 255;
    int lightest = 0;
    bool hasShape = false;
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(line[x]) < 128) {
                hasShape = true;
                continue;
            }
            const auto [least, most]
                    = std::minmax({ qRed(line[x]), qGreen(line[x]), qBlue(line[x]) });
            darkest = qMin(darkest, least);
            lightest = qMax(lightest, most);
        }
    }
    return hasShape && lightest - darkest < 40;
}

QImage painted(const QImage &picture, const QColor &color)
{
    QImage image = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

QColor tileColor(const QString &label)
{
    if (label.isEmpty())
        return { 128, 128, 128, 96 };
    const QByteArray bytes = label.toUtf8();
    const uint sum = qChecksum(bytes.constData(), static_cast<uint>(bytes.size()));
    return tileColors[sum % std::size(tileColors)];
}

QImage tile(const QString &label, int extent)
{
    QImage image(extent, extent, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);

    const QColor color = tileColor(label);
    QLinearGradient shade(0, 0, 0, extent);
    shade.setColorAt(0, color.lighter(112));
    shade.setColorAt(1, color);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(shade);
    painter.drawRoundedRect(image.rect(), extent * 0.24, extent * 0.24);

    const QVector<uint> letters = label.trimmed().toUcs4();
    const QString letter = QString::fromUcs4(letters.constData(), qMin(1, letters.size()));
    QFont font;
    font.setPixelSize(qMax(1, extent / 2));
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(image.rect(), Qt::AlignCenter, letter.toUpper());
    return image;
}

QString decoded(const QString &text)
{
    return QUrl::fromPercentEncoding(text.toUtf8());
}

} // namespace

IconProvider::IconProvider(const QQmlEngine *engine)
    : QQuickImageProvider(QQuickImageProvider::Image)
{
    QObject::connect(engine, &QObject::destroyed, engine, [ends = _engineEnds] { *ends = true; });
}

QImage IconProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const QString path = id.section(QLatin1Char('?'), 0, 0);
    const QUrlQuery query(id.section(QLatin1Char('?'), 1));
    const auto part = [&query](const char *name) {
        return query.queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
    };

    const QString name = path.section(QLatin1Char('/'), 1, 1);
    QSize own;
    QImage image;
    if (path.startsWith(QLatin1String("pixels/"))) {
        image = ImageStore::find(path);
        own = image.size();
        image = scaled(image, fitted(own, requestedSize));
    } else {
        image = _icon(path.section(QLatin1Char('/'), 1), &own, requestedSize);
    }

    if (image.isNull())
        image = tile(part("label"), extent(requestedSize));
    else if (const QColor color(part("color"));
             color.isValid() && (name.endsWith(QLatin1String("-symbolic")) || isOfOneGrey(image)))
        image = painted(image, color);
    if (size)
        *size = own.isEmpty() ? image.size() : own;
    return image;
}

QImage IconProvider::_icon(const QString &id, QSize *size, const QSize &requestedSize) const
{
    // What iconSource() makes is encoded twice. A path that is written by hand comes as it is.
    QString name = decoded(id);
    const bool isPath
            = name.startsWith(QLatin1Char('/')) || name.startsWith(QLatin1String("file:"));
    if (!isPath)
        name = decoded(decoded(id.section(QLatin1Char('/'), 0, 0)));
    if (name.startsWith(QLatin1String("file:")))
        name = QUrl(name).toLocalFile();
    if (name.startsWith(QLatin1Char('/')))
        return readFile(name, size, requestedSize);

    const QString folder
            = isPath ? QString() : decoded(decoded(id.section(QLatin1Char('/'), 1, 1)));
    if (folder.startsWith(QLatin1Char('/'))) {
        const QImage image
                = readFile(fileInFolder(folder, name, extent(requestedSize)), size, requestedSize);
        if (!image.isNull())
            return image;
    }
    const QSize square = QSize(1, 1) * extent(requestedSize);
    const QImage image = _themeIcon(name, square);
    return scaled(image, fitted(image.size(), square));
}

QImage IconProvider::_themeIcon(const QString &name, const QSize &size) const
{
    if (QThread::currentThread() == qApp->thread())
        return themeIcon(name, size);

    // The themes belong to the GUI thread. It does not answer while it ends the engine and waits for
    // this thread.
    struct Answer
    {
        QImage image;
        QSemaphore ready;
    };
    const auto answer = std::make_shared<Answer>();
    QMetaObject::invokeMethod(qApp, [answer, name, size] {
        answer->image = themeIcon(name, size);
        answer->ready.release();
    });
    while (!answer->ready.tryAcquire(1, 50)) {
        if (*_engineEnds)
            return {};
    }
    return answer->image;
}
