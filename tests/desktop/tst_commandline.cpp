#include <quorvane/desktop/commandline_p.h>

#include "messages.h"

#include <QtTest>

class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void splits_data();
    void splits();
    void expands_data();
    void expands();
    void unsupportedCodesAreDroppedWithAWarning();
};

void TestCommandLine::splits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("tokens");

    const auto row = [](const char *text, const QStringList &tokens) {
        QTest::newRow(text) << QString::fromUtf8(text) << tokens;
    };
    row("", {});
    row(" \t\n\v\f\r ", {});
    row("  a   b ", { "a", "b" });
    row("'a b' c", { "a b", "c" });
    row("a\"b c\"d", { "ab cd" });
    row("''", { "" });
    row("a '' b", { "a", "", "b" });
    row("''a", { "", "a" });
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
    row("'a\\", { "a" });
    row("\\", {});
    row("'a b", { "a b" });
    row("a '", { "a" });
    row("ü\\ä 'ß €'", { "üä", "ß €" });
}

void TestCommandLine::splits()
{
    QFETCH(QString, text);
    QTEST(xdg::splitCommandLine(text), "tokens");
}

void TestCommandLine::expands_data()
{
    QTest::addColumn<QStringList>("tokens");
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QStringList>("expanded");

    const QStringList two { "1", "2" };
    QTest::newRow("one file") << QStringList { "-x", "%u", "-y" } << two
                              << QStringList { "-x", "1", "-y" };
    QTest::newRow("both codes take the first")
            << QStringList { "%f", "%u" } << two << QStringList { "1", "1" };
    QTest::newRow("no file") << QStringList { "%f", "-y" } << QStringList {}
                             << QStringList { "-y" };
    QTest::newRow("an empty file")
            << QStringList { "%f" } << QStringList { "" } << QStringList { "" };
    QTest::newRow("lists take none") << QStringList { "%F", "%U" } << two << QStringList {};
    QTest::newRow("dropped silently")
            << QStringList { "%d", "%D", "%n", "%N", "%v", "%m" } << two << QStringList {};
    QTest::newRow("copied") << QStringList { "--x=%f", "%k", "%%", "%", "%fu", "" } << two
                            << QStringList { "--x=%f", "%k", "%%", "%", "%fu", "" };
}

void TestCommandLine::expands()
{
    QFETCH(QStringList, tokens);
    QFETCH(QStringList, args);
    Messages messages;
    QTEST(xdg::expandFieldCodes(tokens, args), "expanded");
    QCOMPARE(messages.take(), QStringList());
}

void TestCommandLine::unsupportedCodesAreDroppedWithAWarning()
{
    Messages messages;
    QCOMPARE(xdg::expandFieldCodes({ "a", "%i", "%c" }, {}), QStringList { "a" });
    const QString warning = "default warning: XdgEntry: %i and %c are not supported (found in  "
                            "\"a %i %c\" )";
    QCOMPARE(messages.take(), QStringList({ warning, warning }));
}

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
