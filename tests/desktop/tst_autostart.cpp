#include <quorvane/desktop/autostart.h>

#include "desktopfixture.h"
#include "messages.h"

#include <QtTest>

class TestAutoStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsBySelection_data();
    void startsBySelection();
};

void TestAutoStart::startsBySelection_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QStringList>("started");
    const auto row
            = [](const char *row, const QString &key, const QString &value,
                 const QStringList &started) { QTest::newRow(row) << key << value << started; };
    const QString name = "Desktop Entry/Name";
    row("null value", name, QString(), { "Zed", "named", "nameless" });
    row("null key", QString(), "x", { "Zed", "named", "nameless" });
    row("match", name, " THE name ", { "named" });
    row("no match", name, "the", {});
    row("empty value", name, "", { "Zed", "nameless" });
    row("status word", "Desktop Entry/Keywords", "k stopped", { "named" });
}

void TestAutoStart::startsBySelection()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QStringList, started);
    // The file of the last system directory wins over the user's.
    DesktopFixture fixture;
    const auto add = [&fixture](const QString &name, const QString &line) {
        fixture.write("home/autostart/" + name + ".desktop", { "Exec=/none" });
        fixture.write("two/autostart/" + name + ".desktop",
                      { "Exec=" + fixture.childCommand(name), line });
    };
    add("named", "Name=The Name\nKeywords=k");
    add("nameless", "Hidden=true");
    add("Zed", "Name=");

    Messages messages;
    xdg::AutoStart autoStart;
    autoStart.start(key, value);
    const QString both = QStringLiteral("\"%1\" \"%2\"").arg(key, value);
    const QString with = key.isNull() || value.isNull() ? QString() : " with " + both;
    QStringList expected { "Create Auto start", "Start  " + both };
    for (const QString &app : qAsConst(started))
        expected += "Start app  \"" + app + '"' + with;
    expected.replaceInStrings(QRegularExpression("^"), "xdg.auto_start debug: ");
    QCOMPARE(messages.take(), expected);
    for (const QString &app : qAsConst(started))
        QTRY_VERIFY(fixture.has(app));
}

QTEST_GUILESS_MAIN(TestAutoStart)
#include "tst_autostart.moc"
