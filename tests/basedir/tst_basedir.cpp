#include <quorvane/basedir/basedir.h>
#include <quorvane/basedir/logging.h>

#include "environment.h"

#include <QtTest>

using Function = QString (*)();
Q_DECLARE_METATYPE(Function)

class TestBaseDir : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void homeDirectory_data();
    void homeDirectory();
    void directoryOfOneVariable_data();
    void directoryOfOneVariable();
    void listIsSplitAtEveryColon();
    void runtimeDirIsNeverMadeUp();
    void categoriesAreSingleObjects();
};

void TestBaseDir::homeDirectory_data()
{
    QTest::addColumn<QByteArray>("home");
    QTest::addColumn<QByteArray>("user");
    QTest::addColumn<QString>("configHome");

    QTest::newRow("HOME wins") << QByteArray("/h") << QByteArray("alice") << "/h/.config";
    QTest::newRow("nothing is normalised") << QByteArray("/h/") << QByteArray() << "/h//.config";
    QTest::newRow("USER without HOME")
            << QByteArray() << QByteArray("alice") << "/home/alice/.config";
    QTest::newRow("root") << QByteArray() << QByteArray("root") << "/root/.config";
    QTest::newRow("Root is another user")
            << QByteArray() << QByteArray("Root") << "/home/Root/.config";
    QTest::newRow("neither") << QByteArray() << QByteArray() << "/root/.config";
    QTest::newRow("UTF-8") << QByteArray("/h\xc3\xbc") << QByteArray()
                           << QString::fromUtf8("/hü/.config");
}

void TestBaseDir::homeDirectory()
{
    QFETCH(QByteArray, home);
    QFETCH(QByteArray, user);
    Environment environment;
    environment.set("HOME", home);
    environment.set("USER", user);
    environment.unset("XDG_CONFIG_HOME");
    QTEST(xdg::configHome(), "configHome");
}

void TestBaseDir::directoryOfOneVariable_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<Function>("function");
    QTest::addColumn<QString>("fallback");

    QTest::newRow("data") << QByteArray("XDG_DATA_HOME") << &xdg::dataHome << "/h/.local/share";
    QTest::newRow("config") << QByteArray("XDG_CONFIG_HOME") << &xdg::configHome << "/h/.config";
    QTest::newRow("cache") << QByteArray("XDG_CACHE_HOME") << &xdg::cacheHome << "/h/.cache";
    QTest::newRow("state") << QByteArray("XDG_STATE_HOME") << &xdg::stateHome << "/h/.local/state";
    QTest::newRow("runtime") << QByteArray("XDG_RUNTIME_DIR") << &xdg::runtimeDir << "/run/user/%i";
}

void TestBaseDir::directoryOfOneVariable()
{
    QFETCH(QByteArray, variable);
    QFETCH(Function, function);
    Environment environment;
    environment.set("HOME", "/h");
    environment.unset(variable);
    QTEST(function(), "fallback");
    environment.set(variable, "");
    QTEST(function(), "fallback");
    environment.set(variable, "here/../x/");
    QCOMPARE(function(), QStringLiteral("here/../x/"));
}

void TestBaseDir::listIsSplitAtEveryColon()
{
    Environment environment;
    environment.unset("XDG_DATA_DIRS");
    environment.unset("XDG_CONFIG_DIRS");
    QCOMPARE(xdg::dataDirs(), QStringList({ "/usr/local/share", "/usr/share" }));
    QCOMPARE(xdg::configDirs(), QStringList({ "/etc/xdg" }));
    environment.set("XDG_DATA_DIRS", "a::a");
    environment.set("XDG_CONFIG_DIRS", ":");
    QCOMPARE(xdg::dataDirs(), QStringList({ "a", "", "a" }));
    QCOMPARE(xdg::configDirs(), QStringList({ "", "" }));
}

void TestBaseDir::runtimeDirIsNeverMadeUp()
{
    Environment environment;
    environment.set("USER", "alice");
    environment.unset("XDG_RUNTIME_DIR");
    QTest::ignoreMessage(QtWarningMsg, "QString::arg: Argument missing: /run/user/%i, alice");
    QCOMPARE(xdg::runtimeDir(), QStringLiteral("/run/user/%i"));
}

void TestBaseDir::categoriesAreSingleObjects()
{
    QCOMPARE(&AUTO_START(), &AUTO_START());
    QCOMPARE(AUTO_START().categoryName(), "xdg.auto_start");
    QCOMPARE(SYSTEM_TRAY().categoryName(), "xdg.system_tray");
    QVERIFY(SYSTEM_TRAY().isDebugEnabled());
}

QTEST_GUILESS_MAIN(TestBaseDir)
#include "tst_basedir.moc"
