#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "session/Session.h"

#include <memory>
#include <QApplication>
#include <QMessageBox>
#include <QSet>
#include <QTest>
#include <QTimer>

using testsupport::MessageRecorder;
using testsupport::TestFolder;

class tst_uzenet : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_folder = std::make_unique<TestFolder>();
        QVERIFY(m_folder->open());
    }
    void cleanup() { m_folder.reset(); }
    void textOfTheSessionLanguage_data();
    void textOfTheSessionLanguage();
    void enterPressesTheDefaultButton_data();
    void enterPressesTheDefaultButton();
    void everyMessageInEveryLanguage_data();
    void everyMessageInEveryLanguage();

private:
    std::unique_ptr<TestFolder> m_folder;
};

void tst_uzenet::textOfTheSessionLanguage_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Hungarian") << "nincsjog" << 1
                               << QStringLiteral("Nincs jogosultsága ehhez a parancshoz!");
    QTest::newRow("German") << "nincsjog" << 2
                            << QStringLiteral("Sie haben keine Berechtigung für diesen Befehl.");
    QTest::newRow("English") << "nincsjog" << 3
                             << QStringLiteral("You have no permission for this command.");
    QTest::newRow("no such language") << "nincsjog" << 4 << QString();
    const QString wrong = QStringLiteral("Das Kennwort ist falsch. Bitte versuchen Sie es erneut.");
    QTest::newRow("code in capitals") << "RJELSZO" << 2 << wrong;
    QTest::newRow("code in mixed case") << "rJelSzo" << 2 << wrong;
}

void tst_uzenet::textOfTheSessionLanguage()
{
    QFETCH(QString, code);
    QFETCH(int, language);
    QFETCH(QString, expected);
    Session::instance().language = qint16(language);
    QCOMPARE(uzenetszoveg(code), expected);
    // What the box shows is the same text, also for a language that has none.
    MessageRecorder recorder;
    uzenet(code);
    QCOMPARE(recorder.texts(), QStringList{expected});
}

// The real box: Enter at once presses the default button, which decides the answer.
void tst_uzenet::enterPressesTheDefaultButton_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("title");
    QTest::newRow("confirmation: No")
            << "torol" << int(platform::Confirmation) << int(platform::AnswerNo) << " ";
    QTest::newRow("exit: No") << "kilep" << int(platform::Confirmation) << int(platform::AnswerNo)
                              << "EXIT";
    QTest::newRow("restore question: Yes") << "RestoreK" << int(platform::RestoreQuestion)
                                           << int(platform::AnswerYes) << "tst_uzenet";
}

void tst_uzenet::enterPressesTheDefaultButton()
{
    QFETCH(QString, code);
    QFETCH(int, style);
    QFETCH(int, answer);
    QFETCH(QString, title);
    platform::setMessageHandler(nullptr);
    QString shownText;
    QString shownTitle;
    QTimer::singleShot(0, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(box);
        shownText = box->text();
        shownTitle = box->windowTitle();
        QTest::keyClick(box, Qt::Key_Return);
    });
    QCOMPARE(uzenet(code, style), answer);
    QCOMPARE(shownText, uzenetszoveg(code));
    QCOMPARE(shownTitle, title);
}

void tst_uzenet::everyMessageInEveryLanguage_data()
{
    QTest::addColumn<QString>("code");
    for (const char* code :
         {"nincsjog",  "kilep",     "nincsmeg",  "torol",    "nemtorol",  "ments",
          "nincs",     "rjelszo",   "nincsorsz", "kotelezo", "nincsugyf", "vanmar",
          "hibasadat", "nincsujat", "nyomhiba",  "telefon",  "backup2",   "backup1",
          "backupOK",  "RestoreH",  "RestoreK",  "RestoreOK"})
        QTest::newRow(code) << QString::fromLatin1(code);
}

void tst_uzenet::everyMessageInEveryLanguage()
{
    QFETCH(QString, code);
    QStringList texts;
    for (int lang = 1; lang <= 3; ++lang) {
        Session::instance().language = qint16(lang);
        const QString text = uzenetszoveg(code);
        QVERIFY2(!text.isEmpty() && text != code, qPrintable(QString::number(lang)));
        texts << text;
    }
    // Each language has its own text, not a copy of another one.
    QCOMPARE(QSet<QString>(texts.begin(), texts.end()).size(), 3);
}

QTEST_MAIN(tst_uzenet)
#include "tst_uzenet.moc"
