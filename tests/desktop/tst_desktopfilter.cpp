#include <quorvane/desktop/desktopentries.h>
#include <quorvane/desktop/desktopfilter.h>

#include "desktopfixture.h"
#include "messages.h"

#include <QStringListModel>
#include <QtTest>

using xdg::DesktopEntries;
using xdg::DesktopFilter;

class TestDesktopFilter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void rows_data();
    void rows();
    void sectionValues_data();
    void sectionValues();
    void settersEmitOnChange();
    void foreignModels();
    void followsTheModel();

private:
    DesktopFixture _fixture;
};

void TestDesktopFilter::initTestCase()
{
    const auto app = [this](const QString &name, const QStringList &lines) {
        _fixture.write("home/applications/" + name + ".desktop", lines);
    };
    app("full", { "Name=Full", "Exec=main", "Icon=icon", "Categories=Network", "Keywords=k",
                  "NoDisplay=yes", "[Named]", "Name=Own", "Exec=own", "[Nameless]", "Exec=own",
                  "Icon=own", "Categories=own", "Keywords=own" });
    app("hidden", { "Name=Hidden", "NoDisplay=TrUe", "Categories=Network" });
    app("lower", { "Name=Lower", "Categories=network" });
    app("nameless", { "Exec=x", "Categories=Network", "[Named]", "Name=n", "Exec=x" });
}

void TestDesktopFilter::rows_data()
{
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("section");
    QTest::addColumn<bool>("showAll");
    QTest::addColumn<QStringList>("rows");

    QTest::newRow("plain") << ""
                           << "" << false << QStringList({ "full", "lower" });
    QTest::newRow("all but the nameless")
            << ""
            << "" << true << QStringList({ "full", "hidden", "lower" });
    QTest::newRow("category") << "Network"
                              << "" << false << QStringList({ "full" });
    QTest::newRow("category of all") << "Network"
                                     << "" << true << QStringList({ "full", "hidden" });
    QTest::newRow("part of a category") << "Net"
                                        << "" << true << QStringList();
    QTest::newRow("group with a command") << ""
                                          << "Named" << true << QStringList({ "full" });
    QTest::newRow("group of no file") << ""
                                      << "None" << true << QStringList();
    QTest::newRow("main group") << ""
                                << "Desktop Entry" << false << QStringList({ "full" });
    QTest::newRow("case of the group") << ""
                                       << "named" << true << QStringList();
}

void TestDesktopFilter::rows()
{
    QFETCH(QString, category);
    QFETCH(QString, section);
    QFETCH(bool, showAll);
    DesktopEntries model;
    DesktopFilter filter;
    filter.setModel(&model);
    filter.setCategory(category);
    filter.setSection(section);
    filter.setShowAll(showAll);
    QStringList rows;
    for (int row = 0; row < filter.rowCount(); ++row)
        rows += filter.index(row, 0).data(DesktopEntries::AppIdRole).toString();
    QTEST(rows, "rows");
}

void TestDesktopFilter::sectionValues_data()
{
    QTest::addColumn<QString>("section");
    QTest::addColumn<QStringList>("values");

    // Display, 258, 259, 260, 261, 262, 263, 266.
    QTest::newRow("none") << ""
                          << QStringList({ "Full", "Full", "icon", "Network", "yes", "k stopped",
                                           "main", "Full" });
    QTest::newRow("with a name") << "Named"
                                 << QStringList({ "Full", "Full", "icon", "Network", "yes",
                                                  "k stopped", "own", "Full" });
    QTest::newRow("without a name")
            << "Nameless" << QStringList({ "", "", "own", "own", "yes", "own", "own", "Full" });
    QTest::newRow("main group") << "Desktop Entry"
                                << QStringList({ "Full", "Full", "icon", "Network", "yes",
                                                 "k stopped", "main", "Full" });
}

void TestDesktopFilter::sectionValues()
{
    QFETCH(QString, section);
    DesktopEntries model;
    DesktopFilter filter;
    filter.setModel(&model);
    filter.setSection(section);
    QStringList values;
    for (int role : { 0, 258, 259, 260, 261, 262, 263, 266 })
        values += filter.index(0, 0).data(role).toString();
    QTEST(values, "values");
}

void TestDesktopFilter::settersEmitOnChange()
{
    DesktopEntries model;
    DesktopFilter filter;
    QSignalSpy modelChanged(&filter, &DesktopFilter::modelChanged);
    QSignalSpy sectionChanged(&filter, &DesktopFilter::sectionChanged);
    QSignalSpy showAllChanged(&filter, &DesktopFilter::showAllChanged);
    QVERIFY(!filter.model());
    QStringListModel other;
    for (QObject *object :
         std::initializer_list<QObject *> { nullptr, &other, &model, &model, nullptr, &other })
        filter.setModel(object);
    QCOMPARE(filter.model(), &model);
    QCOMPARE(modelChanged.count(), 1);
    for (const char *section : { "", "Named", "Named" })
        filter.setSection(section);
    QCOMPARE(sectionChanged, QList<QList<QVariant>>({ { "Named" } }));
    for (bool showAll : { false, true, true })
        filter.setShowAll(showAll);
    QCOMPARE(showAllChanged, QList<QList<QVariant>>({ { true } }));
}

void TestDesktopFilter::foreignModels()
{
    QStringListModel other({ "x" });
    DesktopFilter filter;
    QVERIFY(!filter.filterAcceptsRow(0, QModelIndex()));
    Messages messages;
    filter.setSourceModel(&other);
    QCOMPARE(filter.rowCount(), 0);
    QCOMPARE(messages.take(), QStringList("default warning: Can't retrive entry for  \"\""));
}

void TestDesktopFilter::followsTheModel()
{
    DesktopEntries model;
    DesktopFilter filter;
    filter.setModel(&model);
    filter.setCategory("New");
    QCOMPARE(filter.rowCount(), 0);
    // Setting the category from inside the model's signal is not advised and must be harmless.
    connect(&model, &DesktopEntries::categoriesChanged, &filter, [&filter] {
        filter.setCategory(QString());
        filter.setCategory("New");
    });
    QSignalSpy inserted(&filter, &DesktopFilter::rowsInserted);
    _fixture.write("home/applications/zz.desktop", { "Name=New", "Categories=New" });
    QTRY_COMPARE(model.rowCount(), 5);
    QTRY_COMPARE(model.index(4).data(DesktopEntries::CategoryRole).toString(),
                 QStringLiteral("New"));
    filter.invalidate();
    QCOMPARE(filter.rowCount(), 1);
    QVERIFY(QFile::remove(_fixture.path("home/applications/zz.desktop")));
    QTRY_COMPARE(model.rowCount(), 4);
    filter.invalidate();
    QCOMPARE(filter.rowCount(), 0);
}

QTEST_GUILESS_MAIN(TestDesktopFilter)
#include "tst_desktopfilter.moc"
