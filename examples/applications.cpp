// Lists the applications of this machine, or starts one and shows its state until it ends.

#include <quorvane/desktop/desktopentries.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTextStream>
#include <QTimer>

#include <csignal>
#include <memory>
#include <unistd.h>

using xdg::DesktopEntries;

namespace {

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

// The applications of this machine; where there is none, those that come with the examples.
std::unique_ptr<DesktopEntries> findApplications()
{
    auto model = std::make_unique<DesktopEntries>();
    if (model->rowCount() == 0) {
        qputenv("XDG_DATA_DIRS", EXAMPLES_DIR);
        model = std::make_unique<DesktopEntries>();
    }
    return model;
}

int list(const DesktopEntries &model)
{
    const QList<int> roles { DesktopEntries::NameRole, DesktopEntries::AppIdRole,
                             DesktopEntries::CategoryRole, DesktopEntries::PathRole };
    QList<QStringList> rows { { QStringLiteral("NAME"), QStringLiteral("APPID"),
                                QStringLiteral("CATEGORY"), QStringLiteral("PATH") } };
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList values;
        for (int role : roles)
            values += model.index(row).data(role).toString();
        rows += values;
    }

    QList<int> widths { 0, 0, 0, 0 };
    for (const QStringList &row : qAsConst(rows)) {
        for (int column = 0; column < row.size(); ++column)
            widths[column] = qMax(widths[column], row[column].size());
    }
    for (const QStringList &row : qAsConst(rows)) {
        for (int column = 0; column < row.size() - 1; ++column)
            out() << row[column].leftJustified(widths[column] + 2);
        out() << row.last() << Qt::endl;
    }
    return 0;
}

int interruptPipe[2];

void interrupt(int)
{
    const char byte = 0;
    if (write(interruptPipe[1], &byte, 1) < 0)
        _exit(1);
}

QModelIndex find(const DesktopEntries &model, const QString &appId)
{
    const QModelIndexList found = model.match(model.index(0), DesktopEntries::AppIdRole, appId, 1,
                                              Qt::MatchExactly | Qt::MatchCaseSensitive);
    return found.value(0);
}

int start(DesktopEntries &model, const QString &appId)
{
    const QPersistentModelIndex application = find(model, appId);
    if (!application.isValid()) {
        out() << "There is no application " << appId << Qt::endl;
        return 1;
    }
    const QString path = application.data(DesktopEntries::PathRole).toString();

    // The status word stands behind the keywords of the application.
    QObject::connect(
            &model, &DesktopEntries::dataChanged, &model,
            [&application](const QModelIndex &changed, const QModelIndex &,
                           const QVector<int> &roles) {
                if (changed != application || !roles.contains(DesktopEntries::KeywordsRole))
                    return;
                const QString keywords = changed.data(DesktopEntries::KeywordsRole).toString();
                const QString status = keywords.section(QLatin1Char(' '), -1);
                out() << status << Qt::endl;
                if (status == QLatin1String("stopped"))
                    QCoreApplication::quit();
            });

    if (pipe(interruptPipe) != 0)
        return 1;
    const QSocketNotifier interrupted(interruptPipe[0], QSocketNotifier::Read);
    QObject::connect(&interrupted, &QSocketNotifier::activated, &model,
                     [&model, path] { model.stop(path); });
    std::signal(SIGINT, interrupt);
    std::signal(SIGTERM, interrupt);

    // Nobody is there to press Ctrl-C.
    if (!isatty(STDIN_FILENO))
        QTimer::singleShot(2000, &model, [&model, path] { model.stop(path); });

    QTimer::singleShot(0, &model, [&model, path] { model.start(path); });
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
            QStringLiteral("Lists the applications of this machine, or starts one of them and "
                           "shows its state; Ctrl-C stops it."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("start APPID"),
                                 QStringLiteral("the application to start"),
                                 QStringLiteral("[start APPID]"));
    parser.process(application);

    const std::unique_ptr<DesktopEntries> model = findApplications();
    const QStringList arguments = parser.positionalArguments();
    if (arguments.isEmpty() || arguments == QStringList(QStringLiteral("list")))
        return list(*model);
    if (arguments.size() == 2 && arguments.first() == QLatin1String("start"))
        return start(*model, arguments.at(1));
    parser.showHelp(1);
}
