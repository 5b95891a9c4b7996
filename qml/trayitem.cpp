#include "trayitem.h"

#include "asynccall.h"
#include "iconsource.h"
#include "styledbody.h"
#include "traymenu.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QIcon>
#include <QTextDocument>

#include <chrono>
#include <utility>

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 3s;
// Items announce one change in several signals, and some animate their icon.
constexpr auto pause = 30ms;

QString interfaceName()
{
    return QStringLiteral("org.kde.StatusNotifierItem");
}

// Empty for another type; of what is longer than anyone reads, the beginning.
QString text(const QVariant &value)
{
    constexpr int maximalLength = 1000;
    return value.type() == QVariant::String ? value.toString().left(maximalLength) : QString();
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
    return none || !TrayAddress::isObjectPath(path) ? QString() : path;
}

bool readBool(const QVariantMap &properties, const char *name)
{
    const QVariant value = properties.value(QLatin1String(name));
    return value.type() == QVariant::Bool && value.toBool();
}

struct Icon
{
    bool isEmpty() const { return source.isEmpty() && image.isNull(); }

    QString source; // Of an icon with a name,
    QImage image;   // or of one without.
};

// A name is preferred, but for one that stands for nothing here while there are pixels.
bool isKnown(const QString &name, const QString &themePath)
{
    return !themePath.isEmpty() || name.startsWith(QLatin1Char('/')) || QIcon::hasThemeIcon(name);
}

// Of the properties that begin with the kind: none, "Attention" or "Overlay".
Icon readIcon(const QVariantMap &properties, const char *kind)
{
    const QString prefix = QLatin1String(kind);
    const QString name = text(properties.value(prefix + QLatin1String("IconName")));
    const QString themePath = text(properties, "IconThemePath");
    const QImage image = trayImage(properties.value(prefix + QLatin1String("IconPixmap")));
    if (!image.isNull() && (name.isEmpty() || !isKnown(name, themePath)))
        return { {}, image };
    return { iconSource(name, themePath), {} };
}

QString show(const Icon &icon, TrayPicture &picture)
{
    const QString pixels = picture.show(icon.image);
    return icon.image.isNull() ? icon.source : pixels;
}

QString firstOf(const QStringList &texts)
{
    for (const QString &text : texts) {
        if (!text.isEmpty())
            return text;
    }
    return {};
}

} // namespace

TrayItem::TrayItem(const TrayAddress &address, QObject *parent)
    : QObject(parent)
    , _address(address)
{
    if (address.service.startsWith(QLatin1Char(':')))
        _owner = address.service;
    _set(KeyRole, address.text());
    _set(RespondsRole, true);
    _takeValues({});
    _changed.clear();

    _pause.setSingleShot(true);
    _pause.setInterval(pause);
    connect(&_pause, &QTimer::timeout, this, &TrayItem::_read);
    _patience.setSingleShot(true);
    _patience.setInterval(patience);
    connect(&_patience, &QTimer::timeout, this, &TrayItem::_miss);
    _read();
}

TrayMenu *TrayItem::menu()
{
    if (_menuPath.isEmpty())
        return nullptr;
    if (!_menu) {
        _menu = new TrayMenu(this);
        _aimMenu();
    }
    return _menu;
}

void TrayItem::refresh()
{
    if (_waiting)
        _outdated = true;
    else if (!_pause.isActive())
        _pause.start();
}

void TrayItem::activate(int x, int y)
{
    if (value(IsMenuRole).toBool()) {
        contextMenu(x, y);
        return;
    }
    const QDeadlineTimer deadline(patience);
    whenAnswered(_call(QStringLiteral("Activate"), { x, y }), this,
                 [this, x, y, deadline](const QDBusMessage &answer) {
                     if (answer.errorName() != QDBusError::errorString(QDBusError::UnknownMethod))
                         return;
                     _hasMenuAlone = true;
                     _set(IsMenuRole, true);
                     _announce();
                     // Long after the click a menu would come as a surprise.
                     if (!deadline.hasExpired())
                         contextMenu(x, y);
                 });
}

