#pragma once

#include "menuitem_p.h"

#include <quorvaneshell/bus/busnames_p.h>
#include <quorvaneshell/bus/patientcall_p.h>

#include <QObject>
#include <QSet>
#include <QTimer>

class QDBusMessage;

namespace quorvane {

// One menu on the session bus, spoken to without ever waiting. It fetches the layout at once and
// whenever the menu says that it changed, with one call at a time, however often it says so.
// Changes of properties are taken together; of more than a few at a time the layout tells. All of
// it happens 20 times a second at most, and the less often the longer it takes.
class MenuClient : public QObject
{
    Q_OBJECT

public:
    // Both names are valid ones: libdbus ends the process over others.
    MenuClient(const QString &service, const QString &path, QObject *parent = nullptr);

    // Whether the menu has been received, or isn't there.
    bool isLoaded() const;
    // False from when a call has gone unanswered for three seconds until an answer comes.
    bool responds() const;
    // The folder in which the menu's icon names are looked for first; often empty.
    QString themePath() const;

    // Tells the menu that the children of an item are about to be shown, and waits for what it
    // makes of that. Ends with prepared().
    void prepare(int id);
    // Tells the menu what happened to an item: "clicked", "opened" or "closed".
    void sendEvent(int id, const QString &event);

Q_SIGNALS:
    // The whole menu; empty when it is gone.
    void layoutReceived(const quorvane::MenuItem &root);
    void propertiesReceived(const QHash<int, QVariantMap> &updates);
    void themePathChanged();
    void respondsChanged();
    // After prepare(); the layout has been received by now if there was a new one.
    void prepared(int id, bool ok);
    // The program asks for its menu to be shown.
    void activationRequested();

private Q_SLOTS:
    void _hearMenu(const QDBusMessage &signal);

private:
    void _ownerChanged(const QString &owner);
    void _begin();
    void _layoutUpdated();
    void _propertiesUpdated(const QDBusMessage &signal);
    void _update();
    void _rest(qint64 nanoseconds);
    void _fetch();
    void _fetched(const QDBusMessage &answer);
    void _announced(int id, const QDBusMessage &answer);
    void _endPreparations(bool ok);
    void _expectAnswer();
    void _miss();
    void _hear(const QDBusMessage &answer);
    void _setResponds(bool responds);

    const QString _service;
    const QString _path;
    BusNames _names;
    QString _owner; // Whose signals count.
    bool _isOwnerKnown = false;
    PatientCall _layout;
    PatientCall _theme;
    QTimer _pause; // From the first change to when it is taken.
    QTimer _patience;
    QString _themePath;
    QSet<int> _announcing;
    QSet<int> _awaitingLayout;
    QHash<int, QVariantMap> _updates; // Of properties.
    qint64 _readingTime = 0;          // What those have taken, in nanoseconds.
    bool _isLayoutOutdated = false;
    bool _fetchAgain = false;
    bool _loaded = false;
    bool _responds = true;
};

} // namespace quorvane
