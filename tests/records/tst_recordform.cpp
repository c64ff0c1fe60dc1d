// The record-screen edit model, run over each record screen: which commands are open and which
// fields locked after each step, locked choice boxes, and saves that find their row gone.
#include "TestSupport.h"

#include "admin/users.h"
#include "cases/Install.h"
#include "cases/Ugyek.h"
#include "clients/Install.h"
#include "clients/PartnerInstall.h"
#include "clients/Partnerek.h"
#include "clients/Ugyfelek.h"
#include "locale/Uzenet.h"
#include "platform/LockedCombo.h"
#include "reference/Egyebadat.h"
#include "reference/irszam.h"
#include "session/Session.h"
#include "store/Cases.h"
#include "store/Clients.h"

#include <functional>
#include <memory>
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QTableView>
#include <QTest>
#include <QWheelEvent>

namespace {

// A record screen opened on a record, as its caller opens it.
using Opener = std::function<QWidget*(QWidget* caller)>;

QWidget* openClient(QWidget* caller, const QString& key)
{
    clients::install(Session::instance().screens, testsupport::database());
    Session::instance().screens.showClient({key, store::Clients::list(), caller});
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* s = qobject_cast<clients::Ugyfelek*>(w); s && !s->isUnloading()) {
            s->Activate();
            return s;
        }
    return nullptr;
}

// A record screen under test: how it is opened, the command buttons whose states the rows
// give, the steps that are not a button ("pick": the user chooses a row or an entry), what is
// typed before a save, and the mode it shows (its hivo field unless told otherwise).
struct ScreenUnderTest
{
    Opener open;
    QStringList buttons{"g3", "g4", "g5", "g6", "g7"};
    std::function<void(QWidget*, const QString& step)> act;
    std::function<QString(QWidget*)> mode;
};

QString hivoOf(QWidget* screen)
{
    return screen->findChild<QLineEdit*>("hivo")->text();
}

QWidget* shown(QWidget* screen)
{
    screen->setAttribute(Qt::WA_DeleteOnClose);
    screen->show();
    return screen;
}

// The lookup-list editor on the case types, as the main menu opens it.
QWidget* openLookupList(QWidget*)
{
    auto* screen = new reference::Egyebadat(testsupport::database());
    screen->setHivo("2");
    return shown(screen);
}

void actOnLookupList(QWidget* screen, const QString& step)
{
    if (step == "pick") {
        auto* list = screen->findChild<QListWidget*>("adatlst");
        emit list->itemClicked(list->item(0));
    } else if (step == "g5") {
        screen->findChild<QLineEdit*>("ujadat")->setText("Átnevezett típus");
    }
}

// The postal-code register with Hungary chosen.
QWidget* openPostalCodes(QWidget*)
{
    auto* screen = shown(new reference::irszam(testsupport::database()));
    auto* countries = screen->findChild<QListWidget*>("orszlst");
    countries->setCurrentItem(countries->findItems("Magyarország", Qt::MatchExactly).first());
    emit countries->itemClicked(countries->currentItem());
    return screen;
}

void actOnPostalCodes(QWidget* screen, const QString& step)
{
    if (step == "pick") {
        auto* grid = screen->findChild<QTableView*>("DataGrid2");
        grid->setCurrentIndex(grid->model()->index(3, 1));
        emit grid->activated(grid->currentIndex());
    } else if (step == "g3") {
        screen->findChild<QLineEdit*>("hely")->setText("Mentett hely");
    }
}

// The partner screen from the main menu, with the grid's first row chosen or none.
QWidget* openPartner(bool chooseRow)
{
    clients::installPartners(Session::instance().screens, testsupport::database());
    Session::instance().screens.showPartners();
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* s = qobject_cast<clients::Partnerek*>(w); s && !s->isUnloading()) {
            s->Activate();
            if (chooseRow)
                QTest::keyClick(s->findChild<QTableView*>("DataGrid2"), Qt::Key_Return);
            return s;
        }
    return nullptr;
}

void actOnPartner(QWidget* screen, const QString& step)
{
    if (step == "g5")
        screen->findChild<QLineEdit*>("nev1")->setText("Mentett Név");
    else if (step == "row")
        QTest::keyClick(screen->findChild<QTableView*>("DataGrid2"), Qt::Key_Return);
}

