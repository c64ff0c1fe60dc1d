#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "session/Alap.h"
#include "session/Session.h"

#include <memory>
#include <QDate>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTime>

using testsupport::MessageRecorder;
using testsupport::TestFolder;

namespace {

QPushButton* button(QWidget* menu, const QString& name)
{
    return menu->findChild<QPushButton*>(name);
}

QString caption(const QString& column)
{
    return Session::instance()
            .database
            .scalar(QStringLiteral("SELECT [%1] FROM felirat WHERE felirkod = 'Alap'").arg(column))
            .toString();
}

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
    void loadSetsStatusBarAndVersion();
    void loadFailsWithoutSettings();
    void captionsOfTheLanguage_data();
    void captionsOfTheLanguage();
    void everyButtonOnTheDisplay();
    void gates_data();
    void gates();
    void buttonsOpenTheirScreens_data();
    void buttonsOpenTheirScreens();
    void missingScreenLeavesTheMenu();
    void withoutLoginEveryGatePasses();
    void exitQuestion_data();
    void exitQuestion();
    void captionEditorKey_data();
    void captionEditorKey();

private:
    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<Alap> m_menu;
    QStringList m_opened;
};

void tst_alap::init()
{
    m_folder = std::make_unique<TestFolder>();
    testsupport::writeFile(m_folder->programFolder() + QStringLiteral("/jog.ini"),
                           QStringLiteral("\"path=%1\"\r\n").arg(m_folder->dataFolder()).toUtf8());
    m_menu = std::make_unique<Alap>();
    m_opened.clear();
}

void tst_alap::cleanup()
{
    m_menu.reset();
    m_folder.reset();
}

void tst_alap::loadSetsStatusBarAndVersion()
{
    const QLocale locale = QLocale::system();
    const QString date = locale.toString(QDate::currentDate(), QLocale::ShortFormat);
    QVERIFY(m_menu->load());
    QCOMPARE(m_menu->objectName(), QStringLiteral("Alap"));
    QCOMPARE(m_menu->findChild<QLabel*>(QStringLiteral("verz"))->text(), QStringLiteral("1.25"));
    QVERIFY(m_menu->findChild<QWidget*>(QStringLiteral("StatusBar1")));
    QCOMPARE(m_menu->panelText(1), QString());
    QCOMPARE(m_menu->panelText(2), date);
    const QTime shown = locale.toTime(m_menu->panelText(3), QLocale::ShortFormat);
    QVERIFY(shown.isValid());
    QVERIFY(qAbs(shown.secsTo(QTime::currentTime())) < 120);
}

void tst_alap::loadFailsWithoutSettings()
{
    QFile::remove(m_folder->programFolder() + QStringLiteral("/jog.ini"));
    MessageRecorder recorder;
    QVERIFY(!m_menu->load());
    QCOMPARE(recorder.shown().size(), 1);
}

void tst_alap::captionsOfTheLanguage_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("g2");
    QTest::newRow("Hungarian") << 1 << QStringLiteral("Kilépés");
    QTest::newRow("German") << 2 << QStringLiteral("Beenden");
    QTest::newRow("English") << 3 << QStringLiteral("Exit");
}

void tst_alap::captionsOfTheLanguage()
{
    QFETCH(int, language);
    QFETCH(QString, g2);
    m_folder->db().openUnchecked(m_folder->dataFile(), nullptr);
    QVERIFY(m_folder->db().exec(QStringLiteral("UPDATE parameterek SET alapnyelv = ?"),
                                {language}));
    m_folder->db().close();

    QVERIFY(m_menu->load());
    QCOMPARE(button(m_menu.get(), "g2")->text(), g2);
    const QString lang = QString::number(language);
    for (int n = 1; n <= 10; ++n) {
        const QString g = QStringLiteral("g%1").arg(n);
        QCOMPARE(button(m_menu.get(), g)->text(), caption(lang + g));
    }
    for (const char* sz : {"sz1", "sz2"})
        QCOMPARE(m_menu->findChild<QLabel*>(sz)->text(), caption(lang + sz));
    // These three keep their design texts in every language.
    QCOMPARE(button(m_menu.get(), "g11")->text(), QStringLiteral("Partnerek"));
    QCOMPARE(button(m_menu.get(), "g12")->text(), QStringLiteral("Mentés"));
    QCOMPARE(button(m_menu.get(), "g13")->text(), QStringLiteral("Visszatöltés"));
}

