#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "session/Alap.h"
#include "session/Session.h"

#include <memory>
#include <tuple>
#include <QApplication>
#include <QPushButton>
#include <QTest>

class tst_alap : public QObject
{
    Q_OBJECT
    std::unique_ptr<testsupport::TestFolder> m_folder;
    std::unique_ptr<Alap> m_menu;

    QPushButton* button(const QString& name) { return m_menu->findChild<QPushButton*>(name); }

private slots:
    void init()
    {
        m_folder = std::make_unique<testsupport::TestFolder>();
        QVERIFY(m_folder->open());
        m_menu = std::make_unique<Alap>(testsupport::database());
        QVERIFY(m_menu->load());
    }
    void cleanup()
    {
        m_menu.reset();
        m_folder.reset();
    }

    void captionsOfTheLanguage_data()
    {
        QTest::addColumn<int>("language");
        for (int lang = 1; lang <= 3; ++lang)
            QTest::addRow("%d", lang) << lang;
    }
    void captionsOfTheLanguage()
    {
        QFETCH(int, language);
        QVERIFY(m_folder->db().exec("UPDATE parameterek SET alapnyelv = ?", {language}));
        QVERIFY(m_menu->load());
        const auto stored = m_folder->db().first("SELECT * FROM felirat WHERE felirkod = 'Alap'");
        for (const QString& c : QString("sz1 sz2 g1 g2 g3 g4 g5 g6 g7 g8 g9 g10").split(' '))
            QCOMPARE(m_menu->findChild<QWidget*>(c)->property("text"),
                     stored.value(QString::number(language) + c));
        QCOMPARE((QStringList{button("g11")->text(), button("g12")->text(), button("g13")->text()}),
                 (QStringList{"Partnerek", "Mentés", "Visszatöltés"})); // the design texts
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

    // Whatever field has the focus, and no right is needed for it.
    void captionEditorKey_data()
    {
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<int>("opened");
        QTest::newRow("Shift+F5") << int(Qt::ShiftModifier) << 1;
        QTest::newRow("F5") << int(Qt::NoModifier) << 0;
        QTest::newRow("Ctrl+Shift+F5") << int(Qt::ControlModifier | Qt::ShiftModifier) << 0;
    }
    void captionEditorKey()
    {
        QFETCH(int, modifiers);
        QFETCH(int, opened);
        int count = 0;
        Session::instance().screens.showCaptionEditor = [&count] { ++count; };
        m_menu->show();
        m_menu->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_menu.get()));
        button("g6")->setFocus();
        Session::instance().rights = QStringLiteral("0000000000");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F5, Qt::KeyboardModifiers(modifiers));
        QCOMPARE(count, opened);
    }
};

QTEST_MAIN(tst_alap)
#include "tst_alap.moc"
