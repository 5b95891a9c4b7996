#include <QCommandLineParser>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QStyleHints>

int main(int argc, char **argv)
{
#if QT_VERSION_MAJOR == 5
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QString plainStyle = QStringLiteral("Default");
#else
    const QString plainStyle = QStringLiteral("Basic");
#endif
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("shell"));
    // The shell draws its controls itself; a style that the environment names would show through.
    QQuickStyle::setStyle(plainStyle);
    // A cursor that blinks would have the window drawn anew all day long.
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    qSetMessagePattern(QStringLiteral("%{message}"));

    const QCommandLineOption scheme(QStringLiteral("scheme"),
                                    QStringLiteral("Colours: light, dark or those of the system."),
                                    QStringLiteral("scheme"), QStringLiteral("system"));
    const QCommandLineOption width(QStringLiteral("width"), QStringLiteral("Width of the window."),
                                   QStringLiteral("pixels"), QStringLiteral("1200"));
    const QCommandLineOption pictures(
            QStringLiteral("pictures"),
            QStringLiteral("Walk through what the shell can do, leave pictures in the folder, and "
                           "end."),
            QStringLiteral("folder"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A small desktop shell."));
    parser.addHelpOption();
    parser.addOptions({ scheme, width, pictures });
    parser.process(application);

    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral(QUORVANE_IMPORT_PATH));
    engine.setInitialProperties({ { QStringLiteral("scheme"), parser.value(scheme) },
                                  { QStringLiteral("width"), parser.value(width).toInt() },
                                  { QStringLiteral("pictures"), parser.value(pictures) } });
    engine.load(QUrl(QStringLiteral("qrc:/Main.qml")));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
