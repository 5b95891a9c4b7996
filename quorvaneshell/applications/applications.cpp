#include "applications_p.h"

#include "applicationlist_p.h"
#include "applicationsearch_p.h"
#include "applicationusage_p.h"
#include "categoryname_p.h"
#include "launchuri_p.h"
#include "mimehandlers_p.h"
#include "openedtype_p.h"

#include <quorvaneshell/pictures/icon.h>
#include <quorvaneshell/rows/changedroles_p.h>
#include <quorvaneshell/search/wordmatch.h>

#include <QPointer>

#include <algorithm>

namespace quorvane {

namespace {

// Beyond this, views are told of one change from the first row to the last.
constexpr int mostUpdates = 100;

} // namespace

Applications::Applications(QObject *parent)
    : ListModel(parent)
    , _d(std::make_unique<ApplicationsPrivate>(this))
{
    _d->updateCategories();
    _d->show();
}

Applications::~Applications() = default;

QString Applications::search() const
{
    return _d->search;
}

void Applications::setSearch(const QString &search)
{
    if (search == _d->search)
        return;
    _d->search = search;
    _d->words = foldedWords(search);
    if (_d->show())
        Q_EMIT searchChanged();
}

QString Applications::category() const
{
    return _d->category;
}

void Applications::setCategory(const QString &category)
{
    if (category == _d->category)
        return;
    _d->category = category;
    if (_d->show())
        Q_EMIT categoryChanged();
}

QStringList Applications::categories() const
{
    return _d->categories;
}

bool Applications::showAll() const
{
    return _d->showAll;
}

void Applications::setShowAll(bool showAll)
{
    if (showAll == _d->showAll)
        return;
    _d->showAll = showAll;
    if (_d->updateCategories() && _d->show())
        Q_EMIT showAllChanged();
}

Applications::Order Applications::order() const
{
    return _d->usage ? ByUse : ByName;
}

void Applications::setOrder(Order order)
{
    if (order == this->order())
        return;
    if (_d->usage)
        disconnect(_d->usage.data(), nullptr, this, nullptr);
    _d->usage = order == ByUse ? ApplicationUsage::shared() : nullptr;
    if (_d->usage)
        connect(_d->usage.data(), &ApplicationUsage::changed, this, [this] { _d->show(); });
    if (_d->show())
        Q_EMIT orderChanged();
}

int Applications::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(_d->_rows.size());
}

QVariant Applications::data(const QModelIndex &index, int role) const
{
    return checkIndex(index, CheckIndexOption::IndexIsValid)
                   ? _d->value(*_d->_rows.at(size_t(index.row())), role)
                   : QVariant();
}

QHash<int, QByteArray> Applications::roleNames() const
{
    return { { AppIdRole, "appId" },
             { NameRole, "name" },
             { GenericNameRole, "genericName" },
             { CommentRole, "comment" },
             { KeywordsRole, "keywords" },
             { CategoriesRole, "categories" },
             { IconSourceRole, "iconSource" },
             { TerminalRole, "terminal" },
             { ActionsRole, "actions" },
             { RunningRole, "running" },
             { PidRole, "pid" },
             { PathRole, "path" } };
}

int Applications::indexOf(const QString &appId) const
{
    const auto is = [&appId](const auto &application) { return application->appId == appId; };
    const auto found = std::find_if(_d->_rows.cbegin(), _d->_rows.cend(), is);
    return found == _d->_rows.cend() ? -1 : int(found - _d->_rows.cbegin());
}

QVariantMap Applications::find(const QString &appId) const
{
    const ApplicationPointer application = _d->list->find(appId);
    if (!application)
        return {};
    QVariantMap values;
    const QHash<int, QByteArray> names = roleNames();
    for (auto name = names.cbegin(); name != names.cend(); ++name)
        values.insert(QString::fromLatin1(*name), _d->value(*application, name.key()));
    return values;
}

QString Applications::identify(const QString &windowClass, qint64 pid) const
{
    return _d->list->identify(windowClass, pid);
}

QString Applications::categoryName(const QString &category) const
{
    return quorvane::categoryName(category);
}

void Applications::launch(const QString &appId, const QVariantList &urls)
{
    if (const ApplicationPointer application = _d->installed(appId))
        _d->launcher.launch(application, urls);
}

void Applications::invoke(const QString &appId, const QString &actionId)
{
    if (const ApplicationPointer application = _d->installed(appId))
        _d->launcher.invoke(application, actionId);
}

void Applications::launchInTerminal(const QString &appId, const QVariantList &urls)
{
    if (const ApplicationPointer application = _d->installed(appId))
        _d->launcher.launchInTerminal(application, urls);
}

void Applications::stop(const QString &appId)
{
    _d->launcher.stop(appId);
}

QStringList Applications::handlers(const QString &urlOrMimeType) const
{
    return MimeHandlers(_d->list->installed()).handlers(openedType(urlOrMimeType));
}

QString Applications::defaultHandler(const QString &urlOrMimeType) const
{
    return handlers(urlOrMimeType).value(0);
}

bool Applications::setDefaultHandler(const QString &mimeType, const QString &appId)
{
    return _d->list->find(appId) && MimeHandlers::setDefault(mimeType, appId);
}

