#include <quorvane/basedir/logging.h>

Q_LOGGING_CATEGORY(AUTO_START, "xdg.auto_start")
Q_LOGGING_CATEGORY(SYSTEM_TRAY, "xdg.system_tray")
