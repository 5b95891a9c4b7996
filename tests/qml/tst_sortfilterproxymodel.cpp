#include <sortfilterproxymodel.h>

#include <QAbstractItemModelTester>
#include <QStandardItemModel>
#include <QtTest>

// Rows by the names of their roles, over a source that may announce a change for another row.
class SortFilterProxyModelTest : public QObject
{
    Q_OBJECT

    void _add(const QString &name, const QStringList &tags, int size)
    {
        auto *item = new QStandardItem;
        item->setData(name, Qt::UserRole + 1);
        item->setData(tags, Qt::UserRole + 2);
        item->setData(size, Qt::UserRole + 3);
        _source.appendRow(item);
    }
    QString _names() const
    {
        QStringList names;
        for (int row = 0; row < _proxy.count(); ++row)
            names.append(_proxy.get(row).value("name").toString());
        return names.join(' ');
    }

    QStandardItemModel _source;
    SortFilterProxyModel _proxy;
    QAbstractItemModelTester _tester { &_proxy,
                                       QAbstractItemModelTester::FailureReportingMode::Fatal };

private Q_SLOTS:
    void rolesMayGetTheirNamesLater()
    {
        _proxy.setSortRoleName("name");
        _proxy.setFilterRoleNames({ "name", "tags", "size" });
        _proxy.setFilterText("1");
        _proxy.setSourceModel(&_source);
        QCOMPARE(_proxy.count(), 0);
        _add("GParted", { "disk tools", "Über" }, 10);
        _source.setItemRoleNames({ { Qt::UserRole + 1, "name" },
                                   { Qt::UserRole + 2, "tags" },
                                   { Qt::UserRole + 3, "size" } });
        _add("gnu", { "c++" }, 9);
        _add("Geany", { "text", "c++" }, 100);
        QCOMPARE(_names(), "Geany GParted");
    }

    void itSortsAndFindsWords_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("role");
        QTest::addColumn<bool>("descending");
        QTest::addColumn<QString>("names");
        QTest::newRow("regardless of case") << ""
                                            << "name" << false << "Geany gnu GParted";
        QTest::newRow("descending") << ""
                                    << "name" << true << "GParted gnu Geany";
        QTest::newRow("numbers by their value") << ""
                                                << "size" << false << "gnu GParted Geany";
        QTest::newRow("in the order of the source") << ""
                                                    << "" << false << "GParted gnu Geany";
        QTest::newRow("words in any order") << "tool gpa"
                                            << "name" << false << "GParted";
        QTest::newRow("no expressions") << "c++"
                                        << "name" << false << "Geany gnu";
        QTest::newRow("accents make no difference") << "UBER"
                                                    << "name" << false << "GParted";
        QTest::newRow("anywhere in the first role") << "ART"
                                                    << "name" << false << "GParted";
        QTest::newRow("nowhere else in others") << "isk"
                                                << "name" << false << "";
    }
    void itSortsAndFindsWords()
    {
        QFETCH(QString, text);
        QFETCH(QString, role);
        QFETCH(bool, descending);
        _proxy.setFilterText(text);
        _proxy.setSortRoleName(role);
        _proxy.setSortOrder(descending ? Qt::DescendingOrder : Qt::AscendingOrder);
        QTEST(_names(), "names");
    }

    void aChangeIsOneOfAllRowsOnce()
    {
        _proxy.setSortRoleName("name");
        _proxy.setFilterText("c++");
        _proxy.setFilterRole(Qt::UserRole + 1);
        _proxy.setFilterRegularExpression("^[^z]"); // Both filters hold.
        QCOMPARE(_names(), "Geany gnu");
        QCOMPARE(_proxy.sourceRow(0), 2);
        QCOMPARE(_proxy.sourceRow(2), -1);
        const QSignalSpy changed(&_proxy, &SortFilterProxyModel::dataChanged);
        const QSignalSpy counted(&_proxy, &SortFilterProxyModel::countChanged);
        const QSignalSpy reset(&_proxy, &SortFilterProxyModel::modelReset);
        _source.blockSignals(true);
        _source.item(0)->setData(QStringList("c++"), Qt::UserRole + 2);
        _source.item(2)->setData("zebra", Qt::UserRole + 1);
        _source.item(1)->setData("Kate", Qt::UserRole + 1);
        _source.blockSignals(false);
        for (int i = 0; i < 3; ++i)
            Q_EMIT _source.dataChanged({}, {}); // As the plain models do for a row that is gone.
        QTRY_COMPARE(_names(), "GParted Kate");
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed[0][0].toModelIndex(), _proxy.index(0, 0));
        QCOMPARE(changed[0][1].toModelIndex(), _proxy.index(1, 0));
        QVERIFY(!counted.isEmpty());
        QVERIFY(reset.isEmpty());
    }
};

QTEST_MAIN(SortFilterProxyModelTest)
#include "tst_sortfilterproxymodel.moc"