QWidget* openCase(QWidget* caller, const QString& number)
{
    cases::install(Session::instance().screens, testsupport::database());
    Session::instance().screens.showCase({number, store::Cases::list(), caller});
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* s = qobject_cast<cases::Ugyek*>(w); s && !s->isUnloading()) {
            s->Activate();
            return s;
        }
    return nullptr;
}

// What a case needs to be saved: a number (when it may be typed), a client, a type, a lawyer.
void actOnCase(QWidget* screen, const QString& step)
{
    if (step != "g5")
        return;
    if (auto* number = screen->findChild<QLineEdit*>("ugyszam"); !number->isReadOnly())
        number->setText("R-1");
    screen->findChild<QComboBox*>("ugyfelnev")->setEditText("Farkas Mária");
    screen->findChild<QComboBox*>("ugytipus")->setEditText("Polgári ügy");
    screen->findChild<QComboBox*>("ugyved")->setEditText("Dr. Szabó Katalin");
}

// The users editor, modal over the menu in the program, shown here with one user chosen.
QWidget* openUsers(QWidget*)
{
    auto* screen = new admin::users(testsupport::database());
    screen->show();
    auto* list = screen->findChild<QListWidget*>("adatlst");
    list->setCurrentItem(list->findItems("John Smith", Qt::MatchExactly).value(0));
    return screen;
}

const QMap<QString, ScreenUnderTest>& screens()
{
    static const QMap<QString, ScreenUnderTest> map = {
            {"Ugyfelek",
             {[](QWidget* caller) { return openClient(caller, "15"); },
              {"g3", "g4", "g5", "g6", "g7"},
              [](QWidget* screen, const QString& step) {
                  if (step == "g5")
                      screen->findChild<QLineEdit*>("nev1")->setText("Mentett Név");
              },
              hivoOf}},
            {"Ugyek",
             {[](QWidget* caller) { return openCase(caller, "2019/123"); },
              {"g3", "g4", "g5", "g6", "g7"},
              actOnCase,
              hivoOf}},
            {"users",
             {openUsers,
              {"g1", "g2", "g3", "g4", "g5"},
              [](QWidget* screen, const QString& step) {
                  if (step == "g3")
                      screen->findChild<QLineEdit*>("felhnev")->setText("Mentett Név");
              },
              hivoOf}},
            {"Egyebadat", {openLookupList, {"g1", "g2", "g4", "g5"}, actOnLookupList, hivoOf}},
            {"irszam",
             {openPostalCodes,
              {"g1", "g2", "g3", "g4"},
              actOnPostalCodes,
              [](QWidget* screen) {
                  return QString::number(qobject_cast<reference::irszam*>(screen)->mode());
              }}},
            {"Partnerek",
             {[](QWidget*) { return openPartner(true); },
              {"g3", "g4", "g5", "g6", "g7"},
              actOnPartner,
              hivoOf}},
            {"Partnerek, none shown",
             {[](QWidget*) { return openPartner(false); },
              {"g3", "g4", "g5", "g6", "g7"},
              actOnPartner,
              hivoOf}},
    };
    return map;
}

// Locked: a text field read-only, a choice box taking no change, any other field disabled.
bool isLocked(QWidget* w)
{
    if (auto* edit = qobject_cast<QLineEdit*>(w))
        return edit->isReadOnly();
    if (auto* box = qobject_cast<QComboBox*>(w))
        return box->lineEdit() ? box->lineEdit()->isReadOnly()
                               : platform::LockedCombo::of(box)->isLocked();
    return !w->isEnabled();
}

} // namespace

class tst_recordform : public QObject
{
    Q_OBJECT
    std::unique_ptr<testsupport::TestFolder> m_folder;
    QWidget m_caller;
    QWidget* m_screen = nullptr;

