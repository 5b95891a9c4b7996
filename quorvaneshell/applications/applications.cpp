#include "applications.h"

#include "activation_p.h"
#include "applicationlist_p.h"
#include "applicationsearch_p.h"
#include "categoryname_p.h"
#include "launch_p.h"
#include "launchuri_p.h"
#include "process_p.h"
#include "programs_p.h"

#include <quorvaneshell/search/wordmatch.h>

#include <algorithm>
#include <array>

namespace quorvane {

namespace {

constexpr int earlyEnd = 2000;

// Beyond this, views are told of one change from the first row to the last.
constexpr int mostUpdates = 100;

} // namespace

Applications::Applications(QObject *parent)
    : ListModel(parent)
    , _list(ApplicationList::shared())
{
    _list->read();
    connect(_list.data(), &ApplicationList::changed, this, &Applications::_listChanged);
    connect(Programs::instance(), &Programs::changed, this, &Applications::_programsChanged);

    _listChanged();
}

Applications::~Applications() = default;

void Applications::setSearch(const QString &search)
{
    if (search == _search)
        return;
    _search = search;
    _words = foldedWords(search);
    if (_show())
        Q_EMIT searchChanged();
}

void Applications::setCategory(const QString &category)
{
    if (category == _category)
        return;
    _category = category;
    if (_show())
        Q_EMIT categoryChanged();
}

void Applications::setShowAll(bool showAll)
{
    if (showAll == _showAll)
        return;
    _showAll = showAll;
    const QPointer<Applications> alive = this;
    _updateCategories();
    if (alive && _show())
        Q_EMIT showAllChanged();
}

int Applications::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(_rows.size());
}

