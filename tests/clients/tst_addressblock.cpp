#include "TestSupport.h"

#include "clients/AddressBlock.h"
#include "locale/Uzenet.h"
#include "session/Session.h"

#include <QVBoxLayout>

static const QString hu = "Magyarország";

// A data folder and a form with an address block and a field after it, as on the client screen.
struct Host
{
    testsupport::TestFolder folder;
    QWidget window;
    QComboBox* country = new QComboBox;
    QLineEdit *code = new QLineEdit, *place = new QLineEdit, *after = new QLineEdit;
    QListWidget* list = new QListWidget(&window); // floats over the form
    clients::AddressBlock* block = new clients::AddressBlock(testsupport::database(), country, code,
                                                             place, list, &window);

    Host()
    {
        auto* layout = new QVBoxLayout(&window);
        for (QWidget* w : std::initializer_list<QWidget*>{country, code, place, after})
            layout->addWidget(w);
        window.show();
    }
};

class tst_addressblock : public QObject
{
    Q_OBJECT
    std::unique_ptr<Host> h;
private slots:
    void init()
    {
        h = std::make_unique<Host>();
        QVERIFY(h->folder.open());
        // The first two are decoys that a register lookup of the capitals' codes would find.
        for (const QVariantList& r : QList<QVariantList>{{hu, "1118", "Csali"},
                                                         {"Ausztria", "1010", "Csali"},
                                                         {hu, "9996", "Kis'falu"},
                                                         {hu, "9998", "Próbafalva"},
                                                         {hu, "9997", "Próbafalva"}})
            QVERIFY(h->folder.db().exec("insert into irsz (orszag, irsz, hely) values (?,?,?)", r));
        QVERIFY(QTest::qWaitForWindowActive(&h->window));
    }
    void cleanup() { h.reset(); }
    void fieldsFillEachOther_data()
    {
        QTest::addColumn<QString>("country");
        QTest::addColumn<bool>("byCode"); // else the place is typed and the code left empty
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("place");
        QTest::addColumn<QStringList>("offered");
        const auto row = [](const char* name, const QString& country, bool byCode, const char* code,
                            const QString& place, QStringList offered = {}) {
            QTest::newRow(name) << country << byCode << QString(code) << place << offered;
        };
        row("Budapest without a lookup", hu, true, "1118", "Budapest");
        row("Hungarian code looked up", hu, true, "6720", "Szeged");
        row("Wien without a lookup", "Ausztria", true, "1010", "Wien");
        row("code with two places", hu, true, "2094", "", {"Nagykovácsi", "Remeteszőlős"});
        row("empty country", "", true, "6720", "");
        row("first code in the register's order", hu, false, "9998", "Próbafalva");
        row("apostrophe in the place", hu, false, "9996", "Kis'falu");
    }
    void fieldsFillEachOther()
    {
        QFETCH(QString, country);
        QFETCH(bool, byCode);
        QFETCH(QString, code);
        QFETCH(QString, place);
        QFETCH(QStringList, offered);
        testsupport::MessageRecorder boxes;
        h->country->setEditText(country);
        testsupport::leave(byCode ? h->code : h->place, byCode ? code : place);
        QCOMPARE((QStringList{h->code->text(), h->place->text()}), (QStringList{code, place}));
        // An empty country is refused with a notice; nothing else is ever asked.
        QCOMPARE(boxes.texts(),
                 country.isEmpty() ? QStringList{uzenetszoveg("nincsorsz")} : QStringList());
        QCOMPARE(h->list->isVisible(), !offered.isEmpty());
        if (offered.isEmpty())
            return;
        // The list opens with the first place selected; a click on the last one puts it in.
        QCOMPARE(h->list->count(), offered.size());
        QCOMPARE(h->list->item(0)->text(), offered.first());
        QCOMPARE(h->list->currentRow(), 0);
        QTest::mouseClick(h->list->viewport(), Qt::LeftButton, {},
                          h->list->visualItemRect(h->list->item(offered.size() - 1)).center());
        QCOMPARE(h->place->text(), offered.last());
    }
    void onlyAChangedCodeIsLookedUp()
    {
        h->country->setEditText(hu);
        testsupport::leave(h->code, "6720");
        QCOMPARE(h->place->text(), QString("Szeged"));
        // The user corrects the place; passing through the unchanged code keeps it.
        h->place->setText("Szeged-Tápé");
        testsupport::leave(h->code);
        QCOMPARE(h->place->text(), QString("Szeged-Tápé"));
        // A screen that shows another record writes the code: the first visit looks it up.
        h->code->setText("2094");
        h->place->setText("Nagykovácsi");
        h->code->setText("6720");
        testsupport::leave(h->code);
        QCOMPARE(h->place->text(), QString("Szeged"));
        QVERIFY(!h->block->irszvaltozott());
    }
};

QTEST_MAIN(tst_addressblock)
#include "tst_addressblock.moc"
