#pragma once

#include <quorvane/quorvane_export.h>

#include <QString>
#include <QStringList>

/*! \file
    \ingroup basedir
    The base directories of the user, after the XDG Base Directory Specification.

    Each function reads the environment anew at every call and computes text only: no directory is
    created, and none is asked whether it exists. The value of a variable is returned as it stands;
    a variable that is unset and one that is empty are the same. Every function may be called from
    any thread. */

namespace xdg {

/*! The directory of the user's data files: \c XDG_DATA_HOME, or ~/.local/share.

    The home directory is \c HOME; without it /home/ and \c USER, and /root for the user root or
    for no name at all. */
QUORVANE_EXPORT QString dataHome();

/*! The directory of the user's configuration files: \c XDG_CONFIG_HOME, or ~/.config. */
QUORVANE_EXPORT QString configHome();

/*! The directory of the user's cached data: \c XDG_CACHE_HOME, or ~/.cache. */
QUORVANE_EXPORT QString cacheHome();

/*! The directory of the user's state files: \c XDG_STATE_HOME, or ~/.local/state. */
QUORVANE_EXPORT QString stateHome();

/*! The directory of the user's sockets and other runtime files: \c XDG_RUNTIME_DIR.

    Without that variable the result is the literal text "/run/user/%i", which names no directory:
    treat it as "there is none". Qt writes a warning about a missing argument at each call. */
QUORVANE_EXPORT QString runtimeDir();

/*! The system's data directories: \c XDG_DATA_DIRS, or /usr/local/share and /usr/share.

    The variable is split at every colon and empty parts stay in the list. dataHome() is not in it. */
QUORVANE_EXPORT QStringList dataDirs();

/*! The system's configuration directories: \c XDG_CONFIG_DIRS, or /etc/xdg.

    The variable is split at every colon and empty parts stay in the list. configHome() is not in
    it. */
QUORVANE_EXPORT QStringList configDirs();

} // namespace xdg
