#include "TestSupport.h"

#include "cases/Install.h"
#include "cases/Ugyek.h"
#include "clients/Install.h"
#include "clients/Ugyfelek.h"
#include "locale/Uzenet.h"
#include "platform/ListSource.h"
#include "search/keres.h"
#include "session/Session.h"
#include "store/Cases.h"
#include "store/Clients.h"
#include "store/Conflicts.h"
#include "store/Partners.h"

#include <QClipboard>
#include <QDialog>
#include <QElapsedTimer>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTableWidget>

using cases::Ugyek;
using namespace testsupport;

class tst_ugyek : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestFolder> m_folder;
    QWidget m_search;
    // What the stand-in lookup-list editor was asked, and its way back.
    QStringList m_lookups;
    cases::CaseHandOffs::Closed m_lookupClosed;

    static platform::Database& db() { return database(); }
    static platform::Row stored(const QString& number)
    {
        return db().first("select * from ugyek where ugyszam = ?", {number});
    }
    static QStringList casesExcept(const QString& number)
    {
        return values(db(), "select * from ugyek where ugyszam <> ? order by ugyszam", {number});
    }
    static Ugyek* screen() { return loaded<Ugyek>(); }
    static QLineEdit* edit(const char* name) { return screen()->findChild<QLineEdit*>(name); }
    static QComboBox* box(const char* name) { return screen()->findChild<QComboBox*>(name); }
    static auto* button(const char* name) { return screen()->findChild<QAbstractButton*>(name); }
    // The search screen's hand-off: a chosen case, or with no number a new case.
    void open(const QString& number = {}, const store::CaseFilter& filter = {})
    {
        Screens& screens = Session::instance().screens;
        (number.isEmpty() ? screens.newCase
                          : screens.showCase)({number, store::Cases::list(filter), &m_search});
        QVERIFY(screen());
        screen()->Activate();
        QVERIFY(QTest::qWaitForWindowActive(screen()));
    }
    // A new case with what a save needs; the client is written into the box as a paste would.
    static void fill(const QString& number, const QString& client = "Farkas Mária",
                     const QString& type = "Polgári ügy",
                     const QString& lawyer = "Dr. Szabó Katalin")
    {
        edit("ugyszam")->setText(number);
        box("ugyfelnev")->setEditText(client);
        box("ugytipus")->setEditText(type);
        box("ugyved")->setEditText(lawyer);
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<TestFolder>(true);
        QVERIFY(m_folder->open());
        Screens& screens = Session::instance().screens;
        cases::install(
                screens, db(),
                [](QWidget* caseScreen, const QString& name, cases::CaseHandOffs::Saved saved) {
                    clients::newClientForCase(db(), caseScreen, name, std::move(saved));
                });
        m_lookups.clear();
        screens.addToLookupList = [this](const QString& hivo, QWidget*, auto closed) {
            m_lookups << hivo;
            m_lookupClosed = closed;
        };
        m_search.hide();
    }
    void cleanup()
    {
        deleteWindows(&m_search);
        m_folder.reset();
    }

    // Required fields in order, then (new case) the number, then the client; nothing written.
    void saveRefusals_data()
    {
        QTest::addColumn<QStringList>("entry"); // number, client, type, lawyer
        QTest::addColumn<QString>("message");
        const auto row = [](const char* name, const QStringList& entry, const char* message) {
            QTest::newRow(name) << entry << QString(message);
        };
        row("all empty", {"", "", "", ""}, "kotelezo");
        row("no lawyer", {"T-1", "Farkas Mária", "Cégügy", ""}, "kotelezo");
        row("number taken, no client", {"10", "Senki Sem", "Cégügy", "Dr. X"}, "vanmar");
        row("number taken, other letter case", {"10/a", "Farkas Mária", "Cégügy", "Dr. X"},
            "vanmar");
        row("no client", {"T-1", "Senki Sem", "Cégügy", "Dr. X"}, "nincsugyf");
    }
    void saveRefusals()
    {
        QFETCH(QStringList, entry);
        QFETCH(QString, message);
        const QStringList all = casesExcept({});
        open();
        fill(entry[0], entry[1], entry[2], entry[3]);
        MessageRecorder boxes;
        button("g5")->click();
        QCOMPARE(boxes.texts(), messages({message}));
        QCOMPARE(casesExcept({}), all);
        QVERIFY(button("g5")->isEnabled() && !edit("ugyszam")->isReadOnly());
        for (const char* b : {"g10", "g11", "g12", "g13", "g14"})
            QVERIFY2(button(b)->isHidden(), b);
    }

    // The conflict notice names the records, opens a list that is not modal, never stops a save.
    void conflictNoticeNeverStopsASave()
    {
        QVERIFY(store::Clients(db()).add({{"unev1", "KOVÁCS ÉS TÁRSA"}}).stored());
        QVERIFY(store::Clients(db()).add({{"unev1", "Kovács"}}).stored());
        const QVariant partner = store::Partners(db()).add({{"pnev1", "Kovacs es Tarsa Bt"}}).key;
        open();
        fill("T-7");
        type(edit("ellnev"), "Kovács és Társa Kft.");
        auto* notice = screen()->findChild<QLabel*>("ellnevutkozes");
        QVERIFY(notice && !notice->isHidden());
        QVERIFY2(notice->text().contains("KOVÁCS ÉS TÁRSA")
                         && notice->text().contains("Kovacs es Tarsa Bt (" + partner.toString()),
                 qPrintable(notice->text()));
        button("ellnevutkozeslista")->click();
        auto* list = screen()->findChild<QDialog*>("ellnevutkozesek");
        QVERIFY(list && list->isVisible() && !list->isModal());
        // The sample register holds more of that name than the two added here.
        const auto matches = store::Conflicts(db()).matches("Kovács és Társa Kft.");
        QVERIFY(matches.size() >= 2);
        QCOMPARE(list->findChild<QTableWidget*>()->rowCount(), matches.size());

        // "Kovácsné" is another name than "Kovács".
        screen()->findChild<QTabWidget*>("SSTab1")->setCurrentIndex(1);
        type(edit("ellugyvnev"), "Kovácsné");
        QVERIFY(screen()->findChild<QLabel*>("ellugyvnevutkozes")->isHidden());

        MessageRecorder boxes;
        button("g5")->click();
        QCOMPARE(boxes.texts(), QStringList());
        QCOMPARE(stored("T-7").text("ellnevegyezo"), QString("kovacs tarsa"));
        QVERIFY(notice->isHidden());
    }

    // Empty dates: " " for a new case, "" for a changed one; the remark is stored cut to 250.
    void storedDatesAndRemark()
    {
        open();
        fill("T-1");
        edit("kezdet")->clear();
        const QString remark = QString(290, u'x') + "0123456789";
        edit("megjegyzes")->setText(remark);
        button("g5")->click();
        const QString columns = "select kezdet, zaras, megjegyzes, ugyfelkod from ugyek";
        QCOMPARE(values(db(), columns + " where ugyszam = 'T-1'"),
                 (QStringList{" ", " ", remark.left(250), "15"}));
        QCOMPARE(edit("megjegyzes")->text(), remark);

        button("g4")->click();
        edit("kezdet")->setText("2007.02.30");
        edit("zaras")->clear();
        button("g5")->click();
        QCOMPARE(values(db(), "select kezdet, typeof(zaras) || ':' || zaras from ugyek"
                              " where ugyszam = 'T-1'"),
                 (QStringList{"2007.03.02", "text:"}));
        QCOMPARE(edit("kezdet")->text(), QString("2007.03.02"));
    }

    void dateTypingAid_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char* name, const char* typed, const char* shown) {
            QTest::newRow(name) << QString(typed) << QString(shown);
        };
        row("year", "2007", "2007.");
        row("whole date", "20071026", "2007.10.26");
        row("letter taken back", "2007x", "2007.");
        row("misplaced point", "200.", "200");
    }
    void dateTypingAid()
    {
        QFETCH(QString, typed);
        open();
        edit("kezdet")->clear();
        edit("kezdet")->setFocus();
        QTest::keyClicks(edit("kezdet"), typed);
        QTEST(edit("kezdet")->text(), "shown");
    }
    // A slash typed before the last digit's key comes up stays; the text is read by position.
    void slashAfterTheYearStays()
    {
        open();
        QLineEdit* kezdet = edit("kezdet");
        kezdet->clear();
        kezdet->setFocus();
        QTest::keyClicks(kezdet, "200");
        QTest::keyPress(kezdet, Qt::Key_7, {}, -1);
        QTest::keyPress(kezdet, Qt::Key_Slash, {}, -1);
        QTest::keyRelease(kezdet, Qt::Key_7);
        QTest::keyRelease(kezdet, Qt::Key_Slash);
        QCOMPARE(kezdet->text(), QString("2007/"));
        QTest::keyClicks(kezdet, "1026");
        QCOMPARE(kezdet->text(), QString("2007/10.26"));
        QTest::keyClick(kezdet, Qt::Key_Tab);
        QCOMPARE(kezdet->text(), QString("2007.10.26"));
    }
    void dateOnLeaving_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("label"); // the refusal's prefix; "-" for a plain notice
        const auto row = [](const char* name, const char* field, const char* text,
                            const char* shown, const char* label) {
            QTest::newRow(name) << QString(field) << QString(text) << QString(shown)
                                << QString(label);
        };
        row("month carried over", "kezdet", "2007.13.01", "2008.01.01", "");
        row("last date", "zaras", "2099.01.01.", "2099.01.01", "");
        row("after the last date", "kezdet", "2099.01.02", "2099.01.02", "Kezdet");
        row("after the last date, end", "zaras", "2100.00.01", "2099.12.01", "Megbízás vége:");
        row("year of three digits", "kezdet", "0207.01.01", "0207.01.01", "Kezdet");
        row("not a number", "kezdet", "20x7.01.01", "20x7.01.01", "-");
        row("day missing", "kezdet", "2007.01.", "2007.01.", "-");
        row("empty", "zaras", "", "", "");
    }
    void dateOnLeaving()
    {
        QFETCH(QString, field);
        QFETCH(QString, text);
        QFETCH(QString, label);
        open();
        QLineEdit* date = edit(field.toLatin1());
        date->setText(text);
        MessageRecorder boxes;
        leave(date);
        QTEST(date->text(), "shown");
        if (label.isEmpty()) {
            QVERIFY(boxes.shown().isEmpty() && QApplication::focusWidget() != date);
            return;
        }
        // A non-date: a plain notice; out of range: an error naming the field; the focus comes
        // back.
        const QString bad = uzenetszoveg("hibasadat");
        QCOMPARE(boxes.texts(), QStringList{label == "-" ? bad : label + " - " + bad});
        QCOMPARE(boxes.shown().first().style,
                 int(label == "-" ? platform::Notice : platform::ErrorNotice));
        QCOMPARE(QApplication::focusWidget(), date);
    }
    void enterMovesOnButNotInTheNotes()
    {
        open();
        edit("ugyszam")->setText("T-1");
        edit("kezdet")->setFocus();
        QTest::keyClick(edit("kezdet"), Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), edit("zaras"));
        screen()->findChild<QTabWidget*>("SSTab1")->setCurrentIndex(2);
        auto* notes = screen()->findChild<QPlainTextEdit*>("feljegyzes");
        notes->setFocus();
        QTest::keyClicks(notes, "a");
        QTest::keyClick(notes, Qt::Key_Return);
        QTest::keyClicks(notes, "b");
        QCOMPARE(notes->toPlainText(), QString("a\nb"));
    }

    // The key stored is always that of the client whose name the box shows.
    void clientChosenByTypeAhead()
    {
        open();
        edit("ugyszam")->setText("T-1");
        QComboBox* clients = box("ugyfelnev");
        clients->setFocus();
        type(clients, "Fa");
        QCOMPARE(clients->currentText(), QString("Farkas Mária"));
        QTest::keyClick(clients, Qt::Key_Tab);
        QCOMPARE(edit("ugyfelkod")->text(), QString("15"));
        // An entry completed and then typed past is no client's name: no key stays behind.
        MessageRecorder boxes;
        clients->setFocus();
        clients->lineEdit()->end(false);
        type(clients, "x");
        QTest::keyClick(clients, Qt::Key_Tab);
        QCOMPARE(boxes.texts(), messages({"nincsujat"}));
        QCOMPARE(shown(screen(), {"ugyfelnev", "ugyfelkod"}), (QStringList{"Farkas Máriax", "0"}));
        box("ugytipus")->setEditText("Cégügy");
        box("ugyved")->setEditText("Dr. X");
        button("g5")->click();
        QCOMPARE(boxes.texts(), messages({"nincsujat", "nincsugyf"}));
        QVERIFY(stored("T-1").isEmpty());
    }
    void namesakeNeverTakesTheShownClientsPlace()
    {
        // A second Farkas Mária, after the first in the list, owns a case.
        QVariant key;
        QVERIFY(db().insert("ugyfelek", {{"unev1", "Farkas Mária"}}, &key));
        QVERIFY(store::Cases(db()).add({{"ugyszam", "N-1"}, {"ugyfelkod", key}}).stored());
        open("N-1");
        QCOMPARE(box("ugyfelnev")->currentText(), QString("Farkas Mária"));
        button("g4")->click();
        box("ugyfelnev")->setFocus();
        QTest::keyClick(box("ugyfelnev"), Qt::Key_Tab);
        box("ugytipus")->setEditText("Cégügy");
        box("ugyved")->setEditText("Dr. X");
        button("g5")->click();
        QCOMPARE(stored("N-1").value("ugyfelkod"), key);
    }
    void unknownClientIsRecordedOnTheClientScreen()
    {
        open();
        edit("ugyszam")->setText("T-2");
        MessageRecorder boxes{platform::AnswerYes};
        leave(box("ugyfelnev"), "Új Ügyfél Kft.");
        QCOMPARE(boxes.texts(), messages({"nincsujat"}));
        auto* client = visible<clients::Ugyfelek>();
        QVERIFY(client);
        QCOMPARE(client->findChild<QLineEdit*>("nev1")->text(), QString("Új Ügyfél Kft."));
        QCOMPARE(box("ugyfelnev")->currentText(), QString());
        client->findChild<QAbstractButton*>("g5")->click();
        const QString key = db().scalar("select ukod from ugyfelek where unev1 = 'Új Ügyfél Kft.'")
                                    .toString();
        QVERIFY(!key.isEmpty() && !client->isVisible());
        QCOMPARE(shown(screen(), {"ugyfelkod", "ugyfelnev"}), (QStringList{key, "Új Ügyfél Kft."}));
        QCOMPARE(screen()->focusWidget(), box("ugytipus"));
        box("ugytipus")->setEditText("Cégügy");
        box("ugyved")->setEditText("Dr. X");
        button("g5")->click();
        QCOMPARE(stored("T-2").text("ugyfelkod"), key);
    }

    // The case that the filtered search list does not hold is the one changed and deleted.
    void caseOutsideTheFilteredList()
    {
        const store::CaseFilter onlyNine{"9", {}, {}, {}, {}};
        const QStringList others = casesExcept("Z-1");
        open({}, onlyNine);
        for (const char* b : {"g10", "g11", "g13", "g14"})
            QVERIFY2(!button(b)->isHidden(), b);
        QVERIFY(button("g12")->isHidden());
        fill("Z-1");
        button("g5")->click();
        QVERIFY(!stored("Z-1").isEmpty());
        button("g4")->click();
        edit("ellnev")->setText("Ellenfél O'Brien");
        button("g5")->click();
        QCOMPARE(stored("Z-1").text("ellnev"), QString("Ellenfél O'Brien"));
        QCOMPARE(casesExcept("Z-1"), others);

        open("Z-1", onlyNine);
        QCOMPARE(shown(screen(), {"ugyszam", "ellnev", "ugyfelnev"}),
                 (QStringList{"Z-1", "Ellenfél O'Brien", "Farkas Mária"}));
        MessageRecorder boxes{platform::AnswerYes};
        button("g6")->click();
        QVERIFY(stored("Z-1").isEmpty());
        QCOMPARE(casesExcept("Z-1"), others);
        QCOMPARE(shown(screen(), {"ugyszam", "ugyfelkod"}), (QStringList{"", "0"}));
        // With no case shown, delete has nothing to act on.
        button("g6")->click();
        QCOMPARE(boxes.texts(), messages({"torol"}));
    }

    // Before the search screen shows another case, an entry in progress is asked about.
    void anEntryIsAskedAboutBeforeItGoes()
    {
        open("2019/123");
        button("g4")->click();
        edit("megjegyzes")->setText("Félbehagyott");
        const auto& givesWay = Session::instance().screens.caseGivesWay;
        MessageRecorder boxes{platform::AnswerNo};
        QVERIFY(!givesWay(GiveWay::Replace));
        QCOMPARE(edit("megjegyzes")->text(), QString("Félbehagyott"));
        boxes.answer(platform::AnswerYes);
        QVERIFY(givesWay(GiveWay::Close));
        QCOMPARE(boxes.texts(), messages({"ments", "ments"}));
        QVERIFY(!screen());
        QVERIFY(stored("2019/123").text("megjegyzes") != "Félbehagyott");
    }

    // Sub-numbers belong to the typed number, saved case or not, and are stored whole.
    void subNumbers()
    {
        const auto grid = [] { // the sub-number page's grid, the page shown
            screen()->findChild<QTabWidget*>("SSTab1")->setCurrentIndex(3);
            return screen()->findChild<QTableView*>("DataGrid2");
        };
        open();
        edit("ugyszam")->setText("S-1");
        QCOMPARE(grid()->model()->rowCount(), 0);
        edit("alszam")->setText("S-1/1'a");
        edit("aldatum")->setText("2024'02");
        edit("almegjegyz")->setText("Kovács' beadványa");
        QElapsedTimer shown;
        shown.start();
        button("g1")->click();
        QVERIFY(edit("alszam")->text().isEmpty() && edit("almegjegyz")->text().isEmpty());
        QCOMPARE(grid()->model()->rowCount(), 0);
        QTRY_COMPARE(grid()->model()->rowCount(), 1);
        QVERIFY(shown.elapsed() >= 450);
        edit("alszam")->setText("S-1/2");
        button("g1")->click();
        QCOMPARE(db().scalar("select group_concat(alugyszam || '|' || aldatum || '|' || almegjegyz,"
                             " ';') from (select * from alszamok where fougyszam = 'S-1'"
                             " order by rowid)"),
                 QVariant("S-1/1'a|2024'02|Kovács' beadványa;S-1/2||"));

        // The case is never saved; a case of that number shows them again.
        MessageRecorder boxes{platform::AnswerYes};
        button("g7")->click();
        open();
        fill("s-1");
        button("g5")->click();
        open("s-1");
        QCOMPARE(grid()->model()->rowCount(), 2);
        const int column = 2; // alugyszam, after xx and fougyszam
        QCOMPARE(grid()->model()->index(0, column).data().toString(), QString("S-1/1'a"));
        QVERIFY(grid()->isColumnHidden(0) && !grid()->isColumnHidden(column));
    }

    // Two workstations on one file.
    void aCaseSavedElsewhereIsListedAfterTheNextActivation()
    {
        platform::Database other;
        QVERIFY(other.openExisting(m_folder->dataFile(), nullptr));
        keres search(db());
        search.setTipus("2");
        search.Activate();
        const int before = search.forras().rowCount();
        // The other desk's case screen works on its own connection.
        auto* elsewhere = new Ugyek(other, ListChoice{{}, store::Cases::list(), &m_search}, {});
        elsewhere->show();
        elsewhere->Activate();
        elsewhere->ujugy();
        fill("W-1");
        button("g5")->click();
        QCOMPARE(search.forras().rowCount(), before);
        search.Activate();
        QCOMPARE(search.forras().rowCount(), before + 1);
        elsewhere->unload(false);
    }

    // The two address blocks share one mark of a changed postal code.
    void opponentsAddress()
    {
        open("2019/123");
        button("g4")->click();
        auto* tabs = screen()->findChild<QTabWidget*>("SSTab1");
        box("ellorszag")->setEditText("Magyarország");
        box("ellugyvorsz")->setEditText("Magyarország");
        tabs->setCurrentIndex(1);
        leave(edit("ellugyvirsz"), "6720");
        QCOMPARE(edit("ellugyvhely")->text(), QString("Szeged"));
        edit("ellugyvhely")->setText("Kézzel írt");
        tabs->setCurrentIndex(0);
        leave(edit("ellirsz"), "1054");
        QCOMPARE(edit("ellhely")->text(), QString("Budapest"));
        // The opponent's changed code set the shared mark: the lawyer's code is looked up again.
        tabs->setCurrentIndex(1);
        leave(edit("ellugyvirsz"));
        QCOMPARE(edit("ellugyvhely")->text(), QString("Szeged"));
    }

    void choiceListsAndLookupEntries()
    {
        open("2019/123");
        screen()->Activate();
        QCOMPARE(box("ugyfelnev")->count(), db().scalar("select count(*) from ugyfelek").toInt());
        QCOMPARE(box("ellugyvorsz")->count(), db().scalar("select count(*) from orszagok").toInt());
        QCOMPARE(shown(screen(), {"ugytipus", "ugyfelnev"}),
                 (QStringList{"Büntetőügy", "Oszkár Tibor"}));
        QCOMPARE(box("ugyfelnev")->currentData().toInt(), 6);

        button("g4")->click();
        button("g11")->click(); // a type is shown
        QVERIFY(m_lookups.isEmpty());
        box("ugytipus")->setEditText(QString());
        box("ellugyvorsz")->setEditText(QString());
        button("g11")->click();
        button("g14")->click();
        QCOMPARE(m_lookups, QStringList({"21", "12"}));
        QVERIFY(db().insert("orszagok", {{"orszagnev", "Zéland"}}));
        m_lookupClosed("Zéland");
        QCOMPARE(box("ellugyvorsz")->currentText(), QString("Zéland"));
        QVERIFY(box("ellorszag")->findText("Zéland") >= 0);

        // The notes take the clipboard's text and give their selection, or all of them.
        auto* notes = screen()->findChild<QPlainTextEdit*>("feljegyzes");
        notes->setPlainText("Első sor\n");
        QApplication::clipboard()->setText("második sor");
        button("g8")->click();
        QCOMPARE(notes->toPlainText(), QString("Első sor\nmásodik sor"));
        button("g9")->click();
        QCOMPARE(QApplication::clipboard()->text(), QString("Első sor\nmásodik sor"));
    }
};

QTEST_MAIN(tst_ugyek)
#include "tst_ugyek.moc"
