#include <quorvane/desktop/process_p.h>

#include <signal.h>

namespace xdg {

void terminateProcess(qint64 pid)
{
    if (pid > 0)
        kill(static_cast<pid_t>(pid), SIGTERM);
}

} // namespace xdg
