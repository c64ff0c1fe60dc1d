#include "TestSupport.h"

#include "clients/Install.h"
#include "clients/Ugyfelek.h"
#include "locale/Uzenet.h"
#include "search/Install.h"
#include "search/keres.h"
#include "session/Session.h"
#include "store/Cases.h"
#include "store/Clients.h"

#include <QLabel>

using clients::Ugyfelek;
using namespace testsupport;

class tst_ugyfelek : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestFolder> m_folder;
    QWidget m_search;

    static platform::Database& db() { return database(); }
    static platform::Row stored(const QString& key)
    {
        return db().first("select * from ugyfelek where ukod = ?", {key.toLongLong()});
    }
    // Every value of every client but the keyed one (all with no key), to see what was touched.
    static QStringList clientsExcept(const QString& key)
    {
        return values(db(), "select * from ugyfelek where ukod <> ? order by ukod",
                      {key.toLongLong()});
    }
    static Ugyfelek* screen() { return loaded<Ugyfelek>(); }
    static QLineEdit* field(const char* name) { return screen()->findChild<QLineEdit*>(name); }
    static QComboBox* orszag() { return screen()->findChild<QComboBox*>("orszag"); }
    static auto* button(const char* name) { return screen()->findChild<QAbstractButton*>(name); }
    // Option buttons take clicks on their mark and caption, which sit at the left.
    static void click(const char* name)
    {
        QTest::mouseClick(button(name), Qt::LeftButton, {}, QPoint(6, button(name)->height() / 2));
    }
    // The search screen's hand-off: a chosen row, or with no key its new-record command.
    void open(const QString& key = {}, const store::ClientFilter& filter = {})
    {
        Screens& screens = Session::instance().screens;
        (key.isEmpty() ? screens.newClient
                       : screens.showClient)({key, store::Clients::list(filter), &m_search});
        QVERIFY(screen());
        screen()->Activate();
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<TestFolder>(true);
        QVERIFY(m_folder->open());
        clients::install(Session::instance().screens, db());
        m_search.hide();
    }
    void cleanup()
    {
        deleteWindows(&m_search);
        m_folder.reset();
    }
    // The conflict notice names the case as the name is typed, and the save goes on.
    void nameCheckedAgainstOpponents()
    {
        QVERIFY(store::Cases(db()).add({{"ugyszam", "U-1"}, {"ellnev", "Zöldfa Bt."}}).stored());
        open();
        type(field("nev1"), "ZOLDFA KFT");
        auto* notice = screen()->findChild<QLabel*>("nev1utkozes");
        QVERIFY(notice && !notice->isHidden());
        QVERIFY2(notice->text().contains("U-1: Zöldfa Bt."), qPrintable(notice->text()));
        type(field("nev1"), "né");
        QVERIFY(notice->isHidden());
        button("g5")->click();
        QCOMPARE(values(db(), "SELECT count(*) FROM ugyfelek WHERE unev1egyezo = 'kftne zoldfa'"),
                 QStringList{"1"});
    }
    void newClientIsStored_data()
    {
        QTest::addColumn<QString>("country");
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("storedCountry");
        QTest::addColumn<QVariant>("storedOption");
        const QString at = "Ausztria";
        QTest::newRow("empty country, private") << QString() << "g2"
                                                << "Magyarország" << QVariant(0);
        QTest::newRow("country kept, company") << at << "g1" << at << QVariant(-1);
        QTest::newRow("neither option chosen") << at << QString() << at << QVariant();
    }
    void newClientIsStored()
    {
        QFETCH(QString, country);
        QFETCH(QString, option);
        open();
        type(field("nev1"), "Új Ügyfél Kft.");
        orszag()->setEditText(country);
        if (!option.isEmpty())
            click(option.toLatin1());
        click("g5");
        const QString key = field("ukod")->text();
        const platform::Row row = stored(key);
        QTEST(row.text("uorszag"), "storedCountry");
        QTEST(row.isNull("ucegprivat") ? QVariant() : QVariant(row.value("ucegprivat").toInt()),
              "storedOption");
        // The fields still take typing after the save, but closing asks nothing and saves nothing.
        type(field("nev1"), " elveszik");
        MessageRecorder boxes;
        click("g7");
        QVERIFY(boxes.shown().isEmpty() && !screen() && m_search.isVisible());
        QCOMPARE(stored(key).text("unev1"), QString("Új Ügyfél Kft."));
        open(key);
        QCOMPARE(button("g2")->isChecked(), row.value("ucegprivat").toInt() != -1);
    }
    void clientOutsideTheFilteredListIsTheOneChanged()
    {
        // The search list shows one client only; the new client is not in it.
        open({}, {"Ábel Ferenc", {}, {}, {}, {}});
        type(field("nev1"), "Zárt Lista Kft.");
        click("g5");
        const QString key = field("ukod")->text();
        const QStringList others = clientsExcept(key);
        // A change to an empty country stores it empty.
        click("g4");
        type(field("nev2"), "második sor");
        orszag()->setEditText(QString());
        click("g5");
        QCOMPARE(values(db(), "select unev2, uorszag from ugyfelek where ukod = ?",
                        {key.toLongLong()}),
                 (QStringList{"második sor", ""}));
        QCOMPARE(clientsExcept(key), others);
        MessageRecorder boxes{platform::AnswerYes};
        click("g6");
        QVERIFY(stored(key).isEmpty());
        QCOMPARE(clientsExcept(key), others);
        // The screen empties its fields but keeps the old key shown.
        QCOMPARE(shown(screen(), {"nev1", "orszag", "ukod"}), (QStringList{"", "", key}));
    }
    void deleteKeepsAClientWithCasesOrUnconfirmed_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QStringList>("codes");
        const int yes = platform::AnswerYes, no = platform::AnswerNo;
        QTest::newRow("with a case") << "3" << yes << QStringList{"torol", "nemtorol"};
        QTest::newRow("not confirmed") << "15" << no << QStringList{"torol"};
    }
    void deleteKeepsAClientWithCasesOrUnconfirmed()
    {
        QFETCH(QString, key);
        QFETCH(int, answer);
        QFETCH(QStringList, codes);
        const QStringList all = clientsExcept({});
        open(key);
        MessageRecorder boxes{answer};
        click("g6");
        QCOMPARE(boxes.texts(), messages(codes));
        QCOMPARE(clientsExcept({}), all);
    }
    void activatingKeepsEachCountryOnce()
    {
        open("16");
        Session::instance().language = 3;
        for (int i = 0; i < 3; ++i)
            screen()->Activate();
        QCOMPARE(orszag()->count(), db().scalar("select count(*) from orszagok").toInt());
        QCOMPARE(orszag()->currentText(), QString("Ausztria"));
    }
    // An entry in progress, then another row, Új, the search screen anew or Bezár: "ments" is
    // asked; No keeps the entry on screen, Yes drops it and saves nothing.
    void anEntryIsAskedAboutBeforeItGoes_data()
    {
        QTest::addColumn<QString>("gesture");
        QTest::addColumn<int>("answer");
        for (const char* gesture : {"row", "new", "reopen", "close"}) {
            QTest::addRow("%s, No keeps", gesture) << gesture << int(platform::AnswerNo);
            QTest::addRow("%s, Yes drops", gesture) << gesture << int(platform::AnswerYes);
        }
    }
    void anEntryIsAskedAboutBeforeItGoes()
    {
        QFETCH(QString, gesture);
        QFETCH(int, answer);
        Screens& screens = Session::instance().screens;
        search::install(screens, db());
        screens.showSearch("1");
        keres* search = visible<keres>();
        QVERIFY(search);
        const auto choose = [search](const QString& name) {
            auto* ker1 = search->findChild<QLineEdit*>("ker1");
            ker1->setText(name);
            QTest::keyClick(ker1, Qt::Key_Return);
            QTest::keyClick(search->findChild<QTableView*>("DataGrid1"), Qt::Key_Return);
        };
        choose("Farkas");
        Ugyfelek* first = screen();
        QVERIFY(first);
        const QStringList all = clientsExcept({});
        click("g4");
        type(field("nev2"), "Második sor");

        MessageRecorder boxes{answer};
        if (gesture == "row") {
            choose("Huber");
        } else if (gesture == "new") {
            QTest::mouseClick(search->findChild<QPushButton*>("g1"), Qt::LeftButton);
        } else if (gesture == "close") {
            click("g7");
        } else {
            search->close();
            screens.showSearch("2");
        }
        QCOMPARE(boxes.texts(), messages({"ments"}));
        QCOMPARE(clientsExcept({}), all);
        QVERIFY(search->isVisible());
        if (answer == platform::AnswerNo) {
            QCOMPARE(screen(), first);
            QCOMPARE(field("nev2")->text(), QString("Második sor"));
            QVERIFY(button("g5")->isEnabled());
        } else if (gesture == "reopen" || gesture == "close") {
            QVERIFY(!screen());
        } else {
            QVERIFY(screen() && screen() != first);
            QCOMPARE(field("nev1")->text(), gesture == "row" ? QString("Huber GmbH") : QString());
        }
    }
    // From the case screen: "Ment és Vissza" saves and hands the client back to the case screen.
    void newClientForTheCaseScreen()
    {
        QWidget caseScreen; // a stand-in for the case screen
        QString key, name;
        Ugyfelek* s
                = clients::newClientForCase(db(), &caseScreen, "Szabó Kft.", [&](auto k, auto n) {
                      QVERIFY(caseScreen.isVisible() && !screen()->isVisible());
                      key = k, name = n;
                  });
        s->Activate();
        QCOMPARE(button("g5")->text(), QString("Ment és Vissza"));
        click("g5");
        QCOMPARE(name, QString("Szabó Kft."));
        QCOMPARE(stored(key).text("unev1"), name);
        QCOMPARE(screen(), s);
    }
};

QTEST_MAIN(tst_ugyfelek)
#include "tst_ugyfelek.moc"
