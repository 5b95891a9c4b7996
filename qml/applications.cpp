#include "applications.h"

#include "applicationlist.h"
#include "categoryname.h"
#include "launch.h"
#include "process.h"
#include "programs.h"
#include "wordmatch.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QSet>

#include <algorithm>

namespace {

constexpr int earlyEnd = 2000;

// Beyond this, views are told of one change from the first row to the last.
constexpr int mostUpdates = 100;

const QStringList &mainCategories()
{
    static const QStringList categories {
        QStringLiteral("Audio"),     QStringLiteral("AudioVideo"), QStringLiteral("Development"),
        QStringLiteral("Education"), QStringLiteral("Game"),       QStringLiteral("Graphics"),
        QStringLiteral("Network"),   QStringLiteral("Office"),     QStringLiteral("Science"),
        QStringLiteral("Settings"),  QStringLiteral("System"),     QStringLiteral("Utility"),
        QStringLiteral("Video"),
    };
    return categories;
}

enum Match { ExactName, BeginsWords, WithinName, None };

Match compare(const Application &application, const QStringList &words)
{
    Match worst = BeginsWords;
    for (const QString &word : words) {
        if (beginsWord(application.foldedWords, word))
            continue;
        if (!application.foldedName.contains(word))
            return None;
        worst = WithinName;
    }
    return application.foldedName == words.join(QLatin1Char(' ')) ? ExactName : worst;
}

} // namespace

Applications::Applications(QObject *parent)
    : QAbstractListModel(parent)
    , _list(ApplicationList::shared())
{
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
    _show();
    Q_EMIT searchChanged();
}

void Applications::setCategory(const QString &category)
{
    if (category == _category)
        return;
    _category = category;
    _show();
    Q_EMIT categoryChanged();
}

void Applications::setShowAll(bool showAll)
{
    if (showAll == _showAll)
        return;
    _showAll = showAll;
    _updateCategories();
    _show();
    Q_EMIT showAllChanged();
}

int Applications::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
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

QVariantMap Applications::get(int row) const
{
    return row >= 0 && row < count() ? _values(*_rows.at(size_t(row))) : QVariantMap();
}

QVariantMap Applications::find(const QString &appId) const
{
    const ApplicationPointer application = _find(appId);
    return application ? _values(*application) : QVariantMap();
}

QString Applications::categoryName(const QString &category) const
{
    return ::categoryName(category);
}

void Applications::launch(const QString &appId, const QList<QUrl> &urls)
{
    _start(appId, {}, urls);
}

void Applications::launchAction(const QString &appId, const QString &action)
{
    const ApplicationPointer application = _find(appId);
    const bool known
            = application
              && std::any_of(application->actions.cbegin(), application->actions.cend(),
                             [&action](const QVariant &known) {
                                 return known.toMap().value(QStringLiteral("id")) == action;
                             });
    if (known)
        _start(appId, action, {});
    else
        Q_EMIT failed(appId, QStringLiteral("%1 has no action %2").arg(appId, action));
}

void Applications::launchInTerminal(const QString &appId, const QList<QUrl> &urls)
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
    _updateCategories();
    _show();
}

void Applications::_updateCategories()
{
    QSet<QString> occurring;
    const auto all = _list->applications();
    for (const ApplicationPointer &application : all) {
        if (!application->shown && !_showAll)
            continue;
        for (const QString &category : application->categories)
            occurring.insert(category);
    }
    QStringList categories = mainCategories();
    const auto isAbsent = [&](const QString &category) { return !occurring.contains(category); };
    categories.erase(std::remove_if(categories.begin(), categories.end(), isAbsent),
                     categories.end());
    if (std::exchange(_categories, categories) != categories)
        Q_EMIT categoriesChanged();
}

Applications::Wanted Applications::_wanted() const
{
    Wanted ranked[None];
    const auto all = _list->applications();
    for (const ApplicationPointer &application : all) {
        if ((!application->shown && !_showAll)
            || !(_category.isEmpty() || application->categories.contains(_category)))
            continue;
        const Match rank = compare(*application, _words);
        if (rank != None)
            ranked[rank].push_back(application);
    }
    Wanted &wanted = ranked[ExactName];
    for (int rank = ExactName + 1; rank < None; ++rank)
        wanted.insert(wanted.end(), ranked[rank].cbegin(), ranked[rank].cend());
    return wanted;
}

void Applications::_show()
{
    _walk.show(_wanted());
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

ApplicationPointer Applications::_find(const QString &appId) const
{
    const auto all = _list->applications();
    const auto found = std::find_if(all.cbegin(), all.cend(), [&appId](const auto &application) {
        return application->appId == appId;
    });
    return found != all.cend() ? *found : ApplicationPointer();
}

void Applications::_start(const QString &appId, const QString &action, const QList<QUrl> &urls,
                          bool inTerminal)
{
    const ApplicationPointer application = _find(appId);
    if (!application) {
        Q_EMIT failed(appId, QStringLiteral("%1 is not installed").arg(appId));
        return;
    }
    if (!inTerminal && isActivatedByBus(*application)) {
        _startByBus(application, action, urls);
        return;
    }
    const Launch launched = ::launch(*application, action, urls, inTerminal);
    for (qint64 pid : launched.pids)
        _follow(appId, pid);
    if (!launched.error.isEmpty())
        Q_EMIT failed(appId, launched.error);
}

void Applications::_startByBus(const ApplicationPointer &application, const QString &action,
                               const QList<QUrl> &urls)
{
    auto *watcher = new QDBusPendingCallWatcher(activate(*application, action, urls), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, application, watcher] {
        watcher->deleteLater();
        if (watcher->isError())
            Q_EMIT failed(application->appId, watcher->error().message());
        else
            _askForPid(application);
    });
}

void Applications::_askForPid(const ApplicationPointer &application)
{
    auto question = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetConnectionUnixProcessID"));
    question.setArguments({ busName(*application) });
    auto *watcher
            = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, application, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> pid = *watcher;
        if (pid.isValid() && pid.value() > 0)
            _follow(application->appId, pid.value());
    });
}

void Applications::_follow(const QString &appId, qint64 pid)
{
    const Process *process = Programs::instance()->add(appId, pid);
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
