// The record-screen edit model over each record screen: states, rights, locked boxes, saves
// whose row is gone.
#include "TestSupport.h"

#include "admin/users.h"
#include "cases/Install.h"
#include "cases/Ugyek.h"
#include "clients/Install.h"
#include "clients/PartnerInstall.h"
#include "clients/Partnerek.h"
#include "clients/Ugyfelek.h"
#include "platform/LockedCombo.h"
#include "reference/Egyebadat.h"
#include "reference/irszam.h"
#include "session/Jog.h"
#include "session/Session.h"
#include "store/Cases.h"
#include "store/Clients.h"

#include <functional>
#include <QAbstractItemView>
#include <QClipboard>
#include <QWheelEvent>

using namespace testsupport;

namespace {

// The record screen of type T that its hand-off has just shown, activated as on showing.
template<class T>
T* activated()
{
    T* screen = loaded<T>();
    if (screen)
        screen->Activate();
    return screen;
}

QWidget* openClient(QWidget* caller, const QString& key)
{
    clients::install(Session::instance().screens, database());
    Session::instance().screens.showClient({key, store::Clients::list(), caller});
    return activated<clients::Ugyfelek>();
}

// A record screen under test: how its caller opens it, the steps that are not a button ("pick":
// the user chooses a row or an entry) and what is typed before a save, the command buttons whose
// states the rows give, and the mode it shows (its hivo field unless told otherwise).
struct ScreenUnderTest
{
    std::function<QWidget*(QWidget* caller)> open;
    std::function<void(QWidget*, const QString& step)> act;
    QStringList buttons{"g3", "g4", "g5", "g6", "g7"};
    std::function<QString(QWidget*)> mode
            = [](QWidget* s) { return s->findChild<QLineEdit*>("hivo")->text(); };
};

QWidget* showing(QWidget* screen)
{
    screen->setAttribute(Qt::WA_DeleteOnClose);
    screen->show();
    return screen;
}

// The lookup-list editor on the case types, as the main menu opens it.
QWidget* openLookupList(QWidget*)
{
    auto* screen = new reference::Egyebadat(database());
    screen->setHivo("2");
    return showing(screen);
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
    auto* screen = showing(new reference::irszam(database()));
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
    clients::installPartners(Session::instance().screens, database());
    Session::instance().screens.showPartners();
    clients::Partnerek* screen = activated<clients::Partnerek>();
    if (screen && chooseRow)
        QTest::keyClick(screen->findChild<QTableView*>("DataGrid2"), Qt::Key_Return);
    return screen;
}

// The client and partner screens need a name to save; the partner's grid takes Enter on a row.
void actOnNamedRecord(QWidget* screen, const QString& step)
{
    if (step == "g5")
        screen->findChild<QLineEdit*>("nev1")->setText("Mentett Név");
    else if (step == "row")
        QTest::keyClick(screen->findChild<QTableView*>("DataGrid2"), Qt::Key_Return);
}

QWidget* openCase(QWidget* caller, const QString& number)
{
    cases::install(Session::instance().screens, database());
    Session::instance().screens.showCase({number, store::Cases::list(), caller});
    return activated<cases::Ugyek>();
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
    auto* screen = new admin::users(database());
    screen->show();
    auto* list = screen->findChild<QListWidget*>("adatlst");
    list->setCurrentItem(list->findItems("John Smith", Qt::MatchExactly).value(0));
    return screen;
}

void actOnUsers(QWidget* screen, const QString& step)
{
    if (step == "g3")
        screen->findChild<QLineEdit*>("felhnev")->setText("Mentett Név");
}

const QMap<QString, ScreenUnderTest>& screens()
{
    static const QMap<QString, ScreenUnderTest> map = {
            {"Ugyfelek",
             {[](QWidget* caller) { return openClient(caller, "15"); }, actOnNamedRecord}},
            {"Ugyek", {[](QWidget* caller) { return openCase(caller, "2019/123"); }, actOnCase}},
            {"users", {openUsers, actOnUsers, {"g1", "g2", "g3", "g4", "g5"}}},
            {"Egyebadat", {openLookupList, actOnLookupList, {"g1", "g2", "g4", "g5"}}},
            {"irszam",
             {openPostalCodes,
              actOnPostalCodes,
              {"g1", "g2", "g3", "g4"},
              [](QWidget* screen) {
                  return QString::number(qobject_cast<reference::irszam*>(screen)->mode());
              }}},
            {"Partnerek", {[](QWidget*) { return openPartner(true); }, actOnNamedRecord}},
            {"Partnerek, none shown",
             {[](QWidget*) { return openPartner(false); }, actOnNamedRecord}},
    };
    return map;
}

// Every value of every row of a table, to see that a command changed nothing in it.
QVariantList rowsOf(const QString& table)
{
    QVariantList values;
    for (const platform::Row& row : database().select("SELECT * FROM " + table + " ORDER BY 1"))
        for (int i = 0; i < row.count(); ++i)
            values << row.value(i);
    return values;
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
    std::unique_ptr<TestFolder> m_folder;
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
        m_folder = std::make_unique<TestFolder>(true);
        QVERIFY(m_folder->open());
    }
    void cleanup()
    {
        deleteWindows(&m_caller);
        m_folder.reset();
    }

