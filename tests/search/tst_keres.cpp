#include "SearchTestData.h"
#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "platform/Display.h"
#include "platform/ListSource.h"
#include "session/Session.h"

#include <QTableView>

using namespace searchtest;
using testsupport::TestFolder;

namespace {

// The values of one column of the list, from the top.
QStringList column(Screen& s, const QString& name)
{
    platform::ListSource& source = s.w.forras();
    source.fetchAll();
    QStringList values;
    for (int r = 0; r < source.rowCount(); ++r)
        values << source.value(r, name).toString();
    return values;
}

// Clients whose names begin alike or hold characters special to SQL, one client without a
// place, and cases numbered out of order, one of them without an opponent.
QHash<QString, qint64> fillRegister(platform::Database& db)
{
    QHash<QString, qint64> ids;
    for (const char* name : {"Kovács János", "Kővágó Ede", "Ábel Ferenc", "O'Brien Kft.", "50% Bt.",
                             "500 Bt.", "A_B Zrt.", "AxB Zrt.", "C\\D Kft.", "CD Kft."})
        ids[name] = addClient(db, name);
    ids["kovács és Társa"] = addClient(db, "kovács és Társa", "Szeged", "Kárász utca 6.", "6720");
    ids["Hely Nélkül"] = addClient(db, "Hely Nélkül", QVariant());
    addCase(db, "10", ids["kovács és Társa"], "Polgári ügy", "Ellenfél Kft.", "2007.11.05");
    addCase(db, "9", ids["Kovács János"], "Polgári ügy", "O'Neil Kft.", "2007.10.26");
    addCase(db, "10/A", ids["Kővágó Ede"]);
    addCase(db, "11", ids["Kovács János"], "Polgári ügy", QVariant());
    addCase(db, "100", ids["Ábel Ferenc"]);
    return ids;
}

// The ways of choosing a row of the list.
enum Gesture { EnterKey, DataButton, DataButtonWithoutRow };

} // namespace

class tst_keres : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup() { m_folder.reset(); }
    void caseNumbersInNumericThenTextOrder();
    void prefixFiltersMatchLiterally_data();
    void prefixFiltersMatchLiterally();
    void emptyFiltersLeaveOutRowsWithoutValue_data();
    void emptyFiltersLeaveOutRowsWithoutValue();
    void dateFilterShapedAndNormalised();
    void gridColumnsByModeAndLanguage_data();
    void gridColumnsByModeAndLanguage();
    void choosingARowHandsItOver_data();
    void choosingARowHandsItOver();
    void newRecordNeedsRightEight();

private:
    std::unique_ptr<TestFolder> m_folder;
    QHash<QString, qint64> m_ids;
};

void tst_keres::init()
{
    m_folder = std::make_unique<TestFolder>();
    QVERIFY(m_folder->open());
    m_ids = fillRegister(m_folder->db());
}

void tst_keres::caseNumbersInNumericThenTextOrder()
{
    Screen s("2");
    QCOMPARE(column(s, "ugyszam"), (QStringList{"9", "10", "10/A", "11", "100"}));
}

void tst_keres::prefixFiltersMatchLiterally_data()
{
    QTest::addColumn<QString>("tipus");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char* name, const char* tipus, const char* filter, const char* typed,
                        const QStringList& expected) {
        QTest::newRow(name) << QString(tipus) << QString(filter) << QString(typed) << expected;
    };
    // Letter case is ignored, accents are not: Kővágó does not begin with Kov.
    row("name, any case", "1", "ker1", "Kov", {"kovács és Társa", "Kovács János"});
    row("quote", "1", "ker1", "O'B", {"O'Brien Kft."});
    row("percent", "1", "ker1", "50%", {"50% Bt."});
    row("underscore", "1", "ker1", "A_", {"A_B Zrt."});
    row("backslash", "1", "ker1", "C\\", {"C\\D Kft."});
    row("no match", "1", "ker1", "%", {});
    // A postal code is not shaped like the date the same field holds for cases.
    row("postcode", "1", "ker5", "6720", {"kovács és Társa"});
    row("case client", "2", "ker2", "kov", {"Kovács János", "kovács és Társa"});
    row("case number", "2", "ker1", "10", {"kovács és Társa", "Kővágó Ede", "Ábel Ferenc"});
    row("case opponent quote", "2", "ker4", "O'", {"Kovács János"});
}

