#include "wire.h"

#include <quorvaneshell/menus/menuclient_p.h>
#include <quorvaneshell/menus/traymenu.h>

#include <QAbstractItemModelTester>
#include <QtDBus>

using namespace quorvane;

// An item as a program sends it, with children of any type.
struct SentItem
{
    int id;
    QVariantMap properties;
    QVariantList children;
};
Q_DECLARE_METATYPE(SentItem)

static QDBusArgument &operator<<(QDBusArgument &argument, const SentItem &item)
{
    argument.beginStructure();
    argument << item.id << item.properties << item.children;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, SentItem &)
{
    return argument;
}

static QVariant anyValue(FuzzedDataProvider &input)
{
    const auto bytes = QByteArray::fromStdString(input.ConsumeRandomLengthString(40));
    const QVariantList values { 1,
                                1.5,
                                true,
                                "separator",
                                "submenu",
                                "radio",
                                QStringList("a"),
                                bytes,
                                "\x89PNG\r\n\x1a\n" + bytes,
                                QVariantMap { { "c", 3 } } };
    return values.at(input.ConsumeIntegralInRange(0, values.size() - 1));
}

static SentItem anyItem(FuzzedDataProvider &input, int depth = 0)
{
    static const QStringList names { "type",      "enabled",          "visible",
                                     "icon-name", "icon-data",        "toggle-type",
                                     "shortcut",  "children-display", "toggle-state" };
    SentItem item { input.ConsumeIntegralInRange(-1, 12), {}, {} };
    item.properties.insert("label", QString::number(item.id));
    for (int left = input.ConsumeIntegralInRange(0, 3); left > 0; --left)
        item.properties.insert(names.at(input.ConsumeIntegralInRange(0, names.size() - 1)),
                               anyValue(input));
    for (int left = input.ConsumeIntegralInRange(0, 5); depth < 18 && left > 0; --left) {
        const bool odd = input.ConsumeIntegralInRange(0, 4) == 4;
        item.children += odd ? anyValue(input) : QVariant::fromValue(anyItem(input, depth + 1));
    }
    return item;
}

// The model has the rows of the layout, in its order, and each id once.
static void compare(TrayMenu *menu, const MenuItem &item, QSet<int> *ids, int depth = 0)
{
    require(menu->count() == int(item.children.size()) && depth <= 16);
    if (!menu->findChild<QAbstractItemModelTester *>(QString(), Qt::FindDirectChildrenOnly))
        new QAbstractItemModelTester(menu, QAbstractItemModelTester::FailureReportingMode::Fatal,
                                     menu);
    for (int row = 0; row < menu->count(); ++row) {
        const MenuItem &child = item.children[size_t(row)];
        require(child.id > 0 && !ids->contains(child.id));
        ids->insert(child.id);
        require(menu->get(row)["label"] == QString::number(child.id));
        require(menu->get(row)["enabled"] == child.properties.value("enabled", true));
        require(child.children.empty() || menu->submenu(row));
        if (menu->submenu(row))
            compare(menu->submenu(row), child, ids, depth + 1);
    }
}

// Layouts and changes of properties one after another, into a menu without a bus.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    qDBusRegisterMetaType<SentItem>();
    static Wire wire;
    FuzzedDataProvider input(data, size);
    TrayMenu menu;
    menu.setService("org.example.menu");
    menu.setPath("/menu");
    while (menu.isLoading())
        QCoreApplication::processEvents();
    auto *client = menu.findChild<MenuClient *>();
    while (input.remaining_bytes() > 0) {
        const bool odd = input.ConsumeIntegralInRange(0, 9) == 9;
        const QVariant layout = odd ? anyValue(input) : QVariant::fromValue(anyItem(input));
        const MenuItem read = readLayout(wire.send({ 1U, layout }));
        Q_EMIT client->layoutReceived(read);
        QSet<int> ids;
        compare(&menu, read, &ids);
        const MenuItem update = readLayout(wire.send({ 1U, QVariant::fromValue(anyItem(input)) }));
        for (const MenuItem &item : update.children)
            Q_EMIT client->propertiesReceived({ { item.id, item.properties } });
    }
    turnEventLoop();
    return 0;
}