void Applications::open(const QVariant &url)
{
    const QByteArray uri = launchUri(url);
    const QString handler = uri.isEmpty() ? QString() : defaultHandler(QString::fromUtf8(uri));
    if (!handler.isEmpty())
        launch(handler, { url });
    else if (uri.isEmpty())
        Q_EMIT failed({}, QStringLiteral("\"%1\" is neither a path nor a URL").arg(url.toString()));
    else
        Q_EMIT failed({}, QStringLiteral("There is no application to open %1").arg(url.toString()));
}

void Applications::forgetUse()
{
    ApplicationUsage::shared()->forgetAll();
}

void Applications::forgetUse(const QString &appId)
{
    ApplicationUsage::shared()->forget(appId);
}

ApplicationsPrivate::ApplicationsPrivate(Applications *model)
    : list(ApplicationList::shared())
    , _model(model)
    , _walk(model, this)
{
    list->read();
    QObject::connect(list.data(), &ApplicationList::changed, model, [this] {
        if (updateCategories())
            show();
    });
    QObject::connect(&launcher, &ApplicationLauncher::failed, model, &Applications::failed);
    QObject::connect(&launcher, &ApplicationLauncher::programsChanged, model,
                     [this](const QString &appId) { _programsChanged(appId); });
}

QVariant ApplicationsPrivate::value(const Application &application, int role) const
{
    switch (role) {
    case Applications::AppIdRole:
        return application.appId;
    case Qt::DisplayRole:
    case Applications::NameRole:
        return application.name;
    case Applications::GenericNameRole:
        return application.genericName;
    case Applications::CommentRole:
        return application.comment;
    case Qt::ToolTipRole:
        return application.comment.isEmpty() ? application.genericName : application.comment;
    case Applications::KeywordsRole:
        return application.keywords;
    case Applications::CategoriesRole:
        return application.categories;
    case Applications::IconSourceRole:
        return application.iconSource;
    case Qt::DecorationRole:
        return icon(application.iconSource, application.name);
    case Applications::TerminalRole:
        return application.terminal;
    case Applications::ActionsRole:
        return application.actions;
    case Applications::RunningRole:
        return launcher.pid(application.appId) != 0;
    case Applications::PidRole:
        return launcher.pid(application.appId);
    case Applications::PathRole:
        return application.path;
    default:
        return {};
    }
}

ApplicationPointer ApplicationsPrivate::installed(const QString &appId) const
{
    const ApplicationPointer application = list->find(appId);
    if (!application)
        Q_EMIT _model->failed(appId, QStringLiteral("%1 is not installed").arg(appId));
    return application;
}

bool ApplicationsPrivate::updateCategories()
{
    const QPointer<Applications> alive = _model;
    const QStringList now = list->categories(showAll);
    if (std::exchange(categories, now) != now)
        Q_EMIT _model->categoriesChanged();
    return alive;
}

bool ApplicationsPrivate::show()
{
    const QPointer<Applications> alive = _model;
    _walk.show(_wanted());
    return alive;
}

bool ApplicationsPrivate::_isInCategory(const Application &application) const
{
    const auto is = [this](const QString &other) {
        return other == category || mainCategory(other) == category;
    };
    return category.isEmpty()
           || std::any_of(application.categories.cbegin(), application.categories.cend(), is);
}

ApplicationsPrivate::Wanted ApplicationsPrivate::_wanted() const
{
    Wanted wanted;
    for (const ApplicationPointer &application : list->applications()) {
        if ((application->shown || showAll) && _isInCategory(*application))
            wanted.push_back(application);
    }
    return foundApplications(std::move(wanted), words, usage.data());
}

template<typename IsCurrent>
void ApplicationsPrivate::_updateRows(const Wanted &wanted, const IsCurrent &isCurrent)
{
    QVector<int> changed;
    for (int row = 0; row < int(_rows.size()); ++row) {
        if (_rows[size_t(row)] != wanted[size_t(row)])
            changed += row;
    }
    if (changed.size() > mostUpdates) {
        _rows = wanted;
        Q_EMIT _model->dataChanged(_model->index(changed.first()), _model->index(changed.last()));
        return;
    }
    for (int i = 0; i < changed.size() && isCurrent(); ++i) {
        const int row = changed.at(i);
        const auto before = std::exchange(_rows[size_t(row)], wanted[size_t(row)]);
        const auto old = [&](int role) { return value(*before, role); };
        const auto now = [&](int role) { return value(*wanted[size_t(row)], role); };
        QVector<int> roles = changedRoles(*_model, old, now);
        // A missing icon is a tile with the first letter of the name.
        if (roles.contains(Qt::DisplayRole) && !roles.contains(Qt::DecorationRole))
            roles += Qt::DecorationRole;
        if (!roles.isEmpty())
            Q_EMIT _model->dataChanged(_model->index(row), _model->index(row), roles);
    }
}

void ApplicationsPrivate::_programsChanged(const QString &appId)
{
    const int row = _model->indexOf(appId);
    if (row < 0)
        return;
    const QModelIndex index = _model->index(row);
    Q_EMIT _model->dataChanged(index, index, { Applications::RunningRole, Applications::PidRole });
}

} // namespace quorvane
