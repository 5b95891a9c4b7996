#include <quorvane/desktop/desktopfilter.h>

#include "desktopfixture.h"
#include "signallog.h"

using xdg::DesktopEntries;
using xdg::DesktopFilter;

class TestDesktopFilter : public QObject
{
    Q_OBJECT

    QStringList _column(int role) const
    {
        QStringList values;
        for (int row = 0; row < _filter->rowCount(); ++row)
            values += _filter->index(row, 0).data(role).toString();
        return values;
    }

    DesktopFixture _fixture;
    QScopedPointer<DesktopEntries> _model;
    QScopedPointer<DesktopFilter> _filter;

private Q_SLOTS:
    void initTestCase()
    {
        _fixture.app("full",
                     { "Name=Full", "Exec=main", "Icon=icon", "Categories=Network", "Keywords=k",
                       "NoDisplay=yes", "[Named]", "Name=Own", "Exec=own", "[Nameless]", "Exec=own",
                       "Icon=own", "Categories=own", "Keywords=own" });
        _fixture.app("hidden", { "Name=Hidden", "NoDisplay=TrUe", "Categories=Network" });
        _fixture.app("lower", { "Name=Lower", "Categories=network" });
        _fixture.app("nameless", { "Exec=x", "Categories=Network", "[Named]", "Name=n", "Exec=x" });
    }

    void init()
    {
        _filter.reset(new DesktopFilter);
        _model.reset(new DesktopEntries);
        _filter->setModel(_model.data());
    }

    void rowsAreFiltered()
    {
        SignalLog log({ _filter.data() });
        const auto check
                = [this](const char *category, const char *section, bool all, const char *shown) {
                      _filter->setCategory(category);
                      _filter->setSection(section);
                      _filter->setShowAll(all);
                      QCOMPARE(_column(DesktopEntries::AppIdRole).join(' '), shown);
                  };
        check("", "", false, "full lower");
        check("", "", true, "full hidden lower");
        check("Network", "", false, "full");
        check("Net", "", true, "");
        check("", "Named", true, "full");
        check("", "named", true, "");
        QCOMPARE(log.lines.filter(QRegularExpression("^[^m].*Changed")).join(", "),
                 "showAllChanged true, categoryChanged Network, showAllChanged false, "
                 "categoryChanged Net, showAllChanged true, categoryChanged, "
                 "sectionChanged Named, sectionChanged named");
    }

    void aSlotThatSetsAnotherValueTakesNothingFromTheNext()
    {
        connect(_filter.data(), &DesktopFilter::categoryChanged, this,
                [this](const QString &category) {
                    if (category == "A")
                        _filter->setCategory("B");
                });
        SignalLog log({ _filter.data() });
        _filter->setCategory("A");
        QCOMPARE(log.lines.filter("category").join(", "), "categoryChanged B, categoryChanged A");
    }

    void aSectionGivesItsValues()
    {
        const auto check = [this](const char *section, const char *values) {
            _filter->setSection(section);
            QStringList shown;
            for (int role : { 0, 258, 259, 260, 261, 262, 263, 266 })
                shown += _column(role).value(0);
            QCOMPARE(shown.join('|'), values);
        };
        check("", "Full|Full|icon|Network|yes|k stopped|main|Full");
        check("Named", "Full|Full|icon|Network|yes|k stopped|own|Full");
        check("Nameless", "||own|own|yes|own|own|Full");
    }

    void foreignModelsAreRefusedOrHidden()
    {
        DesktopFilter filter;
        QVERIFY(!filter.filterAcceptsRow(0, QModelIndex()));
        QSignalSpy modelChanged(&filter, &DesktopFilter::modelChanged);
        QStringListModel other({ "x" });
        for (int i = 0; i < 4; ++i)
            filter.setModel(i % 2 ? _model.data() : static_cast<QObject *>(&other));
        QCOMPARE(filter.model(), _model.data());
        QCOMPARE(modelChanged.count(), 1);
        QTest::ignoreMessage(QtWarningMsg, "Can't retrive entry for  \"\"");
        filter.setSourceModel(&other);
        QCOMPARE(filter.rowCount(), 0);
    }

    void changesInsideTheModelsSignalAreHarmless()
    {
        connect(_model.data(), &DesktopEntries::categoriesChanged, _filter.data(), [this] {
            _filter->setCategory(QString());
            _filter->setCategory("New");
        });
        const QString path = _fixture.app("zz", { "Name=New", "Categories=New" });
        QTRY_COMPARE(_column(DesktopEntries::NameRole), QStringList("New"));
        QVERIFY(QFile::remove(path));
        QTRY_COMPARE(_filter->rowCount(), 0);
    }
};

QTEST_GUILESS_MAIN(TestDesktopFilter)
#include "tst_desktopfilter.moc"
