#include "TestSupport.h"

#include "clients/Install.h"
#include "clients/Ugyfelek.h"
#include "locale/Uzenet.h"
#include "session/Session.h"

#include <memory>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using clients::Ugyfelek;

namespace {

const QString allClients = "select * from ugyfelek order by unev1 COLLATE HU";

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

} // namespace

class tst_ugyfelek : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void showsTheChosenClient_data();
    void showsTheChosenClient();
    void newClientIsStored_data();
    void newClientIsStored();
    void changeStoresAnEmptyCountry();
    void deleteOnlyAClientWithoutCases_data();
    void deleteOnlyAClientWithoutCases();
    void clientOutsideTheFilteredListIsTheOneChanged();
    void closing_data();
    void closing();
    void refusedWithoutTheRight_data();
    void refusedWithoutTheRight();
    void activatingKeepsEachCountryOnce();
    void newClientForTheCaseScreen();
    void addressAndCommunicationButtons();

private:
    Ugyfelek* screen() const;
    void open(bool newClient, const QString& key = QString(), const QString& query = allClients,
              const QVariantList& params = {});
    QLineEdit* field(const char* name) const { return screen()->findChild<QLineEdit*>(name); }
    QComboBox* orszag() const { return screen()->findChild<QComboBox*>("orszag"); }
    QAbstractButton* button(const char* name) const
    {
        return screen()->findChild<QAbstractButton*>(name);
    }
    void click(const char* name)
    {
        // Option buttons take clicks on their mark and caption, which sit at the left.
        QAbstractButton* b = button(name);
        QTest::mouseClick(b, Qt::LeftButton, {}, QPoint(6, b->height() / 2));
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

Ugyfelek* tst_ugyfelek::screen() const
{
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* s = qobject_cast<Ugyfelek*>(w); s && !s->isUnloading())
            return s;
    return nullptr;
}

// The search screen's hand-off: a chosen row, or its new-record command.
void tst_ugyfelek::open(bool newClient, const QString& key, const QString& query,
                        const QVariantList& params)
{
    const ListChoice choice{key, query, params, m_search.get()};
    if (newClient)
        Session::instance().screens.newClient(choice);
    else
        Session::instance().screens.showClient(choice);
    QVERIFY(screen());
    screen()->Activate();
}

void tst_ugyfelek::showsTheChosenClient_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("nev1");
    QTest::addColumn<QString>("country");
    QTest::addColumn<bool>("company");

    QTest::newRow("private person") << "3" << allClients << "Ábel Ferenc"
                                    << "Magyarország" << false;
    QTest::newRow("company") << "16" << allClients << "Huber GmbH"
                             << "Ausztria" << true;
    QTest::newRow("not in the filtered list") << "17"
                                              << "select * from ugyfelek where unev1 = 'Huber GmbH'"
                                              << "Gruber Johann"
                                              << "Ausztria" << false;
}

void tst_ugyfelek::showsTheChosenClient()
{
    QFETCH(QString, key);
    QFETCH(QString, query);
    QFETCH(QString, nev1);
    QFETCH(QString, country);
    QFETCH(bool, company);

    open(false, key, query);
    QCOMPARE(screen()->objectName(), QString("Ugyfelek"));
    QCOMPARE(field("ukod")->text(), key);
    QCOMPARE(field("nev1")->text(), nev1);
    QCOMPARE(orszag()->currentText(), country);
    QCOMPARE(button("g1")->isChecked(), company);
    QCOMPARE(button("g2")->isChecked(), !company);
    // Shown only: locked, with save off.
    QVERIFY(field("nev1")->isReadOnly() && orszag()->lineEdit()->isReadOnly());
    QVERIFY(!button("g5")->isEnabled() && button("g4")->isEnabled());
}

void tst_ugyfelek::newClientIsStored_data()
{
    QTest::addColumn<QString>("country");
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("storedCountry");
    QTest::addColumn<QVariant>("storedOption");

    QTest::newRow("empty country, private") << ""
                                            << "g2"
                                            << "Magyarország" << QVariant(0);
    QTest::newRow("country kept, company") << "Ausztria"
                                           << "g1"
                                           << "Ausztria" << QVariant(-1);
    QTest::newRow("neither option chosen") << "Ausztria"
                                           << ""
                                           << "Ausztria" << QVariant();
}

