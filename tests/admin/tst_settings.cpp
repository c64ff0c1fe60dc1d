// The users editor and the parameters screen.
#include "TestSupport.h"

#include "admin/param.h"
#include "admin/users.h"
#include "locale/Uzenet.h"
#include "session/Session.h"

#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>

using namespace testsupport;

class tst_settings : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<QDialog> m_screen;

    template<typename Screen>
    void show()
    {
        m_screen = std::make_unique<Screen>(m_folder->db());
        m_screen->show();
    }
    template<typename T = QLineEdit>
    T* field(const char* name)
    {
        return m_screen->findChild<T*>(name);
    }
    QCheckBox* right(int n) { return m_screen->findChild<QCheckBox*>(QString("jog%1").arg(n)); }
    void press(const char* name) { field<QPushButton>(name)->click(); }
    void choose(const QString& name)
    {
        auto* list = field<QListWidget>("adatlst");
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
        m_folder = std::make_unique<TestFolder>(true);
        QVERIFY(m_folder->open());
    }
    void cleanup()
    {
        m_screen.reset();
        m_folder.reset();
    }

    // Boxes 1 to 12 make those positions; 13 to 20 always granted; own rights change next login.
    void rightsStringFromTheBoxes()
    {
        show<admin::users>();
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
        QCOMPARE(static_cast<admin::users*>(m_screen.get())->rightsString(),
                 QString("00100000000111111111"));
    }

    // A user changes only his own password; anyone else's stays locked and unwritten.
    void passwordOfOneself_data()
    {
        QTest::addColumn<QString>("loggedIn");
        QTest::addColumn<bool>("open");
        QTest::newRow("oneself") << "Anna Müller" << true;
        QTest::newRow("another user") << "John Smith" << false;
    }
    void passwordOfOneself()
    {
        show<admin::users>();
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
        show<admin::users>();
        MessageRecorder boxes;
        for (const char* name : {"Anna Müller", "John Smith", "Rendszergazda"}) {
            choose(name);
            boxes.answer(platform::AnswerYes);
            press("g4");
        }
        QCOMPARE(values(m_folder->db(), "SELECT loginnev, felhnev FROM felhasznalo"),
                 (QStringList{"ADMIN", "Rendszergazda"}));
        QCOMPARE(boxes.texts(), messages({"torol", "torol", "torol", "utolsofelh"}));
        QCOMPARE(field<QListWidget>("adatlst")->count(), 1);
    }

    // A login name another user has, in any letter case, is refused and the entry kept.
    void duplicateLoginName_data()
    {
        QTest::addColumn<QString>("change"); // the user changed; empty for a new one
        QTest::addColumn<QString>("login");
        QTest::newRow("new user") << QString() << QString("mueller");
        QTest::newRow("changed user") << QString("John Smith") << QString("Mueller");
    }
    void duplicateLoginName()
    {
        show<admin::users>();
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
        MessageRecorder boxes;
        press("g3");
        QCOMPARE(boxes.texts(), messages({"loginfoglalt"}));
        QCOMPARE(userCount(), users);
        QCOMPARE(stored("felhnev", "MUELLER").toString(), QString("Anna Müller"));
        QVERIFY(field<QPushButton>("g3")->isEnabled());
        QCOMPARE(field("loginnev")->text(), login);

        field("loginnev")->setText("kiss");
        press("g3");
        QCOMPARE(boxes.texts().size(), 1);
        QVERIFY(!field<QPushButton>("g3")->isEnabled());
        if (change.isEmpty())
            QCOMPARE(values(m_folder->db(), "SELECT felhnev, felhjog, felhnyelv, alapugyv IS NULL"
                                            " FROM felhasznalo WHERE loginnev = 'KISS'"),
                     (QStringList{"Kiss Péter", QString(20, '1'), "1", "1"}));
        else
            QCOMPARE(stored("felhnev", "KISS").toString(), change);
    }

    // Closing (Bezár or close box) stores the modem settings and the login flag; an empty port is
    // the first port, an empty prefix one blank.
    void closingStores_data()
    {
        QTest::addColumn<bool>("closeBox");
        QTest::newRow("Bezár") << false;
        QTest::newRow("close box") << true;
    }
    void closingStores()
    {
        show<admin::param>();
        QFETCH(bool, closeBox);
        QCOMPARE(field<QRadioButton>("g1")->isChecked(), true);
        const QString rights = Session::instance().rights;
        field("modemport")->clear();
        field("elotag")->clear();
        field<QRadioButton>("g2")->setChecked(true);
        field<QCheckBox>("g3")->setChecked(true);
        if (closeBox)
            m_screen->close();
        else
            field<QPushButton>("g5")->click();
        QVERIFY(!m_screen->isVisible());
        QCOMPARE(values(m_folder->db(),
                        "SELECT modemport, elotag, tonepulse, kelllogon FROM parameterek"),
                 (QStringList{"1", " ", "0", "-1"}));
        QCOMPARE(Session::instance().rights, rights);
    }

    // While nobody is logged in the open screens speak the chosen language at once.
    void languageStoredWhenChosen_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<int>("language"); // the session's afterwards
        QTest::newRow("nobody logged in") << "" << 3;
        QTest::newRow("a user logged in") << "Rendszergazda" << 1;
    }
    void languageStoredWhenChosen()
    {
        show<admin::param>();
        QFETCH(QString, user);
        QFETCH(int, language);
        Session::instance().userName = user;
        auto* box = field<QComboBox>("nyelve");
        QCOMPARE(box->currentText(), QString("Magyar"));
        box->setCurrentIndex(box->findText("English"));
        emit box->activated(box->currentIndex());
        QCOMPARE(m_folder->db().scalar("SELECT alapnyelv FROM parameterek").toInt(), 3);
        QCOMPARE(field("alapnyelv")->text(), QString("3"));
        QCOMPARE(Session::instance().language, language);
        QCOMPARE(field<QLabel>("sz2")->text(),
                 language == 3 ? QString("Default language") : QString("Alapnyelv"));
    }
};

QTEST_MAIN(tst_settings)
#include "tst_settings.moc"
