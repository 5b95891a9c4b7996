#pragma once

#include <QDebug>
#include <QStringList>

namespace xdg {

// A list in a message of the library: ("a", "b"). Qt 6 by itself writes the name of the class before.
struct ListText
{
    const QStringList &texts;
};

inline QDebug operator<<(QDebug debug, const ListText &list)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << '(';
    const char *separator = "";
    for (const QString &text : list.texts) {
        debug << separator << text;
        separator = ", ";
    }
    return debug << ')';
}

} // namespace xdg
