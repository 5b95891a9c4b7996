#include <quorvane/desktop/autostart.h>

#include "desktopfixture.h"
#include "messages.h"

#include <QtTest>

class TestAutoStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void starts_data();
    void starts();
    void theSystemFileWins();
};

void TestAutoStart::starts_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QStringList>("started");

    const QStringList all { "Zed", "named", "nameless" };
    const QString name = "Desktop Entry/Name";
    QTest::newRow("nothing given") << QString() << QString() << all;
    QTest::newRow("null value") << name << QString() << all;
    QTest::newRow("null key") << QString() << "x" << all;
    QTest::newRow("match") << name << " THE name\t" << QStringList({ "named" });
    QTest::newRow("no match") << name << "the" << QStringList();
    QTest::newRow("empty value") << name << "" << QStringList({ "Zed", "nameless" });
    QTest::newRow("status word") << "Desktop Entry/Keywords"
                                 << "k stopped" << QStringList({ "named" });
}

void TestAutoStart::starts()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QStringList, started);
    DesktopFixture fixture;
    const auto add = [&fixture](const QString &name, const QStringList &lines) {
        fixture.write("home/autostart/" + name + ".desktop",
                      QStringList("Exec=" + fixture.childCommand(name)) + lines);
    };
    add("named", { "Name=The Name", "Keywords=k" });
    add("nameless", { "Hidden=true" });
    add("Zed", { "Name=" });

    Messages messages;
    xdg::AutoStart autoStart;
    QCOMPARE(messages.take(), QStringList("xdg.auto_start debug: Create Auto start"));
    autoStart.start(key, value);
    QStringList expected { QStringLiteral("xdg.auto_start debug: Start  \"%1\" \"%2\"")
                                   .arg(key, value)
                                   .replace("\t", "\\t") };
    const bool selected = !key.isNull() && !value.isNull();
    for (const QString &app : qAsConst(started)) {
        expected += QStringLiteral("xdg.auto_start debug: Start app  \"%1\"").arg(app);
        if (selected)
            expected.last()
                    += QStringLiteral(" with \"%1\" \"%2\"").arg(key, value).replace("\t", "\\t");
    }
    QCOMPARE(messages.take(), expected);
    for (const QString &app : qAsConst(started))
        QTRY_VERIFY(QFile::exists(fixture.path(app)));
}

void TestAutoStart::theSystemFileWins()
{
    DesktopFixture fixture;
    for (const char *dir : { "home", "one", "two" })
        fixture.write(QStringLiteral("%1/autostart/a.desktop").arg(dir),
                      { "Exec=" + fixture.childCommand("report", dir) });
    xdg::AutoStart autoStart;
    autoStart.start();
    QTRY_VERIFY(QFile::exists(fixture.path("report")));
    QCOMPARE(fixture.reportOf("report"), QStringList("two"));
}

QTEST_GUILESS_MAIN(TestAutoStart)
#include "tst_autostart.moc"
