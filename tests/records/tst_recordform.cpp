// The record-screen edit model, run over each record screen: which commands are open and which
// fields locked after each step, locked choice boxes, and saves that find their row gone.
#include "TestSupport.h"

#include "admin/users.h"
#include "clients/Install.h"
#include "clients/Ugyfelek.h"
#include "locale/Uzenet.h"
#include "platform/LockedCombo.h"
#include "session/Session.h"
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
#include <QTest>
#include <QWheelEvent>

namespace {

// A record screen opened on a record, as its caller opens it.
using Opener = std::function<QWidget*(QWidget* caller)>;

QWidget* openClient(QWidget* caller, const QString& key)
{
    clients::install(Session::instance().screens);
    Session::instance().screens.showClient({key, store::Clients::list(), caller});
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* s = qobject_cast<clients::Ugyfelek*>(w); s && !s->isUnloading()) {
            s->Activate();
            return s;
        }
    return nullptr;
}

// The users editor, modal over the menu in the program, shown here with one user chosen.
QWidget* openUsers(QWidget*)
{
    auto* screen = new admin::users(Session::instance().database);
    screen->show();
    auto* list = screen->findChild<QListWidget*>("adatlst");
    list->setCurrentItem(list->findItems("John Smith", Qt::MatchExactly).value(0));
    return screen;
}

// A record screen: how it is opened, its command buttons, the one that saves, and the field
// given a value before a save.
struct RecordScreen
{
    Opener open;
    QStringList buttons;
    QString save;
    QString nameField;
};

const QMap<QString, RecordScreen>& screens()
{
    static const QMap<QString, RecordScreen> map = {
            {"Ugyfelek",
             {[](QWidget* caller) { return openClient(caller, "15"); },
              {"g3", "g4", "g5", "g6", "g7"},
              "g5",
              "nev1"}},
            {"users", {openUsers, {"g1", "g2", "g3", "g4", "g5"}, "g3", "felhnev"}},
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

    // Each row: a screen, the commands pressed in turn (a Yes answers every question), and
    // what is open, what is locked and what hivo says afterwards. Later screens add rows.
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
        const RecordScreen record = screens().value(screen);
        m_screen = record.open(&m_caller);
        QVERIFY(m_screen);
        testsupport::MessageRecorder boxes;
        for (const QString& step : steps) {
            const QStringList parts = step.split(':');
            boxes.answer(parts.value(1) == "No" ? platform::AnswerNo : platform::AnswerYes);
            if (parts.first() == record.save)
                m_screen->findChild<QLineEdit*>(record.nameField)->setText("Mentett Név");
            button(parts.first())->click();
        }
        QTEST(enabled(record.buttons), "enabled");
        QFETCH(QStringList, locked);
        QFETCH(QStringList, open);
        for (const QString& name : locked)
            QVERIFY2(isLocked(m_screen->findChild<QWidget*>(name)), qPrintable(name));
        for (const QString& name : open)
            QVERIFY2(!isLocked(m_screen->findChild<QWidget*>(name)), qPrintable(name));
        QTEST(m_screen->findChild<QLineEdit*>("hivo")->text(), "hivo");
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
        QCOMPARE(Session::instance()
                         .database.scalar("SELECT uorszag FROM ugyfelek WHERE ukod = 16")
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
        platform::Database& db = Session::instance().database;
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
