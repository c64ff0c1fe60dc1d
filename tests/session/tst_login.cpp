#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "session/Alap.h"
#include "session/Login.h"
#include "session/Session.h"

#include <memory>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using testsupport::MessageRecorder;
using testsupport::TestFolder;

class tst_login : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void openingWithdrawsEveryRight();
    void nameFoundWhateverItsCase_data();
    void nameFoundWhateverItsCase();
    void unknownNameIsCaughtEarly();
    void oneCharacterNameIsLookedUpOnlyOnEnter();
    void emptyPasswordDoesNothing();
    void successfulLogin_data();
    void successfulLogin();
    void wrongPassword_data();
    void wrongPassword();
    void quoteInTheName_data();
    void quoteInTheName();
    void loginNarrowsTheRights();
    void cancelLeavesNoRights();
    void menuOpensTheLoginScreen();

private:
    QLineEdit* field(const char* name) { return m_login->findChild<QLineEdit*>(name); }
    void type(const char* name, const QString& text);
    void enter(const char* name) { QTest::keyClick(field(name), Qt::Key_Return); }

    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<Alap> m_menu;
    std::unique_ptr<Login> m_login;
};

void tst_login::init()
{
    m_folder = std::make_unique<TestFolder>(true);
    testsupport::writeFile(m_folder->programFolder() + QStringLiteral("/jog.ini"),
                           QStringLiteral("\"path=%1\"\r\n").arg(m_folder->dataFolder()).toUtf8());
    m_menu = std::make_unique<Alap>();
    QVERIFY(m_menu->load());
    m_menu->show();
    m_menu->setPanelText(1, QStringLiteral("earlier"));
    m_login = std::make_unique<Login>(m_menu.get(), m_menu.get());
    m_login->show();
    m_login->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_login.get()));
}

void tst_login::cleanup()
{
    m_login.reset();
    m_menu.reset();
    m_folder.reset();
}

void tst_login::type(const char* name, const QString& text)
{
    field(name)->setFocus();
    QTest::keyClicks(field(name), text);
}

void tst_login::openingWithdrawsEveryRight()
{
    QCOMPARE(m_login->objectName(), QStringLiteral("Login"));
    QCOMPARE(Session::instance().rights, QStringLiteral("0000000000"));
    QVERIFY(Session::instance().userName.isEmpty());
    QCOMPARE(m_menu->panelText(1), QString());
    QCOMPARE(QApplication::focusWidget(), field("login1"));
}

void tst_login::nameFoundWhateverItsCase_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("lower case") << QStringLiteral("mueller");
    QTest::newRow("mixed case") << QStringLiteral("Mueller");
    QTest::newRow("as stored") << QStringLiteral("MUELLER");
}

void tst_login::nameFoundWhateverItsCase()
{
    QFETCH(QString, typed);
    MessageRecorder recorder;
    type("login1", typed);
    enter("login1");
    QCOMPARE(QApplication::focusWidget(), field("login2"));
    QCOMPARE(field("login1")->text(), QStringLiteral("MUELLER"));
    QVERIFY(recorder.shown().isEmpty());
}

void tst_login::unknownNameIsCaughtEarly()
{
    MessageRecorder recorder;
    type("login1", QStringLiteral("nobody"));
    enter("login1");
    QCOMPARE(recorder.texts(), QStringList{uzenetszoveg(QStringLiteral("nincs"))});
    QCOMPARE(field("login1")->text(), QString());
    QCOMPARE(QApplication::focusWidget(), field("login1"));
}

void tst_login::oneCharacterNameIsLookedUpOnlyOnEnter()
{
    MessageRecorder recorder;
    type("login1", QStringLiteral("m"));
    enter("login1");
    QCOMPARE(QApplication::focusWidget(), field("login1"));
    field("login2")->setFocus();
    QCOMPARE(QApplication::focusWidget(), field("login2"));
    QVERIFY(recorder.shown().isEmpty());
    QCOMPARE(field("login1")->text(), QStringLiteral("m"));

    QTest::keyClicks(field("login2"), QStringLiteral("anna"));
    enter("login2");
    QCOMPARE(recorder.texts(), QStringList{uzenetszoveg(QStringLiteral("nincs"))});
    QCOMPARE(field("login1")->text(), QString());
    QCOMPARE(Session::instance().rights, QStringLiteral("0000000000"));
}

