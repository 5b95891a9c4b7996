#include "table.h"

#include <quorvaneshell/applications/applications.h>

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gio/gdesktopappinfo.h>
#include <map>
#include <sys/wait.h>
#include <unistd.h>

using namespace quorvane;

// The first row of a search for what people type, beside that of GIO's own, over the words of real
// applications: how many of the words it is right for. Fails for a word for which only GIO is right.
namespace {

const char *language = nullptr;
std::map<QString, QStringList> rightAnswers;

using Groups = std::map<QString, QByteArray>; // The lines of each.

Groups readGroups(const char *path)
{
    Groups groups;
    QFile file(QString::fromLatin1(path));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Can't read %s", path);
    QByteArray *lines = nullptr;
    const QList<QByteArray> all = file.readAll().split('\n');
    for (const QByteArray &line : all) {
        if (line.startsWith('['))
            lines = &groups[QString::fromUtf8(line.mid(1, line.size() - 2))];
        else if (lines && !line.isEmpty())
            *lines += line + '\n';
    }
    return groups;
}

void writeApplications(const QString &folder)
{
    QDir().mkpath(folder);
    for (const auto &[appId, lines] : readGroups(APPLICATIONS)) {
        QFile file(folder + QLatin1Char('/') + appId + QLatin1String(".desktop"));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("Can't write %s", qPrintable(file.fileName()));
        file.write("[Desktop Entry]\nType=Application\nExec=true\n" + lines);
    }
}

void readAnswers()
{
    const QList<QByteArray> lines
            = readGroups(SEARCH_WORDS).at(QString::fromLatin1(language)).trimmed().split('\n');
    for (const QByteArray &line : lines) {
        const QStringList parts = QString::fromUtf8(line).split(QLatin1Char('='));
        rightAnswers[parts.at(0)] = parts.at(1).split(QLatin1Char(' '));
    }
}

QString firstOfGio(const QString &word)
{
    gchar ***groups = g_desktop_app_info_search(word.toUtf8());
    const QString first = QString::fromUtf8(*groups ? **groups : "").chopped(*groups ? 8 : 0);
    for (gchar ***group = groups; *group; ++group)
        g_strfreev(*group);
    g_free(groups);
    return first;
}

void searchModel(benchmark::State &state)
{
    Applications model;
    int right = 0;
    for (auto _ : state) {
        right = 0;
        for (const auto &[word, answers] : rightAnswers) {
            model.setSearch(word);
            const QString first = model.get(0).value(QStringLiteral("appId")).toString();
            const bool isRight = answers.contains(first);
            right += isRight ? 1 : 0;
            if (!isRight && answers.contains(firstOfGio(word))) {
                qWarning("%s: %s", qPrintable(word), qPrintable(first));
                state.SkipWithError("GIO has a better first row");
            }
        }
    }
    state.counters["right first rows"] = right;
    state.counters["words"] = static_cast<double>(rightAnswers.size());
}

void searchGio(benchmark::State &state)
{
    int right = 0;
    for (auto _ : state) {
        right = 0;
        for (const auto &[word, answers] : rightAnswers)
            right += answers.contains(firstOfGio(word)) ? 1 : 0;
    }
    state.counters["right first rows"] = right;
}

int run(int argc, char *argv[])
{
    const QTemporaryDir root;
    qputenv("XDG_DATA_HOME", QFile::encodeName(root.path()));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(root.filePath(QStringLiteral("none"))));
    writeApplications(root.filePath(QStringLiteral("applications")));
    readAnswers();
    const QCoreApplication application(argc, argv);
    const std::string name = std::string("FirstRows");
    benchmark::RegisterBenchmark((name + '/' + language).c_str(), searchModel)->Iterations(1);
    benchmark::RegisterBenchmark((name + "_baseline/" + language).c_str(), searchGio)->Iterations(1);
    return runBenchmarks(argc, argv) ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    // GLib keeps its languages, so each has a process.
    int failed = 0;
    for (const auto &[name, locale] :
         { std::pair("en", "C.UTF-8"), std::pair("de", "de_DE.UTF-8") }) {
        const pid_t child = fork();
        if (child == 0) {
            language = name;
            qputenv("LC_ALL", locale);
            qputenv("LANGUAGE", name);
            setlocale(LC_ALL, locale);
            _exit(run(argc, argv));
        }
        int status = 1;
        waitpid(child, &status, 0);
        failed |= status;
    }
    return failed ? 1 : 0;
}
