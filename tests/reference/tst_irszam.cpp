// The postal-code register: a country's grid, rows written by their key, the client look-up.
#include "TestSupport.h"

#include "clients/AddressBlock.h"
#include "locale/Uzenet.h"
#include "platform/Display.h"
#include "reference/Egyebadat.h"
#include "reference/irszam.h"
#include "session/Session.h"
#include "store/Lookups.h"
#include "store/PostalCodes.h"

using reference::irszam;
using namespace testsupport;

class tst_irszam : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<irszam> m_screen;

    platform::Database& db() { return m_folder->db(); }
    QPushButton* button(const char* name) { return m_screen->findChild<QPushButton*>(name); }
    QLineEdit* edit(const char* name) { return m_screen->findChild<QLineEdit*>(name); }
    QTableView* grid() { return m_screen->findChild<QTableView*>("DataGrid2"); }
    void chooseCountry(const QString& country)
    {
        clickItem(m_screen->findChild<QListWidget*>("orszlst"), country);
    }
    // Row n of the grid made current and activated with Enter, as the user does.
    void activate(int row)
    {
        grid()->setFocus();
        grid()->setCurrentIndex(grid()->model()->index(row, 1));
        QTest::keyClick(grid(), Qt::Key_Enter);
    }
    QVariant keyAt(int row) { return m_screen->source()->value(row, "irszsorszam"); }
    // The place the client screen's address block finds for a country and a postal code.
    QString lookedUp(const QString& country, const QString& code)
    {
        QWidget host;
        auto* box = new QComboBox(&host);
        box->setEditable(true);
        box->setEditText(country);
        auto* postal = new QLineEdit(&host);
        auto* place = new QLineEdit(&host);
        clients::AddressBlock block(db(), box, postal, place, new QListWidget(&host));
        postal->setText(code);
        block.irszbolhely();
        return place->text();
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<TestFolder>();
        QVERIFY(m_folder->open());
        m_screen = std::make_unique<irszam>(db());
        m_screen->show();
    }
    void cleanup()
    {
        m_screen.reset();
        m_folder.reset();
    }

    // Only the country's rows, three columns in the session's language; the long list is paged.
    void gridOfACountry()
    {
        Session::instance().language = 3;
        m_screen->Activate();
        chooseCountry("Ausztria");
        platform::ListSource* source = m_screen->source();
        QVERIFY(source->rowCount() > 0);
        for (int row = 0; row < source->rowCount(); ++row)
            QCOMPARE(source->value(row, "Orszag").toString(), QString("Ausztria"));
        QCOMPARE(gridShown(grid(), *source).first(), (QStringList{"Postcode", "Town", "Country"}));
        QCOMPARE(columnWidths(grid()), pixels({800, 2400, 1500}));

        chooseCountry("Magyarország");
        QCOMPARE(source->rowCount(), 256);
        while (source->canReadMore())
            source->readMore();
        QCOMPARE(source->rowCount(), 3574);
    }

    // The client screen's look-ups find a new code both ways, also for a country named with an
    // apostrophe; a row without a place is not stored; a country's renaming carries over.
    void newCodeIsFoundByTheClientScreen_data()
    {
        QTest::addColumn<QString>("country");
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("place");
        QTest::newRow("Austria") << QString("Ausztria") << QString("9999")
                                 << QString("Neudorf am See");
        QTest::newRow("apostrophe")
                << QString("O'Higgins") << QString("6000") << QString("Villa O'Higgins");
    }
    void newCodeIsFoundByTheClientScreen()
    {
        QFETCH(QString, country);
        QFETCH(QString, code);
        QFETCH(QString, place);
        if (country != "Ausztria") {
            reference::Egyebadat lists(db());
            lists.setHivo("1");
            lists.show();
            lists.findChild<QLineEdit*>("ujadat")->setText(country);
            lists.findChild<QPushButton*>("g1")->click();
        }
        m_screen->Activate();
        chooseCountry(country);
        button("g1")->click();
        edit("irsz")->setText(code);
        button("g3")->click();
        QVERIFY(button("g3")->isEnabled());
        QCOMPARE(edit("irsz")->text(), code);
        edit("hely")->setText(place);
        button("g3")->click();
        QCOMPARE(db().scalar("SELECT orszag FROM irsz WHERE irsz = ? AND hely = ?", {code, place})
                         .toString(),
                 country);
        QCOMPARE(edit("irsz")->text() + edit("hely")->text(), QString());
        QVERIFY(gridShown(grid(), *m_screen->source()).contains({code, place, country}));
        QCOMPARE(lookedUp(country, code), place);
        QCOMPARE(clients::irszhelybol(db(), country, place), code);

        QVERIFY(store::Lookups(db(), store::LookupList::Countries)
                        .rename(country, country + " régió")
                        .stored());
        QCOMPARE(db().scalar("SELECT orszag FROM irsz WHERE hely = ?", {place}).toString(),
                 country + " régió");
    }

    // The row last activated is the one deleted or changed, even after the highlight moved on.
    void activatedRowIsTheOneWritten()
    {
        chooseCountry("Magyarország");
        activate(5);
        const QVariant fifth = keyAt(5);
        QCOMPARE(m_screen->shownKey(), fifth);
        grid()->setCurrentIndex(grid()->model()->index(7, 1));
        const QVariant seventh = keyAt(7);
        const int before = db().scalar("SELECT count(*) FROM irsz").toInt();
        MessageRecorder boxes{platform::AnswerYes};
        button("g4")->click();
        QCOMPARE(boxes.texts(), messages({"torol"}));
        QVERIFY(store::PostalCodes(db()).find(fifth).isEmpty());
        QVERIFY(!store::PostalCodes(db()).find(seventh).isEmpty());
        QCOMPARE(db().scalar("SELECT count(*) FROM irsz").toInt(), before - 1);

        activate(2);
        const QVariant second = keyAt(2);
        button("g2")->click();
        edit("hely")->setText("Átírt hely");
        button("g3")->click();
        QCOMPARE(store::PostalCodes(db()).find(second).text("hely"), QString("Átírt hely"));
        QCOMPARE(db().scalar("SELECT count(*) FROM irsz WHERE hely = 'Átírt hely'").toInt(), 1);

        activate(3);
        const QVariant third = keyAt(3);
        button("g2")->click();
        edit("hely")->setText("Máshol törölt");
        platform::Database other;
        QVERIFY(other.openExisting(m_folder->dataFile(), nullptr));
        QVERIFY(store::PostalCodes(other).remove(third).stored());
        boxes.clear();
        button("g3")->click();
        QCOMPARE(boxes.texts(), messages({"nincsmar"}));
        QCOMPARE(edit("hely")->text(), QString("Máshol törölt"));
        QCOMPARE(db().scalar("SELECT count(*) FROM irsz WHERE hely = 'Máshol törölt'").toInt(), 0);
    }
};

QTEST_MAIN(tst_irszam)
#include "tst_irszam.moc"
