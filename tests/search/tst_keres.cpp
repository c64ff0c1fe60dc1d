#include "SearchTestData.h"
#include "TestSupport.h"

#include "platform/Display.h"
#include "platform/ListSource.h"
#include "locale/Uzenet.h"
#include "search/keres.h"
#include "session/Session.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

using namespace searchtest;
using testsupport::TestFolder;

namespace {

QLineEdit* field(QWidget* screen, const char* name)
{
    return screen->findChild<QLineEdit*>(name);
}

QTableView* grid(QWidget* screen)
{
    return screen->findChild<QTableView*>("DataGrid1");
}

// The values of one column of the grid, from the top.
QStringList column(QWidget* screen, const QString& name)
{
    auto& source = static_cast<keres*>(screen)->forras();
    source.fetchAll();
    QStringList values;
    for (int r = 0; r < source.rowCount(); ++r)
        values << source.value(r, name).toString();
    return values;
}

void type(QWidget* w, const QString& text)
{
    for (const QChar c : text)
        QTest::sendKeyEvent(QTest::Click, w, Qt::Key(c.toUpper().unicode()), QString(c), {});
}

void enter(QWidget* w)
{
    QTest::keyClick(w, Qt::Key_Return);
}

// A search screen in a mode, shown as the main menu shows it.
struct Screen
{
    keres w;
    explicit Screen(const QString& tipus)
    {
        w.setTipus(tipus);
        w.show();
        QTest::qWaitForWindowExposed(&w);
    }
};

} // namespace

class tst_keres : public QObject
{
    Q_OBJECT
private slots:
    void caseNumbersInNumericThenTextOrder();
    void prefixFiltersMatchLiterally_data();
    void prefixFiltersMatchLiterally();
    void emptyFiltersLeaveOutRowsWithoutValue_data();
    void emptyFiltersLeaveOutRowsWithoutValue();
    void dateFilterShapedAndNormalised();
    void captionsColoursAndColumnsByModeAndLanguage_data();
    void captionsColoursAndColumnsByModeAndLanguage();
    void choosingARowHandsItOver_data();
    void choosingARowHandsItOver();
    void choosingWithoutCurrentRowDoesNothing();
    void newRecordNeedsRightEight();
    void closeShowsTheMainMenu();
};

void tst_keres::caseNumbersInNumericThenTextOrder()
{
    TestFolder folder;
    QVERIFY(folder.open());
    const qint64 c = addClient(folder.db(), "Kovács János");
    for (const char* n : {"10", "9", "10/A", "2019/123", "100"})
        addCase(folder.db(), n, c);
    Screen s("2");
    const QStringList expected{"9", "10", "10/A", "100", "2019/123"};
    QCOMPARE(column(&s.w, "ugyszam"), expected);
    // The filtered list keeps the order.
    QTest::mouseClick(s.w.findChild<QPushButton*>("g3"), Qt::LeftButton);
    QCOMPARE(column(&s.w, "ugyszam"), expected);
}

void tst_keres::prefixFiltersMatchLiterally_data()
{
    QTest::addColumn<QString>("tipus");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("expected");
    // Letter case is ignored, accents are not: Kővágó does not begin with Kov.
    QTest::newRow("name, any case") << "1" << "ker1" << "Kov" << QStringList{"kovács és Társa", "Kovács János"};
    QTest::newRow("name, accent kept") << "1" << "ker1" << "Kő" << QStringList{"Kővágó Ede"};
    QTest::newRow("quote") << "1" << "ker1" << "O'B" << QStringList{"O'Brien Kft."};
    QTest::newRow("percent") << "1" << "ker1" << "50%" << QStringList{"50% Bt."};
    QTest::newRow("underscore") << "1" << "ker1" << "A_" << QStringList{"A_B Zrt."};
    QTest::newRow("backslash") << "1" << "ker1" << "C\\" << QStringList{"C\\D Kft."};
    QTest::newRow("place") << "1" << "ker3" << "szeg" << QStringList{"kovács és Társa"};
    QTest::newRow("postcode") << "1" << "ker5" << "67" << QStringList{"kovács és Társa"};
    QTest::newRow("case client") << "2" << "ker2" << "kov" << QStringList{"Kovács János", "kovács és Társa"};
    QTest::newRow("case number") << "2" << "ker1" << "10" << QStringList{"kovács és Társa", "Kővágó Ede"};
    QTest::newRow("case opponent quote") << "2" << "ker4" << "O'" << QStringList{"Kovács János"};
    QTest::newRow("no match") << "1" << "ker1" << "%" << QStringList{};
}

