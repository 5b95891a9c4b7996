#include "wire.h"

#include <quorvaneshell/tray/trayaddress_p.h>
#include <quorvaneshell/tray/trayitems_p.h>
#include <quorvaneshell/tray/trayvalues_p.h>

#include <dbus/dbus.h>

using namespace quorvane;

// Pictures whose bytes need not be as many as their sizes take.
struct Picture
{
    int width;
    int height;
    QByteArray pixels;
};
Q_DECLARE_METATYPE(Picture)

struct ToolTip
{
    QString icon;
    QList<Picture> pictures;
    QString title;
    QString body;
};
Q_DECLARE_METATYPE(ToolTip)

static QDBusArgument &operator<<(QDBusArgument &argument, const Picture &picture)
{
    argument.beginStructure();
    argument << picture.width << picture.height << picture.pixels;
    argument.endStructure();
    return argument;
}
static const QDBusArgument &operator>>(const QDBusArgument &argument, Picture &)
{
    return argument;
}
static QDBusArgument &operator<<(QDBusArgument &argument, const ToolTip &tip)
{
    argument.beginStructure();
    argument << tip.icon << tip.pictures << tip.title << tip.body;
    argument.endStructure();
    return argument;
}
static const QDBusArgument &operator>>(const QDBusArgument &argument, ToolTip &)
{
    return argument;
}

static QString anyText(FuzzedDataProvider &input)
{
    return QString::fromStdString(input.ConsumeRandomLengthString(60)).remove(QChar(0));
}

static QList<Picture> anyPictures(FuzzedDataProvider &input)
{
    QList<Picture> pictures;
    for (int left = input.ConsumeIntegralInRange(0, 3); left > 0; --left) {
        Picture picture { input.ConsumeIntegralInRange(-1, 40), input.ConsumeIntegral<qint8>(), {} };
        const int odd = input.ConsumeBool() ? 0 : input.ConsumeIntegralInRange(-1, 1);
        picture.pixels.fill('x', qMax(0, 4 * picture.width * picture.height + odd));
        pictures += picture;
    }
    return pictures;
}

static QVariant anyValue(FuzzedDataProvider &input)
{
    switch (input.ConsumeIntegralInRange(0, 6)) {
    case 0:
        return anyText(input);
    case 1:
        return QVariant::fromValue(anyPictures(input));
    case 2:
        return QVariant::fromValue(
                ToolTip { anyText(input), anyPictures(input), anyText(input), anyText(input) });
    case 3:
        return input.ConsumeBool();
    case 4:
        return QVariant::fromValue(QDBusObjectPath(input.ConsumeBool() ? "/" : "/menu"));
    case 5:
        return QVariantMap { { "a", 1 } };
    default:
        return input.ConsumeIntegral<int>();
    }
}

// Texts that register: what is taken for an address is one to libdbus, which ends the process over
// others, and nothing stays in the list without a bus.
static void tryToRegister(const QString &text)
{
    const TrayAddress item = TrayAddress::fromText(text, ":1.5");
    require(!item.isValid()
            || (dbus_validate_bus_name(item.service.toUtf8(), nullptr)
                && dbus_validate_path(item.path.toUtf8(), nullptr)));
    TrayItems items;
    items.add(item);
    items.add(item, ":1.5");
    turnEventLoop();
    require(items.items().isEmpty());
}

// Answers of an item to GetAll, and what it registers as.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    qDBusRegisterMetaType<Picture>();
    qDBusRegisterMetaType<QList<Picture>>();
    qDBusRegisterMetaType<ToolTip>();
    static Wire wire;
    static const char *const names[] = { "Id",
                                         "Title",
                                         "Status",
                                         "Category",
                                         "IconName",
                                         "IconPixmap",
                                         "AttentionIconPixmap",
                                         "OverlayIconName",
                                         "ToolTip",
                                         "IconThemePath",
                                         "XAyatanaLabel",
                                         "Menu",
                                         "ItemIsMenu",
                                         "Other" };
    FuzzedDataProvider input(data, size);
    tryToRegister(anyText(input));
    QVariantMap properties;
    for (const char *name : names) {
        if (input.ConsumeBool())
            properties.insert(name, anyValue(input));
    }
    const QVariant sent = input.ConsumeIntegralInRange(0, 9) == 9 ? anyValue(input) : properties;
    const TrayValues values = readTrayValues(wire.send({ sent }));
    for (const QString &text : { values.id, values.title, values.category, values.label })
        require(text.size() <= 1000);
    require(values.menuPath.isEmpty() || isObjectPath(values.menuPath));
    require(values.icon.image.width() <= 1024 && values.overlay.image.height() <= 1024);
    require(values.status >= Tray::Passive && values.status <= Tray::NeedsAttention);
    return 0;
}
