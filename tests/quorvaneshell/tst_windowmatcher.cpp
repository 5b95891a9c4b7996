#include <quorvaneshell/applications/desktopfile_p.h>
#include <quorvaneshell/applications/shellwords_p.h>
#include <quorvaneshell/applications/windowmatcher_p.h>

#include <QtTest>

using namespace quorvane;

static QStringList lines(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split('\n')
                                          : QStringList();
}

class WindowMatcherTest : public QObject
{
    Q_OBJECT

    static QVector<ApplicationPointer> _applications()
    {
        const DesktopFile file(ENTRIES);
        QVector<ApplicationPointer> applications;
        const QStringList all = lines(ENTRIES);
        for (const QString &line : all) {
            if (!line.startsWith('['))
                continue;
            const QByteArray group = line.mid(1, line.size() - 2).toUtf8();
            const auto application = QSharedPointer<Application>::create();
            application->appId = QString::fromUtf8(group);
            application->exec = file.text("Exec", group);
            application->startupWmClass = file.localText("StartupWMClass", group);
            application->shown = file.text("NoDisplay", group) != "true";
            application->categories = file.localText("Categories", group).split(';');
            application->isAppImage = !file.text("X-AppImage-Name", group).isEmpty();
            applications += application;
        }
        return applications;
    }
    const WindowMatcher _matcher { _applications() };

private Q_SLOTS:
    void windowsBelongToApplications_data()
    {
        QTest::addColumn<QStringList>("columns");
        const QStringList all = lines(CASES);
        for (const QString &line : all) {
            QStringList columns = line.split('|');
            for (QString &column : columns)
                column = column.trimmed();
            if (columns.size() > 1 && !line.startsWith('#'))
                QTest::newRow(qPrintable(line.simplified())) << columns;
        }
    }
    void windowsBelongToApplications()
    {
        QFETCH(QStringList, columns);
        ProcessIdentity process;
        process.isKnown = columns.size() > 2;
        process.executable = columns.value(2);
        process.commandLine = shellWords(columns.value(3).replace('\\', "\\\\").toUtf8());
        QString group = columns.value(4);
        process.beginsUnit = !group.startsWith("child ");
        if (group.contains('/'))
            setControlGroup(&process, group.remove("child ").toUtf8());
        else
            process.flatpak = group;
        const QString appId = _matcher.match(columns.at(1), process);
        QCOMPARE(appId.isEmpty() ? "-" : appId, columns.at(0));
    }

    void processesAreReadAsTheyAre()
    {
        const ProcessIdentity own = processIdentity(QCoreApplication::applicationPid());
        QVERIFY(own.isKnown);
        QCOMPARE(own.executable, QCoreApplication::applicationFilePath());
        QCOMPARE(own.commandLine.value(0),
                 QFile::encodeName(QCoreApplication::arguments().value(0)));
        QCOMPARE(flatpakApplication("[Instance]\nname=a\n[Application]\nname=b\n"), "b");
        QProcess child;
        child.start("sleep", { "60" });
        QVERIFY(child.waitForStarted());
        const qint64 pid = child.processId();
        QTRY_COMPARE(processIdentity(pid).commandLine.value(1), "60");
        child.kill();
        QVERIFY(child.waitForFinished());
        for (const qint64 none : { qint64(0), qint64(-1), pid })
            QVERIFY(!processIdentity(none).isKnown);
    }

    // None of these may cost much time or stack.
    void strangeTextsAreRead()
    {
        ProcessIdentity process;
        process.isKnown = true;
        for (const QByteArray &text :
             { QByteArray("sh -c '"), QByteArray("a && "), QByteArray("env "),
               QByteArray("/tmp/.mount_ "), QByteArray("\\x2 ") }) {
            process.commandLine = { "sh", "-c", text.repeated(10000) };
            QCOMPARE(_matcher.match(text.repeated(10000), process), QString());
            process.commandLine = text.repeated(10000).split(' ');
            setControlGroup(&process, "/app-" + text.repeated(10000) + ".scope");
            QCOMPARE(_matcher.match(text, process), QString());
        }
        for (const char *group :
             { "", "/", "/app-.scope", "/app-\\x.scope", "/snap..scope", "/dbus-:@.service" })
            setControlGroup(&process, group);
    }
};

QTEST_GUILESS_MAIN(WindowMatcherTest)
#include "tst_windowmatcher.moc"
