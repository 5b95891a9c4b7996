#include <quorvane/desktop/entries.h>
#include <quorvane/desktop/entry.h>

#include "desktopfixture.h"
#include "messages.h"

using xdg::Entries;

class TestEntries : public QObject
{
    Q_OBJECT

    QString _keys() const
    {
        QStringList keys;
        for (int id = 0; id < _entries->count(); ++id)
            keys += _entries->getEntry(id)->appId();
        return keys.join(' ');
    }

    QScopedPointer<DesktopFixture> _fixture;
    QScopedPointer<Entries> _entries;
    QStringList _signals; // Each signal with its id and the number of entries at that moment.

private Q_SLOTS:
    void init()
    {
        _fixture.reset(new DesktopFixture);
        _entries.reset(new Entries);
        _signals.clear();
        const auto recorder = [this](const char *text) {
            return [this, text](int id) {
                _signals += QString(text).arg(id).arg(_entries->count());
            };
        };
        connect(_entries.data(), &Entries::startCreateEntry, this, recorder("create %1 of %2"));
        connect(_entries.data(), &Entries::endCreateEntry, this, recorder("created %1 of %2"));
        connect(_entries.data(), &Entries::startRemoveEntry, this, recorder("remove %1 of %2"));
        connect(_entries.data(), &Entries::endRemoveEntry, this, recorder("removed %1 of %2"));
    }

    void idsAreRanksOfTheBaseNames()
    {
        for (const char *name : { "app", "Zed", "a.b", "a.b.c", "foo", ".hidden" })
            _fixture->write(QStringLiteral("apps/%1.desktop").arg(name));
        QCOMPARE(_entries->addDirectory(' ' + _fixture->path("apps") + " \n"), 0);
        QCOMPARE(_keys(), "Zed a.b a.b.c app foo");
        // Added by file name without regard to case: each id is the rank among those before.
        QCOMPARE(_signals.filter("create ").join(", "),
                 "create 0 of 1, create 0 of 2, create 2 of 3, create 3 of 4, create 0 of 5");
    }

    void whereTheOrdersDisagreeAFileIsRegisteredAnew()
    {
        _fixture->write("apps/foo.desktop");
        _fixture->write("apps/foo-bar.desktop");
        _entries->addDirectory(_fixture->path("apps"));
        _signals.clear();
        _fixture->write("apps/zoo.desktop");
        QTRY_COMPARE(_signals.join(", "),
                     "remove 1 of 2, removed 1 of 1, create 1 of 2, created 1 of 2, "
                     "create 2 of 3, created 2 of 3");
    }

    void theLastDirectoryToReportWins()
    {
        const QString first = _fixture->write("one/foo.desktop");
        const QString second = _fixture->write("one-more/foo.desktop");
        for (const char *dir : { "one", "one-more" })
            _entries->addDirectory(_fixture->path(dir));
        QCOMPARE(_entries->add(second, false), -1);
        QCOMPARE(_entries->getEntry(0)->path(), first);
        _fixture->write("one-more/other.desktop");
        QTRY_COMPARE(_signals.mid(2).join(", "),
                     "remove 0 of 1, removed 0 of 0, create 0 of 1, created 0 of 1, "
                     "create 1 of 2, created 1 of 2");
        QCOMPARE(_entries->getEntry(0)->path(), second);
        // The neighbour has the same beginning, so its entries are dropped along the way.
        _fixture->write("one/third.desktop");
        QTRY_COMPARE(_keys(), "foo third");
        QCOMPARE(_entries->getEntry(0)->path(), first);
    }

    void whatIsNotThereEndsQuietly()
    {
        _entries->add(_fixture->write("foo.desktop", { "Name=n" }));
        for (int id : { -1, 1, 2, INT_MIN, INT_MAX })
            QVERIFY(!_entries->getEntry(id));
        _entries->unregister("/none.desktop");
        QCOMPARE(_signals.mid(2), QStringList({ "remove -1 of 1", "removed -1 of 1" }));

        // The key counts, not the path; and what was dropped lives on and is still relayed.
        _entries->getEntry(0)->data("Desktop Entry/Name");
        _entries->unregister("/elsewhere/foo.desktop");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QSignalSpy changed(_entries.data(), &Entries::entryDataChanged);
        _fixture->write("foo.desktop", { "Name=changed" });
        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(changed.value(0), QVariantList({ "foo", "Desktop Entry/Name", "changed" }));
    }

    void aFolderInPlaceOfAnEntryIsLeftWithIt()
    {
        const QString path = _fixture->write("foo.desktop");
        _entries->add(path);
        QVERIFY(QFile::remove(path));
        _fixture->write("foo.desktop/before.desktop");
        _fixture->write("apps/first.desktop");
        for (const char *folder : { "foo.desktop", "apps" })
            _entries->addDirectory(_fixture->path(folder));
        _entries->unregister(path);
        _fixture->write("foo.desktop/unseen.desktop");
        _fixture->write("apps/second.desktop");
        QTRY_COMPARE(_keys(), "before first second");
    }

    void badFilesAreRowsAndOthersAreRefused()
    {
        _fixture->writeBytes("apps/binary.desktop", QByteArray("\0\xff[]=[\n", 7).repeated(500));
        _fixture->writeBytes("apps/empty.desktop", QByteArray());
        _fixture->write("apps/huge.desktop",
                        { "Name=@Variant(\\0\\0\\0\\x9\\x7f\\xff\\xff\\xff)" });
        _fixture->write("a.DESKTOP");
        _fixture->write("apps/a.txt");
        QFile::link("/none", _fixture->path("apps/dangling.desktop"));
        QDir().mkpath(_fixture->path("apps/folder.desktop"));

        Messages messages;
        _entries->addDirectory(_fixture->path("apps"));
        QCOMPARE(_entries->addDirectory(_fixture->path("apps/a.txt")), -1);
        QCOMPARE(_keys(), "binary empty huge");
        for (int id = 0; id < _entries->count(); ++id)
            _entries->getEntry(id)->data("Desktop Entry/Name");
        QCOMPARE(messages.take(), QStringList());
        for (const char *name : { "none.desktop", "apps/a.txt", "a.DESKTOP", "apps/folder.desktop",
                                  "apps/dangling.desktop" }) {
            const QString path = _fixture->path(name);
            QCOMPARE(_entries->add(path, true), -1);
            QCOMPARE(messages.take().join('|'),
                     "default warning: \"" + path + "\" is not a desktop entry");
        }
    }
};

QTEST_GUILESS_MAIN(TestEntries)
#include "tst_entries.moc"
