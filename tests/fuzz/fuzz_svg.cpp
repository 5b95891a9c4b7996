#include "fuzz.h"

#include <quorvaneshell/pictures/picturereader_p.h>
#include <quorvaneshell/pictures/svgfilter_p.h>

#include <QXmlStreamReader>

#include <cmath>

using namespace quorvane;

// Any text as an SVG: what is left of it refers to nothing but itself, and can be drawn.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(data), int(size));
    const auto readImage = [](const QByteArray &) { return QImage(1, 1, QImage::Format_RGB32); };
    const SvgPicture svg = filteredSvg(text, readImage);
    if (svg.text.isEmpty())
        return 0;
    require(std::isfinite(svg.weight) && svg.weight >= 1 && !svg.size.isEmpty());
    bool hasText = false;
    QXmlStreamReader reader(svg.text);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        hasText = hasText || reader.name().startsWith(QLatin1Char('t'));
        const QXmlStreamAttributes attributes = reader.attributes();
        for (const QXmlStreamAttribute &attribute : attributes) {
            const QString value = attribute.value().toString();
            require(attribute.name() != QLatin1String("href") || value.startsWith('#')
                    || value.startsWith("data:image/png;base64,"));
            require(!attribute.name().startsWith(QLatin1String("on"))
                    && attribute.name() != QLatin1String("style"));
        }
    }
    require(!reader.hasError());
    if (!hasText) // Fonts need more than this application.
        readPicture(text, { 16, 16 });
    return 0;
}
