#include "TestSupport.h"

#include "clients/AddressBlock.h"
#include "locale/Uzenet.h"
#include "session/Session.h"

#include <memory>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QVBoxLayout>

// A screen with one address block and a field after it, as the client screen lays them out.
struct Host
{
    QWidget window;
    QComboBox* country = new QComboBox;
    QLineEdit* code = new QLineEdit;
    QLineEdit* place = new QLineEdit;
    QLineEdit* after = new QLineEdit;
    QListWidget* list = new QListWidget(&window); // floats over the form
    clients::AddressBlock* block = nullptr;

    Host()
    {
        auto* layout = new QVBoxLayout(&window);
        for (QWidget* w : std::initializer_list<QWidget*>{country, code, place, after})
            layout->addWidget(w);
        block = new clients::AddressBlock(country, code, place, list, &window);
        for (const platform::Row& row : Session::instance().database.select(
                     "select orszagnev from orszagok order by orszagnev COLLATE HU"))
            country->addItem(row.text("orszagnev"));
        window.show();
        window.activateWindow();
    }
    // The user types a postal code and tabs out of the field.
    void typeCode(const QString& country_, const QString& text)
    {
        country->setEditText(country_);
        code->setFocus();
        code->selectAll();
        QTest::keyClicks(code, text);
        QTest::keyClick(code, Qt::Key_Tab);
    }
    void leaveCode()
    {
        code->setFocus();
        QTest::keyClick(code, Qt::Key_Tab);
    }
    void leavePlace()
    {
        place->setFocus();
        QTest::keyClick(place, Qt::Key_Tab);
    }
};

class tst_addressblock : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void postalCodeFillsThePlace_data();
    void postalCodeFillsThePlace();
    void placeIsChosenFromTheList();
    void onlyAChangedCodeIsLookedUp();
    void emptyCountryIsRefused();
    void placeFillsAnEmptyPostalCode_data();
    void placeFillsAnEmptyPostalCode();

private:
    std::unique_ptr<testsupport::TestFolder> m_folder;
};

void tst_addressblock::init()
{
    m_folder = std::make_unique<testsupport::TestFolder>();
    QVERIFY(m_folder->open());
    auto& db = m_folder->db();
    // Decoys that a register lookup of the capitals' codes would find; the shortcut must not.
    QVERIFY(db.exec(
            "insert into irsz (orszag, irsz, hely) values ('Magyarország', '1118', 'Csali')"));
    QVERIFY(db.exec("insert into irsz (orszag, irsz, hely) values ('Ausztria', '1010', 'Csali')"));
    QVERIFY(db.exec("insert into orszagok (orszagnev) values (?)", {"Côte d'Ivoire"}));
    QVERIFY(db.exec("insert into irsz (orszag, irsz, hely) values (?, ?, ?)",
                    {"Côte d'Ivoire", "01", "Abidjan"}));
    QVERIFY(db.exec("insert into irsz (orszag, irsz, hely) values (?, ?, ?)",
                    {"Magyarország", "9996", "Kis'falu"}));
    QVERIFY(db.exec("insert into irsz (orszag, irsz, hely) values (?, ?, ?)",
                    {"Magyarország", "9998", "Próbafalva"}));
    QVERIFY(db.exec("insert into irsz (orszag, irsz, hely) values (?, ?, ?)",
                    {"Magyarország", "9997", "Próbafalva"}));
}

void tst_addressblock::cleanup()
{
    m_folder.reset();
}

void tst_addressblock::postalCodeFillsThePlace_data()
{
    QTest::addColumn<QString>("country");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("place");
    QTest::addColumn<QStringList>("offered");

    QTest::newRow("Budapest without a lookup") << "Magyarország"
                                               << "1118"
                                               << "Budapest" << QStringList();
    QTest::newRow("Hungarian code looked up") << "Magyarország"
                                              << "6720"
                                              << "Szeged" << QStringList();
    QTest::newRow("Wien without a lookup") << "Ausztria"
                                           << "1010"
                                           << "Wien" << QStringList();
    QTest::newRow("country in any letter case") << "MAGYARORSZÁG"
                                                << "6720"
                                                << "Szeged" << QStringList();
    QTest::newRow("apostrophe in the country") << "Côte d'Ivoire"
                                               << "01"
                                               << "Abidjan" << QStringList();
    QTest::newRow("unknown code") << "Magyarország"
                                  << "0000"
                                  << "" << QStringList();
    QTest::newRow("code with two places") << "Magyarország"
                                          << "2094"
                                          << "" << QStringList{"Nagykovácsi", "Remeteszőlős"};
}

