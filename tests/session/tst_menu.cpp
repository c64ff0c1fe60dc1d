#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "locale/felir.h"
#include "platform/Display.h"
#include "session/Alap.h"
#include "session/Login.h"
#include "session/Session.h"

#include <memory>
#include <tuple>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>

// The main menu, and the login screen and caption editor it shows.
class tst_menu : public QObject
{
    Q_OBJECT
    std::unique_ptr<testsupport::TestFolder> m_folder;
    std::unique_ptr<Alap> m_menu;
    Login* m_login = nullptr; // owned by the menu
    QTableView* m_grid = nullptr; // the caption editor's

    QPushButton* button(const QString& name) { return m_menu->findChild<QPushButton*>(name); }
    QLineEdit* field(const char* name) { return m_login->findChild<QLineEdit*>(name); }
    static bool activate(QWidget* w)
    {
        w->show();
        w->activateWindow();
        return QTest::qWaitForWindowActive(w);
    }
    // The login screen over the shown menu, as the program starts it.
    bool openLogin()
    {
        m_menu->show();
        return activate(m_login = new Login(testsupport::database(), m_menu.get(), m_menu.get()));
    }
    // Shift+F5 on the menu opens the caption editor, which reads the table when it becomes active.
    bool openCaptionEditor()
    {
        installCaptionEditor(m_menu.get(), testsupport::database());
        if (!activate(m_menu.get()))
            return false;
        QTest::keyClick(button("g1"), Qt::Key_F5, Qt::ShiftModifier);
        if (!QTest::qWaitFor([] { return qobject_cast<felir*>(QApplication::activeWindow()); }))
            return false;
        m_grid = QApplication::activeWindow()->findChild<QTableView*>("DataGrid1");
        return m_grid;
    }
    QString stored(const QString& key, const QString& column)
    {
        const QString sql = QStringLiteral("SELECT [%1] FROM felirat WHERE felirkod = ?");
        return m_folder->db().scalar(sql.arg(column), {key}).toString();
    }
    QModelIndex cell(const QString& key, const QString& column) const
    {
        const QAbstractItemModel* m = m_grid->model();
        int c = 0;
        while (c < m->columnCount() && m->headerData(c, Qt::Horizontal).toString() != column)
            ++c;
        const auto rows = m->match(m->index(0, 0), Qt::DisplayRole, key, 1, Qt::MatchExactly);
        return rows.isEmpty() ? QModelIndex() : rows.first().siblingAtColumn(c);
    }
    // As the user does it: go to the cell, F2, type the new text over the old, confirm with Enter.
    void edit(const QString& key, const QString& column, const QString& text)
    {
        m_grid->setCurrentIndex(cell(key, column));
        QTest::keyClick(m_grid, Qt::Key_F2);
        QTest::keyClicks(QApplication::focusWidget(), text);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QApplication::processEvents(); // the grid takes the text over only then
    }

private slots:
    // The demo data and a user whose login name holds a quote.
    void init()
    {
        m_folder = std::make_unique<testsupport::TestFolder>(true);
        QVERIFY(m_folder->open());
        QVERIFY(m_folder->db().exec(
                "INSERT INTO felhasznalo (felhnev, loginnev, jelszo, felhnyelv, felhjog, alapugyv) "
                "VALUES ('Kerry O''Brien', 'O''BRIEN', 'kerry', 3, '11111111111111111111', '')"));
        m_menu = std::make_unique<Alap>(testsupport::database());
        QVERIFY(m_menu->load());
    }
    void cleanup()
    {
        m_menu.reset();
        m_folder.reset();
    }