void tst_keres::prefixFiltersMatchLiterally()
{
    QFETCH(QString, tipus);
    QFETCH(QString, filter);
    QFETCH(QString, typed);
    QFETCH(QStringList, expected);
    Screen s(tipus);
    s.search(filter, typed);
    QCOMPARE(s.field(filter)->text(), typed);
    QCOMPARE(column(s, "unev1"), expected);
}

void tst_keres::emptyFiltersLeaveOutRowsWithoutValue_data()
{
    QTest::addColumn<QString>("tipus");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("withoutValue");
    QTest::newRow("client without place") << "1" << QString("unev1") << QString("Hely Nélkül");
    QTest::newRow("case without opponent") << "2" << QString("ugyszam") << QString("11");
}

void tst_keres::emptyFiltersLeaveOutRowsWithoutValue()
{
    QFETCH(QString, tipus);
    QFETCH(QString, key);
    QFETCH(QString, withoutValue);
    Screen s(tipus);
    const QStringList all = column(s, key);
    QCOMPARE(all.size(), tipus == "1" ? m_ids.size() : 5);
    QStringList narrowed = all;
    QVERIFY(narrowed.removeOne(withoutValue));
    s.click("g3");
    QCOMPARE(column(s, key), narrowed);
    // The next activation lists everything again.
    s.w.Activate();
    QCOMPARE(column(s, key), all);
}

void tst_keres::dateFilterShapedAndNormalised()
{
    Screen s("2");
    QLineEdit* ker5 = s.field("ker5");
    type(ker5, "2007");
    QCOMPARE(ker5->text(), QString("2007."));
    type(ker5, "1x0"); // a letter is taken back
    QCOMPARE(ker5->text(), QString("2007.10."));
    QTest::keyClick(ker5, Qt::Key_Return);
    QCOMPARE(ker5->text(), QString("2007.10.")); // the field keeps what was typed
    QCOMPARE(column(s, "ugyszam"), QStringList{"9"});

    // Six characters are not a year, a month or a day: the date filter is ignored.
    ker5->setText("2007.1");
    QTest::keyClick(ker5, Qt::Key_Return);
    QCOMPARE(column(s, "ugyszam"), (QStringList{"9", "10", "10/A", "100"}));
}

void tst_keres::gridColumnsByModeAndLanguage_data()
{
    QTest::addColumn<QString>("tipus");
    QTest::addColumn<int>("language");
    QTest::addColumn<QStringList>("fields");
    QTest::addColumn<QStringList>("headings");
    QTest::addColumn<QList<int>>("widths");
    QTest::newRow("clients, Hungarian")
            << "1" << 1 << QStringList{"unev1", "uorszag", "uirsz", "uhely", "uutca"}
            << QStringList{"Név", "Ország", "IRSZ", "Helység", "Utca"}
            << QList<int>{3000, 1500, 700, 2500, 2200};
    QTest::newRow("cases, German")
            << "2" << 2 << QStringList{"ugyszam", "unev1", "ugytipus", "kezdet", "ellnev"}
            << QStringList{"Akten-Nr.", "Mandant", "Sachgebiet", "Beginn", "Gegner"}
            << QList<int>{900, 2700, 2100, 1300, 2800};
}