void tst_addressblock::postalCodeFillsThePlace()
{
    QFETCH(QString, country);
    QFETCH(QString, code);
    QFETCH(QString, place);
    QFETCH(QStringList, offered);

    Host host;
    QVERIFY(QTest::qWaitForWindowActive(&host.window));
    host.typeCode(country, code);
    QCOMPARE(host.place->text(), place);
    QCOMPARE(host.list->isVisible(), !offered.isEmpty());
    if (!offered.isEmpty()) {
        QStringList shown;
        for (int i = 0; i < host.list->count(); ++i)
            shown << host.list->item(i)->text();
        QCOMPARE(shown, offered);
        QCOMPARE(host.list->currentRow(), 0);
        QVERIFY(host.list->hasFocus());
    }
}

void tst_addressblock::placeIsChosenFromTheList()
{
    Host host;
    QVERIFY(QTest::qWaitForWindowActive(&host.window));
    host.typeCode("Magyarország", "2094");
    QVERIFY(host.list->isVisible());
    QVERIFY(host.block->irszvaltozott() == false);

    QListWidgetItem* second = host.list->item(1);
    QTest::mouseClick(host.list->viewport(), Qt::LeftButton, {},
                      host.list->visualItemRect(second).center());
    QCOMPARE(host.place->text(), QString("Remeteszőlős"));

    // Leaving the list hides it again.
    host.after->setFocus();
    QVERIFY(!host.list->isVisible());
    QCOMPARE(host.place->text(), QString("Remeteszőlős"));
}

void tst_addressblock::onlyAChangedCodeIsLookedUp()
{
    Host host;
    QVERIFY(QTest::qWaitForWindowActive(&host.window));
    host.typeCode("Magyarország", "6720");
    QCOMPARE(host.place->text(), QString("Szeged"));

    // The user corrects the place; passing through the unchanged code keeps it.
    host.place->setText("Szeged-Tápé");
    host.leaveCode();
    QCOMPARE(host.place->text(), QString("Szeged-Tápé"));

    // A screen that shows another record writes the code: the first visit looks it up.
    host.code->setText("2094");
    host.place->setText("Nagykovácsi");
    host.code->setText("6720");
    host.leaveCode();
    QCOMPARE(host.place->text(), QString("Szeged"));
    QVERIFY(!host.block->irszvaltozott());

    // The capital's fixed answer keeps the mark, so leaving again repeats it.
    host.typeCode("Magyarország", "1118");
    QVERIFY(host.block->irszvaltozott());
    host.place->setText("Buda");
    host.leaveCode();
    QCOMPARE(host.place->text(), QString("Budapest"));
}

void tst_addressblock::emptyCountryIsRefused()
{
    Host host;
    QVERIFY(QTest::qWaitForWindowActive(&host.window));
    testsupport::MessageRecorder boxes;

    host.typeCode("", "6720");
    QCOMPARE(boxes.texts(), QStringList{uzenetszoveg("nincsorsz")});
    QCOMPARE(boxes.shown().first().style, int(platform::Notice));
    QVERIFY(host.place->text().isEmpty());
    QVERIFY(host.block->irszvaltozott());

    // Leaving the place while a postal code is filled asks nothing.
    boxes.clear();
    host.place->setText("Szeged");
    host.leavePlace();
    QVERIFY(boxes.shown().isEmpty());

    // With the postal code empty the country is needed.
    host.code->clear();
    host.leavePlace();
    QCOMPARE(boxes.texts(), QStringList{uzenetszoveg("nincsorsz")});
    QVERIFY(host.code->text().isEmpty());
}

void tst_addressblock::placeFillsAnEmptyPostalCode_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("code");
    QTest::newRow("one code") << "Nagykovácsi"
                              << "2094";
    QTest::newRow("first in the register's order") << "Próbafalva"
                                                   << "9998";
    QTest::newRow("any letter case") << "PRÓBAFALVA"
                                     << "9998";
    QTest::newRow("apostrophe") << "Kis'falu"
                                << "9996";
    QTest::newRow("unknown place") << "Sehol"
                                   << "";
}

void tst_addressblock::placeFillsAnEmptyPostalCode()
{
    QFETCH(QString, place);
    QFETCH(QString, code);
    Host host;
    QVERIFY(QTest::qWaitForWindowActive(&host.window));
    host.country->setEditText("Magyarország");
    host.place->setText(place);
    host.leavePlace();
    QCOMPARE(host.code->text(), code);
    QCOMPARE(clients::irszhelybol("Magyarország", place), code);
    // A filled code marks the change, so leaving the code field looks up its place.
    QCOMPARE(host.block->irszvaltozott(), !code.isEmpty());
}

QTEST_MAIN(tst_addressblock)
#include "tst_addressblock.moc"
