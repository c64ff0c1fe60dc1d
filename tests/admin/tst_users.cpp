// The users editor: the rights string its check boxes make, the last user, whose password may be
// changed, and login names that must stay apart.
#include "TestSupport.h"

#include "admin/users.h"
#include "locale/Uzenet.h"
#include "session/Session.h"

#include <memory>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

class tst_users : public QObject
{
    Q_OBJECT
    std::unique_ptr<testsupport::TestFolder> m_folder;
    std::unique_ptr<admin::users> m_screen;

    QLineEdit* field(const char* name) { return m_screen->findChild<QLineEdit*>(name); }
    QCheckBox* right(int n) { return m_screen->findChild<QCheckBox*>(QString("jog%1").arg(n)); }
    void press(const char* name) { m_screen->findChild<QPushButton*>(name)->click(); }
    void choose(const QString& name)
    {
        auto* list = m_screen->findChild<QListWidget*>("adatlst");
        const auto found = list->findItems(name, Qt::MatchExactly);
        QVERIFY2(found.size() == 1, qPrintable(name));
        list->setCurrentItem(found.first());
        QCOMPARE(field("felhnev")->text(), name);
    }
    QVariant stored(const char* column, const QString& login)
    {
        return m_folder->db().scalar(
                QString("SELECT %1 FROM felhasznalo WHERE loginnev = ?").arg(QLatin1String(column)),
                {login});
    }
    int userCount() { return m_folder->db().scalar("SELECT count(*) FROM felhasznalo").toInt(); }

private slots:
    void init()
    {
        m_folder = std::make_unique<testsupport::TestFolder>(true);
        QVERIFY(m_folder->open());
        m_screen = std::make_unique<admin::users>(m_folder->db());
        m_screen->show();
    }
    void cleanup()
    {
        m_screen.reset();
        m_folder.reset();
    }

    // Twelve boxes make positions 1 to 12; 13 to 20 are always granted. The logged-in user's
    // own rights change at his next login, not now.
    void rightsStringFromTheBoxes()
    {
        Session& session = Session::instance();
        session.userName = "John Smith";
        session.rights = stored("felhjog", "SMITH").toString();
        const QString rightsNow = session.rights;
        choose("John Smith");
        press("g2");
        for (int n = 1; n <= 12; ++n)
            right(n)->setChecked(n == 3 || n == 12);
        press("g3");
        QCOMPARE(stored("felhjog", "SMITH").toString(), QString("00100000000111111111"));
        QCOMPARE(session.rights, rightsNow);

        choose("Anna Müller");
        choose("John Smith");
        for (int n = 1; n <= 12; ++n)
            QCOMPARE(right(n)->isChecked(), n == 3 || n == 12);
        QCOMPARE(m_screen->rightsString(), QString("00100000000111111111"));
    }

    // A user changes only his own password; anyone else's stays locked and unwritten.
    void passwordOfOneself_data()
    {
        QTest::addColumn<QString>("loggedIn");
        QTest::addColumn<bool>("open");
        QTest::newRow("oneself") << "Anna Müller" << true;
        QTest::newRow("another user") << "John Smith" << false;
        QTest::newRow("nobody logged in") << "" << false;
    }
    void passwordOfOneself()
    {
        QFETCH(QString, loggedIn);
        QFETCH(bool, open);
        Session::instance().userName = loggedIn;
        choose("Anna Müller");
        press("g2");
        QCOMPARE(field("jelszo")->isReadOnly(), !open);
        QVERIFY(!field("loginnev")->isReadOnly());
        // Another workstation sets her password meanwhile: only she may overwrite it.
        QVERIFY(m_folder->db().exec(
                "UPDATE felhasznalo SET jelszo = 'uj' WHERE loginnev = 'MUELLER'"));
        press("g3");
        QCOMPARE(stored("jelszo", "MUELLER").toString(), open ? QString("anna") : QString("uj"));
    }

    // The register always keeps one user: the question is asked, nothing is deleted.
    void lastUserIsNeverDeleted()
    {
        testsupport::MessageRecorder boxes;
        for (const char* name : {"Anna Müller", "John Smith", "Rendszergazda"}) {
            choose(name);
            boxes.answer(platform::AnswerYes);
            press("g4");
        }
        QCOMPARE(userCount(), 1);
        QCOMPARE(stored("felhnev", "ADMIN").toString(), QString("Rendszergazda"));
        QCOMPARE(boxes.texts(), (QStringList{uzenetszoveg("torol"), uzenetszoveg("torol"),
                                             uzenetszoveg("torol"), uzenetszoveg("utolsofelh")}));
        QCOMPARE(m_screen->findChild<QListWidget*>("adatlst")->count(), 1);
    }

    // A login name another user has, in any letter case, is refused and the entry kept; a new
    // name is stored in capitals.
    void duplicateLoginName_data()
    {
        QTest::addColumn<QString>("change"); // the user changed; empty for a new one
        QTest::addColumn<QString>("login");
        QTest::newRow("new user") << ""
                                  << "mueller";
        QTest::newRow("changed user") << "John Smith"
                                      << "Mueller";
    }
    void duplicateLoginName()
    {
        QFETCH(QString, change);
        QFETCH(QString, login);
        if (change.isEmpty()) {
            press("g1");
            field("felhnev")->setText("Kiss Péter");
            field("jelszo")->setText("titok");
        } else {
            choose(change);
            press("g2");
        }
        field("loginnev")->setText(login);
        const int users = userCount();
        testsupport::MessageRecorder boxes;
        press("g3");
        QCOMPARE(boxes.texts(), QStringList{uzenetszoveg("loginfoglalt")});
        QCOMPARE(userCount(), users);
        QCOMPARE(stored("felhnev", "MUELLER").toString(), QString("Anna Müller"));
        QVERIFY(m_screen->findChild<QPushButton*>("g3")->isEnabled());
        QCOMPARE(field("loginnev")->text(), login);

        field("loginnev")->setText("kiss");
        press("g3");
        QCOMPARE(boxes.texts().size(), 1);
        QVERIFY(!m_screen->findChild<QPushButton*>("g3")->isEnabled());
        if (change.isEmpty()) {
            QCOMPARE(stored("felhnev", "KISS").toString(), QString("Kiss Péter"));
            QCOMPARE(stored("felhjog", "KISS").toString(), QString(20, '1'));
            QCOMPARE(stored("felhnyelv", "KISS").toInt(), 1);
            QVERIFY(stored("alapugyv", "KISS").isNull());
        } else {
            QCOMPARE(stored("felhnev", "KISS").toString(), change);
        }
    }
};

QTEST_MAIN(tst_users)
#include "tst_users.moc"
