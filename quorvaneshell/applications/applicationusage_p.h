#pragma once

#include "application_p.h"

#include <QObject>
#include <QSet>
#include <QThreadPool>
#include <QTimer>

#include <vector>

namespace quorvane {

// How much an application is used: the sum over its launches of 2^(-age / 14 days), which fades by
// itself, so that one number and the time for which it holds stand for all launches.
struct Use
{
    double score = 0;
    qint64 time = 0; // In milliseconds since 1970.

    double scoreAt(qint64 when) const;
    // Orders uses, at whatever time: the greater the more.
    double rank() const;
};

using Uses = QHash<QString, Use>; // By application id.

// Which applications are launched most and lately, kept for all sessions of the user in
// "quorvane/application-usage.json" in the state directory of the Base Directory Specification. There
// is one for the process, as long as somebody wants to know.
//
// It keeps the 500 that are used most and forgets what has faded to a hundredth of a launch, 93 days
// after a single one. A file that is damaged, larger than 1 MB or can't be written is as none.
class ApplicationUsage : public QObject
{
    Q_OBJECT

public:
    // It goes, and writes what it has not yet written, with the last pointer to it.
    static QSharedPointer<ApplicationUsage> shared();
    ~ApplicationUsage() override;

    // Counts a launch, if there is somebody who wants to know.
    static void launched(const QString &appId);

    // Those that are used most come first; the others stay in order.
    void sort(std::vector<ApplicationPointer> *applications) const;

    void forget(const QString &appId);
    void forgetAll();

Q_SIGNALS:
    void changed();

private:
    // What the file is to hear.
    struct Changes
    {
        bool forgetsAll = false;
        QSet<QString> forgotten;
        Uses launches; // Since then.
    };

    ApplicationUsage();

    void _add(const QString &appId);
    void _forgot();
    void _save();
    static bool _save(const QString &path, const Changes &changes, Uses *saved);

    const QString _path; // Empty if there is no place for it.
    Uses _uses;
    Changes _changes;
    QTimer _timer;
    bool _saving = false;
    QThreadPool _writer; // The last, so that it has finished when the others go.
};

} // namespace quorvane
