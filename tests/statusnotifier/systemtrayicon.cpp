#include <QApplication>
#include <QSystemTrayIcon>
#include <QTextStream>

// A tray item that knows nothing of this library. Prints the reason of each click.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::red);
    QSystemTrayIcon icon(pixmap);
    QObject::connect(&icon, &QSystemTrayIcon::activated,
                     [](int reason) { QTextStream(stdout) << reason << '\n'; });
    icon.show();
    return QApplication::exec();
}
