#include "picturereader_p.h"

#include "regularfile_p.h"
#include "scaledimage_p.h"
#include "svgfilter_p.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace quorvane {

namespace {

constexpr qint64 mostFileBytes = 20LL << 20;
constexpr qint64 mostBytes = 36LL << 20; // That decoding takes.
constexpr qint64 mostPixels = 9LL << 20;
constexpr qint64 mostMadePixels = 4LL << 20;     // Of what is made larger than it is, or smoothed.
constexpr qint64 mostReducedPixels = 32LL << 20; // Of what is made smaller while it is decoded.
constexpr double mostCost = 7e8;                 // Nanoseconds that drawing an SVG takes.
constexpr int longestSide = 1 << 16;
constexpr int largestXpmSide = 1024;
constexpr int mostXpmBytes = 2 << 20;
constexpr int mostXpmColors = 8192;
constexpr int mostScans = 64;

// A picture as it may be given to Qt.
struct Picture
{
    QByteArray format;
    QByteArray data;
    QSize size;
    qint64 bytes = 0;         // What decoding in its own size takes, or at least takes.
    bool isReducible = false; // Qt makes it smaller line by line.
    bool isScalable = false;
    double weight = 1; // Of a scalable one: nanoseconds for each pixel.
};

QSize limited(const QSize &size, double mostPixels)
{
    const double pixels = double(size.width()) * size.height();
    const QSize smaller
            = pixels > mostPixels ? (QSizeF(size) * std::sqrt(mostPixels / pixels)).toSize() : size;
    return smaller.expandedTo({ 1, 1 });
}

// The picture's own size, or as large as fits into the room.
QSize shownSize(const QSize &own, const QSize &room)
{
    const QSize size = fittedSize(own, room);
    const bool isMade = size.width() > own.width();
    return limited(size, double(isMade ? mostMadePixels : mostPixels));
}

// Moves the parts of data that are kept to its beginning, so that there is no second copy.
class Parts
{
public:
    explicit Parts(QByteArray &data)
        : _data(data)
        , _start(data.data())
    {
    }
    void keep(int from, int size)
    {
        std::memmove(_start + _kept, _start + from, size_t(size));
        _kept += size;
    }
    void finish() { _data.truncate(_kept); }

private:
    QByteArray &_data;
    char *_start;
    int _kept = 0;
};

template<typename Number>
int bigEndian(const QByteArray &data, int at)
{
    return int(qFromBigEndian<Number>(data.constData() + at));
}

int littleEndian(const QByteArray &data, int at, int bytes)
{
    int number = 0;
    for (int i = 0; i < bytes; ++i)
        number |= uchar(data.at(at + i)) << (8 * i);
    return number;
}

const char pngStart[] = "\x89PNG\r\n\x1a\n";

// Keeps only the chunks that make the picture: texts and profiles may be packed a thousand times.
Picture png(QByteArray data)
{
    constexpr int start = 8;
    constexpr int frame = 12; // Length, type and checksum of a chunk.
    if (data.size() < start + frame + 13 || data.mid(start, 8) != QByteArray("\0\0\0\rIHDR", 8))
        return {};
    Picture picture;
    picture.format = "png";
    picture.size = { bigEndian<quint32>(data, 16), bigEndian<quint32>(data, 20) };
    if (picture.size.isEmpty() || qMax(picture.size.width(), picture.size.height()) > longestSide)
        return {};
    const bool isDeep = data.at(24) == 16;
    const bool isTrueColor = data.at(25) == 2 || data.at(25) == 6;
    const bool isInterlaced = data.at(28) != 0;
    picture.isReducible = isTrueColor && !isDeep && !isInterlaced;
    picture.bytes = qint64(picture.size.width()) * picture.size.height() * (isDeep ? 8 : 4);

    static const QByteArrayList kept { "IHDR", "PLTE", "tRNS", "gAMA",
                                       "cHRM", "sRGB", "IDAT", "IEND" };
    Parts parts(data);
    parts.keep(0, start);
    for (int at = start; at <= data.size() - frame;) {
        // What is cut short is shown as far as it goes.
        const qint64 size = frame + qint64(quint32(bigEndian<quint32>(data, at)));
        const int present = int(qMin(size, qint64(data.size() - at)));
        if (kept.contains(data.mid(at + 4, 4)))
            parts.keep(at, present);
        at += present;
    }
    parts.finish();
    picture.data = data;
    return picture;
}

// The end of a scan: the next marker that is neither a stuffed byte nor a restart.
int scanEnd(const QByteArray &data, int at)
{
    for (; at + 1 < data.size(); ++at) {
        const uchar next = uchar(data.at(at + 1));
        if (uchar(data.at(at)) == 0xff && next != 0 && (next < 0xd0 || next > 0xd7))
            return at;
    }
    return data.size();
}

// What a frame of several scans keeps of all its components until the last one.
qint64 coefficientBytes(const QByteArray &data, int frame, int components, const QSize &size)
{
    int all = 0;
    int most = 1;
    for (int i = 0; i < components; ++i) {
        const uchar sampling = uchar(data.at(frame + 11 + 3 * i));
        const int samples = (sampling >> 4) * (sampling & 0xf);
        all += samples;
        most = qMax(most, samples);
    }
    return 2 * qint64(size.width()) * size.height() * all / most;
}

// Keeps the segments without comments and those of applications, but for the two that say what the
// colours are.
Picture jpeg(QByteArray data)
{
    enum Marker {
        Frame = 0xc0,
        ProgressiveFrame = 0xc2,
        Tables = 0xc4,
        Arithmetic = 0xcc,
        LastFrame = 0xcf,
        End = 0xd9,
        Scan = 0xda,
        Application = 0xe0,
        Adobe = 0xee,
        LastApplication = 0xef,
        Comment = 0xfe
    };
    Picture picture;
    picture.format = "jpeg";
    qint64 coefficients = 0;
    bool isProgressive = false;
    int components = 0;
    int scans = 0;
    Parts parts(data);
    parts.keep(0, 2);
    for (int at = 2; at + 4 <= data.size();) {
        const int marker = uchar(data.at(at + 1));
        if (uchar(data.at(at)) != 0xff)
            return {};
        if (marker == 0xff) { // Fills.
            ++at;
            continue;
        }
        const int size = 2 + bigEndian<quint16>(data, at + 2);
        if (marker == End || size > data.size() - at)
            break;
        if (marker >= Frame && marker <= LastFrame && marker != Tables) {
            components = size > 9 ? uchar(data.at(at + 9)) : 0;
            // One frame, coded by Huffman's method, of one colour or more.
            if (marker > ProgressiveFrame || !picture.size.isEmpty() || components == 0
                || components > 4 || size < 10 + 3 * components)
                return {};
            isProgressive = marker == ProgressiveFrame;
            picture.size = { bigEndian<quint16>(data, at + 7), bigEndian<quint16>(data, at + 5) };
            coefficients = coefficientBytes(data, at, components, picture.size);
        }
        if (marker == Scan && ++scans > mostScans)
            return {};
        const int end = marker == Scan ? scanEnd(data, at + size) : at + size;
        const bool isExtra
                = marker == Comment
                  || (marker > Application && marker <= LastApplication && marker != Adobe);
        if (!isExtra)
            parts.keep(at, end - at);
        at = end;
    }
    parts.finish();
    picture.data = data.append("\xff\xd9");
    if (isProgressive || scans > 1)
        picture.bytes = coefficients;
    return picture;
}

// Of an animation the first picture; and nothing but the chunks that make a picture.
Picture webp(const QByteArray &data)
{
    Picture picture;
    picture.format = "webp";
    QByteArray alpha;
    for (int at = 12; at <= data.size() - 8;) {
        const QByteArray type = data.mid(at, 4);
        const auto size = quint32(littleEndian(data, at + 4, 4));
        if (type == "ANMF") { // Its own chunks stand behind its header.
            at += 8 + 16;
            continue;
        }
        if (size > quint32(data.size() - at - 8))
            return {};
        const QByteArray chunk = data.mid(at, 8 + int(size)) + QByteArray(int(size & 1), '\0');
        at += chunk.size();
        if (type == "ALPH") {
            alpha = chunk;
        } else if (type == "VP8 " && size >= 10) {
            picture.size
                    = { littleEndian(chunk, 14, 2) & 0x3fff, littleEndian(chunk, 16, 2) & 0x3fff };
            picture.data = alpha + chunk;
        } else if (type == "VP8L" && size >= 5) {
            const auto bits = quint32(littleEndian(chunk, 9, 4));
            picture.size = { int(bits & 0x3fff) + 1, int(bits >> 14 & 0x3fff) + 1 };
            alpha.clear();
            picture.data = chunk;
        } else {
            continue;
        }
        break;
    }
    if (picture.size.isEmpty())
        return {};
    const auto number = [](int value, int bytes) {
        const quint32 bits = qToLittleEndian(quint32(value));
        return QByteArray(reinterpret_cast<const char *>(&bits), bytes);
    };
    if (!alpha.isEmpty()) {
        constexpr char hasAlpha = 0x10;
        picture.data.prepend("VP8X" + number(10, 4) + QByteArray(1, hasAlpha) + QByteArray(3, '\0')
                             + number(picture.size.width() - 1, 3)
                             + number(picture.size.height() - 1, 3));
    }
    picture.data.prepend("RIFF" + number(picture.data.size() + 4, 4) + "WEBP");
    picture.bytes = 8 * qint64(picture.size.width()) * picture.size.height();
    return picture;
}

// The first text in it says width, height, colours and characters of a colour.
Picture xpm(const QByteArray &data)
{
    Picture picture;
    picture.format = "xpm";
    const int from = data.indexOf('"') + 1;
    const QList<QByteArray> parts
            = data.mid(from, qMin(data.indexOf('"', from) - from, 100)).simplified().split(' ');
    if (from == 0 || data.size() > mostXpmBytes || parts.size() < 4)
        return {};
    picture.size = { parts.at(0).toInt(), parts.at(1).toInt() };
    const bool isSmall = qMax(picture.size.width(), picture.size.height()) <= largestXpmSide
                         && parts.at(2).toInt() <= mostXpmColors && parts.at(3).toInt() <= 4;
    picture.data = data;
    return isSmall ? picture : Picture();
}

QImage decoded(Picture picture, const QSize &size)
{
    QBuffer buffer(&picture.data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, picture.format);
    reader.setAutoDetectImageFormat(false);
    if (size != picture.size || picture.isScalable)
        reader.setScaledSize(size);
    return reader.read();
}

bool isPngStart(const QByteArray &data)
{
    return data.startsWith(pngStart);
}

bool isJpegStart(const QByteArray &data)
{
    return data.startsWith("\xff\xd8\xff");
}

Picture svg(const QByteArray &data)
{
    qint64 left = mostMadePixels; // Of all pictures in it.
    const auto readImage = [&left](const QByteArray &image) {
        Picture part;
        if (isPngStart(image))
            part = png(image);
        else if (isJpegStart(image))
            part = jpeg(image);
        left -= qint64(part.size.width()) * part.size.height();
        return left >= 0 && !part.size.isEmpty() ? decoded(part, part.size) : QImage();
    };
    const SvgPicture svg = filteredSvg(data, readImage);
    Picture picture;
    picture.format = "svg";
    picture.data = svg.text;
    picture.size = svg.size.toSize().expandedTo({ 1, 1 });
    picture.isScalable = true;
    picture.weight = svg.weight;
    return svg.text.isEmpty() ? Picture() : picture;
}

Picture recognised(const QByteArray &data)
{
    if (isPngStart(data))
        return png(data);
    if (isJpegStart(data))
        return jpeg(data);
    if (data.startsWith("RIFF") && data.mid(8, 4) == "WEBP")
        return webp(data);
    if (data.startsWith("/* XPM"))
        return xpm(data);
    return svg(data);
}

// The size in which Qt shall decode it.
QSize decodedSize(const Picture &picture, const QSize &wanted)
{
    if (picture.isScalable)
        return limited(wanted, qMin(double(mostMadePixels), mostCost / picture.weight));
    if (picture.isReducible && wanted.width() < picture.size.width())
        return wanted;
    if (picture.format != "jpeg")
        return picture.size;
    // What comes out of the decoder at once: larger than wanted, but not too large.
    QSize size = picture.size;
    for (int part : { 2, 4, 8 }) {
        const QSize smaller((picture.size.width() + part - 1) / part,
                            (picture.size.height() + part - 1) / part);
        const bool isEnough
                = smaller.width() >= wanted.width() && smaller.height() >= wanted.height();
        if (isEnough || qint64(size.width()) * size.height() > mostPixels)
            size = smaller;
    }
    return size;
}

bool isAffordable(const Picture &picture, const QSize &decoded)
{
    const qint64 pixels = qint64(picture.size.width()) * picture.size.height();
    const qint64 bytes = 4 * qint64(decoded.width()) * decoded.height();
    return pixels <= mostReducedPixels && bytes <= mostBytes
           && (picture.isReducible || picture.bytes <= mostBytes);
}

} // namespace

QImage readPicture(const QByteArray &data, const QSize &room, QSize *own)
{
    Picture picture = recognised(data);
    if (picture.size.isEmpty())
        return {};
    const QSize wanted = shownSize(picture.size, room);
    const QSize size = decodedSize(picture, wanted);
    if (!picture.isScalable && !isAffordable(picture, size))
        return {};
    const QSize itsOwn = picture.size;
    // What had to be decoded smaller than wanted stays so.
    const bool isShort = !picture.isScalable && size != itsOwn && size.width() < wanted.width();
    QImage image = decoded(std::move(picture), size);
    if (image.isNull())
        return {};
    if (own)
        *own = itsOwn;
    return isShort ? image : scaledImage(std::move(image), wanted);
}

QImage readPictureFile(const QString &path, const QSize &room, QSize *own)
{
    return readPicture(readRegularFile(path, mostFileBytes), room, own);
}

} // namespace quorvane
