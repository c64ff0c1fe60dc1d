#include "TestSupport.h"

#include "clients/Install.h"
#include "clients/Ugyfelek.h"
#include "locale/Uzenet.h"
#include "session/Session.h"

#include <memory>
#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

using clients::Ugyfelek;

namespace {

// Types as a user would; characters beyond ASCII are sent one by one.
void type(QWidget* w, const QString& text)
{
    for (const QChar c : text)
        QTest::sendKeyEvent(QTest::Click, w, Qt::Key(c.toUpper().unicode()), QString(c), {});
}

// Every other client row as text, to see that no other client was touched.
QStringList otherClients(const QString& key)
{
    QStringList rows;
    for (const platform::Row& row : Session::instance().database.select(
                 "select * from ugyfelek where ukod <> ? order by ukod", {key.toLongLong()})) {
        QStringList values;
        for (int i = 0; i < row.count(); ++i)
            values << row.value(i).toString();
        rows << values.join(u'|');
    }
    return rows;
}

platform::Row stored(const QString& key)
{
    return Session::instance().database.first("select * from ugyfelek where ukod = ?",
                                              {key.toLongLong()});
}

int clientCount()
{
    return Session::instance().database.scalar("select count(*) from ugyfelek").toInt();
}

QStringList texts(const QStringList& codes)
{
    QStringList result;
    for (const QString& code : codes)
        result << uzenetszoveg(code);
    return result;
}

} // namespace

class tst_ugyfelek : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void newClientIsStored_data();
    void newClientIsStored();
    void clientOutsideTheFilteredListIsTheOneChanged();
    void deleteOnlyAClientWithoutCases_data();
    void deleteOnlyAClientWithoutCases();
    void closingWithAnEntryAsks_data();
    void closingWithAnEntryAsks();
    void refusedWithoutTheRight_data();
    void refusedWithoutTheRight();
    void activatingKeepsEachCountryOnce();
    void newClientForTheCaseScreen();

private:
    // The search screen's hand-off: a chosen row, or its new-record command.
    void open(bool newClient, const QString& key = QString(),
              const QString& query = "select * from ugyfelek order by unev1 COLLATE HU",
              const QVariantList& params = {})
    {
        const ListChoice choice{key, query, params, m_search.get()};
        if (newClient)
            Session::instance().screens.newClient(choice);
        else
            Session::instance().screens.showClient(choice);
        QVERIFY(screen());
        screen()->Activate();
    }
    static Ugyfelek* screen()
    {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* s = qobject_cast<Ugyfelek*>(w); s && !s->isUnloading())
                return s;
        return nullptr;
    }
    QLineEdit* field(const char* name) const { return screen()->findChild<QLineEdit*>(name); }
    QComboBox* orszag() const { return screen()->findChild<QComboBox*>("orszag"); }
    QAbstractButton* button(const char* name) const
    {
        return screen()->findChild<QAbstractButton*>(name);
    }
    // Option buttons take clicks on their mark and caption, which sit at the left.
    void click(const char* name)
    {
        QTest::mouseClick(button(name), Qt::LeftButton, {}, QPoint(6, button(name)->height() / 2));
    }

    std::unique_ptr<testsupport::TestFolder> m_folder;
    std::unique_ptr<QWidget> m_search;
};

void tst_ugyfelek::init()
{
    m_folder = std::make_unique<testsupport::TestFolder>(true);
    QVERIFY(m_folder->open());
    clients::install(Session::instance().screens);
    m_search = std::make_unique<QWidget>();
}

void tst_ugyfelek::cleanup()
{
    QList<QPointer<Ugyfelek>> screens;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* s = qobject_cast<Ugyfelek*>(w))
            screens << s;
    qDeleteAll(screens);
    m_search.reset();
    m_folder.reset();
}