void tst_keres::prefixFiltersMatchLiterally()
{
    QFETCH(QString, tipus);
    QFETCH(QString, filter);
    QFETCH(QString, typed);
    QFETCH(QStringList, expected);
    TestFolder folder;
    QVERIFY(folder.open());
    platform::Database& db = folder.db();
    const qint64 kovacs = addClient(db, "Kovács János");
    const qint64 tars = addClient(db, "kovács és Társa", "Szeged", "Kárász utca 6.", "6720");
    const qint64 kovago = addClient(db, "Kővágó Ede");
    for (const char* decoy : {"O'Brien Kft.", "50% Bt.", "500 Bt.", "A_B Zrt.", "AxB Zrt.",
                              "C\\D Kft.", "CD Kft."})
        addClient(db, decoy);
    addCase(db, "9", kovacs, "Polgári ügy", "O'Neil Kft.");
    addCase(db, "10", tars);
    addCase(db, "10/A", kovago);

    Screen s(tipus);
    type(field(&s.w, qPrintable(filter)), typed);
    enter(field(&s.w, qPrintable(filter)));
    QCOMPARE(field(&s.w, qPrintable(filter))->text(), typed);
    QCOMPARE(column(&s.w, "unev1"), expected);
}

void tst_keres::emptyFiltersLeaveOutRowsWithoutValue_data()
{
    QTest::addColumn<QString>("tipus");
    QTest::addColumn<QStringList>("afterActivate");
    QTest::addColumn<QStringList>("afterSearch");
    QTest::newRow("clients") << "1" << QStringList{"Ábel Ferenc", "Hely Nélkül", "Kovács János"}
                             << QStringList{"Ábel Ferenc", "Kovács János"};
    QTest::newRow("cases") << "2" << QStringList{"9", "10", "11"} << QStringList{"9", "11"};
}

void tst_keres::emptyFiltersLeaveOutRowsWithoutValue()
{
    QFETCH(QString, tipus);
    QFETCH(QStringList, afterActivate);
    QFETCH(QStringList, afterSearch);
    TestFolder folder;
    QVERIFY(folder.open());
    platform::Database& db = folder.db();
    const qint64 a = addClient(db, "Kovács János");
    addClient(db, "Hely Nélkül", QVariant());
    addClient(db, "Ábel Ferenc");
    addCase(db, "9", a);
    addCase(db, "10", a, "Polgári ügy", QVariant());
    addCase(db, "11", a);

    Screen s(tipus);
    const QString key = tipus == "1" ? "unev1" : "ugyszam";
    QCOMPARE(column(&s.w, key), afterActivate);
    QTest::mouseClick(s.w.findChild<QPushButton*>("g3"), Qt::LeftButton);
    QCOMPARE(column(&s.w, key), afterSearch);
    // The next activation lists everything again.
    s.w.Activate();
    QCOMPARE(column(&s.w, key), afterActivate);
}

void tst_keres::dateFilterShapedAndNormalised()
{
    TestFolder folder;
    QVERIFY(folder.open());
    platform::Database& db = folder.db();
    const qint64 a = addClient(db, "Kovács János");
    addCase(db, "1", a, "Polgári ügy", "X", "2007.10.26");
    addCase(db, "2", a, "Polgári ügy", "X", "2007.11.05");
    addCase(db, "3", a, "Polgári ügy", "X", "2008.10.01");

    Screen s("2");
    QLineEdit* ker5 = field(&s.w, "ker5");
    type(ker5, "2007");
    QCOMPARE(ker5->text(), QString("2007."));
    type(ker5, "10");
    QCOMPARE(ker5->text(), QString("2007.10."));
    QCOMPARE(ker5->cursorPosition(), 8);
    enter(ker5);
    QCOMPARE(ker5->text(), QString("2007.10.")); // the field keeps what was typed
    QCOMPARE(column(&s.w, "ugyszam"), QStringList{"1"});

    // A letter is taken back; Backspace is left alone so the user can correct.
    type(ker5, "x");
    QCOMPARE(ker5->text(), QString("2007.10."));
    QTest::keyClick(ker5, Qt::Key_Backspace);
    QCOMPARE(ker5->text(), QString("2007.10"));

    // Six characters are not a year, a month or a day: the date filter is ignored.
    ker5->setText("2007.1");
    enter(ker5);
    QCOMPARE(column(&s.w, "ugyszam"), (QStringList{"1", "2", "3"}));
    ker5->setText("2007/");
    enter(ker5);
    QCOMPARE(column(&s.w, "ugyszam"), (QStringList{"1", "2"}));

    // In clients mode the field is a postal code and stays as typed.
    s.w.setTipus("1");
    s.w.Activate();
    type(ker5, "1118");
    QCOMPARE(ker5->text(), QString("1118"));
}

