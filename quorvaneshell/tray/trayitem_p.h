#pragma once

#include "trayaddress_p.h"
#include "trayiconsource_p.h"
#include "trayvalues_p.h"

#include <quorvaneshell/bus/patientcall_p.h>
#include <quorvaneshell/menus/traymenu.h>

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVariant>
#include <QVector>

class QDBusMessage;

namespace quorvane {

// One item of the tray: its values as it told them last, and the calls to it. Nothing waits for it.
//
// All values are read in one call, again shortly after the item has said that some have changed. An
// item that leaves the call unanswered for three seconds keeps its values and does not respond,
// until it answers. One that answers with an error may be there only later: it is asked again a few
// times, and whenever it says that something has changed.
class TrayItem : public QObject
{
    Q_OBJECT

public:
    // The owner is the unique name of its program.
    TrayItem(const TrayAddress &address, const QString &owner, QObject *parent = nullptr);

    const TrayAddress &address() const { return _address; }
    const QString &owner() const { return _owner; }
    // Whether there is something to show: it has answered with its values, or does not answer.
    bool isShown() const { return _shown; }
    // By the roles of Tray, and those of Qt.
    QVariant value(int role) const;

    // The item's menu, read from the first call on; null for an item without one. Belongs to the
    // item.
    TrayMenu *menu();

    // Reads the values soon, together with what else changes until then.
    void refresh();

    void activate(int x, int y);
    void secondaryActivate(int x, int y);
    void contextMenu(int x, int y);
    void scroll(int delta, Qt::Orientation orientation);

Q_SIGNALS:
    void shownChanged();
    void changed(const QVector<int> &roles);
    void menuRequested(int x, int y);
    // A click came to nothing.
    void failed(const QString &message);

private:
    void _read();
    void _take(const QDBusMessage &answer);
    void _miss();
    void _takeValues(const TrayValues &values);
    void _setMenuPath(const QString &path);
    void _probeMenu();
    void _tryAgain();
    void _set(int role, const QVariant &value);
    void _announce();
    void _setShown(bool shown);
    QString _text() const;
    template<typename Function>
    void _click(const QString &method, const QVariantList &arguments, Function failed);
    void _fail(const QDBusMessage &error);
    void _missClick();

    const TrayAddress _address;
    const QString _owner;
    QString _menuPath; // Empty without a menu.
    QPointer<TrayMenu> _menu;
    QHash<int, QVariant> _values;
    QVector<int> _changed;
    TrayIconSource _icon;
    TrayIconSource _overlay;
    PatientCall _reading;
    QTimer _pause;    // From the first change to the call,
    QTimer _patience; // and from there to its answer.
    QTimer _retry;
    QTimer _clickPatience; // From the first click without an answer.
    int _unansweredClicks = 0;
    int _retriesLeft = 5;
    bool _shown = false;
    bool _hasAnswered = false;
    bool _outdated = false;
    bool _isMenuRefused = false;
    bool _hasMenuAlone = false;
};

} // namespace quorvane
