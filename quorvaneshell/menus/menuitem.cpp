#include "menuitem_p.h"

#include <quorvaneshell/bus/dictionary_p.h>

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QSet>
#include <QtEndian>

#include <algorithm>

namespace quorvane {

namespace {

constexpr int maximalItems = 2000;
constexpr int maximalDepth = 16;
constexpr int maximalProperties = 64;
constexpr int maximalText = 1000;
constexpr int maximalKeys = 8;
constexpr int maximalPictureBytes = 1 << 20;
constexpr quint32 maximalPictureSide = 512;
constexpr qint64 maximalPixels = 4 << 20;
constexpr qint64 maximalBytes = 4 << 20;

const auto itemSignature = QLatin1String("(ia{sv}av)");

// Reads one message. Qt takes the type of each value for granted, so nothing is read before its
// signature is known to be right, and what a message may cost is counted over the whole of it.
class Reader
{
public:
    MenuItem item(const QDBusArgument &argument, int depth = 0);
    QHash<int, QVariantMap> updates(const QDBusArgument &changed, const QDBusArgument &removed);

private:
    std::vector<MenuItem> _children(const QDBusArgument &argument, int depth);
    QVariantMap _properties(const QDBusArgument &argument);
    QVariant _value(const QString &name, const QVariant &value);
    bool _isAffordable(const QByteArray &png);
    static QString _shortcut(const QDBusArgument &argument);

    int _itemsLeft = maximalItems;
    qint64 _pixelsLeft = maximalPixels;
    qint64 _bytesLeft = maximalBytes;
    QSet<int> _ids { 0 };
};

MenuItem Reader::item(const QDBusArgument &argument, int depth)
{
    MenuItem item;
    argument.beginStructure();
    argument >> item.id;
    const bool isNew = depth == 0 || (item.id > 0 && !_ids.contains(item.id));
    if (isNew) {
        _ids.insert(item.id);
        item.properties = _properties(argument);
        item.children = _children(argument, depth + 1);
    } else {
        item.id = 0;
    }
    argument.endStructure(); // Else the message stays in memory.
    return item;
}

std::vector<MenuItem> Reader::_children(const QDBusArgument &argument, int depth)
{
    std::vector<MenuItem> children;
    argument.beginArray();
    while (depth <= maximalDepth && !argument.atEnd() && _itemsLeft-- > 0) {
        QDBusVariant variant;
        argument >> variant;
        const QVariant value = variant.variant();
        if (value.userType() != qMetaTypeId<QDBusArgument>())
            continue;
        const auto structure = value.value<QDBusArgument>();
        if (structure.currentSignature() != itemSignature)
            continue;
        MenuItem child = item(structure, depth);
        if (child.id > 0)
            children.push_back(std::move(child));
    }
    argument.endArray();
    return children;
}

QVariantMap Reader::_properties(const QDBusArgument &argument)
{
    QVariantMap properties;
    readDictionary(argument, maximalProperties, [&](const QString &name, const QVariant &value) {
        const QVariant accepted = _value(name, value);
        if (accepted.isValid())
            properties.insert(name, accepted);
    });
    return properties;
}

QVariant Reader::_value(const QString &name, const QVariant &value)
{
    static const QHash<QString, int> types {
        { QStringLiteral("type"), QMetaType::QString },
        { QStringLiteral("label"), QMetaType::QString },
        { QStringLiteral("enabled"), QMetaType::Bool },
        { QStringLiteral("visible"), QMetaType::Bool },
        { QStringLiteral("icon-name"), QMetaType::QString },
        { QStringLiteral("icon-data"), QMetaType::QByteArray },
        { QStringLiteral("toggle-type"), QMetaType::QString },
        { QStringLiteral("toggle-state"), QMetaType::Int },
        { QStringLiteral("children-display"), QMetaType::QString },
        { QStringLiteral("shortcut"), qMetaTypeId<QDBusArgument>() },
    };
    const int type = value.userType();
    if (types.value(name, QMetaType::UnknownType) != type)
        return {};
    if (type == QMetaType::QString)
        return value.toString().left(maximalText);
    if (type == QMetaType::QByteArray && !_isAffordable(value.toByteArray()))
        return {};
    if (type == qMetaTypeId<QDBusArgument>())
        return _shortcut(value.value<QDBusArgument>());
    return value;
}

// The size of the picture stands at the beginning, where looking costs nothing.
bool Reader::_isAffordable(const QByteArray &png)
{
    constexpr int widthAt = 16;
    constexpr int heightAt = 20;
    constexpr int headerSize = 24;
    if (png.size() < headerSize || png.size() > maximalPictureBytes
        || !png.startsWith(QByteArrayLiteral("\x89PNG\r\n\x1a\n")))
        return false;
    const auto width = qFromBigEndian<quint32>(png.constData() + widthAt);
    const auto height = qFromBigEndian<quint32>(png.constData() + heightAt);
    if (width > maximalPictureSide || height > maximalPictureSide)
        return false;
    _pixelsLeft -= qint64(width) * height;
    _bytesLeft -= png.size();
    return _pixelsLeft >= 0 && _bytesLeft >= 0;
}

// Of several ways to press it the first.
QString Reader::_shortcut(const QDBusArgument &argument)
{
    static const QHash<QString, QString> names {
        { QStringLiteral("Control"), QStringLiteral("Ctrl") },
        { QStringLiteral("Super"), QStringLiteral("Meta") },
    };
    if (argument.currentSignature() != QLatin1String("aas"))
        return {};
    QStringList keys;
    argument.beginArray();
    if (!argument.atEnd()) {
        argument.beginArray();
        while (keys.size() < maximalKeys && !argument.atEnd()) {
            QString key;
            argument >> key;
            keys += names.value(key, key);
        }
        argument.endArray();
    }
    argument.endArray();
    return keys.join(QLatin1Char('+')).left(maximalText);
}

QHash<int, QVariantMap> Reader::updates(const QDBusArgument &changed, const QDBusArgument &removed)
{
    QHash<int, QVariantMap> updates;
    changed.beginArray();
    while (!changed.atEnd() && _itemsLeft-- > 0) {
        int id = 0;
        changed.beginStructure();
        changed >> id;
        const QVariantMap properties = _properties(changed);
        changed.endStructure();
        for (auto property = properties.cbegin(); property != properties.cend(); ++property)
            updates[id].insert(property.key(), property.value());
    }
    changed.endArray();

    removed.beginArray();
    while (!removed.atEnd() && _itemsLeft-- > 0) {
        int id = 0;
        removed.beginStructure();
        removed >> id;
        removed.beginArray();
        for (int read = 0; read < maximalProperties && !removed.atEnd(); ++read) {
            QString name;
            removed >> name;
            updates[id].insert(name, {});
        }
        removed.endArray();
        removed.endStructure();
    }
    removed.endArray();
    return updates;
}

} // namespace

MenuItem readLayout(const QDBusMessage &answer)
{
    if (answer.signature() != QLatin1Char('u') + itemSignature)
        return {};
    return Reader().item(answer.arguments().at(1).value<QDBusArgument>());
}

QHash<int, QVariantMap> readPropertyUpdates(const QDBusMessage &signal)
{
    if (signal.signature() != QLatin1String("a(ia{sv})a(ias)"))
        return {};
    const QVariantList arguments = signal.arguments();
    return Reader().updates(arguments.at(0).value<QDBusArgument>(),
                            arguments.at(1).value<QDBusArgument>());
}

} // namespace quorvane
