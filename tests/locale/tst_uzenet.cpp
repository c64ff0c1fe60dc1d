#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "session/Session.h"

#include <QApplication>
#include <QMessageBox>
#include <QSet>
#include <QTest>
#include <QTimer>

class tst_uzenet : public QObject
{
    Q_OBJECT
    testsupport::TestFolder m_folder;

private slots:
    void initTestCase() { QVERIFY(m_folder.open()); }

    // The real box, answered by Enter at once, which presses its default button.
    void boxInTheSessionLanguage_data()
    {
        using namespace platform;
        QTest::addColumn<QString>("code");
        QTest::addColumn<int>("language");
        QTest::addColumn<int>("style");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("text");
        QTest::newRow("2") << "nincsjog" << 2 << int(Notice) << int(AnswerOk)
                           << "Sie haben keine Berechtigung für diesen Befehl.";
        QTest::newRow("3, No") << "torol" << 3 << int(Confirmation) << int(AnswerNo)
                               << "Do you really want to delete this record?";
        QTest::newRow("3, Yes")
                << "RestoreK" << 3 << int(RestoreQuestion) << int(AnswerYes)
                << "Restoring will overwrite the current data. Do you really want to continue?";
    }
    void boxInTheSessionLanguage()
    {
        QFETCH(QString, code);
        QFETCH(int, language);
        QFETCH(int, style);
        QFETCH(int, answer);
        QFETCH(QString, text);
        Session::instance().language = qint16(language);
        platform::setMessageHandler(nullptr);
        QString shown;
        QTimer::singleShot(0, [&] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                shown = box->text();
                QTest::keyClick(box, Qt::Key_Return);
            }
        });
        QCOMPARE(uzenet(code, style), answer);
        QCOMPARE(shown, text);
    }

    void everyMessageInEveryLanguage_data()
    {
        QTest::addColumn<QString>("code");
        for (const char* code :
             {"nincsjog",   "kilep",     "nincsmeg",  "torol",     "nemtorol",  "ments",
              "nincs",      "rjelszo",   "nincsorsz", "kotelezo",  "nincsugyf", "vanmar",
              "hibasadat",  "nincsujat", "nyomhiba",  "telefon",   "backup2",   "backup1",
              "backupOK",   "RestoreH",  "RestoreK",  "RestoreOK", "foglalt",   "csakolvas",
              "serult",     "elutasit",  "adathiba",  "nincsmar",  "zarolt",    "nemolvashato",
              "nemcausora", "olvasomod"})
            QTest::newRow(code) << code;
    }
    // The code in capitals finds the same row: a miss would add the code itself to the texts.
    void everyMessageInEveryLanguage()
    {
        QFETCH(QString, code);
        QSet<QString> texts;
        for (int lang = 1; lang <= 3; ++lang) {
            Session::instance().language = qint16(lang);
            texts << uzenetszoveg(code) << uzenetszoveg(code.toUpper());
        }
        QCOMPARE(texts - QSet<QString>({QString(), code}), texts); // none empty, none missing
        QCOMPARE(texts.size(), 3); // a text of its own in each language
    }

    // A code the catalogue lacks still tells the user what was meant.
    void unknownCodeShowsTheCode()
    {
        for (int lang = 1; lang <= 3; ++lang) {
            Session::instance().language = qint16(lang);
            QCOMPARE(uzenetszoveg("nincsilyenkod"), QStringLiteral("nincsilyenkod"));
        }
    }
};

QTEST_MAIN(tst_uzenet)
#include "tst_uzenet.moc"