    QAbstractButton* button(const QString& name)
    {
        return m_screen->findChild<QAbstractButton*>(name);
    }
    QString enabled(const QStringList& buttons)
    {
        QStringList on;
        for (const QString& b : buttons)
            if (button(b) && button(b)->isEnabled() && !button(b)->isHidden())
                on << b;
        return on.join(' ');
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<testsupport::TestFolder>(true);
        QVERIFY(m_folder->open());
    }
    void cleanup()
    {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w != &m_caller)
                w->deleteLater();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_folder.reset();
    }

    // Each row: a screen, the commands pressed in turn ("row" is Enter on the screen's grid; a
    // Yes answers every question; "g5:asis" saves the entry
    // as it stands, without filling what a save needs), and what is open, what is locked and what
    // hivo says afterwards. Later screens add rows.
    void stateTable_data()
    {
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QString>("enabled");
        QTest::addColumn<QStringList>("locked");
        QTest::addColumn<QStringList>("open");
        QTest::addColumn<QString>("hivo");
        const QStringList clientFields{"nev1", "orszag", "irsz", "cegszam"};
        QTest::newRow("client shown") << "Ugyfelek" << QStringList{} << "g3 g4 g6 g7"
                                      << clientFields << QStringList{"g1", "g2"} << "";
        QTest::newRow("client new") << "Ugyfelek" << QStringList{"g3"} << "g5 g7" << QStringList{}
                                    << clientFields << "1";
        QTest::newRow("client change") << "Ugyfelek" << QStringList{"g4"} << "g5 g7"
                                       << QStringList{} << clientFields << "2";
        // A client stays open for typing after its save; nothing is saved until new or change.
        QTest::newRow("client saved") << "Ugyfelek" << QStringList{"g4", "g5"} << "g3 g4 g6 g7"
                                      << QStringList{} << clientFields << "2";
        QTest::newRow("new client saved") << "Ugyfelek" << QStringList{"g3", "g5"} << "g3 g4 g6 g7"
                                          << QStringList{} << clientFields << "1";
        QTest::newRow("client deleted") << "Ugyfelek" << QStringList{"g6"} << "g3 g4 g6 g7"
                                        << clientFields << QStringList{} << "";
        QTest::newRow("close refused") << "Ugyfelek" << QStringList{"g3", "g7:No"} << "g5 g7"
                                       << QStringList{} << clientFields << "1";

        // The lookup-list editor: hivo names the list; the entry field is always open, and
        // adding and deleting leave the buttons as they were.
        const QStringList entry{"ujadat"};
        const auto lookup = [&](const char* name, const QStringList& steps, const char* enabled) {
            QTest::newRow(name) << "Egyebadat" << steps << enabled << QStringList{} << entry << "2";
        };
        lookup("list shown", {}, "g1");
        lookup("list entry chosen", {"pick"}, "g2 g4");
        lookup("list renaming", {"pick", "g4"}, "g5");
        lookup("list renamed", {"pick", "g4", "g5"}, "g1");
        lookup("list deleted", {"pick", "g2"}, "g2 g4");
        lookup("list close refused", {"pick", "g4", "g3:No"}, "g5");

        // The postal codes: the mode 0, 1 (new row) or 2 (change) in place of hivo. A saved row
        // leaves the fields open and the mode as it was.
        const QStringList codeFields{"irsz", "hely"};
        const auto codes = [&](const char* name, const QStringList& steps, const char* enabled,
                               bool open, const char* mode) {
            QTest::newRow(name) << "irszam" << steps << enabled
                                << (open ? QStringList{} : codeFields)
                                << (open ? codeFields : QStringList{}) << mode;
        };
        codes("codes opened", {}, "g1 g4", false, "0");
        codes("codes row shown", {"pick"}, "g1 g2 g4", false, "0");
        codes("codes new", {"g1"}, "g3", true, "1");
        codes("codes change", {"pick", "g2"}, "g3", true, "2");
        codes("codes saved", {"pick", "g2", "g3"}, "g1 g2 g4", true, "2");
        codes("new code saved", {"g1", "g3"}, "g1 g2 g4", true, "1");
        codes("code deleted", {"pick", "g4"}, "g1 g2 g4", false, "0");
        codes("codes close refused", {"g1", "g5:No"}, "g3", true, "1");

        // The partner screen; a row chosen in its grid shows that partner read-only.
        const QString p = "Partnerek";
        const QStringList partnerFields{"nev1", "orszag", "irsz", "email"};
        const QStringList none;
        QTest::newRow("partner shown") << p << none << "g3 g4 g6 g7" << partnerFields << none << "";
        QTest::newRow("partner new")
                << p << QStringList{"g3"} << "g5 g7" << none << partnerFields << "1";
        QTest::newRow("partner change")
                << p << QStringList{"g4"} << "g5 g7" << none << partnerFields << "2";
        QTest::newRow("partner saved")
                << p << QStringList{"g4", "g5"} << "g3 g4 g6 g7" << none << partnerFields << "2";
        QTest::newRow("new partner saved")
                << p << QStringList{"g3", "g5"} << "g3 g4 g6 g7" << none << partnerFields << "1";
        QTest::newRow("partner deleted")
                << p << QStringList{"g6"} << "g3 g4 g6 g7" << partnerFields << none << "";
        QTest::newRow("partner close refused")
                << p << QStringList{"g3", "g7:No"} << "g5 g7" << none << partnerFields << "1";
        // Change with no partner shown does nothing.
        QTest::newRow("partner change, none shown") << "Partnerek, none shown" << QStringList{"g4"}
                                                    << "g3 g4 g6 g7" << partnerFields << none << "";
        // A row chosen during an entry asks "ments": No keeps the entry, Yes shows the partner.
        QTest::newRow("partner row in entry kept")
                << p << QStringList{"g3", "row:No"} << "g5 g7" << none << partnerFields << "1";
        QTest::newRow("partner row in entry")
                << p << QStringList{"g3", "row"} << "g3 g4 g6 g7" << partnerFields << none << "1";
        QTest::newRow("partner row after save") << p << QStringList{"g4", "g5", "row"}
                                                << "g3 g4 g6 g7" << partnerFields << none << "2";

        const QStringList caseFields{"ugyszam",   "ugyfelnev", "ugyved",      "kezdet",
                                     "ellorszag", "ellirsz",   "ellugyvorsz", "alszam"};
        const QStringList caseFieldsButNumber = caseFields.mid(1);
        QTest::newRow("case shown")
                << "Ugyek" << QStringList{} << "g3 g4 g6 g7" << caseFields << QStringList{} << "";
        QTest::newRow("case new") << "Ugyek" << QStringList{"g3"} << "g5 g7" << QStringList{}
                                  << caseFields << "1";
        QTest::newRow("case change") << "Ugyek" << QStringList{"g4"} << "g5 g7"
                                     << QStringList{"ugyszam"} << caseFieldsButNumber << "2";
        // A saved case is locked again.
        QTest::newRow("case saved") << "Ugyek" << QStringList{"g4", "g5"} << "g3 g4 g6 g7"
                                    << caseFields << QStringList{} << "2";
        QTest::newRow("new case saved") << "Ugyek" << QStringList{"g3", "g5"} << "g3 g4 g6 g7"
                                        << caseFields << QStringList{} << "1";
        QTest::newRow("case save refused") << "Ugyek" << QStringList{"g3", "g5:asis"} << "g5 g7"
                                           << QStringList{} << caseFields << "1";
        QTest::newRow("case deleted") << "Ugyek" << QStringList{"g6"} << "g3 g4 g6 g7" << caseFields
                                      << QStringList{} << "";
        QTest::newRow("case close refused") << "Ugyek" << QStringList{"g4", "g7:No"} << "g5 g7"
                                            << QStringList{"ugyszam"} << caseFieldsButNumber << "2";

        // The users editor locks its fields again after a save; nobody is logged in, so the
        // password of the user changed stays locked.
        const QStringList userFields{"felhnev",    "loginnev", "jelszo", "nyelve",
                                     "alapugyved", "jog1",     "jog12"};
        QStringList others = userFields;
        others.removeAll("jelszo");
        QTest::newRow("user shown")
                << "users" << QStringList{} << "g1 g2 g4 g5" << userFields << QStringList{} << "";
        QTest::newRow("user new") << "users" << QStringList{"g1"} << "g3 g5" << QStringList{}
                                  << userFields << "1";
        QTest::newRow("user change") << "users" << QStringList{"g2"} << "g3 g5"
                                     << QStringList{"jelszo"} << others << "2";
        QTest::newRow("user saved") << "users" << QStringList{"g2", "g3"} << "g1 g2 g4 g5"
                                    << userFields << QStringList{} << "";
        QTest::newRow("new user saved") << "users" << QStringList{"g1", "g3"} << "g1 g2 g4 g5"
                                        << userFields << QStringList{} << "";
        QTest::newRow("user deleted") << "users" << QStringList{"g4"} << "g1 g2 g4 g5" << userFields
                                      << QStringList{} << "";
        QTest::newRow("user close refused") << "users" << QStringList{"g1", "g5:No"} << "g3 g5"
                                            << QStringList{} << userFields << "1";
    }
    void stateTable()
    {
        QFETCH(QString, screen);
        QFETCH(QStringList, steps);
        const ScreenUnderTest& under = screens()[screen];
        m_screen = under.open(&m_caller);
        QVERIFY(m_screen);
        for (const QString& step : steps) {
            // Each step's own answer: one a step did not use is not left for the next.
            testsupport::MessageRecorder boxes;
            const QStringList parts = step.split(':');
            boxes.answer(parts.value(1) == "No" ? platform::AnswerNo : platform::AnswerYes);
            if (parts.value(1) != "asis")
                under.act(m_screen, parts.first());
            if (button(parts.first()))
                button(parts.first())->click();
        }
        QVERIFY(m_screen->isVisible());
        QTEST(enabled(under.buttons), "enabled");
        QFETCH(QStringList, locked);
        QFETCH(QStringList, open);
        for (const QString& name : locked)
            QVERIFY2(isLocked(m_screen->findChild<QWidget*>(name)), qPrintable(name));
        for (const QString& name : open)
            QVERIFY2(!isLocked(m_screen->findChild<QWidget*>(name)), qPrintable(name));
        QTEST(under.mode(m_screen), "hivo");
    }

    // A locked choice box keeps its value whatever the user does to it.
    void lockedChoiceTakesNoChange()
    {
        m_screen = openClient(&m_caller, "16");
        auto* box = m_screen->findChild<QComboBox*>("orszag");
        const QString before = box->currentText();
        QVERIFY(!before.isEmpty() && box->count() > 1);
        box->setFocus();
        QWheelEvent wheel(QPointF(5, 5), box->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(box, &wheel);
        QTest::keyClick(box, Qt::Key_Down);
        QTest::keyClicks(box->lineEdit(), "xy");
        QApplication::clipboard()->setText("Beillesztett");
        QTest::keyClick(box->lineEdit(), Qt::Key_V, Qt::ControlModifier);
        box->showPopup();
        QTest::keyClick(static_cast<QWidget*>(box->view()), Qt::Key_Down);
        QTest::keyClick(static_cast<QWidget*>(box->view()), Qt::Key_Return);
        QCOMPARE(box->currentText(), before);
        // The change that follows stores the country shown, not one the box was turned to.
        button("g4")->click();
        button("g5")->click();
        QCOMPARE(testsupport::database()
                         .scalar("SELECT uorszag FROM ugyfelek WHERE ukod = 16")
                         .toString(),
                 before);
    }

    // A save whose row another workstation deleted meanwhile writes nothing, says so and keeps
    // the entry, which can then be saved as a new record.
    void saveAfterTheRowWasDeletedElsewhere()
    {
        m_screen = openClient(&m_caller, "15");
        button("g4")->click();
        m_screen->findChild<QLineEdit*>("nev1")->setText("Megváltozott Név");
        platform::Database other;
        QVERIFY(other.openExisting(m_folder->dataFile(), nullptr));
        QVERIFY(store::Clients(other).remove(15).stored());
        platform::Database& db = testsupport::database();
        const platform::Rows before = db.select("SELECT * FROM ugyfelek ORDER BY ukod");

        testsupport::MessageRecorder boxes;
        button("g5")->click();
        QCOMPARE(boxes.texts(), QStringList{uzenetszoveg("nincsmar")});
        QCOMPARE(m_screen->findChild<QLineEdit*>("nev1")->text(), QString("Megváltozott Név"));
        QVERIFY(button("g5")->isEnabled());
        const platform::Rows after = db.select("SELECT * FROM ugyfelek ORDER BY ukod");
        QCOMPARE(after.size(), before.size());
        for (size_t i = 0; i < after.size(); ++i)
            for (int c = 0; c < after[i].count(); ++c)
                QCOMPARE(after[i].value(c), before[i].value(c));

        // Saved again, the entry becomes a new client.
        button("g5")->click();
        QCOMPARE(
                db.scalar("SELECT count(*) FROM ugyfelek WHERE unev1 = 'Megváltozott Név'").toInt(),
                1);
        QVERIFY(store::Clients(db).find(15).isEmpty());
    }
};

QTEST_MAIN(tst_recordform)
#include "tst_recordform.moc"
