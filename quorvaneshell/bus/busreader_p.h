#pragma once

namespace quorvane {

// Lets the session bus be read whatever the interface does.
//
// libdbus stops reading when what was received and not yet handled is more than a limit, and goes
// on when enough of it has been. Of that Qt hears on the thread that handled the last message, from
// which it can't enable its socket notifier: nothing is ever read again. So this puts notifiers in
// the place of Qt's that know their thread, and lowers the limit from 63 MB to 8 MB, since what
// waits as objects of Qt is several times as large. Beyond it messages wait in the bus, whose
// limits for a client count.
//
// Waits for nothing, and does nothing without a bus or when it was called before.
void keepReadingSessionBus();

} // namespace quorvane
