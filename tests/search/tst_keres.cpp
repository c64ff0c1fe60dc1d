#include "SearchTestData.h"
#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "platform/Display.h"
#include "platform/ListSource.h"
#include "search/Install.h"
#include "session/Session.h"

#include <optional>
#include <QApplication>
#include <QHeaderView>
#include <QTableView>
#include <QTimer>
#include <QWindow>

// The values of one column of the list, from the top.
static QStringList column(Screen& s, const QString& name)
{
    while (s.w.forras().canReadMore())
        s.w.forras().readMore();
    QStringList values;
    for (int r = 0; r < s.w.forras().rowCount(); ++r)
        values << s.w.forras().value(r, name).toString();
    return values;
}

class tst_keres : public QObject
{
    Q_OBJECT
    std::optional<testsupport::TestFolder> m_folder; // each one resets the session
    QHash<QString, qint64> m_ids;

private slots:
    // Names alike or with SQL's special characters, cases out of order, rows with empty fields.
    void init()
    {
        m_folder.emplace();
        QVERIFY(m_folder->open());
        platform::Database& db = m_folder->db();
        for (const char* n : {"Kovács János", "Kővágó Ede", "Ábel Ferenc", "O'Brien Kft.",
                              "50% Bt.", "500 Bt.", "A_B Zrt.", "AxB Zrt.", "C\\D Kft.", "CD Kft."})
            m_ids[n] = addClient(db, n);
        m_ids["kovács és Társa"] = addClient(db, "kovács és Társa", "Szeged", "6720");
        m_ids["Hely Nélkül"] = addClient(db, "Hely Nélkül", QVariant());
        addCase(db, "10", m_ids["kovács és Társa"], "Ellenfél Kft.", "2007.11.05");
        addCase(db, "9", m_ids["Kovács János"], "O'Neil Kft.", "2007.10.26");
        addCase(db, "10/A", m_ids["Kővágó Ede"]);
        addCase(db, "11", m_ids["Kovács János"], QVariant());
        addCase(db, "100", m_ids["Ábel Ferenc"]);
    }
    void prefixFiltersMatchLiterally_data()
    {
        QTest::addColumn<QString>("tipus");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char* name, QString tipus, QString filter, QString typed,
                            QStringList expected) {
            QTest::newRow(name) << tipus << filter << typed << expected;
        };
        // Letter case is ignored, accents are not: Kővágó does not begin with Kov.
        row("name, any case", "1", "ker1", "Kov", {"kovács és Társa", "Kovács János"});
        row("quote", "1", "ker1", "O'B", {"O'Brien Kft."});
        row("percent", "1", "ker1", "50%", {"50% Bt."});
        row("underscore", "1", "ker1", "A_", {"A_B Zrt."});
        row("backslash", "1", "ker1", "C\\", {"C\\D Kft."});
        row("postcode, not a date", "1", "ker5", "6720", {"kovács és Társa"});
        row("case client", "2", "ker2", "kov", {"Kovács János", "kovács és Társa", "Kovács János"});
        row("case number", "2", "ker1", "10", {"kovács és Társa", "Kővágó Ede", "Ábel Ferenc"});
        row("case opponent quote", "2", "ker4", "O'", {"Kovács János"});
    }
    void prefixFiltersMatchLiterally()
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
    // A row with empty fields is still found by the filters it matches, and empty filters
    // narrow nothing.
    void rowsWithoutValuesAreNotHidden_data()
    {
        QTest::addColumn<QString>("tipus");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("withoutValue");
        QTest::newRow("client without place, by name") << "1"
                                                       << "ker1"
                                                       << "Hely"
                                                       << "Hely Nélkül";
        QTest::newRow("case without opponent, by number") << "2"
                                                          << "ker1"
                                                          << "11"
                                                          << "11";
        QTest::newRow("case without opponent, by client") << "2"
                                                          << "ker2"
                                                          << "Kovács J"
                                                          << "11";
    }
    void rowsWithoutValuesAreNotHidden()
    {
        QFETCH(QString, tipus);
        QFETCH(QString, filter);
        QFETCH(QString, typed);
        QFETCH(QString, withoutValue);
        const QString key = tipus == "1" ? "unev1" : "ugyszam";
        Screen s(tipus);
        const QStringList all = column(s, key);
        QCOMPARE(all.size(), tipus == "1" ? m_ids.size() : 5);
        QVERIFY(all.contains(withoutValue));
        s.click("g3");
        QCOMPARE(column(s, key), all);
        s.search(filter, typed);
        QVERIFY(column(s, key).contains(withoutValue));
    }
    void caseNumberOrderAndDateFilter()
    {
        // After the number's value, its text decides with letter case ignored.
        addCase(m_folder->db(), "10/b", m_ids["CD Kft."]);
        addCase(m_folder->db(), "10/C", m_ids["CD Kft."]);
        const QStringList all{"9", "10", "10/A", "10/b", "10/C", "11", "100"};
        Screen s("2");
        QCOMPARE(column(s, "ugyszam"), all);
        s.type("ker5", "2007");
        QCOMPARE(s.field("ker5")->text(), QString("2007."));
        s.type("ker5", "1x0"); // a letter is taken back
        QCOMPARE(s.field("ker5")->text(), QString("2007.10."));
        s.search("ker5", "");
        QCOMPARE(s.field("ker5")->text(), QString("2007.10.")); // the field keeps what was typed
        QCOMPARE(column(s, "ugyszam"), QStringList{"9"});
        // A whole day narrows to that day.
        s.type("ker5", "26");
        s.search("ker5", "");
        QCOMPARE(s.field("ker5")->text(), QString("2007.10.26"));
        QCOMPARE(column(s, "ugyszam"), QStringList{"9"});
        s.field("ker5")->setText("2007.11.05");
        s.search("ker5", "");
        QCOMPARE(column(s, "ugyszam"), QStringList{"10"});
        s.field("ker5")->setText("2007.1"); // not a year, month or day: ignored
        s.search("ker5", "");
        QCOMPARE(column(s, "ugyszam"), all);
    }
    void gridColumnsByModeAndLanguage_data()
    {
        QTest::addColumn<QString>("tipus");
        QTest::addColumn<QStringList>("fields");
        QTest::addColumn<QStringList>("headings");
        QTest::addColumn<QList<int>>("widths");
        QTest::newRow("clients, Hungarian")
                << "1" << QStringList{"unev1", "uorszag", "uirsz", "uhely", "uutca"}
                << QStringList{"Név", "Ország", "IRSZ", "Helység", "Utca"}
                << QList<int>{3000, 1500, 700, 2500, 2200};
        QTest::newRow("cases, German")
                << "2" << QStringList{"ugyszam", "unev1", "ugytipus", "kezdet", "ellnev"}
                << QStringList{"Akten-Nr.", "Mandant", "Sachgebiet", "Beginn", "Gegner"}
                << QList<int>{900, 2700, 2100, 1300, 2800};
    }
    void gridColumnsByModeAndLanguage()
    {
        QFETCH(QString, tipus);
        QFETCH(QStringList, fields);
        QFETCH(QStringList, headings);
        QFETCH(QList<int>, widths);
        Session::instance().language = tipus == "1" ? 1 : 2; // see the rows' names
        Screen s(tipus);
        const QTableView* view = s.w.findChild<QTableView*>("DataGrid1");
        const QHeaderView* header = view->horizontalHeader();
        QCOMPARE(header->count() - header->hiddenSectionCount(), fields.size());
        for (int i = 0; i < fields.size(); ++i) {
            const int c = s.w.forras().columnIndex(fields[i]);
            QVERIFY(!view->isColumnHidden(c));
            QCOMPARE(view->model()->headerData(c, Qt::Horizontal).toString(), headings[i]);
            QCOMPARE(view->columnWidth(c), platform::twipsToPixels(widths[i]));
        }
    }
    void choosingARowHandsItOver_data()
    {
        QTest::addColumn<QString>("tipus");
        QTest::addColumn<bool>("enter"); // Enter on the row, like a double click, or g4
        QTest::addColumn<QString>("chosen"); // typed in ker1; the first row is current at once
        QTest::addColumn<bool>("found");
        QTest::newRow("client, Enter key") << "1" << true << QString("Ábel Ferenc") << true;
        QTest::newRow("case, data button") << "2" << false << QString("9") << true;
        QTest::newRow("nothing listed") << "1" << false << QString("Zz") << false;
    }
    void choosingARowHandsItOver()
    {
        QFETCH(QString, tipus);
        QFETCH(bool, enter);
        QFETCH(QString, chosen);
        QFETCH(bool, found);
        QList<ListChoice> clients, cases;
        Session::instance().screens.showClient = [&](const ListChoice& c) { clients << c; };
        Session::instance().screens.showCase = [&](const ListChoice& c) { cases << c; };
        Screen s(tipus);
        s.search("ker1", chosen);
        s.field("ksorsz")->setText("earlier");
        QTableView* view = s.w.findChild<QTableView*>("DataGrid1");
        enter ? QTest::keyClick(view, Qt::Key_Return) : s.click("g4");
        const QString key = !found                   ? QString()
                            : m_ids.contains(chosen) ? QString::number(m_ids[chosen])
                                                     : chosen;
        QCOMPARE(s.field("jelzo")->text(), QString(key.isEmpty() ? "-1" : "1"));
        QCOMPARE(s.field("ksorsz")->text(), key.isEmpty() ? QString("earlier") : key);
        QCOMPARE(clients.size() + cases.size(), key.isEmpty() ? 0 : 1);
        const ListChoice handed = (tipus == "1" ? clients : cases).value(0); // screen by mode
        QCOMPARE(handed.key, key);
        QCOMPARE(handed.search, key.isEmpty() ? nullptr : &s.w);
    }
    // The register screen of the mode is asked before a chosen row or a new record takes its
    // place; one that keeps its entry is handed nothing. Loading the screen asks both register
    // screens to close, and shows the list whatever they answer.
    void registerScreensAreAskedToGiveWay_data()
    {
        QTest::addColumn<QString>("tipus");
        QTest::addColumn<QString>("command"); // g4 a chosen row, g1 a new record, "" loading
        QTest::addColumn<bool>("givesWay");
        QTest::addColumn<QStringList>("asked");
        const auto row = [](const char* name, QString tipus, QString command, bool givesWay,
                            QStringList asked) {
            QTest::addRow("%s, %s", name, givesWay ? "gives way" : "keeps its entry")
                    << tipus << command << givesWay << asked;
        };
        for (const bool givesWay : {true, false}) {
            row("client row", "1", "g4", givesWay, {"client replace"});
            row("new case", "2", "g1", givesWay, {"case replace"});
            row("loading", "2", "", givesWay, {"client close", "case close"});
        }
    }
    void registerScreensAreAskedToGiveWay()
    {
        QFETCH(QString, tipus);
        QFETCH(QString, command);
        QFETCH(bool, givesWay);
        QStringList asked;
        QList<ListChoice> handed;
        Screens& screens = Session::instance().screens;
        const auto answer = [&](const QString& screen) {
            return [&, screen](GiveWay how) {
                asked << screen + (how == GiveWay::Close ? " close" : " replace");
                return givesWay;
            };
        };
        screens.clientGivesWay = answer("client");
        screens.caseGivesWay = answer("case");
        const auto hand = [&](const ListChoice& c) { handed << c; };
        screens.showClient = screens.newClient = screens.showCase = screens.newCase = hand;
        if (command.isEmpty()) {
            search::install(screens, testsupport::database());
            screens.showSearch(tipus);
            std::unique_ptr<keres> shown;
            for (QWidget* w : QApplication::topLevelWidgets())
                if (auto* k = qobject_cast<keres*>(w))
                    shown.reset(k);
            QVERIFY(shown && shown->isVisible());
            screens.showSearch("1"); // shown already: only listed anew
        } else {
            Screen s(tipus);
            s.click(command.toLatin1());
            QCOMPARE(handed.size(), givesWay ? 1 : 0);
        }
        QTEST(asked, "asked");
    }
    // The window's close box is Bezár: the main menu comes back, and the program goes on.
    void closeBoxReturnsToTheMenu()
    {
        QWidget menu; // hidden while the search screen is open, as the main menu is
        Session::instance().screens.showMainMenu = [&] { menu.show(); };
        Screen s("1");
        // Running as the program runs, where closing the last window would end it.
        bool running = false;
        QObject thisTest;
        QTimer::singleShot(0, &s.w, [&] { s.w.windowHandle()->close(); });
        QTimer::singleShot(200, &thisTest, [&] {
            running = true;
            QCoreApplication::quit();
        });
        QApplication::exec();
        QVERIFY(running);
        QVERIFY(!s.w.isVisible());
    }
    void newRecordNeedsRightEight()
    {
        QList<ListChoice> opened;
        Session::instance().screens.newClient = [&](const ListChoice& c) { opened << c; };
        Screen s("1");
        testsupport::MessageRecorder recorder;
        Session::instance().rights = QString(20, '1').replace(7, 1, '0');
        s.click("g1");
        QCOMPARE(recorder.texts(), QStringList{uzenetszoveg("nincsjog")});
        Session::instance().rights = QString(20, '1');
        s.click("g1");
        QCOMPARE(recorder.shown().size(), 1);
        QCOMPARE(opened.size(), 1); // once: not on the first click
        QVERIFY(opened[0].key.isEmpty());
        QCOMPARE(opened[0].search, &s.w);
    }
};

QTEST_MAIN(tst_keres)
#include "tst_keres.moc"
