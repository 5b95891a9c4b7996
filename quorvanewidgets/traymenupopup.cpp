#include "traymenupopup_p.h"

#include <QActionGroup>
#include <QIcon>
#include <QScreen>
#include <QSet>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

// Called last, as hiding is told to slots that may delete anything.
void discard(const QVector<QPointer<QMenu>> &menus)
{
    for (const QPointer<QMenu> &menu : menus) {
        if (menu)
            menu->hide();
        if (menu)
            menu->deleteLater();
    }
}

// Alone in its group, an action looks like a radio button and leaves to the program which are checked.
void setRadio(QAction *action, bool isRadio)
{
    if (isRadio && !action->actionGroup())
        action->setActionGroup(new QActionGroup(action));
    else if (!isRadio)
        delete action->actionGroup();
}

// The keys stand where QMenu has them, without being taken from the program.
QString textOf(const QModelIndex &index)
{
    QString text = index.data(TrayMenu::MnemonicLabelRole).toString();
    text.replace(QLatin1Char('\t'), QLatin1Char(' '));
    const QString shortcut = index.data(TrayMenu::ShortcutRole).toString();
    return shortcut.isEmpty() ? text : text + QLatin1Char('\t') + shortcut;
}

} // namespace

TrayMenuPopupPrivate::TrayMenuPopupPrivate(TrayMenu *menu, TrayMenuPopup *popup)
    : menu(menu)
    , _popup(popup)
    , _placeholder(popup->addAction(QString(QChar(0x2026))))
{
    _placeholder->setEnabled(false);
    _layingOut.setSingleShot(true);
    _layingOut.setInterval(0);
    connect(&_layingOut, &QTimer::timeout, this, &TrayMenuPopupPrivate::_layOut);
    connect(popup, &QMenu::aboutToShow, this, &TrayMenuPopupPrivate::_prepareToShow);
    connect(popup, &QMenu::aboutToHide, this, &TrayMenuPopupPrivate::close);
    if (!menu)
        return;
    connect(menu, &TrayMenu::opened, this, &TrayMenuPopupPrivate::_takeOpened);
    connect(menu, &TrayMenu::failed, this, &TrayMenuPopupPrivate::_takeFailed);
    connect(menu, &TrayMenu::destroyed, this, &TrayMenuPopupPrivate::_takeDestroyed);
}

void TrayMenuPopupPrivate::open(const QPoint &place)
{
    _popup->hide();
    if (!menu)
        return;
    _place = place;
    _isAwaited = true;
    _isOpen = true;
    menu->open();
}

void TrayMenuPopupPrivate::close()
{
    _isAwaited = false;
    if (std::exchange(_isOpen, false) && menu)
        menu->close();
}

void TrayMenuPopupPrivate::layOutSoon()
{
    _layingOut.start();
}

// From when it is shown first: most submenus never are.
void TrayMenuPopupPrivate::_follow()
{
    if (!menu || std::exchange(_isFollowing, true))
        return;
    for (auto change : { &TrayMenu::rowsInserted, &TrayMenu::rowsRemoved })
        connect(menu, change, this, &TrayMenuPopupPrivate::_takeRows);
    connect(menu, &TrayMenu::rowsMoved, this, &TrayMenuPopupPrivate::_takeRows);
    connect(menu, &TrayMenu::layoutChanged, this, &TrayMenuPopupPrivate::_takeRows);
    connect(menu, &TrayMenu::dataChanged, this,
            [this](const QModelIndex &first, const QModelIndex &last) {
                _updateRows(first.row(), last.row());
            });
    _takeRows();
}

void TrayMenuPopupPrivate::_takeOpened()
{
    if (!std::exchange(_isAwaited, false))
        return;
    _follow();
    if (_hasSomethingToShow())
        _popup->popup(_place);
    else
        close();
}

void TrayMenuPopupPrivate::_takeFailed()
{
    if (!std::exchange(_isOpen, false))
        return;
    _isAwaited = false;
    const QPointer<TrayMenuPopup> popup(_popup);
    popup->hide();
    if (popup)
        Q_EMIT popup->failed();
}

void TrayMenuPopupPrivate::_takeDestroyed()
{
    _isOpen = false;
    _isAwaited = false;
    const QPointer<TrayMenuPopup> popup(_popup);
    popup->hide();
    if (popup)
        _takeRows();
}

void TrayMenuPopupPrivate::_prepareToShow()
{
    _follow();
    _layOut();
    if (!menu)
        QMetaObject::invokeMethod(_popup, &QWidget::hide, Qt::QueuedConnection);
    else if (!std::exchange(_isOpen, true))
        menu->open();
}

// What stays keeps its action.
void TrayMenuPopupPrivate::_takeRows()
{
    QHash<int, QAction *> known = std::exchange(_actions, {});
    QVector<QAction *> wanted;
    const int count = menu ? menu->count() : 0;
    for (int row = 0; row < count; ++row) {
        const int id = menu->index(row).data(TrayMenu::IdRole).toInt();
        QAction *action = known.take(id);
        wanted += action ? action : _makeAction(row, id);
        _actions.insert(id, wanted.last());
    }
    QVector<QPointer<QMenu>> gone;
    for (QAction *action : std::as_const(known)) {
        gone += action->menu();
        _popup->removeAction(action);
        action->deleteLater();
    }
    _arrange(wanted);
    layOutSoon();
    discard(gone);
}

