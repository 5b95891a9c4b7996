#pragma once

#include <QDBusArgument>
#include <QDBusVariant>

namespace quorvane {

// Reads a{sv} by hand, up to a number of entries, each of which a function gets as name and value:
// a program that sends millions is not waited for. The argument has to be one of that signature.
template<typename Function>
void readDictionary(const QDBusArgument &argument, int most, Function take)
{
    argument.beginMap();
    for (int read = 0; read < most && !argument.atEnd(); ++read) {
        QString name;
        QDBusVariant value;
        argument.beginMapEntry();
        argument >> name >> value;
        argument.endMapEntry();
        take(name, value.variant());
    }
    argument.endMap(); // Else the message stays in memory.
}

} // namespace quorvane
