#include "records/DateShape.h"

#include <QTest>

// One keystroke's shaping of the date filter field, and the filter taken from the field. The
// fuzz target fuzz_dateshape checks the same functions against properties over any text.
class tst_dateshape : public QObject
{
    Q_OBJECT
private slots:
    void shapeAfterOneKeystroke_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("shaped");
        const QString emoji = QString::fromUtf8("\xf0\x9f\x98\x80"); // two UTF-16 units
        QTest::newRow("year gets its separator") << "2007"
                                                 << "2007.";
        QTest::newRow("month gets its separator") << "2007.10"
                                                  << "2007.10.";
        QTest::newRow("letter taken back") << "2007.1x"
                                           << "2007.1";
        QTest::newRow("separator where one belongs") << "2007/"
                                                     << "2007/";
        QTest::newRow("separator out of place") << "200."
                                                << "200";
        QTest::newRow("digits after the day stay") << "2007.10.261"
                                                   << "2007.10.261";
        QTest::newRow("two-unit character taken back whole") << "20" + emoji << "20";
        QTest::newRow("two-unit character after the year") << "2007." + emoji << "2007.";
    }
    void shapeAfterOneKeystroke()
    {
        QFETCH(QString, field);
        QFETCH(QString, shaped);
        QCOMPARE(records::shapeTypedDate(field), shaped);
    }

    void filterIsYearMonthOrDay_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("filter");
        QTest::newRow("year") << "2007."
                              << "2007";
        QTest::newRow("month") << "2007.10/"
                               << "2007.10";
        QTest::newRow("day") << "2007.10.26"
                             << "2007.10.26";
        QTest::newRow("part of a month") << "2007.1"
                                         << "";
        QTest::newRow("lone separator") << "."
                                        << "";
    }
    void filterIsYearMonthOrDay()
    {
        QFETCH(QString, field);
        QFETCH(QString, filter);
        QCOMPARE(records::dateFilter(field), filter);
    }
};

QTEST_GUILESS_MAIN(tst_dateshape)
#include "tst_dateshape.moc"