void tst_keres::captionsColoursAndColumnsByModeAndLanguage_data()
{
    QTest::addColumn<QString>("tipus");
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QColor>("colour");
    QTest::addColumn<QStringList>("fields");
    QTest::addColumn<QStringList>("headings");
    QTest::addColumn<QList<int>>("widths");
    const QStringList clientFields{"unev1", "uorszag", "uirsz", "uhely", "uutca"};
    const QStringList caseFields{"ugyszam", "unev1", "ugytipus", "kezdet", "ellnev"};
    const QList<int> clientWidths{3000, 1500, 700, 2500, 2200};
    const QList<int> caseWidths{900, 2700, 2100, 1300, 2800};
    QTest::newRow("clients, Hungarian")
            << "1" << 1 << "Ügyfelek" << QColor(255, 128, 0) << clientFields
            << QStringList{"Név", "Ország", "IRSZ", "Helység", "Utca"} << clientWidths;
    QTest::newRow("clients, English")
            << "1" << 3 << "Clients" << QColor(255, 128, 0) << clientFields
            << QStringList{"Name", "Country", "Postcode", "Town", "Street"} << clientWidths;
    QTest::newRow("cases, German")
            << "2" << 2 << "Akten" << QColor(0, 192, 192) << caseFields
            << QStringList{"Akten-Nr.", "Mandant", "Sachgebiet", "Beginn", "Gegner"} << caseWidths;
}

void tst_keres::captionsColoursAndColumnsByModeAndLanguage()
{
    QFETCH(QString, tipus);
    QFETCH(int, language);
    QFETCH(QString, title);
    QFETCH(QColor, colour);
    QFETCH(QStringList, fields);
    QFETCH(QStringList, headings);
    QFETCH(QList<int>, widths);
    TestFolder folder(true);
    QVERIFY(folder.open());
    Session::instance().language = qint16(language);

    Screen s(tipus);
    QCOMPARE(s.w.objectName(), QString("keres"));
    QCOMPARE(s.w.findChild<QLabel*>("sz1")->text(), title);
    QCOMPARE(s.w.palette().color(QPalette::Window), colour);
    QCOMPARE(s.w.findChild<QLabel*>("sz1")->palette().color(QPalette::Window), colour);

    QTableView* view = grid(&s.w);
    QStringList shownHeadings;
    QList<int> shownWidths;
    for (int c = 0; c < view->model()->columnCount(); ++c) {
        if (view->isColumnHidden(c))
            continue;
        shownHeadings << view->model()->headerData(c, Qt::Horizontal).toString();
        shownWidths << view->columnWidth(c);
    }
    QCOMPARE(shownHeadings, headings);
    QList<int> expectedWidths;
    for (int w : widths)
        expectedWidths << platform::twipsToPixels(w);
    QCOMPARE(shownWidths, expectedWidths);
    for (int i = 0; i < fields.size(); ++i)
        QVERIFY(!view->isColumnHidden(s.w.forras().columnIndex(fields[i])));
    QCOMPARE(s.w.focusWidget(), field(&s.w, "ker1"));
}

void tst_keres::choosingARowHandsItOver_data()
{
    QTest::addColumn<QString>("tipus");
    QTest::addColumn<QString>("gesture");
    QTest::newRow("client, double click") << "1" << "double click";
    QTest::newRow("client, Enter") << "1" << "enter";
    QTest::newRow("case, double click") << "2" << "double click";
    QTest::newRow("case, data button") << "2" << "g4";
}

