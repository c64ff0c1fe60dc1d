#include "TestSupport.h"

#include "clients/AddressBlock.h"
#include "locale/Uzenet.h"
#include "session/Session.h"

#include <memory>
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
    clients::AddressBlock* block = new clients::AddressBlock(country, code, place, list, &window);

    Host()
    {
        auto* layout = new QVBoxLayout(&window);
        for (QWidget* w : std::initializer_list<QWidget*>{country, code, place, after})
            layout->addWidget(w);
        window.show();
        window.activateWindow();
    }
    // The user leaves a field with Tab, after typing into it when there is text to type.
    void leave(QLineEdit* field, const QString& typed = QString())
    {
        field->setFocus();
        if (!typed.isEmpty()) {
            field->selectAll();
            QTest::keyClicks(field, typed);
        }
        QTest::keyClick(field, Qt::Key_Tab);
    }
};

class tst_addressblock : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void fieldsFillEachOther_data();
    void fieldsFillEachOther();
    void onlyAChangedCodeIsLookedUp();

private:
    std::unique_ptr<testsupport::TestFolder> m_folder;
    std::unique_ptr<Host> m_host;
};

void tst_addressblock::init()
{
    m_folder = std::make_unique<testsupport::TestFolder>();
    QVERIFY(m_folder->open());
    QVERIFY(m_folder->db().exec("insert into orszagok (orszagnev) values (?)", {"Côte d'Ivoire"}));
    // The first two are decoys that a register lookup of the capitals' codes would find.
    const QList<QVariantList> rows{
            {"Magyarország", "1118", "Csali"},      {"Ausztria", "1010", "Csali"},
            {"Côte d'Ivoire", "01", "Abidjan"},     {"Magyarország", "9996", "Kis'falu"},
            {"Magyarország", "9998", "Próbafalva"}, {"Magyarország", "9997", "Próbafalva"}};
    for (const QVariantList& row : rows)
        QVERIFY(m_folder->db().exec("insert into irsz (orszag, irsz, hely) values (?, ?, ?)", row));
    m_host = std::make_unique<Host>();
    QVERIFY(QTest::qWaitForWindowActive(&m_host->window));
}

void tst_addressblock::cleanup()
{
    m_host.reset();
    m_folder.reset();
}

void tst_addressblock::fieldsFillEachOther_data()
{
    QTest::addColumn<QString>("country");
    QTest::addColumn<bool>("codeTyped"); // else the place is typed, the postal code left empty
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("place");
    QTest::addColumn<QStringList>("offered");
    const auto byCode = [](const char* name, const QString& country, const QString& code,
                           const QString& place, const QStringList& offered = {}) {
        QTest::newRow(name) << country << true << code << place << offered;
    };
    const auto byPlace = [](const char* name, const QString& country, const QString& place,
                            const QString& code) {
        QTest::newRow(name) << country << false << code << place << QStringList();
    };
    const QString hu = "Magyarország";
    byCode("Budapest without a lookup", hu, "1118", "Budapest");
    byCode("Hungarian code looked up", hu, "6720", "Szeged");
    byCode("Wien without a lookup", "Ausztria", "1010", "Wien");
    byCode("country in any letter case", "MAGYARORSZÁG", "6720", "Szeged");
    byCode("apostrophe in the country", "Côte d'Ivoire", "01", "Abidjan");
    byCode("unknown code", hu, "0000", "");
    byCode("code with two places", hu, "2094", "", {"Nagykovácsi", "Remeteszőlős"});
    byCode("code, empty country", "", "6720", "");
    byPlace("place with one code", hu, "Nagykovácsi", "2094");
    byPlace("first code in the register's order", hu, "Próbafalva", "9998");
    byPlace("place in any letter case", hu, "PRÓBAFALVA", "9998");
    byPlace("apostrophe in the place", hu, "Kis'falu", "9996");
    byPlace("unknown place", hu, "Sehol", "");
    byPlace("place, empty country", "", "Szeged", "");
}

void tst_addressblock::fieldsFillEachOther()
{
    QFETCH(QString, country);
    QFETCH(bool, codeTyped);
    QFETCH(QString, code);
    QFETCH(QString, place);
    QFETCH(QStringList, offered);

    Host& h = *m_host;
    testsupport::MessageRecorder boxes;
    h.country->setEditText(country);
    if (codeTyped) {
        h.leave(h.code, code);
    } else {
        h.place->setText(place);
        h.leave(h.place);
    }
    QCOMPARE(h.code->text(), code);
    QCOMPARE(h.place->text(), place);
    // An empty country is refused with a notice; nothing else is ever asked.
    QCOMPARE(boxes.texts(),
             country.isEmpty() ? QStringList{uzenetszoveg("nincsorsz")} : QStringList());
    QVERIFY(boxes.shown().isEmpty() || boxes.shown().first().style == int(platform::Notice));
    QCOMPARE(h.list->isVisible(), !offered.isEmpty());
    if (offered.isEmpty())
        return;
    // The list opens with the first place selected; a click on the last one puts it in.
    QStringList shown;
    for (int i = 0; i < h.list->count(); ++i)
        shown << h.list->item(i)->text();
    QCOMPARE(shown, offered);
    QCOMPARE(h.list->currentRow(), 0);
    QVERIFY(h.list->hasFocus());
    QTest::mouseClick(h.list->viewport(), Qt::LeftButton, {},
                      h.list->visualItemRect(h.list->item(offered.size() - 1)).center());
    QCOMPARE(h.place->text(), offered.last());
    h.after->setFocus(); // leaving the list hides it
    QVERIFY(!h.list->isVisible());
}

void tst_addressblock::onlyAChangedCodeIsLookedUp()
{
    Host& h = *m_host;
    h.country->setEditText("Magyarország");
    h.leave(h.code, "6720");
    QCOMPARE(h.place->text(), QString("Szeged"));

    // The user corrects the place; passing through the unchanged code keeps it.
    h.place->setText("Szeged-Tápé");
    h.leave(h.code);
    QCOMPARE(h.place->text(), QString("Szeged-Tápé"));

    // A screen that shows another record writes the code: the first visit looks it up.
    h.code->setText("2094");
    h.place->setText("Nagykovácsi");
    h.code->setText("6720");
    h.leave(h.code);
    QCOMPARE(h.place->text(), QString("Szeged"));
    QVERIFY(!h.block->irszvaltozott());
}

QTEST_MAIN(tst_addressblock)
#include "tst_addressblock.moc"
