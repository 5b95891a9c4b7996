#include "patientcall_p.h"

#include "asynccall_p.h"

#include <utility>

namespace quorvane {

PatientCall::PatientCall(const QString &service, const QString &path, const QString &interface,
                         const QString &method, const QVariantList &arguments, QObject *parent,
                         std::chrono::milliseconds patience)
    : QObject(parent)
    , _service(service)
    , _path(path)
    , _interface(interface)
    , _method(method)
    , _arguments(arguments)
    , _patience(patience)
{
    _again.setSingleShot(true);
    connect(&_again, &QTimer::timeout, this, [this] {
        _again.setInterval(2 * _again.interval());
        _send();
    });
}

void PatientCall::ask()
{
    delete std::exchange(_round, new QObject(this));
    _again.setInterval(_patience);
    _send();
}

void PatientCall::_send()
{
    _again.start();
    whenAnswered(callAsync(_service, _path, _interface, _method, _arguments), _round,
                 [this, round = _round](const QDBusMessage &answer) {
                     if (round != _round)
                         return;
                     _again.stop();
                     std::exchange(_round, nullptr)->deleteLater();
                     Q_EMIT answered(answer);
                 });
}

} // namespace quorvane
