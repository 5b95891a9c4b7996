#include <quorvane/desktop/commandline_p.h>

#include "messages.h"
#include "patience.h"

class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsEndAtBlanksOutsideOfQuotes()
    {
        const auto check = [](const char *text, const QStringList &tokens) {
            QCOMPARE(xdg::splitCommandLine(QString::fromUtf8(text)), tokens);
        };
        check(" \t\n\v\f\r ", {});
        check("  a \t b ", { "a", "b" });
        check("'a b' c\"d 'e\"f", { "a b", "cd 'ef" });
        check("''''a '' b''", { "", "", "a", "", "b" });
        check("a\\ b \\'c d\\'", { "a b", "'c", "d'" });
        check("'a\\b\\'c\\\\d\\\"e'", { "a\\b'c\\d\\\"e" });
        check("a\\", { "a" });
        check("\\", {});
        check("'a b", { "a b" });
        check("a '", { "a" });
        check("ü\\ä 'ß €'", { "üä", "ß €" });
    }

    void fieldCodesBecomeArguments()
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
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
