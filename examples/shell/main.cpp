#include "iconprovider.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQmlApplicationEngine>

#include <cstdio>

namespace {

// What the QML prints is the output of the program. The debug lines of the tray have to be on, as
// the bus names hang on them, and are not shown.
void print(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (qstrcmp(context.category, "qml") == 0 && type == QtDebugMsg)
        std::printf("%s\n", qPrintable(text));
    else if (type != QtDebugMsg)
        std::fprintf(stderr, "%s\n", qPrintable(text));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("shell"));
    QLoggingCategory::setFilterRules(QStringLiteral("xdg.system_tray.debug=true"));
    qInstallMessageHandler(print);

    const QCommandLineOption scheme(QStringLiteral("scheme"),
                                    QStringLiteral("Colours: light, dark or those of the system."),
                                    QStringLiteral("scheme"), QStringLiteral("system"));
    const QCommandLineOption width(QStringLiteral("width"), QStringLiteral("Width of the window."),
                                   QStringLiteral("pixels"), QStringLiteral("1200"));
    const QCommandLineOption pictures(
            QStringLiteral("pictures"),
            QStringLiteral("Walk through what the shell can do, leave two pictures in the folder, "
                           "and end."),
            QStringLiteral("folder"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A small desktop shell."));
    parser.addHelpOption();
    parser.addOptions({ scheme, width, pictures });
    parser.process(application);

    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral(QUORVANE_IMPORT_PATH));
    engine.addImageProvider(QStringLiteral("icon"), new IconProvider);
    engine.setInitialProperties({ { QStringLiteral("scheme"), parser.value(scheme) },
                                  { QStringLiteral("width"), parser.value(width).toInt() },
                                  { QStringLiteral("pictures"), parser.value(pictures) } });
    engine.load(QUrl(QStringLiteral("qrc:/Main.qml")));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