void tst_alap::everyButtonOnTheDisplay()
{
    QVERIFY(m_menu->load());
    m_menu->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_menu.get()));
    const QRect display = QGuiApplication::primaryScreen()->availableGeometry();
    QList<QRect> taken;
    for (int n = 1; n <= 13; ++n) {
        QPushButton* b = button(m_menu.get(), QStringLiteral("g%1").arg(n));
        const QRect r(b->mapToGlobal(QPoint(0, 0)), b->size());
        QVERIFY2(b->isVisible() && display.contains(r), qPrintable(b->objectName()));
        QVERIFY2(b->parentWidget()->rect().contains(b->geometry()), qPrintable(b->objectName()));
        for (const QRect& other : taken)
            QVERIFY2(!other.intersects(r), qPrintable(b->objectName()));
        taken << r;
    }
}

void tst_alap::gates_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("rights");
    QTest::addColumn<bool>("opens");
    const QList<QPair<const char*, int>> gates{{"g3", 1},   {"g4", 2},   {"g5", 3},  {"g6", 4},
                                               {"g7", 5},   {"g8", 6},   {"g9", 7},  {"g10", 3},
                                               {"g11", 11}, {"g12", 12}, {"g13", 12}};
    for (const auto& [name, position] : gates) {
        QTest::addRow("%s granted by %d alone", name, position)
                << name << rightsWith(position, u'1', u'0') << true;
        QTest::addRow("%s refused by 0", name) << name << rightsWith(position, u'0', u'1') << false;
        QTest::addRow("%s refused by 2", name) << name << rightsWith(position, u'2', u'1') << false;
        QTest::addRow("%s with 10 positions", name)
                << name << QStringLiteral("1111111111") << (position <= 10);
    }
    QTest::newRow("g5 not granted by 4") << "g5" << rightsWith(4, u'1', u'0') << false;
    QTest::newRow("g4 not granted by 1") << "g4" << rightsWith(1, u'1', u'0') << false;
    QTest::newRow("g13 not granted by 13") << "g13" << rightsWith(13, u'1', u'0') << false;
}

// Each button opens its screen only when its own position holds "1"; otherwise the user reads
// "nincsjog" and the menu stays as it was.
void tst_alap::gates()
{
    QFETCH(QString, button);
    QFETCH(QString, rights);
    QFETCH(bool, opens);
    QVERIFY(m_menu->load());
    Screens& s = Session::instance().screens;
    s.showSearch = [this](const QString& t) { m_opened << "search " + t; };
    s.showLookupList = [this](const QString& h) { m_opened << "list " + h; };
    s.showUsers = [this] { m_opened << "users"; };
    s.showParameters = [this] { m_opened << "param"; };
    s.showPostalCodes = [this] { m_opened << "irszam"; };
    s.showPartners = [this] { m_opened << "partners"; };
    s.showBackup = [this] { m_opened << "backup"; };
    s.showRestore = [this] { m_opened << "restore"; };
    m_menu->show();
    Session::instance().rights = rights;

    MessageRecorder recorder;
    QTest::mouseClick(::button(m_menu.get(), button), Qt::LeftButton);
    QCOMPARE(m_opened.size(), opens ? 1 : 0);
    if (opens) {
        QVERIFY(recorder.shown().isEmpty());
    } else {
        QCOMPARE(recorder.texts(), QStringList{uzenetszoveg(QStringLiteral("nincsjog"))});
        QCOMPARE(recorder.shown().at(0).style, int(platform::Notice));
        QVERIFY(m_menu->isVisible());
    }
    QCOMPARE(Session::instance().rights, rights);
}

void tst_alap::buttonsOpenTheirScreens_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("screen");
    QTest::addColumn<bool>("hidesMenu");
    QTest::newRow("g3") << "g3"
                        << "search 1" << true;
    QTest::newRow("g4") << "g4"
                        << "search 2" << true;
    QTest::newRow("g5") << "g5"
                        << "list 1" << false;
    QTest::newRow("g6") << "g6"
                        << "list 2" << false;
    QTest::newRow("g7") << "g7"
                        << "list 3" << false;
    QTest::newRow("g8") << "g8"
                        << "users" << false;
    QTest::newRow("g9") << "g9"
                        << "param" << false;
    QTest::newRow("g10") << "g10"
                         << "irszam" << false;
    QTest::newRow("g11") << "g11"
                         << "partners" << true;
    QTest::newRow("g12") << "g12"
                         << "backup" << true;
    QTest::newRow("g13") << "g13"
                         << "restore" << true;
}

