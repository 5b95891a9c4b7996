#pragma once

#include <quorvaneshell/pictures/storedpicture_p.h>

#include <QPointer>
#include <QVariantMap>

#include <memory>

namespace quorvane {

class TrayMenu;

// One row of a menu: what it shows, by the roles of TrayMenu, out of the properties of its item.
class MenuRow
{
public:
    explicit MenuRow(int id);

    int id() const { return _id; }
    const QVariantMap &properties() const { return _properties; }
    void setProperties(const QVariantMap &properties);

    // Icons are looked for in the folder first.
    QVariant value(int role, const QString &themePath) const;

    QPointer<TrayMenu> submenu;

private:
    QString _text(const char *name) const;
    QString _iconSource(const QString &themePath) const;

    int _id;
    QVariantMap _properties;
    std::unique_ptr<StoredPicture> _picture = std::make_unique<StoredPicture>();
    QString _pictureSource;
};

} // namespace quorvane
