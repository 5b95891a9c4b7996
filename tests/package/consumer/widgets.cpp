#include <quorvaneshell/menus/traymenu.h>
#include <quorvanewidgets/traymenupopup.h>

#include <QApplication>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    quorvane::TrayMenu menu;
    const quorvane::TrayMenuPopup popup(&menu);
    return popup.trayMenu() == &menu ? 0 : 1;
}
