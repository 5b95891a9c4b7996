#include "applicationlauncher_p.h"

#include "activation_p.h"
#include "applicationusage_p.h"
#include "launchuri_p.h"
#include "process_p.h"
#include "programs_p.h"

#include <QPointer>

#include <algorithm>

namespace quorvane {

namespace {

constexpr int earlyEnd = 2000;

bool hasAction(const Application &application, const QString &actionId)
{
    return std::any_of(application.actions.cbegin(), application.actions.cend(),
                       [&actionId](const QVariant &action) {
                           return action.toMap().value(QStringLiteral("id")) == actionId;
                       });
}

} // namespace

ApplicationLauncher::ApplicationLauncher(QObject *parent)
    : QObject(parent)
{
    connect(Programs::instance(), &Programs::changed, this, &ApplicationLauncher::programsChanged);
}

void ApplicationLauncher::launch(const ApplicationPointer &application, const QVariantList &urls)
{
    _launch({ application, {}, {}, false }, urls);
}

void ApplicationLauncher::launchInTerminal(const ApplicationPointer &application,
                                           const QVariantList &urls)
{
    _launch({ application, {}, {}, true }, urls);
}

void ApplicationLauncher::invoke(const ApplicationPointer &application, const QString &actionId)
{
    if (hasAction(*application, actionId))
        _launch({ application, actionId, {}, false }, {});
    else
        Q_EMIT failed(application->appId,
                      QStringLiteral("%1 has no action %2").arg(application->appId, actionId));
}

void ApplicationLauncher::stop(const QString &appId)
{
    Programs::instance()->stop(appId);
}

qint64 ApplicationLauncher::pid(const QString &appId) const
{
    return Programs::instance()->pid(appId);
}

void ApplicationLauncher::_launch(LaunchRequest request, const QVariantList &urls)
{
    for (const QVariant &url : urls) {
        const QByteArray uri = launchUri(url);
        if (uri.isEmpty()) {
            const QString text = QStringLiteral("\"%1\" is neither a path nor a URL");
            Q_EMIT failed(request.application->appId, text.arg(url.toString()));
            return;
        }
        request.uris += uri;
    }
    if (!request.inTerminal && Activation::isFor(*request.application))
        _startByBus(request);
    else
        _startProgram(request);
}

void ApplicationLauncher::_startProgram(const LaunchRequest &request)
{
    const QPointer<ApplicationLauncher> alive = this;
    const QString appId = request.application->appId;
    const Launch launched = launchProgram(request);
    for (const qint64 pid : launched.pids) {
        if (alive)
            _follow(appId, pid);
        else
            Programs::instance()->add(appId, pid);
    }
    if (launched.error.isEmpty())
        ApplicationUsage::launched(appId);
    else if (alive)
        Q_EMIT failed(appId, launched.error);
}

void ApplicationLauncher::_startByBus(const LaunchRequest &request)
{
    Programs *programs = Programs::instance();
    const auto *activation = new Activation(request, programs);
    connect(activation, &Activation::running, programs,
            [programs, appId = request.application->appId](qint64 pid) {
                programs->add(appId, pid);
            });
    connect(activation, &Activation::succeeded, programs,
            [appId = request.application->appId] { ApplicationUsage::launched(appId); });
    connect(activation, &Activation::failed, this,
            [this, request](const QString &message, bool isUnknown) {
                if (isUnknown && request.application->hasProgram)
                    _startProgram(request);
                else
                    Q_EMIT failed(request.application->appId, message);
            });
}

void ApplicationLauncher::_follow(const QString &appId, qint64 pid)
{
    const QPointer<ApplicationLauncher> alive = this;
    const QPointer<Process> process = Programs::instance()->add(appId, pid);
    if (!alive || !process)
        return;
    connect(process, &Process::ended, this, [this, appId, process](const QString &error) {
        if (!error.isEmpty() && process->age() < earlyEnd)
            Q_EMIT failed(appId, error);
    });
}

} // namespace quorvane