void tst_login::emptyPasswordDoesNothing()
{
    MessageRecorder recorder;
    type("login1", QStringLiteral("admin"));
    enter("login1");
    enter("login2");
    QTest::mouseClick(m_login->findChild<QPushButton*>("g2"), Qt::LeftButton);
    QVERIFY(recorder.shown().isEmpty());
    QVERIFY(m_login->isVisible());
    QCOMPARE(Session::instance().rights, QStringLiteral("0000000000"));
}

void tst_login::successfulLogin_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("byButton");
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("panel");
    QTest::addColumn<QString>("g3");
    QTest::newRow("Hungarian, Enter")
            << "admin"
            << "admin" << false << 1 << QStringLiteral("Felhasználó :  Rendszergazda")
            << QStringLiteral("Ügyfelek");
    QTest::newRow("German, Enter")
            << "mueller"
            << "anna" << false << 2 << QStringLiteral("Benutzer :  Anna Müller")
            << QStringLiteral("Mandanten");
    QTest::newRow("English, OK button")
            << "Smith"
            << "john" << true << 3 << QStringLiteral("USER :  John Smith")
            << QStringLiteral("Clients");
}

void tst_login::successfulLogin()
{
    QFETCH(QString, name);
    QFETCH(QString, password);
    QFETCH(bool, byButton);
    QFETCH(int, language);
    QFETCH(QString, panel);
    QFETCH(QString, g3);
    MessageRecorder recorder;
    type("login1", name);
    enter("login1");
    QTest::keyClicks(field("login2"), password);
    if (byButton)
        QTest::mouseClick(m_login->findChild<QPushButton*>("g2"), Qt::LeftButton);
    else
        enter("login2");

    QVERIFY(recorder.shown().isEmpty());
    QVERIFY(!m_login->isVisible());
    QCOMPARE(m_login->result(), int(QDialog::Accepted));
    QVERIFY(m_menu->isVisible());
    const platform::Row user = m_folder->db().first(
            QStringLiteral("SELECT * FROM felhasznalo WHERE loginnev = ?"), {name.toUpper()});
    const Session& s = Session::instance();
    QCOMPARE(s.userName, user.text("felhnev"));
    QCOMPARE(s.rights, user.text("felhjog"));
    QCOMPARE(int(s.language), language);
    QCOMPARE(s.defaultLawyer, user.text("alapugyv"));
    QCOMPARE(m_menu->panelText(1), panel);
    QCOMPARE(m_menu->findChild<QPushButton*>("g3")->text(), g3);
    QCOMPARE(m_menu->findChild<QPushButton*>("g11")->text(), QStringLiteral("Partnerek"));
}

void tst_login::wrongPassword_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("storedAsNull");
    QTest::newRow("other text") << "anne" << false;
    QTest::newRow("letter case differs") << "ANNA" << false;
    QTest::newRow("longer") << "anna " << false;
    QTest::newRow("user without a password") << "anna" << true;
}

void tst_login::wrongPassword()
{
    QFETCH(QString, password);
    QFETCH(bool, storedAsNull);
    if (storedAsNull)
        QVERIFY(m_folder->db().exec(
                QStringLiteral("UPDATE felhasznalo SET jelszo = NULL WHERE loginnev = 'MUELLER'")));
    MessageRecorder recorder;
    type("login1", QStringLiteral("mueller"));
    enter("login1");
    // Even a session that had every right loses them all.
    Session::instance().rights = QString(20, u'1');
    QTest::keyClicks(field("login2"), password);
    enter("login2");
    QCOMPARE(recorder.texts(), QStringList{uzenetszoveg(QStringLiteral("rjelszo"))});
    QCOMPARE(Session::instance().rights, QStringLiteral("0000000000"));
    QVERIFY(Session::instance().userName.isEmpty());
    QCOMPARE(field("login2")->text(), QString());
    QCOMPARE(field("login1")->text(), QStringLiteral("MUELLER"));
    QVERIFY(m_login->isVisible());
    QCOMPARE(m_menu->panelText(1), QString());
}