void tst_ugyfelek::newClientIsStored()
{
    QFETCH(QString, country);
    QFETCH(QString, option);
    QFETCH(QString, storedCountry);
    QFETCH(QVariant, storedOption);

    open(true);
    QCOMPARE(field("hivo")->text(), QString("1"));
    QVERIFY(!button("g1")->isChecked() && !button("g2")->isChecked());
    QVERIFY(button("g5")->isEnabled() && !button("g3")->isEnabled());

    type(field("nev1"), "Új Ügyfél Kft.");
    QTest::keyClicks(field("tel1"), "+36 1 234 5678");
    orszag()->setEditText(country);
    if (!option.isEmpty())
        click(option.toLatin1());
    click("g5");

    const QString key = field("ukod")->text();
    const platform::Row row = stored(key);
    QCOMPARE(row.text("unev1"), QString("Új Ügyfél Kft."));
    QCOMPARE(row.text("utel1"), QString("+36 1 234 5678"));
    QCOMPARE(row.text("uorszag"), storedCountry);
    QCOMPARE(orszag()->currentText(), storedCountry);
    QCOMPARE(row.isNull("ucegprivat") ? QVariant() : QVariant(row.value("ucegprivat").toInt()),
             storedOption);
    QVERIFY(!button("g5")->isEnabled() && button("g4")->isEnabled());

    // Shown again, a client with no option shows as a private person.
    open(false, key);
    QCOMPARE(button("g1")->isChecked(), storedOption == QVariant(-1));
    QCOMPARE(button("g2")->isChecked(), storedOption != QVariant(-1));
}

void tst_ugyfelek::changeStoresAnEmptyCountry()
{
    const QStringList others = otherClients("3");
    open(false, "3");
    click("g4");
    QCOMPARE(field("hivo")->text(), QString("2"));
    QVERIFY(button("g5")->isEnabled() && !button("g6")->isEnabled());
    orszag()->setEditText(QString());
    type(field("nev2"), "ügyvezető");
    click("g5");

    QCOMPARE(stored("3").text("uorszag"), QString());
    QCOMPARE(stored("3").text("unev2"), QString("ügyvezető"));
    QCOMPARE(otherClients("3"), others);
}

void tst_ugyfelek::deleteOnlyAClientWithoutCases_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<bool>("deleted");

    QTest::newRow("with a case") << "3" << int(platform::AnswerYes)
                                 << QStringList{"torol", "nemtorol"} << false;
    QTest::newRow("without cases")
            << "15" << int(platform::AnswerYes) << QStringList{"torol"} << true;
    QTest::newRow("not confirmed")
            << "15" << int(platform::AnswerNo) << QStringList{"torol"} << false;
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

    QStringList expected;
    for (const QString& code : messages)
        expected << uzenetszoveg(code);
    QCOMPARE(boxes.texts(), expected);
    QCOMPARE(boxes.shown().first().style, int(platform::Confirmation));
    QCOMPARE(stored(key).isEmpty(), deleted);
    QCOMPARE(otherClients(key), others);
    // A deleted client leaves the fields empty and its key shown.
    QCOMPARE(field("nev1")->text().isEmpty(), deleted);
    QCOMPARE(orszag()->currentText().isEmpty(), deleted);
    QCOMPARE(button("g2")->isChecked(), !deleted);
    QCOMPARE(field("ukod")->text(), key);
}

void tst_ugyfelek::clientOutsideTheFilteredListIsTheOneChanged()
{
    // The search list shows one client only; the new client is not in it.
    open(true, QString(), "select * from ugyfelek where unev1 = ?", {"Ábel Ferenc"});
    type(field("nev1"), "Zárt Lista Kft.");
    click("g5");
    const QString key = field("ukod")->text();
    const QStringList others = otherClients(key);

    click("g4");
    type(field("nev2"), "második sor");
    click("g5");
    QCOMPARE(stored(key).text("unev1"), QString("Zárt Lista Kft."));
    QCOMPARE(stored(key).text("unev2"), QString("második sor"));

    testsupport::MessageRecorder boxes;
    boxes.answer(platform::AnswerYes);
    click("g6");
    QVERIFY(stored(key).isEmpty());
    QCOMPARE(otherClients(key), others);
}

void tst_ugyfelek::closing_data()
{
    QTest::addColumn<bool>("saveFirst");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("asked");
    QTest::addColumn<bool>("closes");

    QTest::newRow("after saving nothing is asked") << true << 0 << QStringList() << true;
    QTest::newRow("entry, yes closes without saving")
            << false << int(platform::AnswerYes) << QStringList{"ments"} << true;
    QTest::newRow("entry, no keeps it")
            << false << int(platform::AnswerNo) << QStringList{"ments"} << false;
}

