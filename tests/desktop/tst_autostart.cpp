#include <quorvane/desktop/autostart.h>

#include "desktopfixture.h"
#include "messages.h"

class TestAutoStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsBySelection()
    {
        // The file of the last system directory wins over the others.
        DesktopFixture fixture;
        const auto add = [&fixture](const QString &name, const QString &line) {
            for (const char *folder : { "home", "one" })
                fixture.write(QString("%1/etc/autostart/%2.desktop").arg(folder, name),
                              { "Exec=/no" });
            fixture.write("two/etc/autostart/" + name + ".desktop",
                          { "Exec=" + fixture.childCommand(name), line });
        };
        add("named", "Name=The Name\nKeywords=k");
        add("nameless", "Hidden=true");
        add("Zed", "Name=");

        Messages messages;
        const auto check = [&](const QString &key, const QString &value,
                               const QStringList &started) {
            xdg::AutoStart().start(key, value);
            const QString both = QStringLiteral("\"%1\" \"%2\"").arg(key, value);
            const QString with = key.isNull() || value.isNull() ? QString() : " with " + both;
            QStringList expected { "Create Auto start", "Start  " + both };
            for (const QString &app : started)
                expected += "Start app  \"" + app + '"' + with;
            expected.replaceInStrings(QRegularExpression("^"), "xdg.auto_start debug: ");
            QCOMPARE(messages.take(), expected);
            for (const QString &app : started)
                QCOMPARE(fixture.report(app), QStringList());
        };
        const QString name = "Desktop Entry/Name";
        check(name, QString(), { "Zed", "named", "nameless" });
        check(QString(), "x", { "Zed", "named", "nameless" });
        check(name, " THE name ", { "named" });
        check(name, "the", {});
        check(name, "", { "Zed", "nameless" });
        check("Desktop Entry/Keywords", "k stopped", { "named" });
    }
};

QTEST_GUILESS_MAIN(TestAutoStart)
#include "tst_autostart.moc"