void TrayItem::secondaryActivate(int x, int y)
{
    _call(QStringLiteral("SecondaryActivate"), { x, y });
}

void TrayItem::contextMenu(int x, int y)
{
    if (_menuPath.isEmpty())
        _call(QStringLiteral("ContextMenu"), { x, y });
    else
        Q_EMIT menuRequested(x, y);
}

void TrayItem::scroll(int delta, const QString &orientation)
{
    _call(QStringLiteral("Scroll"), { delta, orientation });
}

void TrayItem::_read()
{
    _waiting = true;
    _outdated = false;
    _patience.start();
    whenAnswered(callAsync(_address.service, _address.path,
                           QStringLiteral("org.freedesktop.DBus.Properties"),
                           QStringLiteral("GetAll"), { interfaceName() }),
                 this, [this](const QDBusMessage &answer) { _take(answer); });
}

void TrayItem::_take(const QDBusMessage &answer)
{
    QElapsedTimer clock;
    clock.start();
    _waiting = false;
    _patience.stop();
    _set(RespondsRole, true);
    const bool answered = answer.type() == QDBusMessage::ReplyMessage;
    if (answered) {
        _owner = answer.service();
        _takeValues(readProperties(answer));
        _aimMenu();
    }
    _announce();
    // An error says that there is no such object, not yet or not any more.
    _setShown(answered);
    // What takes long to read is read the less often.
    _pause.setInterval(pause + std::chrono::milliseconds(20 * clock.elapsed()));
    if (_outdated)
        refresh();
}

void TrayItem::_miss()
{
    _set(RespondsRole, false);
    _announce();
    _setShown(true);
}

void TrayItem::_takeValues(const QVariantMap &properties)
{
    _menuPath = readMenuPath(properties);
    const QString id = text(properties, "Id");
    const QString title = text(properties, "Title");
    const QString toolTip = readToolTip(properties.value(QStringLiteral("ToolTip")));
    const QString status = readStatus(properties);
    _set(ItemIdRole, id);
    _set(TitleRole, title);
    _set(StatusRole, status);
    _set(CategoryRole, text(properties, "Category"));
    Icon icon;
    if (status == QLatin1String("NeedsAttention"))
        icon = readIcon(properties, "Attention");
    if (icon.isEmpty())
        icon = readIcon(properties, "");
    _set(IconSourceRole, show(icon, _icon));
    _set(OverlaySourceRole, show(readIcon(properties, "Overlay"), _overlay));
    _set(LabelRole, text(properties, "XAyatanaLabel"));
    _set(ToolTipRole, firstOf({ toolTip, title, id }));
    _set(HasMenuRole, !_menuPath.isEmpty());
    _set(IsMenuRole, _hasMenuAlone || readBool(properties, "ItemIsMenu"));
}

void TrayItem::_aimMenu()
{
    if (!_menu)
        return;
    _menu->setService(_owner);
    _menu->setPath(_menuPath);
}

void TrayItem::_set(int role, const QVariant &value)
{
    QVariant &present = _values[role];
    if (value == present)
        return;
    present = value;
    _changed.append(role);
}

void TrayItem::_announce()
{
    const QVector<int> roles = std::exchange(_changed, {});
    if (!roles.isEmpty())
        Q_EMIT changed(roles);
}

void TrayItem::_setShown(bool shown)
{
    if (shown == _shown)
        return;
    _shown = shown;
    Q_EMIT shownChanged();
}

// The answer to a click may be long in coming, from a program that opens a dialog: whether the item
// responds is learned from its values, which may have changed with the click, too.
QDBusPendingCall TrayItem::_call(const QString &method, const QVariantList &arguments)
{
    refresh();
    return callAsync(_address.service, _address.path, interfaceName(), method, arguments);
}
