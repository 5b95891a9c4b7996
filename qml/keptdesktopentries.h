#pragma once

#include <quorvane/desktop/desktopentries.h>

#include <QQmlEngine>

// DesktopEntries as QML has them. An engine of Qt 6 deletes an object that a method returns once it
// is done with it, unless it is told that the object is not its own.
class KeptDesktopEntries : public xdg::DesktopEntries
{
    Q_OBJECT

public:
    using DesktopEntries::DesktopEntries;

    QVariant data(const QModelIndex &index, int role) const override
    {
        const QVariant value = DesktopEntries::data(index, role);
        if (const auto *entry = value.value<const xdg::Entry *>())
            QQmlEngine::setObjectOwnership(const_cast<xdg::Entry *>(entry),
                                           QQmlEngine::CppOwnership);
        return value;
    }
};
