#pragma once

#include "trayvalues_p.h"
#include <quorvaneshell/pictures/storedpicture_p.h>

#include <QObject>
#include <QTimer>

#include <memory>

namespace quorvane {

// The URL of a tray item's icon. It becomes another one with the icon, and with the file that the
// icon names. Files are looked at in a thread, as they may be slow and many.
class TrayIconSource : public QObject
{
    Q_OBJECT

public:
    explicit TrayIconSource(QObject *parent = nullptr);
    ~TrayIconSource() override;

    // Shows an icon, or the same one again, whose file may have changed. An icon with a file has
    // its URL when that has been looked at.
    void show(const TrayIcon &icon);
    QString source() const { return _source; }

Q_SIGNALS:
    // Not while show() is called.
    void changed();

private:
    struct Receiver;

    void _look();
    void _take(const TrayIcon &icon, const QString &stamp, qint64 spent);
    QString _makeSource(const QString &stamp) const;

    TrayIcon _icon;
    StoredPicture _picture;
    QString _pixels; // The URL of the picture.
    QString _stamp;
    QString _source;
    QTimer _pause;
    bool _isLooking = false;
    bool _outdated = false;
    std::shared_ptr<Receiver> _receiver;
};

} // namespace quorvane
