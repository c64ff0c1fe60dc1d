// The lookup-list editor: modes, add, delete, rename, the hand-back, the menu's reference buttons.
#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "reference/Egyebadat.h"
#include "reference/Install.h"
#include "session/Alap.h"
#include "session/Session.h"

#include <QLabel>
#include <QTimer>

using reference::Egyebadat;
using namespace testsupport;

class tst_egyebadat : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<Egyebadat> m_screen;

    platform::Database& db() { return m_folder->db(); }
    void open(const QString& hivo)
    {
        m_screen = std::make_unique<Egyebadat>(db());
        m_screen->setHivo(hivo);
        m_screen->show();
    }
    QPushButton* button(const char* name) { return m_screen->findChild<QPushButton*>(name); }
    QLineEdit* edit(const char* name) { return m_screen->findChild<QLineEdit*>(name); }
    static QListWidget* list(QWidget* screen) { return screen->findChild<QListWidget*>("adatlst"); }
    QStringList listed()
    {
        QStringList items;
        for (int i = 0; i < list(m_screen.get())->count(); ++i)
            items << list(m_screen.get())->item(i)->text();
        return items;
    }
    void pick(const QString& entry) { clickItem(list(m_screen.get()), entry); }
    int count(const QString& sql, const QVariantList& params = {})
    {
        QString error;
        const QVariant n = db().scalar(sql, params, &error);
        return error.isEmpty() ? n.toInt() : -1;
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<TestFolder>(true);
        QVERIFY(m_folder->open());
    }
    void cleanup()
    {
        m_screen.reset();
        m_folder.reset();
    }

    // Hungarian order (Cs after C, Ö after O, Sz after S); the case screen's modes: own caption.
    void listOfTheMode_data()
    {
        QTest::addColumn<QString>("hivo");
        QTest::addColumn<QStringList>("entries");
        QTest::addColumn<QString>("title");
        const QStringList countries{"Ausztria", "Horvátország", "Magyarország", "Németország",
                                    "Románia",  "Szerbia",      "Szlovákia"};
        const QStringList types{"Büntetőügy",    "Cégügy",       "Családjogi ügy", "Ingatlanügy",
                                "Munkajogi ügy", "Öröklési ügy", "Polgári ügy"};
        QTest::newRow("1") << "1" << countries << "Országok";
        QTest::newRow("12") << "12" << countries << "Egyébadat";
        QTest::newRow("2") << "2" << types << "Ügytípusok";
        const QStringList lawyers{"Dr. Horváth Péter", "Dr. Németh Gábor", "Dr. Szabó Katalin"};
        QTest::newRow("3") << "3" << lawyers << "Ügyvédek";
    }
    void listOfTheMode()
    {
        QFETCH(QString, hivo);
        open(hivo);
        QTEST(listed(), "entries");
        QTEST(m_screen->findChild<QLabel*>("sz1")->text(), "title");
    }

    // Letter case, accents and blanks do not make another entry.
    void adding_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("stored");
        QTest::newRow("lower case") << "ügyvéd" << false;
        QTest::newRow("no accents") << "Ugyved" << false;
        QTest::newRow("blanks") << "  ügyvéd " << false;
        QTest::newRow("new") << "Dr. Új Ügyvéd" << true;
    }
    void adding()
    {
        QFETCH(QString, typed);
        QFETCH(bool, stored);
        QVERIFY(db().exec("INSERT INTO ugyvedek (ugyvednev) VALUES ('ÜGYVÉD')"));
        const int before = count("SELECT count(*) FROM ugyvedek");
        open("3");
        edit("ujadat")->setText(typed);
        MessageRecorder boxes;
        button("g1")->click();
        QCOMPARE(boxes.texts(), messages(stored ? QStringList() : QStringList{"vanmar"}));
        QCOMPARE(count("SELECT count(*) FROM ugyvedek"), before + (stored ? 1 : 0));
        QCOMPARE(edit("ujadat")->text(), QString());
        if (stored)
            QCOMPARE(list(m_screen.get())->currentItem()->text(), typed);
    }

    // Used, last, or locked elsewhere: the entry stays.
    void deleting_data()
    {
        QTest::addColumn<QString>("entry"); // empty: a type the cases use
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QStringList>("told");
        QTest::addColumn<bool>("kept");
        const auto row = [](const char* name, const char* entry, const char* setup,
                            const QStringList& told, bool kept) {
            QTest::newRow(name) << QString(entry) << QString(setup) << told << kept;
        };
        row("unused", "Cégügy", "DELETE FROM ugyek WHERE ugytipus = 'Cégügy'", {"torol"}, false);
        row("used", "", "", {"torol", "nemtorol"}, true);
        row("last", "Cégügy", "DELETE FROM ugyek; DELETE FROM tipusok WHERE tipus <> 'Cégügy'",
            {"torol"}, true);
        row("locked elsewhere", "Cégügy", "lock", {"torol", "foglalt"}, true);
    }
    void deleting()
    {
        QFETCH(QString, entry);
        QFETCH(QString, setup);
        QFETCH(QStringList, told);
        if (entry.isEmpty())
            entry = db().scalar("SELECT ugytipus FROM ugyek LIMIT 1").toString();
        platform::Database other;
        if (setup == "lock") {
            QVERIFY(other.openExisting(m_folder->dataFile(), nullptr));
            QVERIFY(other.begin());
            db().setBusyWait(100);
        } else {
            for (const QString& sql : setup.split(';', Qt::SkipEmptyParts))
                QVERIFY(db().exec(sql));
        }
        open("2");
        pick(entry);
        MessageRecorder boxes{platform::AnswerYes};
        button("g2")->click();
        QCOMPARE(boxes.texts(), messages(told));
        other.close();
        QTEST(count("SELECT count(*) FROM tipusok WHERE tipus = ?", {entry}) == 1, "kept");
        QTEST(listed().contains(entry), "kept");
    }

    // A rename carries into cases, users and session; a clash keeps the old entry and the renaming.
    void renaming()
    {
        const QString lawyer = db().scalar("SELECT ugyved FROM ugyek LIMIT 1").toString();
        const int cases = count("SELECT count(*) FROM ugyek WHERE ugyved = ?", {lawyer});
        QVERIFY(cases > 0);
        QVERIFY(db().exec("UPDATE felhasznalo SET alapugyv = ?", {lawyer}));
        Session::instance().defaultLawyer = lawyer;
        const QString other
                = db().scalar("SELECT ugyvednev FROM ugyvedek WHERE ugyvednev <> ?", {lawyer})
                          .toString();
        open("3");
        pick(lawyer);
        button("g4")->click();
        MessageRecorder boxes;
        edit("ujadat")->setText(other.toUpper());
        button("g5")->click();
        QCOMPARE(boxes.texts(), messages({"vanmar"}));
        QVERIFY(button("g5")->isEnabled());
        QCOMPARE(count("SELECT count(*) FROM ugyek WHERE ugyved = ?", {lawyer}), cases);

        edit("ujadat")->setText("Dr. Átnevezett Ügyvéd");
        button("g5")->click();
        QCOMPARE(count("SELECT count(*) FROM ugyek WHERE ugyved = 'Dr. Átnevezett Ügyvéd'"), cases);
        QCOMPARE(count("SELECT count(*) FROM ugyek, felhasznalo WHERE ugyved = ? OR alapugyv = ?",
                       {lawyer, lawyer}),
                 0);
        QVERIFY(listed().contains("Dr. Átnevezett Ügyvéd") && !listed().contains(lawyer));
        QCOMPARE(Session::instance().defaultLawyer, QString("Dr. Átnevezett Ügyvéd"));
    }

    // The case screen gets back the entry added last, unless a deletion came after.
    void handBackToTheCaseScreen_data()
    {
        QTest::addColumn<QStringList>("added");
        QTest::addColumn<bool>("deleteAfter");
        QTest::addColumn<QString>("handed");
        QTest::newRow("two added")
                << QStringList{"Első típus", "Második típus"} << false << "Második típus";
        QTest::newRow("none added") << QStringList{} << false << "";
        QTest::newRow("deleted after") << QStringList{"Első típus"} << true << "";
    }
    void handBackToTheCaseScreen()
    {
        QFETCH(QStringList, added);
        QFETCH(bool, deleteAfter);
        Screens screens;
        reference::install(screens, db());
        QWidget caseScreen;
        QStringList received;
        screens.addToLookupList("21", &caseScreen,
                                [&](const QString& entry) { received << entry; });
        Egyebadat* editor = visible<Egyebadat>();
        QVERIFY(editor && !editor->isModal());
        QCOMPARE(list(editor)->count(), 7);
        for (const QString& entry : added) {
            editor->findChild<QLineEdit*>("ujadat")->setText(entry);
            editor->findChild<QPushButton*>("g1")->click();
        }
        MessageRecorder boxes;
        if (deleteAfter) {
            clickItem(list(editor), added.last());
            boxes.answer(platform::AnswerYes);
            editor->findChild<QPushButton*>("g2")->click();
        }
        QPointer<Egyebadat> gone(editor);
        editor->findChild<QPushButton*>("g3")->click();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!gone && caseScreen.isVisible());
        QFETCH(QString, handed);
        QCOMPARE(received, QStringList{handed});
    }

    // Adding and deleting need their rights; renaming needs none.
    void refusedWithoutRights()
    {
        Session::instance().rights = QString(20, '0');
        const int before = count("SELECT count(*) FROM tipusok");
        open("2");
        edit("ujadat")->setText("Új típus");
        MessageRecorder boxes;
        button("g1")->click();
        pick("Cégügy");
        button("g2")->click();
        QCOMPARE(boxes.texts(), messages({"nincsjog", "nincsjog"}));
        QCOMPARE(count("SELECT count(*) FROM tipusok"), before);
        button("g4")->click();
        edit("ujadat")->setText("Cégjogi ügy");
        button("g5")->click();
        QCOMPARE(count("SELECT count(*) FROM tipusok WHERE tipus = 'Cégjogi ügy'"), 1);
    }

    // The menu opens the lists (in the mode asked for) and the postal codes modally over it.
    void menuOpensTheScreens_data()
    {
        QTest::addColumn<QString>("hivo"); // empty: the postal codes
        QTest::newRow("lawyers") << QString("3");
        QTest::newRow("postal codes") << QString();
    }
    void menuOpensTheScreens()
    {
        QFETCH(QString, hivo);
        Alap menu(db());
        QVERIFY(menu.load());
        reference::install(Session::instance().screens, db());
        menu.show();
        QString seen, seenHivo;
        ModalDialogsExpected expected;
        QTimer::singleShot(0, [&] {
            QWidget* modal = QApplication::activeModalWidget();
            if (!modal)
                return;
            seen = modal->objectName();
            if (auto* h = modal->findChild<QLineEdit*>("hivo"))
                seenHivo = h->text();
            modal->findChild<QPushButton*>(seen == "irszam" ? "g5" : "g3")->click();
        });
        menu.findChild<QPushButton*>(hivo.isEmpty() ? "g10" : "g7")->click();
        QCOMPARE(seen, QString(hivo.isEmpty() ? "irszam" : "Egyebadat"));
        QCOMPARE(seenHivo, hivo);
        QVERIFY(menu.isVisible());
        Session::instance().screens = Screens();
    }
};

QTEST_MAIN(tst_egyebadat)
#include "tst_egyebadat.moc"
