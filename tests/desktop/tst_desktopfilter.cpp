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
    const auto shown = [this](const char *category, const char *section, bool showAll) {
        _filter->setCategory(category);
        _filter->setSection(section);
        _filter->setShowAll(showAll);
        return _column(DesktopEntries::AppIdRole).join(' ');
    };
    QCOMPARE(shown("", "", false), "full lower");
    QCOMPARE(shown("", "", true), "full hidden lower");
    QCOMPARE(shown("Network", "", false), "full");
    QCOMPARE(shown("Network", "", true), "full hidden");
    QCOMPARE(shown("Net", "", true), "");
    QCOMPARE(shown("", "Named", true), "full");
    QCOMPARE(shown("", "named", true), "");
    QCOMPARE(shown("", "Desktop Entry", false), "full");
}

void TestDesktopFilter::aSectionGivesItsValues()
{
    const auto values = [this](const char *section) {
        _filter->setSection(section);
        QStringList values;
        for (int role : { 0, 258, 259, 260, 261, 262, 263, 266 })
            values += _column(role).value(0);
        return values.join('|');
    };
    QCOMPARE(values(""), "Full|Full|icon|Network|yes|k stopped|main|Full");
    QCOMPARE(values("Named"), "Full|Full|icon|Network|yes|k stopped|own|Full");
    QCOMPARE(values("Nameless"), "||own|own|yes|own|own|Full");
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