void tst_keres::choosingARowHandsItOver()
{
    QFETCH(QString, tipus);
    QFETCH(QString, gesture);
    TestFolder folder;
    QVERIFY(folder.open());
    platform::Database& db = folder.db();
    const qint64 abel = addClient(db, "Ábel Ferenc");
    const qint64 kovacs = addClient(db, "Kovács János");
    addCase(db, "9", abel);
    addCase(db, "10", kovacs);
    QList<ListChoice> clients;
    QList<ListChoice> cases;
    Session::instance().screens.showClient = [&](const ListChoice& c) { clients << c; };
    Session::instance().screens.showCase = [&](const ListChoice& c) { cases << c; };

    Screen s(tipus);
    type(field(&s.w, "ker1"), tipus == "1" ? "k" : "1");
    enter(field(&s.w, "ker1"));
    QTableView* view = grid(&s.w);
    s.w.forras().fetchAll();
    QCOMPARE(s.w.forras().rowCount(), 1);
    const QModelIndex row = view->model()->index(0, s.w.forras().columnIndex("unev1"));
    if (gesture == "double click") {
        const QPoint at = view->visualRect(row).center();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, at);
    } else if (gesture == "enter") {
        view->setCurrentIndex(row);
        QTest::keyClick(view, Qt::Key_Return);
    } else {
        view->setCurrentIndex(row);
        QTest::mouseClick(s.w.findChild<QPushButton*>("g4"), Qt::LeftButton);
    }

    const QString key = tipus == "1" ? QString::number(kovacs) : "10";
    QCOMPARE(field(&s.w, "jelzo")->text(), QString("1"));
    QCOMPARE(field(&s.w, "ksorsz")->text(), key);
    const QList<ListChoice>& handed = tipus == "1" ? clients : cases;
    QCOMPARE((tipus == "1" ? cases : clients).size(), 0);
    QCOMPARE(handed.size(), 1);
    QCOMPARE(handed[0].key, key);
    QCOMPARE(handed[0].search, &s.w);
    // The register screen opens its browse set on the very list shown.
    const platform::Rows rows = db.select(handed[0].query, handed[0].params);
    QCOMPARE(int(rows.size()), 1);
    QCOMPARE(rows[0].value(0).toString(), key);
}

void tst_keres::choosingWithoutCurrentRowDoesNothing()
{
    TestFolder folder;
    QVERIFY(folder.open());
    int opened = 0;
    Session::instance().screens.showClient = [&](const ListChoice&) { ++opened; };
    Screen s("1");
    field(&s.w, "ksorsz")->setText("earlier");
    QTest::mouseClick(s.w.findChild<QPushButton*>("g4"), Qt::LeftButton);
    QCOMPARE(field(&s.w, "jelzo")->text(), QString("-1"));
    QCOMPARE(field(&s.w, "ksorsz")->text(), QString("earlier"));
    QCOMPARE(opened, 0);
}

void tst_keres::newRecordNeedsRightEight()
{
    TestFolder folder;
    QVERIFY(folder.open());
    addClient(folder.db(), "Kovács János");
    addClient(folder.db(), "Hely Nélkül", QVariant());
    QList<ListChoice> opened;
    Session::instance().screens.newClient = [&](const ListChoice& c) { opened << c; };
    Screen s("1");
    type(field(&s.w, "ker1"), "Kov");
    enter(field(&s.w, "ker1"));

    testsupport::MessageRecorder recorder;
    Session::instance().rights = QString(20, '1').replace(7, 1, '0');
    QTest::mouseClick(s.w.findChild<QPushButton*>("g1"), Qt::LeftButton);
    QCOMPARE(recorder.texts(), QStringList{uzenetszoveg("nincsjog")});
    QCOMPARE(field(&s.w, "ker1")->text(), QString("Kov"));
    QCOMPARE(column(&s.w, "unev1"), QStringList{"Kovács János"});
    QCOMPARE(opened.size(), 0);

    Session::instance().rights = QString(20, '1');
    QTest::mouseClick(s.w.findChild<QPushButton*>("g1"), Qt::LeftButton);
    QCOMPARE(recorder.shown().size(), 1);
    QCOMPARE(field(&s.w, "ker1")->text(), QString());
    // The filters were emptied and the list narrowed by them: the client with no place is out.
    QCOMPARE(column(&s.w, "unev1"), QStringList{"Kovács János"});
    QCOMPARE(opened.size(), 1);
    QVERIFY(opened[0].key.isEmpty());
    QCOMPARE(opened[0].search, &s.w);
}

void tst_keres::closeShowsTheMainMenu()
{
    TestFolder folder;
    QVERIFY(folder.open());
    int menu = 0;
    Session::instance().screens.showMainMenu = [&] { ++menu; };
    Screen s("2");
    QTest::mouseClick(s.w.findChild<QPushButton*>("g2"), Qt::LeftButton);
    QVERIFY(!s.w.isVisible());
    QCOMPARE(menu, 1);
}

QTEST_MAIN(tst_keres)
#include "tst_keres.moc"