    // Steps are pressed in turn ("row": Enter on the grid; Yes answers each question unless ":No";
    // "g5:asis" saves the entry as it stands). Later screens add rows.
    void stateTable_data()
    {
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QString>("enabled");
        QTest::addColumn<QStringList>("locked");
        QTest::addColumn<QStringList>("open");
        QTest::addColumn<QString>("hivo");
        // A screen's fields are all open or all locked, but those in `except`.
        const auto rows = [](const QString& screen, const QStringList& fields) {
            return [=](const char* name, const QStringList& steps, const char* enabled, bool open,
                       const char* hivo, const QStringList& except = {}) {
                QStringList rest = fields;
                for (const QString& e : except)
                    rest.removeAll(e);
                QTest::newRow(name) << screen << steps << QString(enabled) << (open ? except : rest)
                                    << (open ? rest : except) << hivo;
            };
        };
        const auto client = rows("Ugyfelek", {"nev1", "orszag", "irsz", "cegszam"});
        client("client shown", {}, "g3 g4 g6 g7", false, "", {"g1", "g2"});
        client("client new", {"g3"}, "g5 g7", true, "1");
        client("client change", {"g4"}, "g5 g7", true, "2");
        // A client stays open for typing after its save; nothing is saved until new or change.
        client("client saved", {"g4", "g5"}, "g3 g4 g6 g7", true, "2");
        client("new client saved", {"g3", "g5"}, "g3 g4 g6 g7", true, "1");
        client("client deleted", {"g6"}, "g3 g4 g6 g7", false, "");
        client("close refused", {"g3", "g7:No"}, "g5 g7", true, "1");

        // Lookup lists: the entry field is always open; add and delete keep the buttons.
        const auto lookup = rows("Egyebadat", {"ujadat"});
        lookup("list shown", {}, "g1", true, "2");
        lookup("list entry chosen", {"pick"}, "g2 g4", true, "2");
        lookup("list renaming", {"pick", "g4"}, "g5", true, "2");
        lookup("list renamed", {"pick", "g4", "g5"}, "g1", true, "2");
        lookup("list deleted", {"pick", "g2"}, "g2 g4", true, "2");
        lookup("list close refused", {"pick", "g4", "g3:No"}, "g5", true, "2");

        // Postal codes: the mode (0, 1 new, 2 change) for hivo; a save keeps it and the fields.
        const auto codes = rows("irszam", {"irsz", "hely"});
        codes("codes opened", {}, "g1 g4", false, "0");
        codes("codes row shown", {"pick"}, "g1 g2 g4", false, "0");
        codes("codes new", {"g1"}, "g3", true, "1");
        codes("codes change", {"pick", "g2"}, "g3", true, "2");
        codes("codes saved", {"pick", "g2", "g3"}, "g1 g2 g4", true, "2");
        codes("new code saved", {"g1", "g3"}, "g1 g2 g4", true, "1");
        codes("code deleted", {"pick", "g4"}, "g1 g2 g4", false, "0");
        codes("codes close refused", {"g1", "g5:No"}, "g3", true, "1");

        // The partner screen; a row chosen in its grid shows that partner read-only.
        const QStringList partnerFields{"nev1", "orszag", "irsz", "email"};
        const auto partner = rows("Partnerek", partnerFields);
        partner("partner shown", {}, "g3 g4 g6 g7", false, "");
        partner("partner new", {"g3"}, "g5 g7", true, "1");
        partner("partner change", {"g4"}, "g5 g7", true, "2");
        partner("partner saved", {"g4", "g5"}, "g3 g4 g6 g7", true, "2");
        partner("new partner saved", {"g3", "g5"}, "g3 g4 g6 g7", true, "1");
        partner("partner deleted", {"g6"}, "g3 g4 g6 g7", false, "");
        partner("partner close refused", {"g3", "g7:No"}, "g5 g7", true, "1");
        // Change with no partner shown does nothing.
        rows("Partnerek, none shown", partnerFields)("partner change, none shown", {"g4"},
                                                     "g3 g4 g6 g7", false, "");
        // A row chosen during an entry asks "ments": No keeps the entry, Yes shows the partner.
        partner("partner row in entry kept", {"g3", "row:No"}, "g5 g7", true, "1");
        partner("partner row in entry", {"g3", "row"}, "g3 g4 g6 g7", false, "1");
        partner("partner row after save", {"g4", "g5", "row"}, "g3 g4 g6 g7", false, "2");

        // A changed case keeps its number locked; a saved case is locked again.
        const auto kase = rows("Ugyek", {"ugyszam", "ugyfelnev", "ugyved", "kezdet", "ellorszag",
                                         "ellirsz", "ellugyvorsz", "alszam"});
        kase("case shown", {}, "g3 g4 g6 g7", false, "");
        kase("case new", {"g3"}, "g5 g7", true, "1");
        kase("case change", {"g4"}, "g5 g7", true, "2", {"ugyszam"});
        kase("case saved", {"g4", "g5"}, "g3 g4 g6 g7", false, "2");
        kase("new case saved", {"g3", "g5"}, "g3 g4 g6 g7", false, "1");
        kase("case save refused", {"g3", "g5:asis"}, "g5 g7", true, "1");
        kase("case deleted", {"g6"}, "g3 g4 g6 g7", false, "");
        kase("case close refused", {"g4", "g7:No"}, "g5 g7", true, "2", {"ugyszam"});

        // Users: a save locks again; nobody is logged in, so the user's password stays locked.
        const auto user = rows("users", {"felhnev", "loginnev", "jelszo", "nyelve", "alapugyved",
                                         "jog1", "jog12"});
        user("user shown", {}, "g1 g2 g4 g5", false, "");
        user("user new", {"g1"}, "g3 g5", true, "1");
        user("user change", {"g2"}, "g3 g5", true, "2", {"jelszo"});
        user("user saved", {"g2", "g3"}, "g1 g2 g4 g5", false, "");
        user("new user saved", {"g1", "g3"}, "g1 g2 g4 g5", false, "");
        user("user deleted", {"g4"}, "g1 g2 g4 g5", false, "");
        user("user close refused", {"g1", "g5:No"}, "g3 g5", true, "1");
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
            MessageRecorder boxes;
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
        QCOMPARE(values(database(), "SELECT uorszag FROM ugyfelek WHERE ukod = 16"),
                 QStringList{before});
    }

