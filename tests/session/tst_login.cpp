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
    void nameLookedUpOnLeaving_data();
    void nameLookedUpOnLeaving();
    void loginAttempt_data();
    void loginAttempt();
    void loginNarrowsTheRights();
    void noRightsWhileTheScreenIsUp();

private:
    QLineEdit* field(const char* name) { return m_login->findChild<QLineEdit*>(name); }
    // The Enter look-up in login2 sees login1 as typed: the early check runs only when the
    // focus moves into login2.
    void attempt(const QString& name, const QString& password, bool byButton = false)
    {
        field("login1")->setText(name);
        QTest::keyClicks(field("login2"), password);
        if (byButton)
            QTest::mouseClick(m_login->findChild<QPushButton*>("g2"), Qt::LeftButton);
        else
            QTest::keyClick(field("login2"), Qt::Key_Return);
    }

    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<Alap> m_menu;
    std::unique_ptr<Login> m_login;
};

void tst_login::init()
{
    m_folder = std::make_unique<TestFolder>(true);
    QVERIFY(m_folder->open());
    QVERIFY(m_folder->db().exec(QStringLiteral(
            "INSERT INTO felhasznalo (felhnev, loginnev, jelszo, felhnyelv, felhjog, alapugyv) "
            "VALUES ('Kerry O''Brien', 'O''BRIEN', 'kerry', 3, '11111111111111111111', '')")));
    m_menu = std::make_unique<Alap>();
    QVERIFY(m_menu->load());
    m_menu->show();
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

void tst_login::nameLookedUpOnLeaving_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("leaves"); // whether the focus ends in login2
    QTest::addColumn<QString>("shown"); // in login1 afterwards
    QTest::addColumn<QString>("message");
    QTest::newRow("lower case") << QStringLiteral("mueller") << true << "MUELLER" << QString();
    QTest::newRow("a quote") << QStringLiteral("o'brien") << true << "O'BRIEN" << QString();
    QTest::newRow("unknown") << QStringLiteral("nobody") << false << QString() << "nincs";
    QTest::newRow("injection") << QStringLiteral("x' OR '1'='1") << false << QString() << "nincs";
    QTest::newRow("one character") << QStringLiteral("m") << false << "m" << QString();
}

void tst_login::nameLookedUpOnLeaving()
{
    QFETCH(QString, typed);
    QFETCH(bool, leaves);
    QFETCH(QString, shown);
    QFETCH(QString, message);
    MessageRecorder recorder;
    QTest::keyClicks(field("login1"), typed);
    QTest::keyClick(field("login1"), Qt::Key_Return);
    QCOMPARE(QApplication::focusWidget() == field("login2"), leaves);
    field("login2")->setFocus(); // as a click into it does
    QCOMPARE(recorder.texts(),
             message.isEmpty() ? QStringList() : QStringList{uzenetszoveg(message)});
    QCOMPARE(field("login1")->text(), shown);
}

// Empty panel and message: nothing happens. A message: the attempt failed.
void tst_login::loginAttempt_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("byButton");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("panel");
    QTest::addColumn<QString>("g3");
    auto row = [](const char* tag, const QString& name, const QString& password, bool byButton,
                  const QString& message, const QString& panel = {}, const QString& g3 = {}) {
        QTest::newRow(tag) << name << password << byButton << message << panel << g3;
    };
    row("German, Enter", "mueller", "anna", false, {}, "Benutzer :  Anna Müller", "Mandanten");
    row("English, OK button", "Smith", "john", true, {}, "USER :  John Smith", "Clients");
    row("a name with a quote", "o'brien", "kerry", false, {}, "USER :  Kerry O'Brien", "Clients");
    row("wrong password", "mueller", "anne", false, "rjelszo");
    row("password in other case", "mueller", "ANNA", true, "rjelszo");
    row("one-character name", "m", "anna", false, "nincs");
    row("injection attempt", "x' OR '1'='1", "x' OR '1'='1", false, "nincs");
    row("quote ends the name", "ADMIN'", "admin", false, "nincs");
    row("empty password, Enter", "admin", {}, false, {});
    row("empty password, OK button", "admin", {}, true, {});
}

void tst_login::loginAttempt()
{
    QFETCH(QString, name);
    QFETCH(QString, password);
    QFETCH(bool, byButton);
    QFETCH(QString, message);
    QFETCH(QString, panel);
    QFETCH(QString, g3);
    Session& s = Session::instance();
    // The screen withdrew every right; a wrong password withdraws even rights set since.
    if (message == QLatin1String("rjelszo"))
        s.rights = QString(20, u'1');
    MessageRecorder recorder;
    attempt(name, password, byButton);
    if (panel.isEmpty()) {
        QCOMPARE(recorder.texts(),
                 message.isEmpty() ? QStringList() : QStringList{uzenetszoveg(message)});
        QCOMPARE(s.rights, QStringLiteral("0000000000"));
        QVERIFY(s.userName.isEmpty());
        QVERIFY(m_login->isVisible());
        return;
    }
    QVERIFY(recorder.shown().isEmpty());
    QVERIFY(!m_login->isVisible());
    QVERIFY(m_menu->isVisible());
    const platform::Row user = m_folder->db().first(
            QStringLiteral("SELECT * FROM felhasznalo WHERE loginnev = ?"), {name.toUpper()});
    QCOMPARE(s.userName, user.text("felhnev"));
    QCOMPARE(s.rights, user.text("felhjog"));
    QCOMPARE(s.language, qint16(user.value("felhnyelv").toInt()));
    QCOMPARE(s.defaultLawyer, user.text("alapugyv"));
    QCOMPARE(m_menu->panelText(1), panel);
    QCOMPARE(m_menu->findChild<QPushButton*>("g3")->text(), g3);
}

// Smith may not open the lists (position 3), which every session could before the login.
void tst_login::loginNarrowsTheRights()
{
    attempt(QStringLiteral("smith"), QStringLiteral("john"));
    int opened = 0;
    Session::instance().screens.showLookupList = [&opened](const QString&) { ++opened; };
    MessageRecorder recorder;
    QTest::mouseClick(m_menu->findChild<QPushButton*>("g5"), Qt::LeftButton);
    QCOMPARE(opened, 0);
    QCOMPARE(recorder.texts(),
             QStringList{QStringLiteral("You have no permission for this command.")});
}

// The menu's g1 shows the screen modally; nothing is allowed while it is up, nor after Cancel.
void tst_login::noRightsWhileTheScreenIsUp()
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
