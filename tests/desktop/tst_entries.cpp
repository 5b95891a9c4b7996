#include <quorvane/desktop/entries.h>
#include <quorvane/desktop/entry.h>

#include "desktopfixture.h"
#include "messages.h"

#include <QtTest>

using xdg::Entries;

class TestEntries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { _fixture.reset(new DesktopFixture); }
    void cleanup() { _fixture.reset(); }

    void idsAreRanksOfTheBaseNames();
    void addRefuses_data();
    void addRefuses();
    void replacingAnnouncesRemovalAndCreation();
    void aDirectoryIsFollowed();
    void whereTheOrdersDisagreeAFileIsRegisteredAnew();
    void theLastDirectoryToReportWins();
    void aNeighbourOfTheSameBeginningIsDropped();
    void aVanishedDirectoryTakesItsEntriesAlong();
    void droppedEntriesAreStillRelayed();
    void lookupsOutOfRangeEndQuietly();
    void badFilesAreRowsLikeAnyOther();
    void aThousandFilesKeepTheirOrder();

private:
    // Every signal of the registry, in order, with the number of entries at that moment.
    void _record(Entries *entries);
    QStringList _keys(Entries *entries) const;

    QScopedPointer<DesktopFixture> _fixture;
    QStringList _signals;
};

void TestEntries::_record(Entries *entries)
{
    _signals.clear();
    const auto recorder = [this, entries](const char *name) {
        return [this, entries, name](int id) {
            _signals += QStringLiteral("%1 %2 of %3").arg(name).arg(id).arg(entries->count());
        };
    };
    connect(entries, &Entries::startCreateEntry, this, recorder("create"));
    connect(entries, &Entries::endCreateEntry, this, recorder("created"));
    connect(entries, &Entries::startRemoveEntry, this, recorder("remove"));
    connect(entries, &Entries::endRemoveEntry, this, recorder("removed"));
}

QStringList TestEntries::_keys(Entries *entries) const
{
    QStringList keys;
    for (int id = 0; id < entries->count(); ++id)
        keys += entries->getEntry(id)->appId();
    return keys;
}

void TestEntries::idsAreRanksOfTheBaseNames()
{
    for (const char *name : { "app", "Zed", "a.b", "a.b.c", "zoo", "foo", "foo-bar" })
        _fixture->write(QStringLiteral("apps/%1.desktop").arg(name));
    _fixture->write("apps/.hidden.desktop");
    Entries entries;
    _record(&entries);
    QCOMPARE(entries.addDirectory(' ' + _fixture->path("apps") + " \n"), 0);
    QCOMPARE(_keys(&entries),
             QStringList({ "Zed", "a.b", "a.b.c", "app", "foo", "foo-bar", "zoo" }));
    QCOMPARE(entries.getEntries().value(0)->path(), _fixture->path("apps/Zed.desktop"));
    // Added by file name without regard to case, so the ids are the ranks among those before.
    QCOMPARE(_signals.filter("create "),
             QStringList({ "create 0 of 1", "create 0 of 2", "create 2 of 3", "create 3 of 4",
                           "create 3 of 5", "create 0 of 6", "create 6 of 7" }));
    QCOMPARE(entries.add(_fixture->path("apps/.hidden.desktop")), 0);
    QCOMPARE(entries.getEntry(0)->appId(), QStringLiteral(".hidden"));
}

void TestEntries::addRefuses_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("nothing there") << "none.desktop";
    QTest::newRow("other suffix") << "a.txt";
    QTest::newRow("upper case") << "a.DESKTOP";
    QTest::newRow("a folder") << "folder.desktop";
    QTest::newRow("a dangling link") << "link.desktop";
    QTest::newRow("an empty path") << "";
}

