// The search screen: its filters, order and columns, the screens it hands rows to, and its
// print and export commands; and the conflict list, exported as shown.
#include "TestSupport.h"
#include "tests/platform/ExportReader.h"

#include "locale/Uzenet.h"
#include "platform/Dialogs.h"
#include "platform/Display.h"
#include "platform/ListSource.h"
#include "platform/Printer.h"
#include "platform/Progress.h"
#include "search/Install.h"
#include "search/keres.h"
#include "search/utkozesek.h"
#include "session/Session.h"
#include "store/Cases.h"
#include "store/Clients.h"
#include "store/Partners.h"

#include <numeric>
#include <optional>
#include <QApplication>
#include <QDate>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWindow>

// Rows for the search tests, written straight into the tables, and the screen they look at.
static qint64 storeRow(const char* table, const QVariantMap& row)
{
    QVariant key;
    if (!testsupport::database().insert(table, row, &key))
        qWarning("%s: row not stored", table);
    return key.toLongLong();
}

static qint64 addClient(const QVariant& name, const QVariant& place = "Budapest",
                        const QVariant& postcode = "1011")
{
    return storeRow("ugyfelek", {{"unev1", name},
                                 {"uhely", place},
                                 {"uutca", "Fő utca 1."},
                                 {"uirsz", postcode},
                                 {"uorszag", "Magyarország"}});
}

static void addCase(const QString& number, qint64 client, QVariant opponent = "Ellenfél Kft.",
                    QVariant start = "2008.01.10")
{
    storeRow("ugyek", {{"ugyszam", number},
                       {"ugyfelkod", client},
                       {"ugytipus", "Polgári ügy"},
                       {"ellnev", opponent},
                       {"kezdet", start}});
}

// A search screen in a mode ("1" clients, "2" cases), shown as the main menu shows it.
struct Screen
{
    keres w{testsupport::database()};
    explicit Screen(const QString& tipus)
    {
        w.setTipus(tipus);
        w.show();
        if (!QTest::qWaitForWindowExposed(&w))
            qWarning("search screen not shown");
    }
    QLineEdit* field(const QString& name) { return w.findChild<QLineEdit*>(name); }
    void type(const QString& name, const QString& text) // key by key, as the user does
    {
        for (const QChar c : text)
            QTest::sendKeyEvent(QTest::Click, field(name), Qt::Key(c.toUpper().unicode()), c, {});
    }
    void search(const QString& name, const QString& text) // types a filter and presses Enter
    {
        type(name, text);
        QTest::keyClick(field(name), Qt::Key_Return);
    }
    void click(const char* b) { QTest::mouseClick(w.findChild<QWidget*>(b), Qt::LeftButton); }
};

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

using platform::PrintItem;
using Page = QList<PrintItem>;

struct Capture : platform::RecordingPrinter
{
    static inline Page last; // the print command destroys its printer, the record stays
    ~Capture() override { last = items(); }
};

// Clicks Print, with a Capture unless another printer is given, and returns what it recorded.
static Page print(Screen& s, platform::PrinterFactory factory = {})
{
    platform::setPrinterFactory(factory ? factory : [] { return std::make_unique<Capture>(); });
    s.click("g5");
    platform::setPrinterFactory(nullptr);
    return std::exchange(Capture::last, {});
}

// The texts and lines of each page, and the texts of one at a height, left to right, or with
// y = -1 those of the list's first column.
static QList<Page> pages(const Page& items)
{
    QList<Page> result(1);
    for (const PrintItem& item : items)
        if (item.kind == PrintItem::NewPage)
            result.append(Page());
        else if (item.kind == PrintItem::Text || item.kind == PrintItem::Line)
            result.last() << item;
    return result;
}
static QStringList texts(const Page& page, int y)
{
    QStringList result;
    for (const PrintItem& item : page)
        if (item.kind == PrintItem::Text && (y < 0 ? item.x == 100 && item.y >= 900 : item.y == y))
            result << item.text;
    return result;
}

// Whether cut is full shortened to the last character that fits the width in the font.
static bool cutToFit(const QString& cut, const QString& full, int twips, const QFont& font)
{
    return cut.size() < full.size() && full.startsWith(cut)
           && platform::textWidthTwips(font, cut) <= twips
           && platform::textWidthTwips(font, full.left(cut.size() + 1)) > twips;
}

class tst_keres : public QObject
{
    Q_OBJECT
    std::optional<testsupport::TestFolder> m_folder; // each one resets the session
    QHash<QString, qint64> m_ids;
    QTemporaryDir m_out;
    QString m_chosen; // the file the user picks in the save dialog; empty: he cancels