    // The menu takes the default language's captions; g11 to g13 keep their design texts.
    void captionsOfTheLanguage()
    {
        const auto stored = m_folder->db().first("SELECT * FROM felirat WHERE felirkod = 'Alap'");
        for (int language = 1; language <= 3; ++language) {
            QVERIFY(m_folder->db().exec("UPDATE parameterek SET alapnyelv = ?", {language}));
            QVERIFY(m_menu->load());
            for (const QString& c : QString("sz1 sz2 g1 g2 g3 g4 g5 g6 g7 g8 g9 g10").split(' '))
                QCOMPARE(m_menu->findChild<QWidget*>(c)->property("text"),
                         stored.value(QString::number(language) + c));
            QCOMPARE((QStringList{button("g11")->text(), button("g12")->text(),
                                  button("g13")->text()}),
                     (QStringList{"Partnerek", "Mentés", "Visszatöltés"}));
        }
    }

    // Each button opens its screen only when its own position holds "1"; otherwise the user reads
    // "nincsjog" and the menu stays. A null rights string: no login asked for, every right.
    void gates_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("rights");
        QTest::addColumn<QString>("screen"); // what opens; empty when the gate refuses
        const auto rights = [](int position, char value, char others) {
            return QString(20, QLatin1Char(others)).replace(position - 1, 1, QLatin1Char(value));
        };
        const std::tuple<const char*, int, QString> gates[]{
                {"g3", 1, "search 1 alone"},   {"g4", 2, "search 2 alone"},
                {"g5", 3, "list 1 over menu"}, {"g6", 4, "list 2 over menu"},
                {"g7", 5, "list 3 over menu"}, {"g8", 6, "users over menu"},
                {"g9", 7, "param over menu"},  {"g10", 3, "irszam over menu"},
                {"g11", 11, "partners alone"}, {"g12", 12, "backup alone"},
                {"g13", 12, "restore alone"}};
        for (const auto& [b, position, opens] : gates) {
            QTest::addRow("%s by %d", b, position) << b << rights(position, '1', '0') << opens;
            QTest::addRow("%s, 0", b) << b << rights(position, '0', '1') << QString();
            QTest::addRow("%s, 2", b) << b << rights(position, '2', '1') << QString();
            QTest::addRow("%s, 10 positions", b)
                    << b << QStringLiteral("1111111111") << (position <= 10 ? opens : QString());
            QTest::addRow("%s without login", b) << b << QString() << opens;
        }
    }
    void gates()
    {
        QFETCH(QString, button);
        QFETCH(QString, rights);
        QFETCH(QString, screen);
        QStringList opened; // each stand-in notes whether the menu was still shown
        const auto note = [&](const QString& name) {
            opened << name + (m_menu->isVisible() ? " over menu" : " alone");
        };
        Screens& s = Session::instance().screens;
        s.showSearch = [note](const QString& t) { note("search " + t); };
        s.showLookupList = [note](const QString& h) { note("list " + h); };
        s.showUsers = [note] { note("users"); };
        s.showParameters = [note] { note("param"); };
        s.showPostalCodes = [note] { note("irszam"); };
        s.showPartners = [note] { note("partners"); };
        s.showBackup = [note] { note("backup"); };
        s.showRestore = [note] { note("restore"); };
        m_menu->show();
        if (!rights.isNull())
            Session::instance().rights = rights;
        testsupport::MessageRecorder recorder;
        QTest::mouseClick(this->button(button), Qt::LeftButton);
        QCOMPARE(opened, screen.isEmpty() ? QStringList() : QStringList{screen});
        QCOMPARE(recorder.texts(),
                 screen.isEmpty() ? QStringList{uzenetszoveg("nincsjog")} : QStringList());
        QCOMPARE(m_menu->isVisible(), !screen.endsWith("alone"));
    }

    // Asked from g2 and from closing the window; No keeps the program running with the menu shown.
    void exitQuestion()
    {
        m_menu->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_menu.get()));
        testsupport::MessageRecorder recorder;
        recorder.answer(platform::AnswerNo);
        recorder.answer(platform::AnswerNo);
        QTest::mouseClick(button("g2"), Qt::LeftButton);
        m_menu->close();
        QCOMPARE(recorder.texts(), QStringList(2, uzenetszoveg("kilep")));
        for (const platform::ShownMessage& shown : recorder.shown())
            QVERIFY(shown.style == platform::Confirmation && shown.title == "EXIT");
        QVERIFY(m_menu->isVisible());
    }

    // Shift+F5 opens the caption editor whatever field has the focus, and no right is needed for
    // it; F5 alone and Ctrl+Shift+F5 do not.
    void captionEditorKey()
    {
        int count = 0;
        Session::instance().screens.showCaptionEditor = [&count] { ++count; };
        QVERIFY(activate(m_menu.get()));
        button("g6")->setFocus();
        Session::instance().rights = QStringLiteral("0000000000");
        QTest::keyClick(button("g6"), Qt::Key_F5);
        QTest::keyClick(button("g6"), Qt::Key_F5, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(count, 0);
        QTest::keyClick(button("g6"), Qt::Key_F5, Qt::ShiftModifier);
        QCOMPARE(count, 1);
    }

    // From two characters Enter in the name moves on to the password, and the name is looked up
    // as the focus comes there: found, it shows as stored; unknown, it is told and taken back.
    // A shorter name is looked up neither on Enter nor on leaving.
    void nameLookedUpOnMovingOn_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown"); // in login1 afterwards
        QTest::newRow("lower case") << QString("mueller") << QString("MUELLER");
        QTest::newRow("a quote") << QString("o'brien") << QString("O'BRIEN");
        QTest::newRow("two characters, unknown") << QString("xy") << QString();
        QTest::newRow("one character") << QString("m") << QString("m");
    }
    void nameLookedUpOnMovingOn()
    {
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QVERIFY(openLogin());
        testsupport::MessageRecorder recorder;
        const QStringList told(shown.isEmpty() ? 1 : 0, uzenetszoveg("nincs"));
        QTest::keyClicks(field("login1"), typed);
        QTest::keyClick(field("login1"), Qt::Key_Return);
        QCOMPARE(recorder.texts(), told);
        QCOMPARE(field("login1")->text(), shown);
        field("login2")->setFocus(); // as a click into it does
        QCOMPARE(recorder.texts(), told);
        QCOMPARE(field("login1")->text(), shown);
    }

    // No panel: the attempt failed, with the message given, or without one nothing happened.
    void loginAttempt_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("panel");
        QTest::addColumn<QString>("g3"); // the menu stays Hungarian when the attempt fails
        const char* rows[][6]{
                {"German", "mueller", "anna", "", "Benutzer :  Anna Müller", "Mandanten"},
                {"English", "Smith", "john", "", "USER :  John Smith", "Clients"},
                {"a quote", "o'brien", "kerry", "", "USER :  Kerry O'Brien", "Clients"},
                {"wrong password", "mueller", "anne", "rjelszo", "", "Ügyfelek"},
                {"password in other case", "mueller", "ANNA", "rjelszo", "", "Ügyfelek"},
                {"one character, on Enter", "m", "anna", "nincs", "", "Ügyfelek"},
                {"injection", "x' OR '1'='1", "x' OR '1'='1", "nincs", "", "Ügyfelek"},
                {"quote ends the name", "ADMIN'", "admin", "nincs", "", "Ügyfelek"},
                {"empty password", "admin", "", "", "", "Ügyfelek"}};
        for (const auto& r : rows)
            QTest::newRow(r[0]) << r[1] << r[2] << r[3] << r[4] << r[5];
    }
    // login1 is set as typed: its own look-up runs only when the focus moves into login2. The
    // session then holds the user's rights, or none after a failed attempt.
    void loginAttempt()
    {
        QFETCH(QString, name);
        QFETCH(QString, password);
        QFETCH(QString, message);
        QFETCH(QString, panel);
        QFETCH(QString, g3);
        QVERIFY(openLogin());
        Session& s = Session::instance();
        if (message == "rjelszo") // withdraws even rights set since the screen came up
            s.rights = QString(20, u'1');
        testsupport::MessageRecorder recorder;
        field("login1")->setText(name);
        QTest::keyClicks(field("login2"), password);
        QTest::keyClick(field("login2"), Qt::Key_Return);
        QCOMPARE(recorder.texts(), QStringList(message.isEmpty() ? 0 : 1, uzenetszoveg(message)));
        QCOMPARE(m_login->isVisible(), panel.isEmpty());
        QCOMPARE(m_menu->panelText(1), panel);
        QCOMPARE(button("g3")->text(), g3);
        const platform::Row user
                = m_folder->db().first("SELECT * FROM felhasznalo WHERE loginnev = ?",
                                       {panel.isEmpty() ? QString() : name.toUpper()});
        QCOMPARE(s.userName, user.text("felhnev"));
        QCOMPARE(s.rights, panel.isEmpty() ? QStringLiteral("0000000000") : user.text("felhjog"));
        QCOMPARE(s.defaultLawyer, user.text("alapugyv"));
    }

    // The menu's g1 shows the screen modally; nothing is allowed while it is up, nor after Cancel.
    void noRightsWhileTheScreenIsUp()
    {
        m_menu->show();
        Session::instance().rights = QString(20, u'1');
        QString meanwhile;
        QTimer::singleShot(0, [&] {
            QWidget* w = QApplication::activeModalWidget();
            QVERIFY(w && w->objectName() == "Login");
            meanwhile = Session::instance().rights;
            QTest::mouseClick(w->findChild<QPushButton*>("g1"), Qt::LeftButton);
        });
        QTest::mouseClick(button("g1"), Qt::LeftButton);
        QCOMPARE(meanwhile, QStringLiteral("0000000000"));
        QCOMPARE(Session::instance().rights, QStringLiteral("0000000000"));
    }

    void editIsStoredOnLeavingTheRow_data()
    {
        QTest::addColumn<QString>("leaveBy");
        QTest::newRow("moving down") << "down";
        QTest::newRow("closing with g1") << "g1";
        QTest::newRow("closing the window") << "close";
    }
    // The menu, fed in language 1, shows the edit at its next activation in language 2.
    void editIsStoredOnLeavingTheRow()
    {
        QFETCH(QString, leaveBy);
        QVERIFY(openCaptionEditor());
        Session::instance().language = 2;
        testsupport::MessageRecorder recorder;
        edit("Alap", "2g1", QStringLiteral("Anmeldung"));
        if (leaveBy == "down")
            QTest::keyClick(m_grid, Qt::Key_Down);
        else if (leaveBy == "g1")
            QTest::mouseClick(m_grid->window()->findChild<QPushButton*>("g1"), Qt::LeftButton);
        else
            m_grid->window()->close();
        QCOMPARE(stored("Alap", "2g1"), QStringLiteral("Anmeldung"));
        QVERIFY(recorder.shown().isEmpty());
        m_grid->window()->close();
        m_menu->activateWindow();
        QTRY_COMPARE(button("g1")->text(), QStringLiteral("Anmeldung"));
    }

    // A row the database will not take (a second row for a key that exists) is not lost in silence.
    void refusedEditIsReported()
    {
        QVERIFY(openCaptionEditor());
        testsupport::MessageRecorder recorder;
        edit("Login", "felirkod", QStringLiteral("ALAP"));
        QTest::keyClick(m_grid, Qt::Key_Down);
        QTRY_COMPARE(recorder.shown().size(), 1);
        QCOMPARE(recorder.shown().at(0).style, int(platform::ErrorNotice));
        // The office's words in the box, the engine's in the error log.
        QCOMPARE(recorder.texts()[0], uzenetszoveg("elutasit"));
        QVERIFY(testsupport::readFile(platform::programFolder() + "/hiba.txt").contains("UNIQUE"));
        QCOMPARE(stored("Login", "1sz1"), QStringLiteral("Bejelentkezés")); // the row is kept
        QVERIFY(cell("Login", "felirkod").isValid()); // and the grid shows it again
    }
};

QTEST_MAIN(tst_menu)
#include "tst_menu.moc"
