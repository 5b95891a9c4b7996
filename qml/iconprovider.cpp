#include "iconprovider.h"

#include <quorvaneshell/pictures/icontheme_p.h>
#include <quorvaneshell/pictures/imagestore_p.h>
#include <quorvaneshell/pictures/picturereader_p.h>

#include <QCoreApplication>
#include <QMutex>
#include <QPainter>
#include <QThreadPool>
#include <QUrlQuery>

#include <algorithm>
#include <atomic>
#include <iterator>
#include <memory>

using namespace quorvane;

namespace {

constexpr int defaultExtent = 64;
constexpr int largestExtent = 2048;
constexpr int largestIcon = 1024;
constexpr int threads = 2;

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

QImage fitted(const QImage &image, const QSize &room)
{
    if (image.isNull() || (room.width() <= 0 && room.height() <= 0))
        return image;
    const auto side
            = [](int asked) { return asked > 0 ? qMin(asked, largestExtent) : largestExtent; };
    const QSize size
            = image.size().scaled(side(room.width()), side(room.height()), Qt::KeepAspectRatio);
    return size == image.size() ? image
                                : image.scaled(size.expandedTo({ 1, 1 }), Qt::IgnoreAspectRatio,
                                               Qt::SmoothTransformation);
}

// Whether all that is to be seen has one grey, as icons for panels of one colour scheme have.
bool isOfOneGrey(const QImage &picture)
{
    if (qMax(picture.width(), picture.height()) > largestIcon)
        return false;
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
    uint sum = 2166136261; // FNV-1
    const QByteArray bytes = label.toUtf8();
    for (const char byte : bytes)
        sum = sum * 16777619 ^ static_cast<uchar>(byte);
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

    const char32_t character = label.trimmed().toUcs4().value(0);
    const QString letter = QString::fromUcs4(&character, character == 0 ? 0 : 1);
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

// What an id names, and how it is to be shown.
struct Request
{
    explicit Request(const QString &id);

    bool isPath() const { return icon.startsWith(QLatin1Char('/')); }

    QString icon; // A name or a path,
    QString folder;
    QString pixels; // and what is taken where there is no such icon.
    QUrlQuery query;
};

constexpr const char *parts[] = { "?color=", "?label=", "?missing=" };

// Qt has decoded a question mark of a path, too: the query is what begins with the name of a part.
int queryOf(const QString &id)
{
    int first = -1;
    for (const char *part : parts) {
        const int at = id.indexOf(QLatin1String(part));
        if (at >= 0 && (first < 0 || at < first))
            first = at;
    }
    return first;
}

// Whoever appends a part need not know whether the URL has one already.
QString joinedQuery(QString query)
{
    for (const char *part : parts) {
        const QString begun = QLatin1String(part);
        query.replace(begun, QLatin1Char('&') + begun.mid(1));
    }
    return query;
}

Request::Request(const QString &id)
{
    const int at = queryOf(id);
    query.setQuery(at < 0 ? QString() : joinedQuery(id.mid(at + 1)));
    const QString path = id.left(at < 0 ? id.size() : at);
    const QString kind = path.section(QLatin1Char('/'), 0, 0);
    const QString rest = path.section(QLatin1Char('/'), 1);
    const auto part = [&rest](int index) {
        return decoded(decoded(rest.section(QLatin1Char('/'), index, index)));
    };
    if (kind == QLatin1String("pixels")) {
        pixels = rest;
    } else if (kind == QLatin1String("themed")) {
        icon = part(0);
        folder = part(1);
        pixels = part(2);
    } else {
        icon = decoded(rest);
    }
    if (icon.startsWith(QLatin1String("file:")))
        icon = QUrl(icon).toLocalFile();
}

// A picture on its way. What asked for it may go at any time.
struct Job
{
    Job(const QString &id, const QSize &room)
        : request(id)
        , room(room)
    {
    }

    const Request request;
    const QSize room;
    IconThemes themes;
    QImage image;
    std::atomic_bool isCancelled { false };
    QMutex mutex;
    QQuickImageResponse *response = nullptr; // Null when it is gone.
};

QImage pictureOf(const Job &job)
{
    const Request &request = job.request;
    QImage image;
    if (request.isPath()) {
        image = readPictureFile(iconFileAt(request.icon), job.room);
    } else if (!request.icon.isEmpty()) {
        const int side = extent(job.room);
        if (request.folder.startsWith(QLatin1Char('/')))
            image = readPictureFile(iconFileInFolder(request.folder, request.icon, side), job.room);
        if (image.isNull())
            image = readPictureFile(iconFile(request.icon, side, job.themes), { side, side });
    }
    return image.isNull() ? fitted(ImageStore::find(request.pixels), job.room) : image;
}

QImage missing(const QString &mode, const QString &label, int extent)
{
    if (mode != QLatin1String("empty"))
        return tile(label, extent);
    QImage image(extent, extent, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QImage shown(const Job &job)
{
    const auto part = [&job](const char *name) {
        return job.request.query.queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
    };
    const QImage image = pictureOf(job);
    if (image.isNull())
        return missing(part("missing"), part("label"), extent(job.room));
    const QColor color(part("color"));
    const bool isSymbolic = job.request.icon.endsWith(QLatin1String("-symbolic"));
    return color.isValid() && (isSymbolic || isOfOneGrey(image)) ? painted(image, color) : image;
}

class Response : public QQuickImageResponse
{
    Q_OBJECT

public:
    explicit Response(const std::shared_ptr<Job> &job)
        : _job(job)
    {
        _job->response = this;
    }
    ~Response() override
    {
        const QMutexLocker lock(&_job->mutex);
        _job->response = nullptr;
    }
    Q_DISABLE_COPY(Response)

    QQuickTextureFactory *textureFactory() const override
    {
        return QQuickTextureFactory::textureFactoryForImage(_job->image);
    }
    void cancel() override { _job->isCancelled = true; }

private:
    const std::shared_ptr<Job> _job;
};

// For as long as there is an application, which fonts need.
class Readers
{
public:
    Readers()
    {
        _pool.setMaxThreadCount(threads);
        qAddPostRoutine([] {
            instance()._pool.clear();
            instance()._pool.waitForDone();
        });
    }
    static Readers &instance()
    {
        static Readers readers;
        return readers;
    }
    void start(const std::shared_ptr<Job> &job)
    {
        _pool.start([job] {
            if (!job->isCancelled)
                job->image = shown(*job);
            const QMutexLocker lock(&job->mutex);
            if (job->response)
                QMetaObject::invokeMethod(job->response, &QQuickImageResponse::finished,
                                          Qt::QueuedConnection);
        });
    }

private:
    QThreadPool _pool;
};

} // namespace

QQuickImageResponse *IconProvider::requestImageResponse(const QString &id,
                                                        const QSize &requestedSize)
{
    const auto job = std::make_shared<Job>(id, requestedSize);
    auto *response = new Response(job);
    if (job->request.isPath() || job->request.icon.isEmpty()) {
        Readers::instance().start(job);
        return response;
    }
    // Which theme there is only the GUI thread may ask. Nobody waits for its answer.
    QMetaObject::invokeMethod(
            qApp,
            [job] {
                job->themes = IconThemes::ofApplication();
                Readers::instance().start(job);
            },
            Qt::QueuedConnection);
    return response;
}

#include "iconprovider.moc"
