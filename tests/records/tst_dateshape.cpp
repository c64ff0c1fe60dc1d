#include "records/DateShape.h"

#include <QTest>

// One keystroke's shaping of the date filter field, and the filter taken from the field. The
// fuzz target fuzz_dateshape checks the same functions against properties over any text.
class tst_dateshape : public QObject
{
    Q_OBJECT
private slots:
    void shapeAndFilter_data()
    {
        QTest::addColumn<bool>("shape"); // the shaping after a keystroke, or the filter
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("result");
        const auto shape = [](const char* name, const QString& field, const QString& shaped) {
            QTest::newRow(name) << true << field << shaped;
        };
        const auto filter = [](const char* name, const QString& field, const QString& taken) {
            QTest::addRow("filter: %s", name) << false << field << taken;
        };
        const QString emoji = QString::fromUtf8("\xf0\x9f\x98\x80"); // two UTF-16 units
        shape("year gets its separator", "2007", "2007.");
        shape("month gets its separator", "2007.10", "2007.10.");
        shape("letter taken back", "2007.1x", "2007.1");
        shape("separator where one belongs", "2007/", "2007/");
        shape("separator out of place", "200.", "200");
        shape("digits after the day stay", "2007.10.261", "2007.10.261");
        shape("two-unit character taken back whole", "20" + emoji, "20");
        shape("two-unit character after the year", "2007." + emoji, "2007.");
        filter("year", "2007.", "2007");
        filter("month", "2007.10/", "2007.10");
        filter("day", "2007.10.26", "2007.10.26");
        filter("part of a month", "2007.1", "");
        filter("lone separator", ".", "");
    }
    void shapeAndFilter()
    {
        QFETCH(bool, shape);
        QFETCH(QString, field);
        QTEST(shape ? records::shapeTypedDate(field) : records::dateFilter(field), "result");
    }
};

QTEST_GUILESS_MAIN(tst_dateshape)
#include "tst_dateshape.moc"
