#pragma once

#include "menuclient_p.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

namespace quorvane {

// What all levels of a menu share: the names by which it is found, and the client of what is there.
// There is no client while the names are of nothing that could be called.
//
// Names take effect from the event loop: what a handler of a signal does must not replace the rows
// that are being announced.
class MenuConnection : public QObject
{
    Q_OBJECT

public:
    // The clients belong to the owner.
    explicit MenuConnection(QObject *owner);

    QString service() const { return _service; }
    QString path() const { return _path; }
    // Whether it is another one.
    bool setService(const QString &service);
    bool setPath(const QString &path);
    // Takes up the names again.
    void renew();

    bool hasClient() const { return _client != nullptr; }
    // Whether the menu is on its way.
    bool isLoading() const;
    bool responds() const;
    QString themePath() const;

    // As those of the client; nothing happens without one.
    void prepare(int id);
    void sendEvent(int id, const QString &event);

Q_SIGNALS:
    // The menu that was read is no longer that of the names,
    void left();
    // and now there is a client of what they name, or none.
    void renewed();

    // Those of the client.
    void layoutReceived(const quorvane::MenuItem &root);
    void propertiesReceived(const QHash<int, QVariantMap> &updates);
    void themePathChanged();
    void respondsChanged();
    void prepared(int id, bool ok);
    void activationRequested();

private:
    void _renew();
    bool _set(QString *name, const QString &value);

    QObject *const _owner;
    QString _service;
    QString _path;
    QTimer _renewing;
    QPointer<MenuClient> _client;
};

} // namespace quorvane
