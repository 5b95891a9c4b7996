#pragma once

#include <QObject>
#include <QTimer>

namespace quorvane {

class MenuConnection;

// Whether one level of a menu is open, and the wait for its program before that.
class MenuOpening : public QObject
{
    Q_OBJECT

public:
    // The connection outlives it.
    MenuOpening(int id, MenuConnection *connection);

    // From open() until it has ended, three seconds later at most.
    bool isWaiting() const { return _isWaiting; }

    void open();
    void close();
    // Goes on with what was begun before the connection had a client, or another one.
    void resume();

Q_SIGNALS:
    void waitingChanged();
    void ended(bool ok);

private:
    void _announce();
    void _end(bool ok);

    const int _id;
    MenuConnection *const _connection;
    QTimer _patience;
    bool _isOpen = false;
    bool _isWaiting = false;
};

} // namespace quorvane
