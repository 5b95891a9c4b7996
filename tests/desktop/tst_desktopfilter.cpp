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
    void init();
    void rowsAreFiltered();
    void aSectionGivesItsValues();
    void settersEmitOnChange();
    void foreignModelsAreHidden();
    void changesInsideTheModelsSignalAreHarmless();

private:
    QStringList _column(int role) const;

    DesktopFixture _fixture;
    QScopedPointer<DesktopEntries> _model;
    QScopedPointer<DesktopFilter> _filter;
};

void TestDesktopFilter::initTestCase()
{
    _fixture.app("full", { "Name=Full", "Exec=main", "Icon=icon", "Categories=Network",
                           "Keywords=k", "NoDisplay=yes", "[Named]", "Name=Own", "Exec=own",
                           "[Nameless]", "Exec=own", "Icon=own", "Categories=own", "Keywords=own" });
    _fixture.app("hidden", { "Name=Hidden", "NoDisplay=TrUe", "Categories=Network" });
    _fixture.app("lower", { "Name=Lower", "Categories=network" });
    _fixture.app("nameless", { "Exec=x", "Categories=Network", "[Named]", "Name=n", "Exec=x" });
}

void TestDesktopFilter::init()
{
    _filter.reset(new DesktopFilter);
    _model.reset(new DesktopEntries);
    _filter->setModel(_model.data());
}

QStringList TestDesktopFilter::_column(int role) const
{
    QStringList values;
    for (int row = 0; row < _filter->rowCount(); ++row)
        values += _filter->index(row, 0).data(role).toString();
    return values;
}

void TestDesktopFilter::rowsAreFiltered()
{
    const struct
    {
        const char *category, *section;
        bool showAll;
        QStringList rows;
    } rows[] = {
        { "", "", false, { "full", "lower" } },
        { "", "", true, { "full", "hidden", "lower" } },
        { "Network", "", false, { "full" } },
        { "Network", "", true, { "full", "hidden" } },
        { "Net", "", true, {} },
        { "", "Named", true, { "full" } },
        { "", "named", true, {} },
        { "", "Desktop Entry", false, { "full" } },
    };
    for (const auto &row : rows) {
        _filter->setCategory(row.category);
        _filter->setSection(row.section);
        _filter->setShowAll(row.showAll);
        QCOMPARE(_column(DesktopEntries::AppIdRole), row.rows);
    }
}

void TestDesktopFilter::aSectionGivesItsValues()
{
    const struct
    {
        const char *section;
        QStringList values; // 0, 258, 259, 260, 261, 262, 263, 266
    } rows[] = {
        { "", { "Full", "Full", "icon", "Network", "yes", "k stopped", "main", "Full" } },
        { "Named", { "Full", "Full", "icon", "Network", "yes", "k stopped", "own", "Full" } },
        { "Nameless", { "", "", "own", "own", "yes", "own", "own", "Full" } },
    };
    for (const auto &row : rows) {
        _filter->setSection(row.section);
        QStringList values;
        for (int role : { 0, 258, 259, 260, 261, 262, 263, 266 })
            values += _column(role).value(0);
        QCOMPARE(values, row.values);
    }
}

void TestDesktopFilter::settersEmitOnChange()
{
    QSignalSpy modelChanged(_filter.data(), &DesktopFilter::modelChanged);
    QSignalSpy sectionChanged(_filter.data(), &DesktopFilter::sectionChanged);
    QStringListModel other;
    _filter->setModel(_model.data());
    _filter->setModel(&other);
    _filter->setModel(nullptr);
    QCOMPARE(_filter->model(), _model.data());
    QCOMPARE(modelChanged.count(), 0);
    for (const char *section : { "", "Named", "Named" })
        _filter->setSection(section);
    QCOMPARE(sectionChanged, QList<QList<QVariant>>({ { "Named" } }));
}

void TestDesktopFilter::foreignModelsAreHidden()
{
    QStringListModel other({ "x" });
    Messages messages;
    _filter->setSourceModel(&other);
    QCOMPARE(_filter->rowCount(), 0);
    QCOMPARE(messages.take(), QStringList("default warning: Can't retrive entry for  \"\""));
    QVERIFY(!DesktopFilter().filterAcceptsRow(0, QModelIndex()));
}

void TestDesktopFilter::changesInsideTheModelsSignalAreHarmless()
{
    _filter->setCategory("New");
    connect(_model.data(), &DesktopEntries::categoriesChanged, _filter.data(), [this] {
        _filter->setCategory(QString());
        _filter->setCategory("New");
    });
    const QString path = _fixture.app("zz", { "Name=New", "Categories=New" });
    QTRY_COMPARE(_model->rowCount(), 5);
    _filter->invalidate();
    QCOMPARE(_column(DesktopEntries::NameRole), QStringList("New"));
    QVERIFY(QFile::remove(path));
    QTRY_COMPARE(_model->rowCount(), 4);
    _filter->invalidate();
    QCOMPARE(_filter->rowCount(), 0);
}

QTEST_GUILESS_MAIN(TestDesktopFilter)
#include "tst_desktopfilter.moc"
