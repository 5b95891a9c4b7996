#include "panel.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Panel panel;
    panel.show();
    return QApplication::exec();
}
