#include "traymenu_p.h"

#include <QPointer>

#include <utility>

namespace quorvane {

TrayMenuPrivate::TrayMenuPrivate(TrayMenu *menu, int id, std::shared_ptr<MenuConnection> connection)
    : menu(menu)
    , isTopmost(id == 0)
    , connection(std::move(connection))
    , opening(id, this->connection.get())
    , rows(menu, this->connection.get())
{
    const MenuConnection *shared = this->connection.get();
    QObject::connect(shared, &MenuConnection::respondsChanged, menu, &TrayMenu::respondsChanged);
    QObject::connect(shared, &MenuConnection::themePathChanged, menu, [menu] {
        if (menu->count() > 0)
            Q_EMIT menu->dataChanged(menu->index(0), menu->index(menu->count() - 1),
                                     { TrayMenu::IconSourceRole, Qt::DecorationRole });
    });
    QObject::connect(&opening, &MenuOpening::waitingChanged, menu, [this] { updateLoading(); });
    QObject::connect(&opening, &MenuOpening::ended, menu,
                     [menu](bool ok) { ok ? Q_EMIT menu->opened() : Q_EMIT menu->failed(); });
    if (isTopmost)
        _followAsTopmost();
}

void TrayMenuPrivate::updateLoading()
{
    const bool loading = opening.isWaiting() || (isTopmost && connection->isLoading());
    if (std::exchange(isLoading, loading) != loading)
        Q_EMIT menu->loadingChanged();
}

void TrayMenuPrivate::_followAsTopmost()
{
    const MenuConnection *shared = connection.get();
    QObject::connect(shared, &MenuConnection::left, menu, [this] { rows.show({}); });
    QObject::connect(shared, &MenuConnection::renewed, menu, [this] { _renew(); });
    QObject::connect(shared, &MenuConnection::layoutReceived, menu, [this](const MenuItem &root) {
        const QPointer<TrayMenu> self(menu);
        rows.show(root.children);
        if (self)
            updateLoading();
    });
    QObject::connect(shared, &MenuConnection::propertiesReceived, menu,
                     [this](const QHash<int, QVariantMap> &updates) { rows.update(updates); });
    QObject::connect(shared, &MenuConnection::activationRequested, menu,
                     &TrayMenu::activationRequested);
}

void TrayMenuPrivate::_renew()
{
    const QPointer<TrayMenu> self(menu);
    opening.resume();
    if (self)
        updateLoading();
    if (self)
        Q_EMIT self->respondsChanged();
}

TrayMenu::TrayMenu(QObject *parent)
    : ListModel(parent)
    , _d(std::make_unique<TrayMenuPrivate>(this, 0, std::make_shared<MenuConnection>(this)))
{
}

TrayMenu::TrayMenu(int id, TrayMenu *parent)
    : ListModel(parent)
    , _d(std::make_unique<TrayMenuPrivate>(this, id, parent->_d->connection))
{
}

TrayMenu::~TrayMenu() = default;

QString TrayMenu::service() const
{
    return _d->connection->service();
}

void TrayMenu::setService(const QString &service)
{
    if (!_d->isTopmost || !_d->connection->setService(service))
        return;
    const QPointer<TrayMenu> self(this);
    Q_EMIT serviceChanged();
    if (self)
        _d->updateLoading();
}

QString TrayMenu::path() const
{
    return _d->connection->path();
}

void TrayMenu::setPath(const QString &path)
{
    if (!_d->isTopmost || !_d->connection->setPath(path))
        return;
    const QPointer<TrayMenu> self(this);
    Q_EMIT pathChanged();
    if (self)
        _d->updateLoading();
}

bool TrayMenu::isLoading() const
{
    return _d->isLoading;
}

bool TrayMenu::responds() const
{
    return _d->connection->responds();
}

int TrayMenu::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : _d->rows.count();
}

QVariant TrayMenu::data(const QModelIndex &index, int role) const
{
    return checkIndex(index, CheckIndexOption::IndexIsValid) ? _d->rows.value(index.row(), role)
                                                             : QVariant();
}

QHash<int, QByteArray> TrayMenu::roleNames() const
{
    return {
        { IdRole, "id" },
        { LabelRole, "label" },
        { MnemonicLabelRole, "mnemonicLabel" },
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

int TrayMenu::indexOf(int id) const
{
    return _d->rows.indexOf(id);
}

QVariantMap TrayMenu::find(int id) const
{
    return get(indexOf(id));
}

void TrayMenu::trigger(int row)
{
    const auto is = [this, row](Roles role) { return _d->rows.value(row, role).toBool(); };
    if (is(EnabledRole) && is(VisibleRole) && !is(SeparatorRole) && !is(HasChildrenRole))
        _d->connection->sendEvent(_d->rows.at(row).id(), QStringLiteral("clicked"));
}

TrayMenu *TrayMenu::submenu(int row) const
{
    return row >= 0 && row < count() ? _d->rows.at(row).submenu : nullptr;
}

void TrayMenu::open()
{
    _d->opening.open();
}

void TrayMenu::close()
{
    _d->opening.close();
}

} // namespace quorvane
