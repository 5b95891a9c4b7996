#include <quorvane/basedir/basedir.h>

#include <QtTest>

class TestBaseDir : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void homeIsThatOfTheUserWithoutAVariable()
    {
        qunsetenv("XDG_CONFIG_HOME");
        const auto configHome = [](const char *home, const char *user) {
            qputenv("HOME", home);
            qputenv("USER", user);
            return xdg::configHome();
        };
        QCOMPARE(configHome("/h/", ""), "/h//.config");
        QCOMPARE(configHome("", "alice"), "/home/alice/.config");
        QCOMPARE(configHome("", "root"), "/root/.config");
        QCOMPARE(configHome("", ""), "/root/.config");
        QCOMPARE(configHome("/h\xc3\xbc", "alice"), QString::fromUtf8("/h\xc3\xbc/.config"));
    }

    void variablesWinOverFallbacks()
    {
        qputenv("HOME", "/h");
        const auto check = [](const char *variable, auto directory, const auto &fallback,
                              const auto &value) {
            qputenv(variable, "");
            QCOMPARE(directory(), fallback);
            qputenv(variable, "a::../b/:");
            QCOMPARE(directory(), value);
        };
        const QString text = "a::../b/:";
        check("XDG_DATA_HOME", xdg::dataHome, QString("/h/.local/share"), text);
        check("XDG_CONFIG_HOME", xdg::configHome, QString("/h/.config"), text);
        check("XDG_CACHE_HOME", xdg::cacheHome, QString("/h/.cache"), text);
        check("XDG_STATE_HOME", xdg::stateHome, QString("/h/.local/state"), text);
        check("XDG_RUNTIME_DIR", xdg::runtimeDir, QString("/run/user/%i"), text);
        const QStringList parts { "a", "", "../b/", "" };
        check("XDG_DATA_DIRS", xdg::dataDirs, QStringList { "/usr/local/share", "/usr/share" },
              parts);
        check("XDG_CONFIG_DIRS", xdg::configDirs, QStringList { "/etc/xdg" }, parts);
    }
};

QTEST_GUILESS_MAIN(TestBaseDir)
#include "tst_basedir.moc"
