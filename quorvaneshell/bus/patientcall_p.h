#pragma once

#include <QObject>
#include <QTimer>
#include <QVariantList>

#include <chrono>

class QDBusMessage;

namespace quorvane {

// A call that reads something of a program, for which nobody waits. One that stays unanswered is
// sent again after its patience, 30 seconds, and then ever less often, as programs lose calls; the
// first answer to any of them counts, so that a program which was stopped is heard as soon as it
// goes on.
class PatientCall : public QObject
{
    Q_OBJECT

public:
    // The names have to be valid.
    PatientCall(const QString &service, const QString &path, const QString &interface,
                const QString &method, const QVariantList &arguments, QObject *parent = nullptr,
                std::chrono::milliseconds patience = std::chrono::seconds(30));

    // Calls anew. Answers to calls before don't come any more.
    void ask();
    // Whether there is no answer yet.
    bool isWaiting() const { return _round != nullptr; }

Q_SIGNALS:
    // The answer, or the error that came in its place.
    void answered(const QDBusMessage &answer);

private:
    void _send();

    const QString _service;
    const QString _path;
    const QString _interface;
    const QString _method;
    const QVariantList _arguments;
    const std::chrono::milliseconds _patience;
    QTimer _again;
    QObject *_round = nullptr; // What waits for answers belongs to it.
};

} // namespace quorvane