void tst_ugyfelek::newClientIsStored_data()
{
    QTest::addColumn<QString>("country");
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("storedCountry");
    QTest::addColumn<QVariant>("storedOption");
    const auto row = [](const char* name, const QString& country, const QString& option,
                        const QString& storedCountry, const QVariant& storedOption) {
        QTest::newRow(name) << country << option << storedCountry << storedOption;
    };
    row("empty country, private", "", "g2", "Magyarország", 0);
    row("country kept, company", "Ausztria", "g1", "Ausztria", -1);
    row("neither option chosen", "Ausztria", "", "Ausztria", QVariant());
}

void tst_ugyfelek::newClientIsStored()
{
    QFETCH(QString, country);
    QFETCH(QString, option);
    QFETCH(QString, storedCountry);
    QFETCH(QVariant, storedOption);

    open(true);
    type(field("nev1"), "Új Ügyfél Kft.");
    orszag()->setEditText(country);
    if (!option.isEmpty())
        click(option.toLatin1());
    click("g5");

    const QString key = field("ukod")->text();
    const platform::Row row = stored(key);
    QCOMPARE(row.text("unev1"), QString("Új Ügyfél Kft."));
    QCOMPARE(row.text("uorszag"), storedCountry);
    QCOMPARE(orszag()->currentText(), storedCountry);
    QCOMPARE(row.isNull("ucegprivat") ? QVariant() : QVariant(row.value("ucegprivat").toInt()),
             storedOption);

    // The fields still take typing after the save, but closing asks nothing and saves nothing.
    QVERIFY(!field("nev1")->isReadOnly());
    type(field("nev1"), " elveszik");
    testsupport::MessageRecorder boxes;
    click("g7");
    QVERIFY(boxes.shown().isEmpty());
    QVERIFY(!screen() && m_search->isVisible());
    QCOMPARE(stored(key).text("unev1"), QString("Új Ügyfél Kft."));

    // Shown again, a client with no option shows as a private person.
    open(false, key);
    QCOMPARE(button("g1")->isChecked(), storedOption == QVariant(-1));
    QCOMPARE(button("g2")->isChecked(), storedOption != QVariant(-1));
}

void tst_ugyfelek::clientOutsideTheFilteredListIsTheOneChanged()
{
    // The search list shows one client only; the new client is not in it.
    open(true, QString(), "select * from ugyfelek where unev1 = ?", {"Ábel Ferenc"});
    type(field("nev1"), "Zárt Lista Kft.");
    click("g5");
    const QString key = field("ukod")->text();
    const QStringList others = otherClients(key);

    // A change to an empty country stores it empty.
    click("g4");
    type(field("nev2"), "második sor");
    orszag()->setEditText(QString());
    click("g5");
    QCOMPARE(stored(key).text("unev1"), QString("Zárt Lista Kft."));
    QCOMPARE(stored(key).text("unev2"), QString("második sor"));
    QCOMPARE(stored(key).text("uorszag"), QString());
    QCOMPARE(otherClients(key), others);

    testsupport::MessageRecorder boxes;
    boxes.answer(platform::AnswerYes);
    click("g6");
    QVERIFY(stored(key).isEmpty());
    QCOMPARE(otherClients(key), others);
}

void tst_ugyfelek::deleteOnlyAClientWithoutCases_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<bool>("deleted");
    const auto row
            = [](const char* name, const QString& key, int answer, const QStringList& messages,
                 bool deleted) { QTest::newRow(name) << key << answer << messages << deleted; };
    row("with a case", "3", platform::AnswerYes, {"torol", "nemtorol"}, false);
    row("without cases", "15", platform::AnswerYes, {"torol"}, true);
    row("not confirmed", "15", platform::AnswerNo, {"torol"}, false);
}

