// Names that an office writes in different ways match; names of different people do not.
#include "store/NameMatch.h"

#include <QTest>

class tst_namematch : public QObject
{
    Q_OBJECT
private slots:
    void sameNameWrittenDifferently_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<bool>("same");
        QTest::newRow("firm, case and accents") << "Kovács és Társa Kft."
                                                << "KOVÁCS ÉS TÁRSA" << true;
        QTest::newRow("other legal form") << "Kovács és Társa Kft."
                                          << "Kovacs es Tarsa Bt" << true;
        QTest::newRow("word order") << "Kovács Béla"
                                    << "Béla Kovács" << true;
        QTest::newRow("no accents, capitals") << "Kovács Béla"
                                              << "KOVACS BELA" << true;
        QTest::newRow("punctuation") << "Nagy-Szabó, Anna"
                                     << "nagy szabo anna" << true;
        QTest::newRow("dotted abbreviation") << "Alpha S.A."
                                             << "Alpha SA" << true;
        QTest::newRow("joining sign") << "Kovács & Társa"
                                      << "Kovács és Társa Zrt." << true;
        QTest::newRow("German sharp s") << "Straße GmbH"
                                        << "STRASSE" << true;
        QTest::newRow("long accent") << "Őri Ödön"
                                     << "ori odon" << true;
        QTest::newRow("married name") << "Kovácsné"
                                      << "Kovács" << false;
        QTest::newRow("another person") << "Kovács Béla"
                                        << "Kovács Bence" << false;
        QTest::newRow("one word more") << "Kovács Béla"
                                       << "Kovács Béla János" << false;
    }
    void sameNameWrittenDifferently()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(bool, same);
        const store::NameMatch match;
        QCOMPARE(match.key(a) == match.key(b), same);
    }

    void aNameOfLegalFormsOnlyStillMatchesItself()
    {
        const store::NameMatch match;
        QCOMPARE(match.key("Kft."), QString("kft"));
        QVERIFY(match.key(" .,- ").isEmpty());
        // The office's own list decides what a legal form is.
        QCOMPARE(store::NameMatch("Társa").key("Kovács és Társa Kft."), QString("kft kovacs"));
    }
};

QTEST_MAIN(tst_namematch)
#include "tst_namematch.moc"
