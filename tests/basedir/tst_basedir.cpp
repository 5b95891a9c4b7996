#include <quorvane/basedir/basedir.h>
#include <quorvane/basedir/logging.h>

#include "environment.h"

#include <QtTest>

class TestBaseDir : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void homeDirectory();
    void variablesWinOverFallbacks();
    void listsAreSplitAtEveryColon();
    void categoriesAreSingleObjects();
};

void TestBaseDir::homeDirectory()
{
    Environment environment;
    environment.unset("XDG_CONFIG_HOME");
    const auto configHome = [&environment](const char *home, const char *user) {
        environment.set("HOME", home);
        environment.set("USER", user);
        return xdg::configHome();
    };
    QCOMPARE(configHome("/h", "alice"), "/h/.config");
    QCOMPARE(configHome("/h/", ""), "/h//.config");
    QCOMPARE(configHome("", "alice"), "/home/alice/.config");
    QCOMPARE(configHome("", "root"), "/root/.config");
    QCOMPARE(configHome("", "Root"), "/home/Root/.config");
    QCOMPARE(configHome("", ""), "/root/.config");
    QCOMPARE(configHome("/h\xc3\xbc", ""), QString::fromUtf8("/h\xc3\xbc/.config"));
}

void TestBaseDir::variablesWinOverFallbacks()
{
    Environment environment;
    environment.set("HOME", "/h");
    const auto check = [&](const char *variable, QString (*directory)(), const char *fallback) {
        environment.set(variable, "");
        QCOMPARE(directory(), fallback);
        environment.set(variable, "here/../x/");
        QCOMPARE(directory(), "here/../x/");
    };
    check("XDG_DATA_HOME", xdg::dataHome, "/h/.local/share");
    check("XDG_CONFIG_HOME", xdg::configHome, "/h/.config");
    check("XDG_CACHE_HOME", xdg::cacheHome, "/h/.cache");
    check("XDG_STATE_HOME", xdg::stateHome, "/h/.local/state");
    check("XDG_RUNTIME_DIR", xdg::runtimeDir, "/run/user/%i");
}

void TestBaseDir::listsAreSplitAtEveryColon()
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

void TestBaseDir::categoriesAreSingleObjects()
{
    QCOMPARE(&AUTO_START(), &AUTO_START());
    QCOMPARE(AUTO_START().categoryName(), "xdg.auto_start");
    QCOMPARE(SYSTEM_TRAY().categoryName(), "xdg.system_tray");
}

QTEST_GUILESS_MAIN(TestBaseDir)
#include "tst_basedir.moc"
