#include "trayvalues_p.h"

#include "trayaddress_p.h"
#include "trayimage_p.h"

#include <quorvaneshell/notifications/styledbody_p.h>

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QTextDocument>
#include <QVariantMap>

namespace quorvane {

namespace {

// Empty for another type; of what is longer than anyone reads, the beginning.
QString text(const QVariant &value)
{
    constexpr int maximalLength = 1000;
    return value.userType() == QMetaType::QString ? value.toString().left(maximalLength)
                                                  : QString();
}

QString text(const QVariantMap &properties, const char *name)
{
    return text(properties.value(QLatin1String(name)));
}

// a{sv}, read by hand: an item that sends millions of properties is not waited for.
QVariantMap readProperties(const QDBusMessage &answer)
{
    const QVariant value = answer.arguments().value(0);
    if (!value.canConvert<QDBusArgument>())
        return value.toMap(); // Of an item in this process.
    const auto argument = value.value<QDBusArgument>();
    QVariantMap properties;
    if (argument.currentSignature() != QLatin1String("a{sv}"))
        return properties;
    constexpr int maximalNumber = 100;
    argument.beginMap();
    for (int i = 0; i < maximalNumber && !argument.atEnd(); ++i) {
        QString name;
        QDBusVariant property;
        argument.beginMapEntry();
        argument >> name >> property;
        argument.endMapEntry();
        properties.insert(name, property.variant());
    }
    argument.endMap(); // Else the message stays in memory, here and below.
    return properties;
}

// As plain text, although items may write the second part in a subset of HTML.
QString readToolTip(const QVariant &value)
{
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("(sa(iiay)ss)"))
        return {};
    argument.beginStructure();
    argument.asVariant(); // The icon's name
    argument.asVariant(); // and its pictures.
    const QString title = text(argument.asVariant());
    QString body = text(argument.asVariant());
    argument.endStructure();
    if (Qt::mightBeRichText(body))
        body = plainText(body);
    return title.isEmpty() || body.isEmpty() ? title + body : title + QLatin1Char('\n') + body;
}

QString readStatus(const QVariantMap &properties)
{
    const QString status = text(properties, "Status");
    const bool known
            = status == QLatin1String("Passive") || status == QLatin1String("NeedsAttention");
    return known ? status : QStringLiteral("Active");
}

// Without a menu some name no object, some "/", and some this one.
QString readMenuPath(const QVariantMap &properties)
{
    const QVariant value = properties.value(QStringLiteral("Menu"));
    const QString path = value.userType() == qMetaTypeId<QDBusObjectPath>()
                                 ? value.value<QDBusObjectPath>().path()
                                 : text(value);
    const bool none = path == QLatin1String("/") || path == QLatin1String("/NO_DBUSMENU");
    return none || !isObjectPath(path) ? QString() : path;
}

bool readBool(const QVariantMap &properties, const char *name)
{
    const QVariant value = properties.value(QLatin1String(name));
    return value.userType() == QMetaType::Bool && value.toBool();
}

// Of the properties that begin with the kind: none, "Attention" or "Overlay".
TrayIcon readIcon(const QVariantMap &properties, const char *kind)
{
    const QString prefix = QLatin1String(kind);
    return { text(properties.value(prefix + QLatin1String("IconName"))),
             text(properties, "IconThemePath"),
             trayImage(properties.value(prefix + QLatin1String("IconPixmap"))) };
}

} // namespace

TrayValues readTrayValues(const QDBusMessage &answer)
{
    const QVariantMap properties = readProperties(answer);
    TrayValues values;
    values.id = text(properties, "Id");
    values.title = text(properties, "Title");
    values.status = readStatus(properties);
    values.category = text(properties, "Category");
    values.label = text(properties, "XAyatanaLabel");
    values.toolTip = readToolTip(properties.value(QStringLiteral("ToolTip")));
    for (const QString &other : { values.title, values.id }) {
        if (values.toolTip.isEmpty())
            values.toolTip = other;
    }
    values.menuPath = readMenuPath(properties);
    values.isMenu = readBool(properties, "ItemIsMenu");
    if (values.status == QLatin1String("NeedsAttention"))
        values.icon = readIcon(properties, "Attention");
    if (values.icon.isEmpty())
        values.icon = readIcon(properties, "");
    values.overlay = readIcon(properties, "Overlay");
    return values;
}

} // namespace quorvane