void TestEntries::addRefuses()
{
    QFETCH(QString, name);
    _fixture->write("a.txt");
    _fixture->write("a.DESKTOP");
    QDir().mkpath(_fixture->path("folder.desktop"));
    QFile::link("/none", _fixture->path("link.desktop"));
    const QString path = name.isEmpty() ? QString() : _fixture->path(name);
    Entries entries;
    Messages messages;
    QCOMPARE(entries.add(path, true), -1);
    QCOMPARE(messages.take(),
             QStringList(
                     QStringLiteral("default warning: \"%1\" is not a desktop entry").arg(path)));
    QCOMPARE(entries.addDirectory(path), name == "folder.desktop" ? 0 : -1);
    QCOMPARE(entries.count(), 0);
}

void TestEntries::replacingAnnouncesRemovalAndCreation()
{
    const QString one = _fixture->write("one/b.desktop");
    const QString two = _fixture->write("two/b.desktop");
    Entries entries;
    entries.add(_fixture->write("a.desktop"));
    entries.add(one);
    _record(&entries);
    Messages messages;
    QCOMPARE(entries.add(two, false), -1);
    QCOMPARE(_signals + messages.take(), QStringList());
    QCOMPARE(entries.add(two, true), 0);
    QCOMPARE(_signals,
             QStringList({ "remove 1 of 2", "removed 1 of 1", "create 1 of 2", "created 1 of 2" }));
    QCOMPARE(entries.getEntry(1)->path(), two);
}

void TestEntries::aDirectoryIsFollowed()
{
    QDir().mkpath(_fixture->path("apps"));
    Entries entries;
    QCOMPARE(entries.addDirectory(_fixture->path("apps")), 0);
    _record(&entries);
    _fixture->write("apps/b.desktop");
    QTRY_COMPARE(_signals, QStringList({ "create 0 of 1", "created 0 of 1" }));
    _fixture->write("apps/a.desktop");
    QTRY_COMPARE(_keys(&entries), QStringList({ "a", "b" }));
    _signals.clear();
    QVERIFY(QFile::remove(_fixture->path("apps/b.desktop")));
    QTRY_COMPARE(_signals, QStringList({ "remove 1 of 2", "removed 1 of 1" }));
}

void TestEntries::whereTheOrdersDisagreeAFileIsRegisteredAnew()
{
    _fixture->write("apps/foo.desktop");
    _fixture->write("apps/foo-bar.desktop");
    Entries entries;
    entries.addDirectory(_fixture->path("apps"));
    const xdg::Entry *fooBar = entries.getEntry(1);
    _record(&entries);
    _fixture->write("apps/zoo.desktop");
    QTRY_COMPARE(_signals, QStringList({ "remove 1 of 2", "removed 1 of 1", "create 1 of 2",
                                         "created 1 of 2", "create 2 of 3", "created 2 of 3" }));
    QVERIFY(entries.getEntry(1) != fooBar);
}

void TestEntries::theLastDirectoryToReportWins()
{
    const QString first = _fixture->write("one/foo.desktop");
    const QString second = _fixture->write("two/foo.desktop");
    Entries entries;
    entries.addDirectory(_fixture->path("one"));
    entries.addDirectory(_fixture->path("two"));
    QCOMPARE(entries.getEntry(0)->path(), first);
    _fixture->write("two/other.desktop");
    QTRY_COMPARE(entries.getEntry(0)->path(), second);
    _fixture->write("one/third.desktop");
    QTRY_COMPARE(entries.getEntry(0)->path(), first);
    QTRY_COMPARE(_keys(&entries), QStringList({ "foo", "other", "third" }));
}

void TestEntries::aNeighbourOfTheSameBeginningIsDropped()
{
    _fixture->write("apps/a.desktop");
    _fixture->write("apps-extra/b.desktop");
    Entries entries;
    entries.addDirectory(_fixture->path("apps"));
    entries.addDirectory(_fixture->path("apps-extra"));
    _fixture->write("apps/c.desktop");
    QTRY_COMPARE(_keys(&entries), QStringList({ "a", "c" }));
    _fixture->write("apps-extra/d.desktop");
    QTRY_COMPARE(_keys(&entries), QStringList({ "a", "b", "c", "d" }));
}

void TestEntries::aVanishedDirectoryTakesItsEntriesAlong()
{
    _fixture->write("apps/a.desktop");
    Entries entries;
    entries.addDirectory(_fixture->path("apps"));
    QVERIFY(QDir(_fixture->path("apps")).removeRecursively());
    QTRY_COMPARE(entries.count(), 0);
}