QVariant Applications::data(const QModelIndex &index, int role) const
{
    return checkIndex(index, CheckIndexOption::IndexIsValid)
                   ? _value(*_rows.at(size_t(index.row())), role)
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

QVariantMap Applications::find(const QString &appId) const
{
    const ApplicationPointer application = _list->find(appId);
    return application ? _values(*application) : QVariantMap();
}

QString Applications::categoryName(const QString &category) const
{
    return quorvane::categoryName(category);
}

void Applications::launch(const QString &appId, const QVariantList &urls)
{
    _start(appId, {}, urls, false);
}

void Applications::launchAction(const QString &appId, const QString &action)
{
    const ApplicationPointer application = _list->find(appId);
    const bool known
            = application
              && std::any_of(application->actions.cbegin(), application->actions.cend(),
                             [&action](const QVariant &known) {
                                 return known.toMap().value(QStringLiteral("id")) == action;
                             });
    if (known)
        _start(appId, action, {}, false);
    else
        Q_EMIT failed(appId, QStringLiteral("%1 has no action %2").arg(appId, action));
}

void Applications::launchInTerminal(const QString &appId, const QVariantList &urls)
{
    _start(appId, {}, urls, true);
}

void Applications::stop(const QString &appId)
{
    Programs::instance()->stop(appId);
}

QVariantMap Applications::_values(const Application &application) const
{
    QVariantMap values;
    const QHash<int, QByteArray> names = roleNames();
    for (auto name = names.cbegin(); name != names.cend(); ++name)
        values.insert(QString::fromLatin1(*name), _value(application, name.key()));
    return values;
}

QVariant Applications::_value(const Application &application, int role) const
{
    switch (role) {
    case AppIdRole:
        return application.appId;
    case Qt::DisplayRole:
    case NameRole:
        return application.name;
    case GenericNameRole:
        return application.genericName;
    case CommentRole:
        return application.comment;
    case KeywordsRole:
        return application.keywords;
    case CategoriesRole:
        return application.categories;
    case IconSourceRole:
        return application.iconSource;
    case TerminalRole:
        return application.terminal;
    case ActionsRole:
        return application.actions;
    case RunningRole:
        return Programs::instance()->pid(application.appId) != 0;
    case PidRole:
        return Programs::instance()->pid(application.appId);
    case PathRole:
        return application.path;
    default:
        return {};
    }
}

QVector<int> Applications::_differences(const Application &one, const Application &other) const
{
    QVector<int> roles;
    for (int role = AppIdRole; role <= PathRole; ++role) {
        if (_value(one, role) != _value(other, role))
            roles += role;
    }
    if (roles.contains(NameRole))
        roles += Qt::DisplayRole;
    return roles;
}

void Applications::_listChanged()
{
    const QPointer<Applications> alive = this;
    _updateCategories();
    if (alive)
        _show();
}

void Applications::_updateCategories()
{
    const QStringList categories = _list->categories(_showAll);
    if (std::exchange(_categories, categories) != categories)
        Q_EMIT categoriesChanged();
}

bool Applications::_isInCategory(const Application &application) const
{
    const auto is = [this](const QString &category) {
        return category == _category || mainCategory(category) == _category;
    };
    return _category.isEmpty()
           || std::any_of(application.categories.cbegin(), application.categories.cend(), is);
}

Applications::Wanted Applications::_wanted() const
{
    std::array<Wanted, NoMatch> ranked;
    for (const ApplicationPointer &application : _list->applications()) {
        if ((!application->shown && !_showAll) || !_isInCategory(*application))
            continue;
        const Match match = _words.isEmpty() ? ExactName : compare(*application, _words);
        if (match != NoMatch)
            ranked[match].push_back(application);
    }
    // The less of a name is left to be typed, the likelier it is meant.
    std::stable_sort(ranked[BeginsName].begin(), ranked[BeginsName].end(),
                     [](const ApplicationPointer &one, const ApplicationPointer &other) {
                         return one->foldedName.size() < other->foldedName.size();
                     });
    Wanted &wanted = ranked[ExactName];
    for (int match = ExactName + 1; match < NoMatch; ++match)
        wanted.insert(wanted.end(), ranked[match].cbegin(), ranked[match].cend());
    return std::move(wanted);
}

// Returns whether the model is still there.
bool Applications::_show()
{
    const QPointer<Applications> alive = this;
    _walk.show(_wanted());
    return alive;
}

template<typename IsCurrent>
void Applications::_updateRows(const Wanted &wanted, const IsCurrent &isCurrent)
{
    QVector<int> changed;
    for (int row = 0; row < count(); ++row) {
        if (_rows[size_t(row)] != wanted[size_t(row)])
            changed += row;
    }
    if (changed.size() > mostUpdates) {
        _rows = wanted;
        Q_EMIT dataChanged(index(changed.first()), index(changed.last()));
        return;
    }
    for (int i = 0; i < changed.size() && isCurrent(); ++i) {
        const int row = changed.at(i);
        const auto before = std::exchange(_rows[size_t(row)], wanted[size_t(row)]);
        const QVector<int> roles = _differences(*before, *_rows[size_t(row)]);
        if (!roles.isEmpty())
            Q_EMIT dataChanged(index(row), index(row), roles);
    }
}

void Applications::_start(const QString &appId, const QString &action, const QVariantList &urls,
                          bool inTerminal)
{
    const ApplicationPointer application = _list->find(appId);
    if (!application) {
        Q_EMIT failed(appId, QStringLiteral("%1 is not installed").arg(appId));
        return;
    }
    QByteArrayList uris;
    for (const QVariant &url : urls) {
        uris += launchUri(url);
        if (uris.last().isEmpty()) {
            const QString text = QStringLiteral("\"%1\" is neither a path nor a URL");
            Q_EMIT failed(appId, text.arg(url.toString()));
            return;
        }
    }
    if (!inTerminal && isActivatedByBus(*application))
        _startByBus(application, action, uris);
    else
        _startProgram(application, action, uris, inTerminal);
}

void Applications::_startProgram(const ApplicationPointer &application, const QString &action,
                                 const QByteArrayList &uris, bool inTerminal)
{
    const QPointer<Applications> alive = this;
    const Launch launched = quorvane::launch(*application, action, uris, inTerminal);
    for (qint64 pid : launched.pids) {
        if (alive)
            _follow(application->appId, pid);
        else
            Programs::instance()->add(application->appId, pid);
    }
    if (alive && !launched.error.isEmpty())
        Q_EMIT failed(application->appId, launched.error);
}

void Applications::_startByBus(const ApplicationPointer &application, const QString &action,
                               const QByteArrayList &uris)
{
    // It goes on without this model.
    Programs *programs = Programs::instance();
    const auto *activation = new Activation(application, action, uris, programs);
    connect(activation, &Activation::running, programs,
            [programs, application](qint64 pid) { programs->add(application->appId, pid); });
    connect(activation, &Activation::failed, this,
            [this, application, action, uris](const QString &message, bool isUnknown) {
                if (isUnknown && application->hasProgram)
                    _startProgram(application, action, uris, false);
                else
                    Q_EMIT failed(application->appId, message);
            });
}

void Applications::_follow(const QString &appId, qint64 pid)
{
    const QPointer<Applications> alive = this;
    const QPointer<Process> process = Programs::instance()->add(appId, pid);
    if (!alive || !process)
        return;
    connect(process, &Process::ended, this, [this, appId, process](const QString &error) {
        if (!error.isEmpty() && process->age() < earlyEnd)
            Q_EMIT failed(appId, error);
    });
}

void Applications::_programsChanged(const QString &appId)
{
    const auto found
            = std::find_if(_rows.cbegin(), _rows.cend(), [&appId](const auto &application) {
                  return application->appId == appId;
              });
    if (found == _rows.cend())
        return;
    const QModelIndex changed = index(static_cast<int>(found - _rows.cbegin()));
    Q_EMIT dataChanged(changed, changed, { RunningRole, PidRole });
}

} // namespace quorvane