void tst_ugyfelek::closing()
{
    QFETCH(bool, saveFirst);
    QFETCH(int, answer);
    QFETCH(QStringList, asked);
    QFETCH(bool, closes);

    const int before = clientCount();
    open(true);
    type(field("nev1"), "Mentett");
    if (saveFirst)
        click("g5");
    // The fields still take typing after a save, but it is not saved.
    QVERIFY(!field("nev1")->isReadOnly());
    type(field("nev1"), " elveszik");

    testsupport::MessageRecorder boxes;
    boxes.answer(answer);
    click("g7");
    QStringList expected;
    for (const QString& code : asked)
        expected << uzenetszoveg(code);
    QCOMPARE(boxes.texts(), expected);
    QCOMPARE(!screen(), closes);
    QCOMPARE(m_search->isVisible(), closes);
    QCOMPARE(clientCount(), before + (saveFirst ? 1 : 0));
    if (saveFirst)
        QCOMPARE(Session::instance().database.scalar("select unev1 from ugyfelek where ukod = "
                                                     "(select max(ukod) from ugyfelek)"),
                 QVariant("Mentett"));
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
    QCOMPARE(boxes.texts(), QStringList{uzenetszoveg("nincsjog")});
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
    QCOMPARE(screen()->findChild<QLabel*>("sz4")->text(), QString("Country"));
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
    QCOMPARE(field("hivo")->text(), QString("3"));
    QCOMPARE(field("nev1")->text(), QString("Szabó Kft."));
    QCOMPARE(button("g5")->text(), QString("Ment és Vissza"));
    QVERIFY(button("g3")->isHidden() && button("g4")->isHidden() && button("g6")->isHidden());

    click("g5");
    QCOMPARE(handed.size(), 2);
    QCOMPARE(handed.at(1), QString("Szabó Kft."));
    QCOMPARE(stored(handed.at(0)).text("unev1"), QString("Szabó Kft."));
    // Only hidden: it keeps its mode and caption, and is used again.
    QCOMPARE(screen(), s);
    QCOMPARE(button("g5")->text(), QString("Ment és Vissza"));
    QCOMPARE(clients::newClientForCase(&caseScreen, "Nem Mentett", {}), s);

    // Closing without saving returns to the case screen with nothing stored.
    caseScreen.hide();
    const int before = clientCount();
    testsupport::MessageRecorder boxes;
    boxes.answer(platform::AnswerYes);
    click("g7");
    QCOMPARE(boxes.texts(), QStringList{uzenetszoveg("ments")});
    QVERIFY(!screen());
    QVERIFY(caseScreen.isVisible() && !m_search->isVisible());
    QCOMPARE(clientCount(), before);
}

void tst_ugyfelek::addressAndCommunicationButtons()
{
    open(false, "3");
    screen()->show();
    QVERIFY(QTest::qWaitForWindowActive(screen()));
    click("g4");
    // Showing the client wrote the code, so the first visit looks it up.
    field("irsz")->setFocus();
    field("irsz")->selectAll();
    QTest::keyClicks(field("irsz"), "6720");
    QTest::keyClick(field("irsz"), Qt::Key_Tab);
    QCOMPARE(field("hely")->text(), QString("Szeged"));

    // A stand-in mail handler receives the field's address.
    QTemporaryDir bin;
    const QString received = bin.filePath("received.txt");
    testsupport::writeFile(bin.filePath("xdg-open"),
                           "#!/bin/sh\nprintf '%s' \"$1\" > '" + received.toUtf8() + "'\n");
    QFile::setPermissions(bin.filePath("xdg-open"), QFile::ReadOwner | QFile::ExeOwner);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(bin.path()) + ":" + path);
    field("email")->setText("abel ferenc@pelda.hu");
    click("em1");
    QTRY_COMPARE(testsupport::readFile(received), QByteArray("mailto:abel ferenc@pelda.hu"));
    qputenv("PATH", path);

    // The dialer is reached: without a modem it only writes the log.
    QVERIFY(m_folder->db().exec("update parameterek set modemport = '/dev/causora-no-modem'"));
    testsupport::MessageRecorder boxes;
    click("Tg2");
    QVERIFY(boxes.shown().isEmpty());
    QVERIFY(testsupport::readFile(m_folder->programFolder() + "/hiba.txt").contains("Telhivo"));
}

QTEST_MAIN(tst_ugyfelek)
#include "tst_ugyfelek.moc"
