#include "TestSupport.h"

#include "clients/PartnerInstall.h"
#include "clients/Partnerek.h"
#include "locale/Uzenet.h"
#include "platform/Display.h"
#include "platform/ListSource.h"
#include "session/Alap.h"
#include "session/Session.h"
#include "store/Partners.h"

using clients::Partnerek;
using namespace testsupport;

class tst_partnerek : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestFolder> m_folder;

    static platform::Database& db() { return database(); }
    static qlonglong addPartner(const QString& name, const QString& place, const QString& phone)
    {
        const store::Written w = store::Partners(db()).add(
                {{"pnev1", name}, {"phely", place}, {"ptel1", phone}, {"porszag", "Ausztria"}});
        return w.key.toLongLong();
    }
    // Every value of every partner but the keyed one, to see what a command touched.
    static QStringList partnersExcept(qlonglong key)
    {
        return values(db(), "select * from partner where pkod <> ? order by pkod", {key});
    }
    static Partnerek* screen() { return loaded<Partnerek>(); }
    static QLineEdit* field(const char* name) { return screen()->findChild<QLineEdit*>(name); }
    static auto* button(const char* name) { return screen()->findChild<QAbstractButton*>(name); }
    static QTableView* grid() { return screen()->findChild<QTableView*>("DataGrid2"); }
    static platform::ListSource* source()
    {
        return screen()->findChild<platform::ListSource*>("Adodc1");
    }
    // The keys of the grid's rows, top to bottom, every page read.
    static QList<qlonglong> gridKeys()
    {
        platform::ListSource* list = source();
        while (list->canReadMore())
            list->readMore();
        QList<qlonglong> keys;
        for (int r = 0; r < list->rowCount(); ++r)
            keys << list->value(r, "pkod").toLongLong();
        return keys;
    }
    // The user puts the grid on the partner's row and presses Enter.
    static void choose(qlonglong key)
    {
        const int row = int(gridKeys().indexOf(key));
        QVERIFY(row >= 0);
        grid()->setCurrentIndex(grid()->model()->index(row, 1));
        QTest::keyClick(grid(), Qt::Key_Return);
    }
    static void open()
    {
        Session::instance().screens.showPartners();
        QVERIFY(screen());
        screen()->Activate();
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<TestFolder>(true);
        QVERIFY(m_folder->open());
        clients::installPartners(Session::instance().screens, db());
    }
    void cleanup()
    {
        deleteWindows();
        m_folder.reset();
    }

    // Six columns headed in the session's language; Hungarian order of the name across pages.
    void gridColumnsAndOrder()
    {
        QVERIFY(db().exec("delete from partner"));
        for (const char* name :
             {"Zoltán", "Ödön", "kovács", "Csaba", "Oszkár", "Cukor", "Ábel", "Kovács", "Cecília"})
            addPartner(name, {}, {});
        Session::instance().language = 3;
        open();
        QList<QStringList> rows = gridShown(grid(), *source());
        QCOMPARE(rows.takeFirst(),
                 (QStringList{"Name 1", "Country", "Town", "Street", "Phone 1:", "Phone 2:"}));
        QStringList names;
        for (const QStringList& row : rows)
            names << row.first();
        QCOMPARE(names, (QStringList{"Ábel", "Cecília", "Cukor", "Csaba", "kovács", "Kovács",
                                     "Oszkár", "Ödön", "Zoltán"}));
        QCOMPARE(columnWidths(grid()), pixels({1800, 1500, 2400, 1500, 1300, 1300}));

        // Many partners of one name, and some without a name, over several pages.
        QVERIFY(db().begin());
        for (int i = 0; i < 700; ++i)
            QVERIFY(db().insert("partner", {{"pnev1", i % 7 ? QVariant("Kovács") : QVariant()}}));
        QVERIFY(db().commit());
        source()->refresh();
        QList<qlonglong> all;
        for (const platform::Row& row :
             db().select("select pkod from partner order by pnev1 collate HU, pkod"))
            all << row.value(0).toLongLong();
        QCOMPARE(gridKeys(), all);
    }

    // Two partners of one name: each row opens, changes and deletes its own partner only.
    void partnersOfOneNameStayApart_data()
    {
        QTest::addColumn<int>("answer"); // to the delete's question
        QTest::newRow("delete confirmed") << int(platform::AnswerYes);
        QTest::newRow("delete refused") << int(platform::AnswerNo);
    }
    void partnersOfOneNameStayApart()
    {
        QFETCH(int, answer);
        const qlonglong first = addPartner("Kovács Bt.", "Győr", "111");
        const qlonglong second = addPartner("Kovács Bt.", "Pécs", "222");
        open();
        const QStringList fields{"ukod", "hely", "tel1"};
        choose(first);
        QCOMPARE(shown(screen(), fields), (QStringList{QString::number(first), "Győr", "111"}));
        choose(second);
        QCOMPARE(shown(screen(), fields), (QStringList{QString::number(second), "Pécs", "222"}));

        const QStringList others = partnersExcept(second);
        button("g4")->click();
        field("tel1")->setText("333");
        button("g5")->click();
        QCOMPARE(store::Partners(db()).find(second).text("ptel1"), QString("333"));
        QCOMPARE(partnersExcept(second), others);
        // The list is read again with the saved partner's row current.
        QCOMPARE(grid()->currentIndex().row(), gridKeys().indexOf(second));
        choose(first);
        QCOMPARE(field("tel1")->text(), QString("111"));

        choose(second);
        MessageRecorder boxes{answer};
        button("g6")->click();
        QCOMPARE(boxes.texts(), messages({"torol"}));
        const bool deleted = answer == platform::AnswerYes;
        QCOMPARE(store::Partners(db()).find(second).isEmpty(), deleted);
        QCOMPARE(gridKeys().contains(second), !deleted);
        QCOMPARE(partnersExcept(second), others);
        QCOMPARE(shown(screen(), {"hely", "ukod"}),
                 (QStringList{deleted ? "" : "Pécs", QString::number(second)}));
    }

    // A partner without a country is stored as Hungarian and is listed at once.
    void newPartnerIsStoredAndListed()
    {
        open();
        button("g3")->click();
        const QStringList all{"nev1", "nev2", "irsz", "hely", "utca",
                              "tel1", "tel2", "fax",  "email"};
        for (const QString& name : all)
            QTest::keyClicks(field(name.toLatin1()), "x" + name);
        button("g5")->click();
        const platform::Row row = store::Partners(db()).find(field("ukod")->text().toLongLong());
        for (const QString& name : all)
            QCOMPARE(row.text("p" + name), "x" + name);
        QCOMPARE(row.text("porszag"), QString("Magyarország"));
        QCOMPARE(shown(screen(), {"orszag"}), QStringList{"Magyarország"});
        QVERIFY(gridKeys().contains(row.value("pkod").toLongLong()));
    }

    // A partner another desk deleted: its row shows nothing, a save to it writes nothing.
    void deletedOnAnotherWorkstation_data()
    {
        QTest::addColumn<bool>("changing");
        QTest::newRow("row chosen") << false;
        QTest::newRow("change saved") << true;
    }
    void deletedOnAnotherWorkstation()
    {
        QFETCH(bool, changing);
        const qlonglong kept = addPartner("Első Kft.", "Győr", "111");
        const qlonglong gone = addPartner("Második Kft.", "Pécs", "222");
        open();
        choose(changing ? gone : kept);
        if (changing) {
            button("g4")->click();
            field("tel1")->setText("999");
        }
        platform::Database other;
        QVERIFY(other.openExisting(m_folder->dataFile(), nullptr));
        QVERIFY(store::Partners(other).remove(gone).stored());
        const QStringList before = partnersExcept(-1);

        MessageRecorder boxes;
        if (changing)
            button("g5")->click();
        else
            choose(gone);
        QCOMPARE(boxes.texts(), messages({changing ? "nincsmar" : "mastorolte"}));
        QCOMPARE(partnersExcept(-1), before);
        QCOMPARE(shown(screen(), {"tel1", "ukod"}),
                 (QStringList{changing ? "999" : "111", QString::number(changing ? gone : kept)}));
        QVERIFY(!gridKeys().contains(gone));
    }

    // The menu's partner button hides the menu; closing the one partner screen shows it again.
    void theMainMenuOpensItAndComesBack()
    {
        Alap menu(db());
        QVERIFY(menu.load());
        menu.show();
        menu.findChild<QAbstractButton*>("g11")->click();
        QVERIFY(screen() && screen()->isVisible() && !menu.isVisible());
        Partnerek* first = screen();
        Session::instance().screens.showPartners();
        QCOMPARE(screen(), first);
        QTest::mouseClick(button("g7"), Qt::LeftButton);
        QVERIFY(!screen() && menu.isVisible());
    }
};

QTEST_MAIN(tst_partnerek)
#include "tst_partnerek.moc"
