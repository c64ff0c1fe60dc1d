#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "session/Alap.h"
#include "session/Session.h"

#include <memory>
#include <tuple>
#include <QApplication>
#include <QPushButton>
#include <QTest>

using testsupport::MessageRecorder;
using testsupport::TestFolder;

namespace {

// Rights with one position set to a value and every other to the opposite.
QString rightsWith(int position, QChar value, QChar others)
{
    QString r(20, others);
    r[position - 1] = value;
    return r;
}

} // namespace

class tst_alap : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void captionsOfTheLanguage_data();
    void captionsOfTheLanguage();
    void gates_data();
    void gates();
    void exitQuestion_data();
    void exitQuestion();
    void captionEditorKey_data();
    void captionEditorKey();

private:
    QPushButton* button(const QString& name) { return m_menu->findChild<QPushButton*>(name); }

    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<Alap> m_menu;
};

void tst_alap::init()
{
    m_folder = std::make_unique<TestFolder>();
    QVERIFY(m_folder->open());
    m_menu = std::make_unique<Alap>();
    QVERIFY(m_menu->load());
}

void tst_alap::cleanup()
{
    m_menu.reset();
    m_folder.reset();
}

void tst_alap::captionsOfTheLanguage_data()
{
    QTest::addColumn<int>("language");
    QTest::newRow("Hungarian") << 1;
    QTest::newRow("German") << 2;
    QTest::newRow("English") << 3;
}

void tst_alap::captionsOfTheLanguage()
{
    QFETCH(int, language);
    QVERIFY(m_folder->db().exec(QStringLiteral("UPDATE parameterek SET alapnyelv = ?"),
                                {language}));
    QVERIFY(m_menu->load());
    QStringList controls{QStringLiteral("sz1"), QStringLiteral("sz2")};
    for (int n = 1; n <= 10; ++n)
        controls << QStringLiteral("g%1").arg(n);
    for (const QString& c : controls) {
        const QString column = QString::number(language) + c;
        const QVariant stored = m_folder->db().scalar(
                QStringLiteral("SELECT [%1] FROM felirat WHERE felirkod = 'Alap'").arg(column));
        QCOMPARE(m_menu->findChild<QWidget*>(c)->property("text").toString(), stored.toString());
    }
    // These three keep their design texts in every language.
    QCOMPARE(button("g11")->text(), QStringLiteral("Partnerek"));
    QCOMPARE(button("g12")->text(), QStringLiteral("Mentés"));
    QCOMPARE(button("g13")->text(), QStringLiteral("Visszatöltés"));
}

// A null rights string stands for the one the prepared data gives without a login.
void tst_alap::gates_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("rights");
    QTest::addColumn<QString>("screen"); // what opens; empty when the gate refuses
    const std::tuple<const char*, int, const char*> gates[]{
            {"g3", 1, "search 1 alone"},   {"g4", 2, "search 2 alone"},
            {"g5", 3, "list 1 over menu"}, {"g6", 4, "list 2 over menu"},
            {"g7", 5, "list 3 over menu"}, {"g8", 6, "users over menu"},
            {"g9", 7, "param over menu"},  {"g10", 3, "irszam over menu"},
            {"g11", 11, "partners alone"}, {"g12", 12, "backup alone"},
            {"g13", 12, "restore alone"}};
    for (const auto& [button, position, opens] : gates) {
        const QString screen = QString::fromLatin1(opens);
        QTest::addRow("%s granted by %d alone", button, position)
                << button << rightsWith(position, u'1', u'0') << screen;
        QTest::addRow("%s refused by 0", button)
                << button << rightsWith(position, u'0', u'1') << QString();
        QTest::addRow("%s refused by 2", button)
                << button << rightsWith(position, u'2', u'1') << QString();
        QTest::addRow("%s with 10 positions", button)
                << button << QStringLiteral("1111111111") << (position <= 10 ? screen : QString());
        QTest::addRow("%s without login", button) << button << QString() << screen;
    }
}

// Each button opens its screen only when its own position holds "1"; otherwise the user reads
// "nincsjog" and the menu stays as it was.
void tst_alap::gates()
{
    QFETCH(QString, button);
    QFETCH(QString, rights);
    QFETCH(QString, screen);
    QStringList opened;
    // Each stand-in notes whether the menu was still shown when its screen opened.
    auto note = [this, &opened](const QString& name) {
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
    if (rights.isNull()) // no login asked for: every right
        QCOMPARE(Session::instance().rights, QString(20, u'1'));
    else
        Session::instance().rights = rights;

    MessageRecorder recorder;
    QTest::mouseClick(this->button(button), Qt::LeftButton);
    if (screen.isEmpty()) {
        QVERIFY(opened.isEmpty());
        QCOMPARE(recorder.texts(), QStringList{uzenetszoveg(QStringLiteral("nincsjog"))});
        QCOMPARE(recorder.shown().at(0).style, int(platform::Notice));
        QVERIFY(m_menu->isVisible());
    } else {
        QCOMPARE(opened, QStringList{screen});
        QVERIFY(recorder.shown().isEmpty());
        // A screen that hid the menu brings it back when it closes.
        s.showMainMenu();
        QVERIFY(m_menu->isVisible());
    }
}

void tst_alap::exitQuestion_data()
{
    QTest::addColumn<bool>("fromButton");
    QTest::addColumn<int>("answer");
    QTest::newRow("g2, No") << true << int(platform::AnswerNo);
    QTest::newRow("g2, Yes") << true << int(platform::AnswerYes);
    QTest::newRow("close box, No") << false << int(platform::AnswerNo);
    QTest::newRow("close box, Yes") << false << int(platform::AnswerYes);
}

void tst_alap::exitQuestion()
{
    QFETCH(bool, fromButton);
    QFETCH(int, answer);
    m_menu->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_menu.get()));
    MessageRecorder recorder;
    recorder.answer(answer);
    if (fromButton)
        QTest::mouseClick(button("g2"), Qt::LeftButton);
    else
        m_menu->close();
    QCOMPARE(recorder.shown().size(), 1);
    QCOMPARE(recorder.shown().at(0).text, uzenetszoveg(QStringLiteral("kilep")));
    QCOMPARE(recorder.shown().at(0).style, int(platform::Confirmation));
    QCOMPARE(recorder.shown().at(0).title, QStringLiteral("EXIT"));
    QCOMPARE(m_menu->isVisible(), answer == platform::AnswerNo);
}

void tst_alap::captionEditorKey_data()
{
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<int>("opened");
    QTest::newRow("Shift+F5") << int(Qt::ShiftModifier) << 1;
    QTest::newRow("F5") << int(Qt::NoModifier) << 0;
    QTest::newRow("Ctrl+Shift+F5") << int(Qt::ControlModifier | Qt::ShiftModifier) << 0;
}

void tst_alap::captionEditorKey()
{
    QFETCH(int, modifiers);
    QFETCH(int, opened);
    int count = 0;
    Session::instance().screens.showCaptionEditor = [&count] { ++count; };
    m_menu->show();
    m_menu->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_menu.get()));
    // Whatever field has the focus, and no right is needed for it.
    button("g6")->setFocus();
    Session::instance().rights = QStringLiteral("0000000000");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F5, Qt::KeyboardModifiers(modifiers));
    QCOMPARE(count, opened);
}

QTEST_MAIN(tst_alap)
#include "tst_alap.moc"