// From the end, each before the one that follows it; only those move that aren't there.
void TrayMenuPopupPrivate::_arrange(const QVector<QAction *> &wanted)
{
    const QSet<QAction *> ours(wanted.cbegin(), wanted.cend());
    QSet<QAction *> moved;
    QVector<QAction *> present;
    const QList<QAction *> all = _popup->actions();
    std::copy_if(all.cbegin(), all.cend(), std::back_inserter(present),
                 [&ours](QAction *action) { return ours.contains(action); });
    QAction *next = nullptr;
    for (auto action = wanted.crbegin(); action != wanted.crend(); ++action) {
        while (!present.isEmpty() && moved.contains(present.last()))
            present.removeLast();
        if (!present.isEmpty() && present.last() == *action) {
            present.removeLast();
        } else {
            _popup->insertAction(next, *action);
            moved.insert(*action);
        }
        next = *action;
    }
}

void TrayMenuPopupPrivate::_updateRows(int first, int last)
{
    QVector<QPointer<QMenu>> gone;
    for (int row = first; row <= last; ++row) {
        const int id = menu->index(row).data(TrayMenu::IdRole).toInt();
        if (QAction *action = _actions.value(id))
            gone += _update(action, row);
    }
    layOutSoon();
    discard(gone);
}

QAction *TrayMenuPopupPrivate::_makeAction(int row, int id)
{
    auto *action = new QAction(_popup);
    connect(action, &QAction::triggered, this, [this, id] { _choose(id); });
    _update(action, row);
    return action;
}

// Returns the popup that the row has no longer.
QPointer<QMenu> TrayMenuPopupPrivate::_update(QAction *action, int row)
{
    // Slots, which could delete the action meanwhile, hear nothing; the popup does.
    const QSignalBlocker blocker(action);
    const QModelIndex index = menu->index(row);
    const auto is = [&index](TrayMenu::Roles role) { return index.data(role).toBool(); };
    setRadio(action, is(TrayMenu::RadioRole));
    action->setText(textOf(index));
    action->setIcon(index.data(Qt::DecorationRole).value<QIcon>());
    action->setSeparator(is(TrayMenu::SeparatorRole));
    action->setEnabled(is(TrayMenu::EnabledRole));
    action->setVisible(is(TrayMenu::VisibleRole));
    action->setCheckable(is(TrayMenu::CheckableRole));
    action->setChecked(is(TrayMenu::CheckedRole));
    return _updateSubmenu(action, row);
}

QPointer<QMenu> TrayMenuPopupPrivate::_updateSubmenu(QAction *action, int row)
{
    QMenu *const shown = action->menu();
    TrayMenu *const below = menu->submenu(row);
    if (shown ? static_cast<TrayMenuPopup *>(shown)->trayMenu() == below && below : !below)
        return {};
    TrayMenuPopup *const popup = below ? new TrayMenuPopup(below, _popup) : nullptr;
    if (popup)
        connect(popup, &TrayMenuPopup::failed, _popup, &TrayMenuPopup::failed);
    action->setMenu(static_cast<QMenu *>(popup));
    return shown;
}

// Qt has changed the mark, which is the program's.
void TrayMenuPopupPrivate::_choose(int id)
{
    if (!menu)
        return;
    const int row = menu->indexOf(id);
    if (QAction *action = _actions.value(id)) {
        const QSignalBlocker blocker(action);
        action->setChecked(menu->index(row).data(TrayMenu::CheckedRole).toBool());
    }
    menu->trigger(row);
}

bool TrayMenuPopupPrivate::_hasSomethingToShow() const
{
    return std::any_of(_actions.cbegin(), _actions.cend(), [](const QAction *action) {
        return action->isVisible() && !action->isSeparator();
    });
}

// An open menu that has grown stays on its screen.
void TrayMenuPopupPrivate::_layOut()
{
    _placeholder->setVisible(!_hasSomethingToShow());
    _layingOut.stop();
    if (!_popup->isVisible())
        return;
    const QRect screen = _popup->screen()->availableGeometry();
    _popup->resize(_popup->sizeHint().boundedTo(screen.size()));
    _popup->update();
    const QPoint most = screen.bottomRight() - _popup->rect().bottomRight();
    const QPoint place(std::max(screen.left(), std::min(_popup->x(), most.x())),
                       std::max(screen.top(), std::min(_popup->y(), most.y())));
    if (place != _popup->pos())
        _popup->move(place);
}

TrayMenuPopup::TrayMenuPopup(TrayMenu *menu, QWidget *parent)
    : QMenu(parent)
    , _d(std::make_unique<TrayMenuPopupPrivate>(menu, this))
{
}

TrayMenuPopup::~TrayMenuPopup()
{
    _d->close();
}

TrayMenu *TrayMenuPopup::trayMenu() const
{
    return _d->menu;
}

void TrayMenuPopup::open(const QPoint &place)
{
    _d->open(place);
}

// While it is visible QMenu lays all of its actions out for each that changes, which of a large menu
// takes long: it doesn't look visible to that, and lays itself out once.
void TrayMenuPopup::actionEvent(QActionEvent *event)
{
    const bool isShown = testAttribute(Qt::WA_WState_Visible);
    setAttribute(Qt::WA_WState_Visible, false);
    QMenu::actionEvent(event);
    setAttribute(Qt::WA_WState_Visible, isShown);
    if (isShown)
        _d->layOutSoon();
}

} // namespace quorvane