    // Without its right, a command says "nincsjog" and leaves record, locks and table as they were.
    void refusedWithoutTheRight_data()
    {
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("field"); // one that shows the record
        QTest::addColumn<QString>("command");
        QTest::addColumn<int>("right");
        const char* const tables[][3]{{"Ugyfelek", "ugyfelek", "nev1"},
                                      {"Partnerek", "partner", "nev1"},
                                      {"Ugyek", "ugyek", "ugyszam"}};
        const std::pair<const char*, Right> commands[]{
                {"g3", Right::NewRecord}, {"g4", Right::ChangeRecord}, {"g6", Right::DeleteRecord}};
        for (const auto& [screen, table, field] : tables)
            for (const auto& [command, right] : commands)
                QTest::addRow("%s %s", screen, command)
                        << screen << table << field << command << int(right);
    }
    void refusedWithoutTheRight()
    {
        QFETCH(QString, screen);
        QFETCH(QString, table);
        QFETCH(QString, field);
        QFETCH(QString, command);
        QFETCH(int, right);
        m_screen = screens()[screen].open(&m_caller);
        auto* name = m_screen->findChild<QLineEdit*>(field);
        const QString shownName = name->text();
        QVERIFY(!shownName.isEmpty());
        const QVariantList before = rowsOf(table);
        Session::instance().rights = QString(20, u'1').replace(right - 1, 1, u'0');
        MessageRecorder boxes{platform::AnswerYes};
        button(command)->click();
        QCOMPARE(boxes.texts(), messages({"nincsjog"}));
        QCOMPARE(name->text(), shownName);
        QVERIFY(name->isReadOnly() && !button("g5")->isEnabled());
        QCOMPARE(rowsOf(table), before);
    }

    // Saving a row another desk deleted writes nothing, keeps the entry; a second save stores it.
    void saveAfterTheRowWasDeletedElsewhere_data()
    {
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("field"); // changed
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("row"); // the shown record
        QTest::addColumn<QString>("saved"); // what the second save stored
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("client") << "Ugyfelek"
                                << "nev1"
                                << "ugyfelek"
                                << "ukod = 15"
                                << "SELECT count(*), sum(ukod = 15) FROM ugyfelek"
                                   " WHERE unev1 = 'Megváltozott' OR ukod = 15"
                                << QStringList{"1", "0"};
        QTest::newRow("case") << "Ugyek"
                              << "megjegyzes"
                              << "ugyek"
                              << "ugyszam = '2019/123'"
                              << "SELECT megjegyzes FROM ugyek WHERE ugyszam = '2019/123'"
                              << QStringList{"Megváltozott"};
    }
    void saveAfterTheRowWasDeletedElsewhere()
    {
        QFETCH(QString, screen);
        QFETCH(QString, field);
        QFETCH(QString, table);
        QFETCH(QString, row);
        QFETCH(QString, saved);
        m_screen = screens()[screen].open(&m_caller);
        auto* edit = m_screen->findChild<QLineEdit*>(field);
        button("g4")->click();
        edit->setText("Megváltozott");
        platform::Database other;
        QVERIFY(other.openExisting(m_folder->dataFile(), nullptr));
        QVERIFY(other.exec("DELETE FROM " + table + " WHERE " + row));
        const QVariantList before = rowsOf(table);

        MessageRecorder boxes;
        button("g5")->click();
        QCOMPARE(boxes.texts(), messages({"nincsmar"}));
        QCOMPARE(edit->text(), QString("Megváltozott"));
        QVERIFY(button("g5")->isEnabled());
        QCOMPARE(rowsOf(table), before);
        button("g5")->click();
        QTEST(values(database(), saved), "expected");
    }
};

QTEST_MAIN(tst_recordform)
#include "tst_recordform.moc"
