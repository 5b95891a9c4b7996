#include "fuzz.h"

#include <quorvaneshell/notifications/notificationadaptor_p.h>
#include <quorvaneshell/notifications/notifications.h>
#include <quorvaneshell/notifications/notificationservice_p.h>
#include <quorvaneshell/notifications/styledbody_p.h>
#include <quorvaneshell/pictures/imagestore_p.h>

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusPendingReply>
#include <QDBusServer>
#include <QRegularExpression>

using namespace quorvane;

static QString text(FuzzedDataProvider &input)
{
    return QString::fromStdString(input.ConsumeRandomLengthString(999)).remove(QChar(0));
}

// A hint of any type; without further input it is a picture.
static QVariant value(FuzzedDataProvider &input)
{
    const int type = input.ConsumeIntegralInRange(0, 6);
    if (type == 1)
        return text(input);
    if (type == 2)
        return input.ConsumeFloatingPoint<double>();
    if (type == 3)
        return QVariant::fromValue(input.ConsumeIntegral<uchar>());
    if (type == 4)
        return QStringList { text(input), text(input) };
    if (type == 5)
        return QVariantMap { { text(input), text(input) } };
    if (type == 6)
        return QVariant::fromValue(QDBusVariant(text(input)));
    const auto number = [&input](int usual) {
        return input.ConsumeBool() ? input.ConsumeIntegral<int>() : usual;
    };
    const bool alpha = input.ConsumeBool();
    const int channels = alpha ? 4 : 3;
    const int size = input.ConsumeIntegralInRange(1, 999);
    QDBusArgument picture;
    picture.beginStructure();
    picture << number(size) << number(1) << number(size * channels) << alpha << number(8)
            << number(channels) << QByteArray(number(size * channels) & 0xffff, 'x');
    picture.endStructure();
    return QVariant::fromValue(picture);
}

// A call of Notify over a connection without a bus, and what is made of it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QDBusServer server(QStringLiteral("unix:tmpdir=/tmp"));
    static Notifications notifications;
    static QDBusConnection client = [] {
        QObject::connect(&server, &QDBusServer::newConnection, [](QDBusConnection connection) {
            const auto service = NotificationService::shared();
            QObject *exported = service->findChild<NotificationAdaptor *>()->parent();
            connection.registerObject("/", exported, QDBusConnection::ExportAdaptors);
        });
        return QDBusConnection::connectToPeer(server.address(), "client");
    }();

    FuzzedDataProvider input(data, size);
    QVariantMap hints;
    for (const char *key :
         { "image-data", "image_data", "icon_data", "urgency", "value", "category", "desktop-entry",
           "image-path", "transient", "resident", "x-dunst-stack-tag", "x-other" }) {
        if (input.ConsumeBool())
            hints.insert(key, value(input));
    }
    auto call = QDBusMessage::createMethodCall({}, "/", "org.freedesktop.Notifications", "Notify");
    call.setArguments({ text(input), 0U, text(input), text(input), text(input),
                        QStringList { text(input), text(input) }, hints, 0 });
    QDBusPendingReply<uint> reply = client.asyncCall(call);
    while (!reply.isFinished() || notifications.rowCount() == 0)
        turnEventLoop();

    const QVariantMap row = notifications.get(0);
    require(reply.value() == row["id"].toUInt());
    require(qBound(0, row["urgency"].toInt(), 2) == row["urgency"].toInt());
    require(qBound(-1, row["progress"].toInt(), 100) == row["progress"].toInt());
    const QSize picture = ImageStore::find(row["iconSource"].toString()).size();
    require(qMax(picture.width(), picture.height()) <= 320);
    static const QRegularExpression allowed("</?[biu]>|</a>|<br/>|<a href=\"https?://[^\"<>]+\">");
    require(!row["styledBody"].toString().remove(allowed).contains(QRegularExpression("[<>]")));
    const QString body = row["body"].toString();
    require(row["styledBody"].toString().size() <= 32 * 1024 + 16);
    require(plainText(body).size() <= body.size());
    notifications.clear();
    return 0;
}
