#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "session/Session.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QSet>
#include <QTest>
#include <QTimer>

using testsupport::MessageRecorder;
using testsupport::TestFolder;

class tst_uzenet : public QObject
{
    Q_OBJECT
private slots:
    void textOfTheSessionLanguage_data();
    void textOfTheSessionLanguage();
    void codeMatchesWhateverItsLetterCase_data();
    void codeMatchesWhateverItsLetterCase();
    void missingCodeShowsTheCode();
    void boxTitles_data();
    void boxTitles();
    void enterPressesTheDefaultButton_data();
    void enterPressesTheDefaultButton();
    void everyMessageInEveryLanguage_data();
    void everyMessageInEveryLanguage();
};

void tst_uzenet::textOfTheSessionLanguage_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Hungarian") << 1 << QStringLiteral("Nincs jogosultsága ehhez a parancshoz!");
    QTest::newRow("German") << 2
                            << QStringLiteral("Sie haben keine Berechtigung für diesen Befehl.");
    QTest::newRow("English") << 3 << QStringLiteral("You have no permission for this command.");
    QTest::newRow("no such language") << 4 << QString();
    QTest::newRow("zero") << 0 << QString();
}

void tst_uzenet::textOfTheSessionLanguage()
{
    QFETCH(int, language);
    QFETCH(QString, expected);
    TestFolder folder;
    QVERIFY(folder.open());
    Session::instance().language = qint16(language);
    QCOMPARE(uzenetszoveg(QStringLiteral("nincsjog")), expected);

    // What the box shows is the same text, also for a language that has none.
    MessageRecorder recorder;
    uzenet(QStringLiteral("nincsjog"));
    QCOMPARE(recorder.texts(), QStringList{expected});
}

void tst_uzenet::codeMatchesWhateverItsLetterCase_data()
{
    QTest::addColumn<QString>("code");
    QTest::newRow("capitals") << QStringLiteral("RJELSZO");
    QTest::newRow("mixed") << QStringLiteral("rJelSzo");
    QTest::newRow("as stored") << QStringLiteral("rjelszo");
}

void tst_uzenet::codeMatchesWhateverItsLetterCase()
{
    QFETCH(QString, code);
    TestFolder folder;
    QVERIFY(folder.open());
    Session::instance().language = 2;
    QCOMPARE(uzenetszoveg(code),
             QStringLiteral("Das Kennwort ist falsch. Bitte versuchen Sie es erneut."));
}

void tst_uzenet::missingCodeShowsTheCode()
{
    TestFolder folder;
    QVERIFY(folder.open());
    QVERIFY(folder.db().exec(QStringLiteral("DELETE FROM uzenetek WHERE uzenkod = 'telefon'")));
    QCOMPARE(uzenetszoveg(QStringLiteral("telefon")), QStringLiteral("telefon"));
}

void tst_uzenet::boxTitles_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<int>("style");
    QTest::addColumn<QString>("title");
    QTest::newRow("exit question")
            << QStringLiteral("kilep") << int(platform::Confirmation) << QStringLiteral("EXIT");
    QTest::newRow("exit question in capitals")
            << QStringLiteral("KILEP") << int(platform::Confirmation) << QStringLiteral("EXIT");
    QTest::newRow("other confirmation")
            << QStringLiteral("torol") << int(platform::Confirmation) << QString();
    QTest::newRow("notice") << QStringLiteral("nincsjog") << int(platform::Notice) << QString();
}

void tst_uzenet::boxTitles()
{
    QFETCH(QString, code);
    QFETCH(int, style);
    QFETCH(QString, title);
    TestFolder folder;
    QVERIFY(folder.open());
    MessageRecorder recorder;
    uzenet(code, style);
    QCOMPARE(recorder.shown().size(), 1);
    QCOMPARE(recorder.shown().at(0).style, style);
    QCOMPARE(recorder.shown().at(0).title, title);
}

// The real box: Enter at once presses the default button, which decides the answer.
void tst_uzenet::enterPressesTheDefaultButton_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("title");
    QTest::newRow("confirmation: No") << QStringLiteral("torol") << int(platform::Confirmation)
                                      << int(platform::AnswerNo) << QStringLiteral(" ");
    QTest::newRow("exit: No") << QStringLiteral("kilep") << int(platform::Confirmation)
                              << int(platform::AnswerNo) << QStringLiteral("EXIT");
    QTest::newRow("restore question: Yes")
            << QStringLiteral("RestoreK") << int(platform::RestoreQuestion)
            << int(platform::AnswerYes) << QStringLiteral("tst_uzenet");
    QTest::newRow("notice: OK") << QStringLiteral("nincsjog") << int(platform::Notice)
                                << int(platform::AnswerOk) << QStringLiteral("tst_uzenet");
}

void tst_uzenet::enterPressesTheDefaultButton()
{
    QFETCH(QString, code);
    QFETCH(int, style);
    QFETCH(int, answer);
    QFETCH(QString, title);
    TestFolder folder;
    QVERIFY(folder.open());
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
    TestFolder folder;
    QVERIFY(folder.open());
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
