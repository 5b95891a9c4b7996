#include "traymenu.h"

#include "menuclient_p.h"

#include <quorvaneshell/bus/validnames_p.h>
#include <quorvaneshell/pictures/iconsource_p.h>
#include <quorvaneshell/pictures/picturereader_p.h>
#include <quorvaneshell/pictures/scaledimage_p.h>

#include <QCryptographicHash>

#include <chrono>
#include <utility>

namespace quorvane {

using namespace std::chrono_literals;

namespace {

constexpr int maximalSide = 64;

QByteArray digestOf(const QByteArray &data)
{
    return QCryptographicHash::hash(data, QCryptographicHash::Sha1);
}

// An underscore marks the next letter, which may be an underscore.
QString withoutMnemonics(const QString &label)
{
    QString text;
    for (int i = 0; i < label.size(); ++i) {
        if (label.at(i) == QLatin1Char('_') && ++i == label.size())
            break;
        text += label.at(i);
    }
    return text;
}

// Programs name icons that no theme has: nothing is better than a tile in their place.
QString themedSource(const QString &icon, const QString &themePath)
{
    const QString source = iconSource(icon, themePath);
    return source.isEmpty() ? source : source + QLatin1String("?missing=empty");
}

QString text(const QVariantMap &properties, const char *name)
{
    return properties.value(QLatin1String(name)).toString();
}

bool isSubmenu(const QVariantMap &properties)
{
    return text(properties, "children-display") == QLatin1String("submenu");
}

} // namespace

TrayMenu::TrayMenu(QObject *parent)
    : ListModel(parent)
    , _root(this)
{
    _connecting.setSingleShot(true);
    _connecting.setInterval(0);
    connect(&_connecting, &QTimer::timeout, this, &TrayMenu::_connectToService);
    _limitOpening();
}

TrayMenu::TrayMenu(int id, TrayMenu *parent)
    : ListModel(parent)
    , _root(parent->_root)
    , _id(id)
{
    _limitOpening();
    _follow(_root->_client);
}

TrayMenu::~TrayMenu() = default;

QString TrayMenu::service() const
{
    return _root->_service;
}

void TrayMenu::setService(const QString &service)
{
    if (_root != this || _service == service)
        return;
    _service = service;
    _connecting.start();
    const QPointer<TrayMenu> self(this);
    Q_EMIT serviceChanged();
    if (self)
        _updateLoading();
}

QString TrayMenu::path() const
{
    return _root->_path;
}

void TrayMenu::setPath(const QString &path)
{
    if (_root != this || _path == path)
        return;
    _path = path;
    _connecting.start();
    const QPointer<TrayMenu> self(this);
    Q_EMIT pathChanged();
    if (self)
        _updateLoading();
}

bool TrayMenu::isLoading() const
{
    return _loading;
}

bool TrayMenu::responds() const
{
    return !_root->_client || _root->_client->responds();
}

int TrayMenu::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(_rows.size());
}

QVariant TrayMenu::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row &row = _rows.at(size_t(index.row()));
    const QVariantMap &of = row.properties;
    switch (role) {
    case LabelRole:
        return withoutMnemonics(text(of, "label"));
    case EnabledRole:
        return of.value(QStringLiteral("enabled"), true);
    case VisibleRole:
        return of.value(QStringLiteral("visible"), true);
    case SeparatorRole:
        return text(of, "type") == QLatin1String("separator");
    case CheckableRole:
        return text(of, "toggle-type") == QLatin1String("checkmark")
               || text(of, "toggle-type") == QLatin1String("radio");
    case RadioRole:
        return text(of, "toggle-type") == QLatin1String("radio");
    case CheckedRole:
        return of.value(QStringLiteral("toggle-state")).toInt() == 1;
    case IconSourceRole:
        return row.pictureSource.isEmpty() ? themedSource(text(of, "icon-name"), _themePath())
                                           : row.pictureSource;
    case HasChildrenRole:
        return row.submenu != nullptr;
    case ShortcutRole:
        return text(of, "shortcut");
    default:
        return {};
    }
}