void tst_login::quoteInTheName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("loggedIn");
    QTest::newRow("injection attempt") << "x' OR '1'='1"
                                       << "x' OR '1'='1" << QString();
    QTest::newRow("quote ends the name") << "ADMIN'"
                                         << "admin" << QString();
    QTest::newRow("a name with a quote") << "o'brien"
                                         << "kerry" << QStringLiteral("Kerry O'Brien");
}

void tst_login::quoteInTheName()
{
    QFETCH(QString, name);
    QFETCH(QString, password);
    QFETCH(QString, loggedIn);
    QVERIFY(m_folder->db().insert(QStringLiteral("felhasznalo"),
                                  {{"felhnev", QStringLiteral("Kerry O'Brien")},
                                   {"loginnev", QStringLiteral("O'BRIEN")},
                                   {"jelszo", QStringLiteral("kerry")},
                                   {"felhnyelv", 3},
                                   {"felhjog", QString(20, u'1')},
                                   {"alapugyv", QString()}}));
    MessageRecorder recorder;
    type("login1", name);
    field("login2")->setFocus();
    recorder.clear();
    field("login1")->setText(name);
    QTest::keyClicks(field("login2"), password);
    enter("login2");
    QCOMPARE(Session::instance().userName, loggedIn);
    if (loggedIn.isEmpty()) {
        QCOMPARE(recorder.texts(), QStringList{uzenetszoveg(QStringLiteral("nincs"))});
        QCOMPARE(Session::instance().rights, QStringLiteral("0000000000"));
    }
}

void tst_login::loginNarrowsTheRights()
{
    type("login1", QStringLiteral("smith"));
    enter("login1");
    QTest::keyClicks(field("login2"), QStringLiteral("john"));
    enter("login2");
    QCOMPARE(Session::instance().rights, QStringLiteral("11000000111111111111"));

    int opened = 0;
    Session::instance().screens.showSearch = [&opened](const QString&) { ++opened; };
    Session::instance().screens.showLookupList = [&opened](const QString&) { ++opened; };
    MessageRecorder recorder;
    QTest::mouseClick(m_menu->findChild<QPushButton*>("g5"), Qt::LeftButton);
    QCOMPARE(opened, 0);
    QCOMPARE(recorder.texts(),
             QStringList{QStringLiteral("You have no permission for this command.")});
    QTest::mouseClick(m_menu->findChild<QPushButton*>("g3"), Qt::LeftButton);
    QCOMPARE(opened, 1);
}

void tst_login::cancelLeavesNoRights()
{
    type("login1", QStringLiteral("admin"));
    QTest::mouseClick(m_login->findChild<QPushButton*>("g1"), Qt::LeftButton);
    QVERIFY(!m_login->isVisible());
    QVERIFY(m_menu->isVisible());
    QCOMPARE(Session::instance().rights, QStringLiteral("0000000000"));
    QVERIFY(Session::instance().userName.isEmpty());
}

// The menu's g1 shows the screen modally; nothing is allowed while it is up.
void tst_login::menuOpensTheLoginScreen()
{
    m_login.reset();
    Session::instance().rights = QString(20, u'1');
    QString shown;
    QString rightsMeanwhile;
    QTimer::singleShot(0, [&] {
        QWidget* w = QApplication::activeModalWidget();
        QVERIFY(w);
        shown = w->objectName();
        rightsMeanwhile = Session::instance().rights;
        QTest::mouseClick(w->findChild<QPushButton*>("g1"), Qt::LeftButton);
    });
    QTest::mouseClick(m_menu->findChild<QPushButton*>("g1"), Qt::LeftButton);
    QCOMPARE(shown, QStringLiteral("Login"));
    QCOMPARE(rightsMeanwhile, QStringLiteral("0000000000"));
    QCOMPARE(Session::instance().rights, QStringLiteral("0000000000"));
}

QTEST_MAIN(tst_login)
#include "tst_login.moc"