void tst_keres::gridColumnsByModeAndLanguage()
{
    QFETCH(QString, tipus);
    QFETCH(int, language);
    QFETCH(QStringList, fields);
    QFETCH(QStringList, headings);
    QFETCH(QList<int>, widths);
    Session::instance().language = qint16(language);
    Screen s(tipus);
    const QTableView* view = s.w.findChild<QTableView*>("DataGrid1");
    int visible = 0;
    for (int c = 0; c < view->model()->columnCount(); ++c)
        visible += view->isColumnHidden(c) ? 0 : 1;
    QCOMPARE(visible, fields.size());
    for (int i = 0; i < fields.size(); ++i) {
        const int c = s.w.forras().columnIndex(fields[i]);
        QVERIFY(!view->isColumnHidden(c));
        QCOMPARE(view->model()->headerData(c, Qt::Horizontal).toString(), headings[i]);
        QCOMPARE(view->columnWidth(c), platform::twipsToPixels(widths[i]));
    }
}

void tst_keres::choosingARowHandsItOver_data()
{
    QTest::addColumn<QString>("tipus");
    QTest::addColumn<int>("gesture");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("chosen"); // empty: nothing may be handed over
    // Ábel Ferenc is the one client whose name begins with Á, and 9 the one such case number.
    QTest::newRow("client, Enter key") << "1" << int(EnterKey) << "Á" << QString("Ábel Ferenc");
    QTest::newRow("case, data button") << "2" << int(DataButton) << "9" << QString("9");
    QTest::newRow("no current row") << "1" << int(DataButtonWithoutRow) << "Kov" << QString();
}

void tst_keres::choosingARowHandsItOver()
{
    QFETCH(QString, tipus);
    QFETCH(int, gesture);
    QFETCH(QString, typed);
    QFETCH(QString, chosen);
    QList<ListChoice> clients, cases;
    Session::instance().screens.showClient = [&](const ListChoice& c) { clients << c; };
    Session::instance().screens.showCase = [&](const ListChoice& c) { cases << c; };
    Screen s(tipus);
    s.search("ker1", typed);
    s.field("ksorsz")->setText("earlier");
    QTableView* view = s.w.findChild<QTableView*>("DataGrid1");
    const QModelIndex row = view->model()->index(0, s.w.forras().columnIndex("unev1"));
    if (gesture != DataButtonWithoutRow)
        view->setCurrentIndex(row);
    if (gesture == EnterKey) // Enter, like a double click, activates the row
        QTest::keyClick(view, Qt::Key_Return);
    else
        s.click("g4");

    QString key = chosen;
    if (tipus == "1" && !chosen.isEmpty())
        key = QString::number(m_ids[chosen]);
    QCOMPARE(s.field("jelzo")->text(), QString(key.isEmpty() ? "-1" : "1"));
    QCOMPARE(s.field("ksorsz")->text(), key.isEmpty() ? QString("earlier") : key);
    QCOMPARE((tipus == "1" ? cases : clients).size(), 0);
    const QList<ListChoice>& handed = tipus == "1" ? clients : cases;
    QCOMPARE(handed.size(), key.isEmpty() ? 0 : 1);
    if (key.isEmpty())
        return;
    QCOMPARE(handed[0].key, key);
    QCOMPARE(handed[0].search, &s.w);
}

void tst_keres::newRecordNeedsRightEight()
{
    QList<ListChoice> opened;
    Session::instance().screens.newClient = [&](const ListChoice& c) { opened << c; };
    Screen s("1");
    s.search("ker1", "Kov");
    testsupport::MessageRecorder recorder;
    Session::instance().rights = QString(20, '1').replace(7, 1, '0');
    s.click("g1");
    QCOMPARE(recorder.texts(), QStringList{uzenetszoveg("nincsjog")});
    QCOMPARE(s.field("ker1")->text(), QString("Kov"));
    QCOMPARE(opened.size(), 0);
    Session::instance().rights = QString(20, '1');
    s.click("g1");
    QCOMPARE(recorder.shown().size(), 1);
    QCOMPARE(s.field("ker1")->text(), QString()); // the filters are emptied first
    QCOMPARE(opened.size(), 1);
    QVERIFY(opened[0].key.isEmpty());
    QCOMPARE(opened[0].search, &s.w);
}

QTEST_MAIN(tst_keres)
#include "tst_keres.moc"
