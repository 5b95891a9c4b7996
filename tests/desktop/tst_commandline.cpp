#include <quorvane/desktop/commandline_p.h>

#include "messages.h"

#include <QtTest>

class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void splits_data();
    void splits();
    void expands();
};

void TestCommandLine::splits_data()
{
    QTest::addColumn<QStringList>("tokens");
    const auto row
            = [](const char *text, const QStringList &tokens) { QTest::newRow(text) << tokens; };
    row("", {});
    row(" \t\n\v\f\r ", {});
    row("  a   b ", { "a", "b" });
    row("'a b' c", { "a b", "c" });
    row("a\"b c\"d", { "ab cd" });
    row("''", { "" });
    row("a '' b", { "a", "", "b" });
    row("''''a", { "", "", "a" });
    row("a''", { "a" });
    row("a\\ b", { "a b" });
    row("\\'a b\\'", { "'a", "b'" });
    row("'a\\b'", { "a\\b" });
    row("'a\\'b'", { "a'b" });
    row("'a\\\\b'", { "a\\b" });
    row("'a\\\"b'", { "a\\\"b" });
    row("\"a'b\"", { "a'b" });
    row("a\\", { "a" });
    row("\\", {});
    row("'a b", { "a b" });
    row("a '", { "a" });
    row("ü\\ä 'ß €'", { "üä", "ß €" });
}

void TestCommandLine::splits()
{
    QTEST(xdg::splitCommandLine(QString::fromUtf8(QTest::currentDataTag())), "tokens");
}

void TestCommandLine::expands()
{
    const auto expand = [](const char *tokens, const QStringList &args = { "1", "2" }) {
        return xdg::expandFieldCodes(QString(tokens).split(' '), args).join(' ');
    };
    Messages messages;
    QCOMPARE(expand("-x %u -y"), "-x 1 -y");
    QCOMPARE(expand("%f %u"), "1 1");
    QCOMPARE(expand("%f -y", {}), "-y");
    QCOMPARE(expand("%F %U %d %D %n %N %v %m x"), "x");
    QCOMPARE(expand("--x=%f %k %% % %fu"), "--x=%f %k %% % %fu");
    QCOMPARE(messages.take(), QStringList());

    QCOMPARE(xdg::expandFieldCodes({ "a", "%i", "%c" }, {}), QStringList { "a" });
    const QString warning = "default warning: XdgEntry: %i and %c are not supported (found in  "
                            "\"a %i %c\" )";
    QCOMPARE(messages.take(), QStringList({ warning, warning }));
}

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