void tst_ugyfelek::deleteOnlyAClientWithoutCases()
{
    QFETCH(QString, key);
    QFETCH(int, answer);
    QFETCH(QStringList, messages);
    QFETCH(bool, deleted);

    const QStringList others = otherClients(key);
    open(false, key);
    testsupport::MessageRecorder boxes;
    boxes.answer(answer);
    click("g6");

    QCOMPARE(boxes.texts(), texts(messages));
    QCOMPARE(boxes.shown().first().style, int(platform::Confirmation));
    QCOMPARE(stored(key).isEmpty(), deleted);
    QCOMPARE(otherClients(key), others);
    // A deleted client leaves the fields empty and its key shown.
    QCOMPARE(field("nev1")->text().isEmpty(), deleted);
    QCOMPARE(orszag()->currentText().isEmpty(), deleted);
    QCOMPARE(button("g2")->isChecked(), !deleted);
    QCOMPARE(field("ukod")->text(), key);
}

void tst_ugyfelek::closingWithAnEntryAsks_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("closes");
    QTest::newRow("yes closes without saving") << int(platform::AnswerYes) << true;
    QTest::newRow("no keeps the entry") << int(platform::AnswerNo) << false;
}

void tst_ugyfelek::closingWithAnEntryAsks()
{
    QFETCH(int, answer);
    QFETCH(bool, closes);
    const int before = clientCount();
    open(true);
    type(field("nev1"), "Nem mentett");

    testsupport::MessageRecorder boxes;
    boxes.answer(answer);
    click("g7");
    QCOMPARE(boxes.texts(), texts({"ments"}));
    QCOMPARE(!screen(), closes);
    QCOMPARE(m_search->isVisible(), closes);
    QCOMPARE(clientCount(), before);
}

void tst_ugyfelek::refusedWithoutTheRight_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("position");
    QTest::newRow("new") << "g3" << 8;
    QTest::newRow("change") << "g4" << 10;
    QTest::newRow("delete") << "g6" << 9;
}

void tst_ugyfelek::refusedWithoutTheRight()
{
    QFETCH(QString, command);
    QFETCH(int, position);
    open(false, "15");
    Session::instance().rights = QString(20, u'1');
    Session::instance().rights[position - 1] = u'0';

    testsupport::MessageRecorder boxes;
    boxes.answer(platform::AnswerYes);
    click(command.toLatin1());
    QCOMPARE(boxes.texts(), texts({"nincsjog"}));
    QCOMPARE(field("nev1")->text(), QString("Farkas Mária"));
    QVERIFY(field("nev1")->isReadOnly() && !button("g5")->isEnabled());
    QVERIFY(!stored("15").isEmpty());
}

void tst_ugyfelek::activatingKeepsEachCountryOnce()
{
    open(false, "16");
    Session::instance().language = 3;
    for (int i = 0; i < 3; ++i)
        screen()->Activate();
    QCOMPARE(orszag()->count(),
             Session::instance().database.scalar("select count(*) from orszagok").toInt());
    QCOMPARE(orszag()->itemText(0), QString("Ausztria"));
    QCOMPARE(orszag()->currentText(), QString("Ausztria"));
}

void tst_ugyfelek::newClientForTheCaseScreen()
{
    // A stand-in for the case screen, which records the client it is handed.
    QWidget caseScreen;
    QStringList handed;
    Ugyfelek* s = clients::newClientForCase(&caseScreen, "Szabó Kft.",
                                            [&](const QString& key, const QString& name) {
                                                QVERIFY(caseScreen.isVisible());
                                                QVERIFY(!screen()->isVisible());
                                                handed << key << name;
                                            });
    s->Activate();
    QCOMPARE(field("nev1")->text(), QString("Szabó Kft."));
    QCOMPARE(button("g5")->text(), QString("Ment és Vissza"));
    QVERIFY(button("g3")->isHidden() && button("g4")->isHidden() && button("g6")->isHidden());

    click("g5");
    QCOMPARE(handed.size(), 2);
    QCOMPARE(handed.at(1), QString("Szabó Kft."));
    QCOMPARE(stored(handed.at(0)).text("unev1"), QString("Szabó Kft."));
    QCOMPARE(screen(), s); // only hidden
}

QTEST_MAIN(tst_ugyfelek)
#include "tst_ugyfelek.moc"
