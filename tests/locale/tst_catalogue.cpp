#include "TestSupport.h"

#include "locale/Felirat.h"
#include "locale/Uzenet.h"
#include "session/Session.h"

#include <tuple>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <QTimer>

namespace {

// Control names from ranges such as "sz1-6 g3 g5-7".
QStringList controls(const QString& ranges)
{
    QStringList names;
    for (const QString& r : ranges.split(u' ')) {
        const int digit = r.indexOf(QRegularExpression(QStringLiteral("\\d")));
        const QStringList span = r.mid(digit).split(u'-');
        for (int n = span.first().toInt(); n <= span.last().toInt(); ++n)
            names << r.left(digit) + QString::number(n);
    }
    return names;
}

// The texts feliratoz gives a stand-in screen: labels (sz) and buttons (g) showing "design", and
// the mode that chooses the key in both the search screen's tipus and the list screen's hivo.
QStringList captions(const QString& name, const QString& ranges, const QString& mode = {})
{
    QWidget w;
    w.setObjectName(name);
    for (const char* field : {"tipus", "hivo"})
        (new QLineEdit(mode, &w))->setObjectName(QLatin1String(field));
    QList<QWidget*> shown;
    for (const QString& c : controls(ranges)) {
        shown << (c.startsWith(u's') ? static_cast<QWidget*>(new QLabel(&w)) : new QPushButton(&w));
        shown.last()->setObjectName(c);
        shown.last()->setProperty("text", QStringLiteral("design"));
    }
    feliratoz(&w);
    QStringList texts;
    for (QWidget* control : shown)
        texts << control->property("text").toString();
    return texts;
}

} // namespace

// The catalogue: captions and messages in the session's language.
class tst_catalogue : public QObject
{
    Q_OBJECT
    testsupport::TestFolder m_folder; // shared: only Alap, which no row below walks, is changed

private slots:
    void initTestCase() { QVERIFY(m_folder.open()); }

    void nullLeavesTheCaption()
    {
        QVERIFY(m_folder.db().exec("UPDATE felirat SET [2g3] = NULL WHERE felirkod = 'Alap'"));
        Session::instance().language = 2;
        QCOMPARE(captions("Alap", "g2-4"), (QStringList{"Beenden", "design", "Akten"}));
    }

    // Every label and button a screen has gets its key's text; each key's sz1 is its own.
    void catalogueFillsEveryControl_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QString>("controls");
        QTest::addColumn<int>("language");
        const auto add = [](const char* key, const char* screen, const char* mode, const char* c) {
            for (int lang = 1; lang <= 3; ++lang)
                QTest::addRow("%s on %s, mode '%s', language %d", key, screen, mode, lang)
                        << key << screen << mode << c << lang;
        };
        add("Login", "Login", "", "sz1-3 g1-2");
        add("Ugyfelek", "Ugyfelek", "", "sz1-15 g1-7");
        add("keres", "keres", "1", "sz1-6 g1-5");
        add("keres2", "keres", "2", "sz1-6 g1-5"); // cases mode
        add("Ugyek", "Ugyek", "", "sz1-4 sz6-7 sz9-32 g1 g3-10");
        add("orszag", "Egyebadat", "1", "sz1-2 g1-5");
        add("tipus", "Egyebadat", "2", "sz1-2 g1-5");
        add("ugyved", "Egyebadat", "3", "sz1-2 g1-5");
        add("Egyebadat", "Egyebadat", "21", "sz1-2 g1-5"); // called from the case screen
        add("users", "users", "", "sz1-19 g1-5");
        add("param", "param", "", "sz1-7 g1-3 g5");
        add("irszam", "irszam", "", "sz1-4 g1-5");
        add("Partnerek", "Partnerek", "", "sz1-11 g3-7");
    }
    void catalogueFillsEveryControl()
    {
        QFETCH(QString, key);
        QFETCH(QString, screen);
        QFETCH(QString, mode);
        QFETCH(QString, controls);
        QFETCH(int, language);
        Session::instance().language = qint16(language);
        const auto stored = m_folder.db().first("SELECT * FROM felirat WHERE felirkod = ?", {key});
        QStringList expected;
        for (const QString& c : ::controls(controls))
            expected << stored.text(QString::number(language) + c);
        QVERIFY(!expected.contains(QString()));
        QCOMPARE(captions(screen, controls, mode), expected);
    }

    // The real box in the session's language, answered by Enter at once, which presses its
    // default button.
    void boxInTheSessionLanguage()
    {
        using namespace platform;
        setMessageHandler(nullptr);
        const std::tuple<const char*, int, int, int, QString> boxes[]{
                {"nincsjog", 2, Notice, AnswerOk,
                 "Sie haben keine Berechtigung für diesen Befehl."},
                {"torol", 3, Confirmation, AnswerNo, "Do you really want to delete this record?"},
                {"RestoreK", 3, RestoreQuestion, AnswerYes,
                 "Restoring will overwrite the current data. Do you really want to continue?"}};
        for (const auto& [code, language, style, answer, text] : boxes) {
            Session::instance().language = qint16(language);
            QString shown;
            QTimer::singleShot(0, [&shown] {
                if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                    shown = box->text();
                    QTest::keyClick(box, Qt::Key_Return);
                }
            });
            QCOMPARE(uzenet(code, style), answer);
            QCOMPARE(shown, text);
        }
    }

    // Each message has a text of its own in every language, found also by its code in capitals
    // (a miss would give the code itself); a code the catalogue lacks shows the code.
    void everyMessageInEveryLanguage()
    {
        const QString codes
                = "nincsjog kilep nincsmeg torol nemtorol ments nincs rjelszo nincsorsz "
                  "kotelezo nincsugyf vanmar hibasadat nincsujat nyomhiba telefon "
                  "backup2 backup1 backupOK RestoreH RestoreK RestoreOK foglalt "
                  "csakolvas serult elutasit adathiba nincsmar zarolt nemolvashato "
                  "nemcausora olvasomod";
        QHash<QString, QSet<QString>> texts;
        for (int lang = 1; lang <= 3; ++lang) {
            Session::instance().language = qint16(lang);
            QCOMPARE(uzenetszoveg("nincsilyenkod"), QStringLiteral("nincsilyenkod"));
            for (const QString& code : codes.split(' '))
                texts[code] << uzenetszoveg(code) << uzenetszoveg(code.toUpper());
        }
        for (auto it = texts.cbegin(); it != texts.cend(); ++it)
            QVERIFY2(!it->contains(QString()) && !it->contains(it.key()) && it->size() == 3,
                     qPrintable(it.key()));
    }
};

QTEST_MAIN(tst_catalogue)
#include "tst_catalogue.moc"
