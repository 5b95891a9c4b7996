#pragma once

#include <quorvaneshell/bus/validnames_p.h>

#include <QString>

namespace quorvane {

// Where an item of the tray is found: a bus name, well-known or unique, and the path of an object.
struct TrayAddress
{
    // Reads what an item registers as, or what a registry lists: a bus name, an object path of the
    // caller, or a bus name followed by a path. An address that could be of no item is not valid,
    // and is to be called by nobody: libdbus ends the process over some names.
    static TrayAddress fromText(const QString &text, const QString &caller = {});

    bool isValid() const { return isBusName(service) && isObjectPath(path); }
    // As registries list it, in the form that every host reads: the name, followed by the path.
    QString text() const { return service + path; }

    QString service;
    QString path;
};

inline bool operator==(const TrayAddress &one, const TrayAddress &other)
{
    return one.service == other.service && one.path == other.path;
}

} // namespace quorvane