QHash<int, QByteArray> TrayMenu::roleNames() const
{
    return {
        { LabelRole, "label" },
        { EnabledRole, "enabled" },
        { VisibleRole, "visible" },
        { SeparatorRole, "separator" },
        { CheckableRole, "checkable" },
        { RadioRole, "radio" },
        { CheckedRole, "checked" },
        { IconSourceRole, "iconSource" },
        { HasChildrenRole, "hasChildren" },
        { ShortcutRole, "shortcut" },
    };
}

void TrayMenu::trigger(int row)
{
    const QModelIndex index = this->index(row);
    const auto is = [&index](Role role) { return index.data(role).toBool(); };
    if (is(EnabledRole) && is(VisibleRole) && !is(SeparatorRole) && !is(HasChildrenRole))
        _root->_client->sendEvent(_rows.at(size_t(row)).id, QStringLiteral("clicked"));
}

TrayMenu *TrayMenu::submenu(int row) const
{
    return row >= 0 && row < count() ? _rows.at(size_t(row)).submenu : nullptr;
}

void TrayMenu::open()
{
    _isOpen = true;
    if (!std::exchange(_opening, true))
        _opens.start();
    if (_root->_client)
        _announce();
    else
        _root->_connecting.start();
    _updateLoading();
}

void TrayMenu::close()
{
    if (!std::exchange(_isOpen, false))
        return;
    _opening = false;
    if (_root->_client)
        _root->_client->sendEvent(_id, QStringLiteral("closed"));
    _updateLoading();
}

// Not at once: what a handler of a signal does must not replace the rows that are being announced.
void TrayMenu::_connectToService()
{
    const QPointer<TrayMenu> self(this);
    _setItems({});
    if (!self)
        return;
    if (_client) {
        _client->disconnect(this);
        std::exchange(_client, nullptr)->deleteLater();
    }
    if (isBusName(_service) && isObjectPath(_path)) {
        _client = new MenuClient(_service, _path, this);
        _follow(_client);
    }
    _isOpen = _opening;
    if (_opening && _client)
        _announce();
    else if (_opening)
        _prepared(_id, false);
    if (self)
        _updateLoading();
    if (self)
        Q_EMIT respondsChanged();
}

void TrayMenu::_follow(MenuClient *client)
{
    connect(client, &MenuClient::prepared, this, &TrayMenu::_prepared);
    connect(client, &MenuClient::respondsChanged, this, &TrayMenu::respondsChanged);
    connect(client, &MenuClient::themePathChanged, this, [this] {
        if (count() > 0)
            Q_EMIT dataChanged(index(0), index(count() - 1), { IconSourceRole });
    });
    if (_root != this)
        return;
    connect(client, &MenuClient::layoutReceived, this, &TrayMenu::_takeLayout);
    connect(client, &MenuClient::propertiesReceived, this, &TrayMenu::_setProperties);
    connect(client, &MenuClient::activationRequested, this, &TrayMenu::activationRequested);
}

void TrayMenu::_takeLayout(const MenuItem &menu)
{
    const QPointer<TrayMenu> self(this);
    _setItems(menu.children);
    if (self)
        _updateLoading();
}

void TrayMenu::_limitOpening()
{
    constexpr auto patience = 2950ms; // A little longer than the client's.
    _opens.setSingleShot(true);
    _opens.setTimerType(Qt::PreciseTimer);
    _opens.setInterval(patience);
    connect(&_opens, &QTimer::timeout, this, [this] { _prepared(_id, false); });
}

void TrayMenu::_announce()
{
    _root->_client->prepare(_id);
    _root->_client->sendEvent(_id, QStringLiteral("opened"));
}

void TrayMenu::_prepared(int id, bool ok)
{
    if (id != _id || !_opening)
        return;
    _opening = false;
    const QPointer<TrayMenu> self(this);
    _updateLoading();
    if (self && !ok)
        close();
    if (self)
        ok ? Q_EMIT opened() : Q_EMIT failed();
}

