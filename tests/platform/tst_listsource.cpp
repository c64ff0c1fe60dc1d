#include "TestSupport.h"

#include "platform/Display.h"
#include "platform/ListSource.h"

#include <QHeaderView>
#include <QLabel>
#include <QTableView>
#include <QTest>

class tst_ListSource : public QObject
{
    Q_OBJECT
private slots:
    void showsOnlyTheListedColumnsWithHeadingsAndWidths();
};

void tst_ListSource::showsOnlyTheListedColumnsWithHeadingsAndWidths()
{
    testsupport::TestFolder folder(true);
    QVERIFY(folder.open());
    platform::ListSource source(folder.db());
    QTableView grid;
    source.bind(&grid);
    platform::ListQuery list;
    list.columns = "ukod, unev1, uorszag, uhely AS UHELY";
    list.from = "ugyfelek";
    list.order = QStringList{"unev1kulcs", "ukod"};
    source.setRecordSource(list);
    QVERIFY(source.refresh());

    QLabel name("Név");
    QLabel place("Helység");
    // Field names are matched exactly: "uhely" does not name the column UHELY.
    platform::gridoszlopok(&grid, {{"unev1", &name, 3000}, {"uhely", &place, 2500}});
    QVERIFY(grid.isColumnHidden(0));
    QVERIFY(!grid.isColumnHidden(1));
    QVERIFY(grid.isColumnHidden(2));
    QVERIFY(grid.isColumnHidden(3));
    QCOMPARE(grid.model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Név"));
    QCOMPARE(grid.columnWidth(1), platform::twipsToPixels(3000));

    // Headings follow the label's current text on the next set-up.
    name.setText("Name");
    platform::gridoszlopok(&grid, {{"unev1", &name, 3000}, {"UHELY", &place, 2500}});
    QCOMPARE(grid.model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Name"));
    QVERIFY(!grid.isColumnHidden(3));
    QCOMPARE(grid.columnWidth(3), platform::twipsToPixels(2500));
}

QTEST_MAIN(tst_ListSource)
#include "tst_listsource.moc"
