#pragma once

#include "application.h"

#include <QObject>
#include <QThreadPool>
#include <QTimer>

class ApplicationFolders;

// The installed applications, read and watched once for all models of the process.
class ApplicationList : public QObject
{
    Q_OBJECT

public:
    // Reads the list if nobody has it yet. It goes with the last pointer to it.
    static QSharedPointer<ApplicationList> shared();
    ~ApplicationList() override;

    // Sorted by name. An application that has not changed may be another object after a change.
    QVector<ApplicationPointer> applications() const { return _applications; }

Q_SIGNALS:
    // The applications may be others. Comes at most a few times a second.
    void changed();

private:
    ApplicationList();

    void _read();

    QVector<ApplicationPointer> _applications;
    ApplicationFolders *_folders;
    QTimer _timer;
    bool _reading = false;
    QThreadPool _reader; // The last, so that it has finished when the others go.
};
