#pragma once

class QString;

namespace xdg {

/*! Whether \a text has the form of a bus name, well-known or unique.

    Service names come from strangers, and libdbus ends the process over some that Qt hands on: a
    match rule with a letter outside ASCII, a call to a name without a dot. */
bool isBusName(const QString &text);

} // namespace xdg