void tst_alap::buttonsOpenTheirScreens()
{
    QFETCH(QString, button);
    QFETCH(QString, screen);
    QFETCH(bool, hidesMenu);
    QVERIFY(m_menu->load());
    Screens& s = Session::instance().screens;
    // Each stand-in notes whether the menu was still shown when its screen opened.
    auto note = [this](const QString& name) {
        m_opened << name + (m_menu->isVisible() ? " over menu" : " alone");
    };
    s.showSearch = [note](const QString& t) { note("search " + t); };
    s.showLookupList = [note](const QString& h) { note("list " + h); };
    s.showUsers = [note] { note("users"); };
    s.showParameters = [note] { note("param"); };
    s.showPostalCodes = [note] { note("irszam"); };
    s.showPartners = [note] { note("partners"); };
    s.showBackup = [note] { note("backup"); };
    s.showRestore = [note] { note("restore"); };
    m_menu->show();
    QTest::mouseClick(::button(m_menu.get(), button), Qt::LeftButton);
    QCOMPARE(m_opened, QStringList{screen + (hidesMenu ? " alone" : " over menu")});

    // A screen that hid the menu brings it back when it closes.
    Session::instance().screens.showMainMenu();
    QVERIFY(m_menu->isVisible());
}

// A screen that is not plugged in yet: the gate still speaks, and the menu stays up.
void tst_alap::missingScreenLeavesTheMenu()
{
    QVERIFY(m_menu->load());
    m_menu->show();
    MessageRecorder recorder;
    for (int n = 3; n <= 13; ++n)
        QTest::mouseClick(button(m_menu.get(), QStringLiteral("g%1").arg(n)), Qt::LeftButton);
    QVERIFY(recorder.shown().isEmpty());
    QVERIFY(m_menu->isVisible());

    Session::instance().rights = QStringLiteral("0000000000");
    QTest::mouseClick(button(m_menu.get(), "g11"), Qt::LeftButton);
    QCOMPARE(recorder.shown().size(), 1);
}

void tst_alap::withoutLoginEveryGatePasses()
{
    QVERIFY(m_menu->load());
    QCOMPARE(Session::instance().rights, QString(20, u'1'));
    QVERIFY(Session::instance().userName.isEmpty());
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
    QVERIFY(m_menu->load());
    m_menu->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_menu.get()));
    MessageRecorder recorder;
    recorder.answer(answer);
    if (fromButton)
        QTest::mouseClick(button(m_menu.get(), "g2"), Qt::LeftButton);
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
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("opened");
    QTest::newRow("Shift+F5") << int(Qt::ShiftModifier) << int(Qt::Key_F5) << 1;
    QTest::newRow("F5") << int(Qt::NoModifier) << int(Qt::Key_F5) << 0;
    QTest::newRow("Ctrl+Shift+F5")
            << int(Qt::ControlModifier | Qt::ShiftModifier) << int(Qt::Key_F5) << 0;
    QTest::newRow("Alt+Shift+F5") << int(Qt::AltModifier | Qt::ShiftModifier) << int(Qt::Key_F5)
                                  << 0;
    QTest::newRow("Shift+F6") << int(Qt::ShiftModifier) << int(Qt::Key_F6) << 0;
}

void tst_alap::captionEditorKey()
{
    QFETCH(int, modifiers);
    QFETCH(int, key);
    QFETCH(int, opened);
    QVERIFY(m_menu->load());
    int count = 0;
    Session::instance().screens.showCaptionEditor = [&count] { ++count; };
    m_menu->show();
    m_menu->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_menu.get()));
    // Whatever field has the focus.
    button(m_menu.get(), "g6")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QCOMPARE(count, opened);
    // No right is needed for it.
    Session::instance().rights = QStringLiteral("0000000000");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QCOMPARE(count, 2 * opened);
}

QTEST_MAIN(tst_alap)
#include "tst_alap.moc"
