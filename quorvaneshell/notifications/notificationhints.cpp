#include "notificationhints_p.h"

#include "notificationimage_p.h"
#include "styledbody_p.h"

#include <algorithm>
#include <iterator>

namespace quorvane {

namespace {

constexpr int mostHints = 64;
constexpr int longestText = 1024;

bool isPicture(const QString &name)
{
    return name == QLatin1String("image-data") || name == QLatin1String("image_data")
           || name == QLatin1String("icon_data");
}

bool isKnown(const QString &name)
{
    static const char *const names[] = { "action-icons",
                                         "category",
                                         "desktop-entry",
                                         "image-path",
                                         "image_path",
                                         "resident",
                                         "transient",
                                         "urgency",
                                         "value",
                                         "x-dunst-stack-tag",
                                         "x-canonical-private-synchronous" };
    return isPicture(name)
           || std::any_of(std::begin(names), std::end(names),
                          [&name](const char *known) { return name == QLatin1String(known); });
}

QVariant readValue(const QDBusArgument &argument, const QString &name)
{
    const QString signature = argument.currentSignature();
    if (isPicture(name)) {
        const QImage image = notificationImage(argument);
        return image.isNull() ? QVariant() : image;
    }
    if (signature.size() != 1 || !QLatin1String("ybnqiuxtds").contains(signature.front()))
        return {};
    const QVariant value = argument.asVariant();
    if (value.userType() == QMetaType::QString)
        return shortened(value.toString(), longestText);
    return value;
}

} // namespace

QString NotificationHints::text(const QString &name) const
{
    const QVariant hint = values.value(name);
    return hint.userType() == QMetaType::QString ? hint.toString() : QString();
}

double NotificationHints::number(const QString &name, double otherwise) const
{
    const QVariant hint = values.value(name);
    switch (hint.userType()) {
    case QMetaType::Bool:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return hint.toDouble();
    default:
        return otherwise;
    }
}

QImage NotificationHints::image(const QString &name) const
{
    return values.value(name).value<QImage>();
}

QDBusArgument &operator<<(QDBusArgument &argument, const NotificationHints &hints)
{
    return argument << hints.values;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, NotificationHints &hints)
{
    hints.values.clear();
    argument.beginMap();
    for (int i = 0; i < mostHints && !argument.atEnd(); ++i) {
        QString name;
        argument.beginMapEntry();
        argument >> name;
        if (isKnown(name)) {
            // A variant is entered as a structure of one. Taken as a whole it would be copied,
            // millions of texts in a list one by one.
            argument.beginStructure();
            const QVariant value = readValue(argument, name);
            argument.endStructure();
            if (value.isValid())
                hints.values.insert(name, value);
        }
        argument.endMapEntry();
    }
    argument.endMap();
    return argument;
}

} // namespace quorvane
