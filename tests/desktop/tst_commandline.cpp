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
    const struct
    {
        QStringList tokens, args, expanded;
    } rows[] = {
        { { "-x", "%u", "-y" }, { "1", "2" }, { "-x", "1", "-y" } },
        { { "%f", "%u" }, { "1", "2" }, { "1", "1" } },
        { { "%f", "-y" }, {}, { "-y" } },
        { { "%f" }, { "" }, { "" } },
        { { "%F", "%U", "%d", "%D", "%n", "%N", "%v", "%m" }, { "1" }, {} },
        { { "--x=%f", "%k", "%%", "%", "%fu", "" },
          { "1" },
          { "--x=%f", "%k", "%%", "%", "%fu", "" } },
    };
    Messages messages;
    for (const auto &row : rows)
        QCOMPARE(xdg::expandFieldCodes(row.tokens, row.args), row.expanded);
    QCOMPARE(messages.take(), QStringList());

    QCOMPARE(xdg::expandFieldCodes({ "a", "%i", "%c" }, {}), QStringList { "a" });
    const QString warning = "default warning: XdgEntry: %i and %c are not supported (found in  "
                            "\"a %i %c\" )";
    QCOMPARE(messages.take(), QStringList({ warning, warning }));
}

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
