#pragma once

#include <QString>

// The keys of a desktop entry that the library itself asks for, in the form "group/name".
namespace xdg {
namespace keys {

inline QString exec()
{
    return QStringLiteral("Desktop Entry/Exec");
}

inline QString startAction()
{
    return QStringLiteral("Desktop Action Start/Exec");
}

inline QString stopAction()
{
    return QStringLiteral("Desktop Action Stop/Exec");
}

inline QString icon()
{
    return QStringLiteral("Desktop Entry/Icon");
}

inline QString keywords()
{
    return QStringLiteral("Desktop Entry/Keywords");
}

inline QString name()
{
    return QStringLiteral("Desktop Entry/Name");
}

inline QString categories()
{
    return QStringLiteral("Desktop Entry/Categories");
}

inline QString noDisplay()
{
    return QStringLiteral("Desktop Entry/NoDisplay");
}

} // namespace keys
} // namespace xdg
