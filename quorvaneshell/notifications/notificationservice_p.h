#pragma once

#include "notificationinhibitions_p.h"
#include "notificationlist_p.h"

#include <QObject>
#include <QSharedPointer>
#include <QStringList>
#include <QVariantMap>

namespace quorvane {

class BusService;

// The notification service of this process: its names on the bus, what programs are told of it, and
// what holds for all that they post. It is on the bus as long as somebody has a pointer to it.
class NotificationService : public QObject
{
    Q_OBJECT

public:
    static QSharedPointer<NotificationService> shared();
    ~NotificationService() override;

    // See Notifications.
    bool isRegistered() const;
    QVariantMap owner() const;
    QStringList capabilities() const { return _capabilities; }
    void setCapabilities(const QStringList &capabilities);
    int defaultTimeout() const { return _defaultTimeout; }
    void setDefaultTimeout(int milliseconds);
    int limit() const { return _list.limit(); }
    void setLimit(int limit);
    void setKeepExpired(bool keepExpired);
    bool doNotDisturb() const { return _doNotDisturb; }
    void setDoNotDisturb(bool doNotDisturb);
    bool isInhibited() const { return _doNotDisturb || !_inhibitions.isEmpty(); }

    // What a call of Notify does; the id of the post is not read. Returns the id.
    uint post(NotificationPost post);
    NotificationList *list() { return &_list; }
    NotificationInhibitions *inhibitions() { return &_inhibitions; }

Q_SIGNALS:
    void registrationChanged();
    void capabilitiesChanged();
    void defaultTimeoutChanged();
    void limitChanged();
    void keepExpiredChanged();
    void doNotDisturbChanged();
    void inhibitionsChanged();
    void inhibitedChanged();

private:
    NotificationService();
    void _tellOfInhibitions();
    void _tellWhetherInhibited();

    QStringList _capabilities;
    int _defaultTimeout = 0;
    bool _doNotDisturb = false;
    bool _wasInhibited = false; // As it was told last.
    NotificationInhibitions _inhibitions;
    NotificationList _list;
    BusService *_bus;
};

} // namespace quorvane
