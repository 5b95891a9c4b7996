#pragma once

#include <QProcess>

// A process of the tray, running until the object goes.
class Peer : public QProcess
{
public:
    explicit Peer(const QString &role, const QString &name = QString("peer"))
    {
        setStandardErrorFile(nullDevice()); // A full pipe would stop it.
        start(TRAYPEER, { role, name });
        waitForReadyRead();
        readAllStandardOutput();
    }
    ~Peer() override { die(); }

    QString service() const { return QString("org.quorvane.peer-%1").arg(processId()); }
    QByteArray said() { return _said += readAllStandardOutput(); }
    void die()
    {
        kill();
        waitForFinished();
    }

private:
    QByteArray _said;
};
