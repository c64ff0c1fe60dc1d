// The parameters screen: what closing stores, and the default language stored when chosen.
#include "TestSupport.h"

#include "admin/param.h"
#include "session/Session.h"

#include <memory>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

class tst_param : public QObject
{
    Q_OBJECT
    std::unique_ptr<testsupport::TestFolder> m_folder;
    std::unique_ptr<admin::param> m_screen;

    template<typename T = QLineEdit>
    T* field(const char* name)
    {
        return m_screen->findChild<T*>(name);
    }
    platform::Row stored() { return m_folder->db().first("SELECT * FROM parameterek"); }

private slots:
    void init()
    {
        m_folder = std::make_unique<testsupport::TestFolder>();
        QVERIFY(m_folder->open());
        m_screen = std::make_unique<admin::param>(m_folder->db());
        m_screen->show();
    }
    void cleanup()
    {
        m_screen.reset();
        m_folder.reset();
    }

    // Closing stores the modem settings and the login flag, by Bezár or by the close box; an
    // empty port is the first port, an empty prefix one blank. The current run keeps its rights.
    void closingStores_data()
    {
        QTest::addColumn<bool>("closeBox");
        QTest::newRow("Bezár") << false;
        QTest::newRow("close box") << true;
    }
    void closingStores()
    {
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
        const platform::Row row = stored();
        QCOMPARE(row.text("modemport"), QString("1"));
        QCOMPARE(row.text("elotag"), QString(" "));
        QCOMPARE(row.value("tonepulse").toInt(), 0);
        QCOMPARE(row.value("kelllogon").toInt(), -1);
        QCOMPARE(Session::instance().rights, rights);
    }

    // The language is stored when it is chosen; while nobody is logged in the open screens
    // speak it at once, a logged-in user keeps his own.
    void languageStoredWhenChosen_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<int>("language"); // the session's afterwards
        QTest::newRow("nobody logged in") << "" << 3;
        QTest::newRow("a user logged in") << "Rendszergazda" << 1;
    }
    void languageStoredWhenChosen()
    {
        QFETCH(QString, user);
        QFETCH(int, language);
        Session::instance().userName = user;
        auto* box = field<QComboBox>("nyelve");
        QCOMPARE(box->currentText(), QString("Magyar"));
        box->setCurrentIndex(box->findText("English"));
        emit box->activated(box->currentIndex());
        QCOMPARE(stored().value("alapnyelv").toInt(), 3);
        QCOMPARE(field("alapnyelv")->text(), QString("3"));
        QCOMPARE(Session::instance().language, language);
        QCOMPARE(field<QLabel>("sz2")->text(),
                 language == 3 ? QString("Default language") : QString("Alapnyelv"));
    }
};

QTEST_MAIN(tst_param)
#include "tst_param.moc"