void TestEntries::droppedEntriesAreStillRelayed()
{
    const QString path = _fixture->write("foo.desktop", { "Name=n" });
    Entries entries;
    entries.add(path);
    entries.getEntry(0)->data("Desktop Entry/Name");
    entries.unregister("/elsewhere/foo.desktop");
    QCOMPARE(entries.count(), 0);
    QSignalSpy changed(&entries, &Entries::entryDataChanged);
    _fixture->write("foo.desktop", { "Name=changed" });
    QVERIFY(changed.wait());
    QCOMPARE(changed.value(0), QList<QVariant>({ "foo", "Desktop Entry/Name", "changed" }));
}

void TestEntries::lookupsOutOfRangeEndQuietly()
{
    Entries entries;
    entries.add(_fixture->write("a.desktop"));
    for (int id : { -1, 1, 2, INT_MIN, INT_MAX })
        QVERIFY(!entries.getEntry(id));
    _record(&entries);
    entries.unregister("/none.desktop");
    QCOMPARE(_signals, QStringList({ "remove -1 of 1", "removed -1 of 1" }));
    QCOMPARE(_keys(&entries), QStringList({ "a" }));
    QMetaObject::invokeMethod(&entries, "_entryDataChanged", Q_ARG(QString, "k"),
                              Q_ARG(QString, "v"));
}

void TestEntries::badFilesAreRowsLikeAnyOther()
{
    QByteArray binary;
    for (int i = 0; i < 4096; ++i)
        binary += static_cast<char>(i * 31 >> 3);
    _fixture->writeBytes("apps/binary.desktop", binary);
    _fixture->writeBytes("apps/empty.desktop", QByteArray());
    _fixture->writeBytes("apps/groupless.desktop", "Name=x\n]=[\n[\n");
    _fixture->writeBytes("apps/long.desktop",
                         "[Desktop Entry]\nName=" + QByteArray(1024 * 1024, 'x') + '\n');
    QFile::setPermissions(_fixture->write("apps/unreadable.desktop", { "Name=n" }), {});
    QFile::link("/none", _fixture->path("apps/dangling.desktop"));
    QDir().mkpath(_fixture->path("apps/folder.desktop"));
    _fixture->write("apps/wrong.DESKTOP");

    Messages messages;
    Entries entries;
    entries.addDirectory(_fixture->path("apps"));
    QCOMPARE(_keys(&entries), QStringList({ "binary", "empty", "groupless", "long", "unreadable" }));
    QCOMPARE(entries.getEntry(3)->data("Desktop Entry/Name").size(), 1024 * 1024);
    for (int id = 0; id < entries.count(); ++id) {
        for (const char *key : { "Name", "Icon", "Categories", "NoDisplay" })
            entries.getEntry(id)->data(QStringLiteral("Desktop Entry/") + key);
    }
    QCOMPARE(messages.take(),
             QStringList(QStringLiteral("default warning: \"%1\" is not a desktop entry")
                                 .arg(_fixture->path("apps/wrong.DESKTOP"))));
}

void TestEntries::aThousandFilesKeepTheirOrder()
{
    QDir().mkpath(_fixture->path("apps"));
    Entries entries;
    entries.addDirectory(_fixture->path("apps"));
    _record(&entries);
    QStringList expected;
    for (int i = 0; i < 1000; ++i) {
        expected += QStringLiteral("app%1").arg(i, 4, 10, QLatin1Char('0'));
        _fixture->write(QStringLiteral("apps/%1.desktop").arg(expected.constLast()));
    }
    QTRY_COMPARE_WITH_TIMEOUT(entries.count(), 1000, 60000);
    QCOMPARE(_keys(&entries), expected);
    for (int i = 0; i < 1000; ++i)
        QCOMPARE(_signals.value(2 * i), QStringLiteral("create %1 of %2").arg(i).arg(i + 1));
}

QTEST_GUILESS_MAIN(TestEntries)
#include "tst_entries.moc"