    // Names alike or with SQL's special characters, cases out of order, rows with empty fields.
    void addRegister()
    {
        for (const char* n : {"Kovács János", "Kővágó Ede", "Ábel Ferenc", "O'Brien Kft.",
                              "50% Bt.", "500 Bt.", "A_B Zrt.", "AxB Zrt.", "C\\D Kft.", "CD Kft."})
            m_ids[n] = addClient(n);
        m_ids["kovács és Társa"] = addClient("kovács és Társa", "Szeged", "6720");
        m_ids["Hely Nélkül"] = addClient("Hely Nélkül", QVariant());
        addCase("10", m_ids["kovács és Társa"], "Ellenfél Kft.", "2007.11.05");
        addCase("9", m_ids["Kovács János"], "O'Neil Kft.", "2007.10.26");
        addCase("10/A", m_ids["Kővágó Ede"]);
        addCase("11", m_ids["Kovács János"], QVariant());
        addCase("100", m_ids["Ábel Ferenc"]);
    }
    // Names with the characters that CSV and spreadsheet files must carry intact.
    void addNames()
    {
        const qint64 obrien = addClient("O'Brien; \"Kócos\" Kft.", "Győr", "9021");
        const qint64 oneil = addClient("O'Neil\nés Társa", QVariant(), "1011");
        addCase("9", obrien, "Ellenfél; \"Nagy\" Bt.", "2007.10.26");
        addCase("10", oneil, QVariant());
        addCase("10/A", obrien, "Sor\ntörés");
        addCase("11", addClient("Kovács János"));
    }

private slots:
    void init()
    {
        QTest::failOnWarning(QRegularExpression("^message box: ")); // none unless recorded
        QVERIFY(m_folder.emplace(false).open());
        m_chosen.clear();
        platform::setFileDialogHandler([this](const platform::FileDialogRequest& r) {
            return r.kind == platform::FileDialogKind::Save ? m_chosen : QString();
        });
    }
    void cleanup()
    {
        platform::setFileDialogHandler({});
        platform::setProgressHandler({});
    }
    // A prefix filter matches the rows that begin with it, whatever their other fields hold.
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
        row("client without place, by name", "1", "ker1", "Hely", {"Hely Nélkül"});
        row("case client", "2", "ker2", "kov", {"Kovács János", "kovács és Társa", "Kovács János"});
        row("case number", "2", "ker1", "10", {"kovács és Társa", "Kővágó Ede", "Ábel Ferenc"});
        row("case opponent quote", "2", "ker4", "O'", {"Kovács János"});
        // Case 11 has no opponent.
        row("case without opponent, by number", "2", "ker1", "11", {"Kovács János"});
        row("case without opponent, by client", "2", "ker2", "Kovács J",
            {"Kovács János", "Kovács János"});
    }
    void prefixFiltersMatchLiterally()
    {
        addRegister();
        QFETCH(QString, tipus);
        QFETCH(QString, filter);
        QFETCH(QString, typed);
        Screen s(tipus);
        s.search(filter, typed);
        QCOMPARE(s.field(filter)->text(), typed);
        QTEST(column(s, "unev1"), "expected");
    }
    void emptyFiltersNarrowNothing()
    {
        addRegister();
        for (const QString tipus : {"1", "2"}) {
            Screen s(tipus);
            const QString key = tipus == "1" ? "unev1" : "ugyszam";
            const QStringList all = column(s, key);
            QCOMPARE(all.size(), tipus == "1" ? m_ids.size() : 5);
            s.click("g3");
            QCOMPARE(column(s, key), all);
        }
    }
    void caseNumberOrderAndDateFilter()
    {
        addRegister();
        // After the number's value, its text decides with letter case ignored.
        addCase("10/b", m_ids["CD Kft."]);
        addCase("10/C", m_ids["CD Kft."]);
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
        s.field("ker5")->setText("2007.1"); // not a year, month or day: ignored
        s.search("ker5", "");
        QCOMPARE(column(s, "ugyszam"), all);
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
        addRegister();
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
        addRegister();
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

    // Printing (g5).
    void pagesHeadersAndFooters_data()
    {
        QTest::addColumn<QList<int>>("rowsPerPage");
        QTest::newRow("65 rows") << QList<int>{65};
        QTest::newRow("66 rows") << QList<int>{65, 1};
    }
    void pagesHeadersAndFooters()
    {
        QFETCH(QList<int>, rowsPerPage);
        const auto name = [](int i) { return QString("Ügyfél %1").arg(i, 3, 10, QChar('0')); };
        platform::Transaction t(m_folder->db());
        for (int i = 0; i < std::accumulate(rowsPerPage.begin(), rowsPerPage.end(), 0); ++i)
            addClient(name(i));
        t.commit();
        Screen s("1");
        const Page items = print(s);
        QCOMPARE(items.last().kind, PrintItem::End);
        const QList<Page> printed = pages(items);
        QCOMPARE(printed.size(), rowsPerPage.size());
        const QString date = "Dátum: " + QDate::currentDate().toString("yyyy.MM.dd");
        for (int p = 0, first = 0; p < printed.size(); first += rowsPerPage[p++]) {
            const Page& page = printed[p];
            QCOMPARE(texts(page, 200) + texts(page, 600),
                     (QStringList{"Ügyféllista", date, "Név", "IRSZ", "Helység", "Utca"}));
            QVERIFY(page[6].kind == PrintItem::Line && page[6].y == 800);
            QCOMPARE(texts(page, -1).size(), rowsPerPage[p]);
            QCOMPARE(texts(page, -1).first(), name(first));
            QCOMPARE(page.last().text, QString(" %1  /  %2 ").arg(p + 1).arg(printed.size()));
        }
    }
    // Headings in the session's language under the Hungarian title; the first column cut at its
    // width, the third at 3750 twips whether its own column is wider or narrower, and an empty
    // field printed as a blank.
    void oneRowOfEachList_data()
    {
        QTest::addColumn<QString>("tipus");
        QTest::addColumn<QStringList>("header"); // the title, then the headings
        QTest::newRow("clients: place in a wider column")
                << "1" << QStringList{"Ügyféllista", "Name", "PLZ", "Ort", "Straße"};
        QTest::newRow("cases: type in a narrower column")
                << "2"
                << QStringList{"Ügyek listája", "Akten-Nr.", "Mandant", "Sachgebiet", "Gegner"};
    }
    void oneRowOfEachList()
    {
        QFETCH(QString, tipus);
        const QString longName = "Aranykezű Építőipari és Kereskedelmi Korlátolt Felelősségű Kft.";
        const QString longText = QString("Nagyon hosszú szöveg ").repeated(8);
        if (tipus == "1") // without a postal code
            addClient(longName, longText, QVariant());
        else // without an opponent
            storeRow(
                    "ugyek",
                    {{"ugyszam", "1"}, {"ugyfelkod", addClient("Ügyfél")}, {"ugytipus", longText}});
        Session::instance().language = 2;
        Screen s(tipus);
        const Page page = pages(print(s))[0];
        QTEST(texts(page, 200).mid(0, 1) + texts(page, 600), "header");
        const QStringList row = texts(page, 900);
        QVERIFY(row.size() == 4 && cutToFit(row[2], longText, 3750, s.w.font()));
        if (tipus == "1")
            QVERIFY(cutToFit(row[0], longName, 3350, s.w.font()));
        QCOMPARE(row, (tipus == "1" ? QStringList{row[0], " ", row[2], "Fő utca 1."}
                                    : QStringList{"1", "Ügyfél", row[2], " "}));
    }
    void failuresCancelAndTell_data()
    {
        QTest::addColumn<bool>("printer");
        QTest::newRow("no printer") << false;
        QTest::newRow("empty list") << true;
    }
    void failuresCancelAndTell()
    {
        QFETCH(bool, printer);
        Screen s("2");
        testsupport::MessageRecorder recorder;
        const Page job = printer ? print(s) : print(s, [] { return nullptr; });
        QCOMPARE(recorder.texts(), QStringList{printer ? uzenetszoveg("nyomhiba")
                                                       : QString("nincs nyomtató telepítve")});
        QCOMPARE(recorder.shown()[0].style, int(platform::Notice));
        QVERIFY(printer ? job.size() == 1 && job[0].kind == PrintItem::Cancel : job.isEmpty());
    }

    // Export (g6), and the conflict list's.
    // The grid shows the mode's columns, with their widths and their headings in the session's
    // language; the file holds exactly the rows the filter left and what the grid shows of them.
    void filteredListAsShown_data()
    {
        QTest::addColumn<QString>("tipus");
        QTest::addColumn<int>("language");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QStringList>("headings");
        QTest::addColumn<QList<int>>("widths");
        QTest::newRow("cases, German, CSV")
                << "2" << 2 << "akten.csv" << QString("Exportieren")
                << QStringList{"Akten-Nr.", "Mandant", "Sachgebiet", "Beginn", "Gegner"}
                << QList<int>{900, 2700, 2100, 1300, 2800};
        QTest::newRow("clients, English, spreadsheet")
                << "1" << 3 << "clients.ods" << QString("Export")
                << QStringList{"Name", "Country", "Postcode", "Town", "Street"}
                << QList<int>{3000, 1500, 700, 2500, 2200};
    }
    void filteredListAsShown()
    {
        QFETCH(QString, tipus);
        QFETCH(int, language);
        QFETCH(QString, file);
        QFETCH(QList<int>, widths);
        addNames();
        Session::instance().language = qint16(language);
        Screen s(tipus);
        QTEST(s.w.findChild<QPushButton*>(QStringLiteral("g6"))->text(), "caption");
        s.search(tipus == "1" ? "ker1" : "ker2", "O'"); // the client names with a quote
        const QTableView* view = s.w.findChild<QTableView*>("DataGrid1");
        const QList<QStringList> expected = testsupport::gridShown(view, s.w.forras());
        QCOMPARE(expected.size(), 1 + (tipus == "1" ? 2 : 3));
        QTEST(expected.first(), "headings");
        QList<int> shownWidths;
        for (int c = 0; c < view->model()->columnCount(); ++c)
            if (!view->isColumnHidden(c))
                shownWidths << view->columnWidth(c);
        for (int& w : widths)
            w = platform::twipsToPixels(w);
        QCOMPARE(shownWidths, widths);

        m_chosen = m_out.filePath(file);
        s.click("g6");
        const ReadBack back = readExport(file.endsWith(".csv") ? "csv" : "ods", m_chosen);
        QVERIFY2(back.error.isEmpty(), qPrintable(back.error));
        QCOMPARE(back.rows, expected);
    }

    // No file chosen, cancelled while writing, or a folder that is not there: no file is left,
    // and only the last is told.
    void unfinishedExports()
    {
        addNames();
        testsupport::MessageRecorder messages;
        const QTemporaryDir out;
        Screen s("2");
        s.click("g6");
        QCOMPARE(QDir(out.path()).entryList(QDir::Files), QStringList());

        struct Cancel : platform::Progress
        {
            bool advance(qint64, qint64) override { return false; }
        };
        platform::setProgressHandler(
                [](const platform::ProgressRequest&) { return std::make_unique<Cancel>(); });
        m_chosen = out.filePath(QStringLiteral("lista.csv"));
        s.click("g6");
        QCOMPARE(QDir(out.path()).entryList(QDir::Files), QStringList());
        QCOMPARE(messages.shown().size(), 0);

        platform::setProgressHandler({});
        m_chosen = out.filePath(QStringLiteral("nincs/lista.ods"));
        s.click("g6");
        QCOMPARE(messages.shown().size(), 1);
        QVERIFY(messages.shown().first().text.startsWith(uzenetszoveg("exporthiba")));
        QVERIFY(messages.shown().first().text.contains(m_chosen));
        QCOMPARE(messages.shown().first().style, int(platform::ErrorNotice));
    }

    // The conflict list names each case's field, the name on it and what it matches.
    void conflictListAsShown()
    {
        platform::Database& db = m_folder->db();
        const QVariant client = store::Clients(db).add({{"unev1", "Kovács és Társa"}}).key;
        store::Partners(db).add({{"pnev1", "O'Brien; \"Nagy\" Ltd."}});
        store::Cases(db).add({{"ugyszam", "1"}, {"ellnev", "KOVACS ES TARSA KFT."}});
        store::Cases(db).add({{"ugyszam", "2"}, {"ellnev", "Más"}, {"ellugyvnev", "O'Brien Nagy"}});
        Session::instance().language = 3;
        Screens screens;
        search::installConflicts(screens, db);
        screens.showConflicts();
        std::unique_ptr<utkozesek> list;
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* u = qobject_cast<utkozesek*>(w))
                list.reset(u);
        QVERIFY(list);
        QCOMPARE(list->windowTitle(), QString("Conflicts of interest"));
        const QList<QStringList> expected{
                {"Case number", "Field", "Name on the case", "Matches", "Matching name"},
                {"1", "Opponent", "KOVACS ES TARSA KFT.", "client " + client.toString(),
                 "Kovács és Társa"},
                {"2", "Opponent's lawyer", "O'Brien Nagy", "partner 1", "O'Brien; \"Nagy\" Ltd."}};
        QCOMPARE(testsupport::gridShown(list->findChild<QTableView*>("DataGrid1"), list->forras()),
                 expected);

        m_chosen = m_out.filePath("utkozesek.csv");
        list->findChild<QPushButton*>("g2")->click();
        const ReadBack back = readExport("csv", m_chosen);
        QVERIFY2(back.error.isEmpty(), qPrintable(back.error));
        QCOMPARE(back.rows, expected);
    }
};

QTEST_MAIN(tst_keres)
#include "tst_keres.moc"
