#include "fuzz.h"

#include <quorvaneshell/pictures/picturereader_p.h>

using namespace quorvane;

// Any data as a picture, in its own size and within a room.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const QSize room(input.ConsumeIntegralInRange(0, 300), input.ConsumeIntegralInRange(0, 300));
    const std::string rest = input.ConsumeRemainingBytesAsString();
    const QByteArray picture = QByteArray::fromStdString(rest);
    // What SVG draws with fonts needs more than this application.
    if (picture.left(1000).trimmed().startsWith('<') || picture.startsWith("\xef\xbb\xbf"))
        return 0;
    QSize own;
    const QImage image = readPicture(picture, room, &own);
    require(image.isNull() == own.isEmpty());
    require(image.sizeInBytes() <= 64 << 20);
    require(room.isEmpty() || (image.width() <= room.width() && image.height() <= room.height()));
    return 0;
}