void TrayMenu::_updateLoading()
{
    const bool isArriving = _connecting.isActive() || (_client && !_client->isLoaded());
    const bool loading = _opening || isArriving;
    if (std::exchange(_loading, loading) != loading)
        Q_EMIT loadingChanged();
}

QString TrayMenu::_themePath() const
{
    return _root->_client ? _root->_client->themePath() : QString();
}

// What stays keeps its row and its submenu.
void TrayMenu::_setItems(const std::vector<MenuItem> &items)
{
    _walk.show(items);
}

TrayMenu::Row TrayMenu::_makeRow(const MenuItem &item)
{
    Row row;
    row.id = item.id;
    _assign(&row, item.properties, !item.children.empty());
    if (row.submenu)
        row.submenu->_setItems(item.children);
    return row;
}

void TrayMenu::_rowsRemoved(std::vector<Row> rows)
{
    for (const Row &row : rows)
        _removeSubmenu(row.submenu);
}

template<typename IsCurrent>
void TrayMenu::_updateRows(const Wanted &wanted, const IsCurrent &isCurrent)
{
    for (size_t row = 0; isCurrent() && row < wanted.size(); ++row) {
        _change(int(row), wanted[row].properties, !wanted[row].children.empty());
        if (isCurrent() && _rows[row].submenu)
            _rows[row].submenu->_setItems(wanted[row].children);
    }
}

void TrayMenu::_setProperties(const QHash<int, QVariantMap> &updates)
{
    const QPointer<TrayMenu> alive = this;
    for (int row = 0; alive && row < count(); ++row) {
        const Row &changed = _rows[size_t(row)];
        const auto update = updates.constFind(changed.id);
        if (update != updates.cend()) {
            QVariantMap properties = changed.properties;
            for (auto property = update->cbegin(); property != update->cend(); ++property) {
                if (property->isValid())
                    properties.insert(property.key(), *property);
                else
                    properties.remove(property.key());
            }
            _change(row, properties, changed.submenu && changed.submenu->count() > 0);
        }
        if (TrayMenu *below = alive ? submenu(row) : nullptr)
            below->_setProperties(updates);
    }
}

void TrayMenu::_change(int row, const QVariantMap &properties, bool hasItems)
{
    Row &changed = _rows[size_t(row)];
    if (changed.properties == properties
        && (changed.submenu != nullptr) == (hasItems || isSubmenu(properties)))
        return;
    const QVariantMap before = get(row);
    const QPointer<TrayMenu> gone = _assign(&changed, properties, hasItems);
    const QVariantMap after = get(row);

    QVector<int> roles;
    const QHash<int, QByteArray> names = roleNames();
    for (auto role = names.cbegin(); role != names.cend(); ++role) {
        const QString name = QString::fromLatin1(role.value());
        if (before.value(name) != after.value(name))
            roles += role.key();
    }
    if (!roles.isEmpty())
        Q_EMIT dataChanged(index(row), index(row), roles);
    _removeSubmenu(gone);
}

// Returns the submenu that the row has no longer. In the place of a picture's data stays what tells
// it from others, which is smaller.
QPointer<TrayMenu> TrayMenu::_assign(Row *row, const QVariantMap &properties, bool hasItems)
{
    const QString picture = QStringLiteral("icon-data");
    const QByteArray digest = row->properties.value(picture).toByteArray();
    const QByteArray data = properties.value(picture).toByteArray();
    row->properties = properties;
    if (data != digest) {
        const QByteArray other = data.isEmpty() ? data : digestOf(data);
        row->properties.insert(picture, other);
        if (other != digest)
            row->pictureSource = row->picture->show(limitedImage(readPicture(data), maximalSide));
    }

    if (!hasItems && !isSubmenu(properties))
        return std::exchange(row->submenu, {});
    if (!row->submenu)
        row->submenu = new TrayMenu(row->id, this);
    return {};
}

// A view may still show it.
void TrayMenu::_removeSubmenu(const QPointer<TrayMenu> &submenu)
{
    if (submenu)
        submenu->_setItems({});
    if (submenu)
        submenu->deleteLater();
}

} // namespace quorvane
