#include <quorvane/statusnotifier/statusnotifieritem.h>

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QTextStream>
#include <QTimer>

// A tray item with an icon of the theme. Every three seconds its status changes, and each click is
// printed. A watcher and a host have to run already, in whatever panel.
int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("trayitem"));

    // The bus name is claimed together with a debug line, which logging rules may have switched off.
    QLoggingCategory::setFilterRules(QStringLiteral("xdg.system_tray.debug=true"));
    xdg::StatusNotifierItem item;
    item.setTitle(QStringLiteral("Tray item example"));
    item.setIconName(QStringLiteral("mail-unread"));
    item.setAttentionIconName(QStringLiteral("mail-mark-important"));

    QTextStream out(stdout);
    const auto printClick = [&out](const char *button) {
        return [&out, button](uint x, uint y) {
            out << button << " click at " << x << ", " << y << Qt::endl;
        };
    };
    QObject::connect(&item, &xdg::StatusNotifierItem::activated, &item, printClick("first"));
    QObject::connect(&item, &xdg::StatusNotifierItem::secondaryActivated, &item,
                     printClick("second"));

    const QStringList statuses { QStringLiteral("Active"), QStringLiteral("NeedsAttention"),
                                 QStringLiteral("Passive") };
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &item, [&item, &out, &statuses] {
        const int next = (statuses.indexOf(item.Status()) + 1) % statuses.size();
        item.setStatus(statuses.at(next));
        out << "status " << item.Status() << Qt::endl;
    });
    timer.start(3000);
    return QGuiApplication::exec();
}
