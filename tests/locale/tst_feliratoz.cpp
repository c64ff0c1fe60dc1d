#include "TestSupport.h"

#include "locale/Felirat.h"
#include "session/Session.h"

#include <memory>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using testsupport::TestFolder;

namespace {

// A stand-in screen: a window of the given name with the listed labels and buttons, each
// showing its design text "design".
std::unique_ptr<QWidget> screen(const QString& name, const QStringList& controls)
{
    auto w = std::make_unique<QWidget>();
    w->setObjectName(name);
    for (const QString& c : controls) {
        QWidget* control
                = c.startsWith(QLatin1String("sz"))
                          ? static_cast<QWidget*>(new QLabel(QStringLiteral("design"), w.get()))
                          : new QPushButton(QStringLiteral("design"), w.get());
        control->setObjectName(c);
    }
    return w;
}

QString textOf(QWidget* screen, const QString& control)
{
    return screen->findChild<QWidget*>(control)->property("text").toString();
}

QString caption(const QString& key, const QString& column)
{
    return Session::instance()
            .database
            .scalar(QStringLiteral("SELECT [%1] FROM felirat WHERE felirkod = ?").arg(column),
                    {key})
            .toString();
}

// The controls each screen key fills.
QStringList numbered(const QString& prefix, const QList<int>& numbers)
{
    QStringList names;
    for (int n : numbers)
        names << prefix + QString::number(n);
    return names;
}

QList<int> range(int from, int to)
{
    QList<int> r;
    for (int n = from; n <= to; ++n)
        r << n;
    return r;
}

} // namespace

class tst_feliratoz : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void keyOfTheScreen_data();
    void keyOfTheScreen();
    void nullLeavesTheCaption();
    void unknownLanguageChangesNothing();
    void ownedWindowsKeepTheirTexts();
    void catalogueFillsEveryControl_data();
    void catalogueFillsEveryControl();

private:
    std::unique_ptr<TestFolder> m_folder;
};

void tst_feliratoz::init()
{
    m_folder.reset(); // the old folder's clean-up must not follow the new one's set-up
    m_folder = std::make_unique<TestFolder>();
    QVERIFY(m_folder->open());
}

void tst_feliratoz::keyOfTheScreen_data()
{
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("key");
    QTest::newRow("search, clients") << "keres"
                                     << "tipus"
                                     << "1"
                                     << "keres";
    QTest::newRow("search, cases") << "keres"
                                   << "tipus"
                                   << "2"
                                   << "keres2";
    QTest::newRow("search, mode unset") << "keres"
                                        << "tipus"
                                        << ""
                                        << "keres";
    QTest::newRow("lookup list, countries") << "Egyebadat"
                                            << "hivo"
                                            << "1"
                                            << "orszag";
    QTest::newRow("lookup list, case types") << "Egyebadat"
                                             << "hivo"
                                             << "2"
                                             << "tipus";
    QTest::newRow("lookup list, lawyers") << "Egyebadat"
                                          << "hivo"
                                          << "3"
                                          << "ugyved";
    QTest::newRow("lookup list, from the case screen") << "Egyebadat"
                                                       << "hivo"
                                                       << "21"
                                                       << "Egyebadat";
    QTest::newRow("name in other letter case") << "UGYFELEK"
                                               << "hivo"
                                               << ""
                                               << "Ugyfelek";
}

void tst_feliratoz::keyOfTheScreen()
{
    QFETCH(QString, screen);
    QFETCH(QString, field);
    QFETCH(QString, value);
    QFETCH(QString, key);
    Session::instance().language = 3;
    auto w = ::screen(screen, {QStringLiteral("sz1"), QStringLiteral("g1")});
    auto* mode = new QLineEdit(value, w.get());
    mode->setObjectName(field);
    mode->hide();
    feliratoz(w.get());
    QCOMPARE(textOf(w.get(), QStringLiteral("sz1")), caption(key, QStringLiteral("3sz1")));
    QCOMPARE(textOf(w.get(), QStringLiteral("g1")), caption(key, QStringLiteral("3g1")));
}

void tst_feliratoz::nullLeavesTheCaption()
{
    QVERIFY(m_folder->db().exec(
            QStringLiteral("UPDATE felirat SET [2g3] = NULL WHERE felirkod = 'Alap'")));
    Session::instance().language = 2;
    auto w = screen(QStringLiteral("Alap"), {"g2", "g3", "g4"});
    feliratoz(w.get());
    QCOMPARE(textOf(w.get(), "g3"), QStringLiteral("design"));
    QCOMPARE(textOf(w.get(), "g2"), QStringLiteral("Beenden"));
    QCOMPARE(textOf(w.get(), "g4"), QStringLiteral("Akten"));
}

void tst_feliratoz::unknownLanguageChangesNothing()
{
    Session::instance().language = 4;
    auto w = screen(QStringLiteral("Alap"), {"sz1", "g1"});
    feliratoz(w.get());
    QCOMPARE(textOf(w.get(), "sz1"), QStringLiteral("design"));
    QCOMPARE(textOf(w.get(), "g1"), QStringLiteral("design"));
}

// A screen that owns another window (the menu owns the login screen) writes only its own.
void tst_feliratoz::ownedWindowsKeepTheirTexts()
{
    auto menu = screen(QStringLiteral("Alap"), {});
    auto* owned = new QWidget(menu.get(), Qt::Window);
    owned->setObjectName(QStringLiteral("Login"));
    (new QLabel(QStringLiteral("design"), owned))->setObjectName(QStringLiteral("sz1"));
    (new QLabel(QStringLiteral("design"), menu.get()))->setObjectName(QStringLiteral("sz2"));
    feliratoz(menu.get());
    QCOMPARE(textOf(owned, "sz1"), QStringLiteral("design"));
    QCOMPARE(textOf(menu.get(), "sz2"), QStringLiteral("Nyilvántartó program"));
}

// Every label and button that a screen key fills gets a text in every language.
void tst_feliratoz::catalogueFillsEveryControl_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QStringList>("controls");
    const QList<int> list{1, 2};
    struct Key
    {
        const char* key;
        const char* screen;
        const char* field;
        const char* value;
        QStringList controls;
    };
    const QList<Key> keys{
            {"Alap", "Alap", "", "", numbered("sz", {1, 2}) + numbered("g", range(1, 10))},
            {"Login", "Login", "", "", numbered("sz", range(1, 3)) + numbered("g", {1, 2})},
            {"Ugyfelek", "Ugyfelek", "", "",
             numbered("sz", range(1, 15)) + numbered("g", range(1, 7))},
            {"keres", "keres", "tipus", "1",
             numbered("sz", range(1, 6)) + numbered("g", range(1, 5))},
            {"keres2", "keres", "tipus", "2",
             numbered("sz", range(1, 6)) + numbered("g", range(1, 5))},
            {"Ugyek", "Ugyek", "", "",
             numbered("sz", QList<int>{1, 2, 3, 4, 6, 7} + range(9, 32)) + numbered("g", {1})
                     + numbered("g", range(3, 10))},
            {"orszag", "Egyebadat", "hivo", "1", numbered("sz", list) + numbered("g", range(1, 5))},
            {"tipus", "Egyebadat", "hivo", "2", numbered("sz", list) + numbered("g", range(1, 5))},
            {"ugyved", "Egyebadat", "hivo", "3", numbered("sz", list) + numbered("g", range(1, 5))},
            {"Egyebadat", "Egyebadat", "hivo", "",
             numbered("sz", list) + numbered("g", range(1, 5))},
            {"users", "users", "", "", numbered("sz", range(1, 19)) + numbered("g", range(1, 5))},
            {"param", "param", "", "", numbered("sz", range(1, 7)) + numbered("g", {1, 2, 3, 5})},
            {"irszam", "irszam", "", "", numbered("sz", range(1, 4)) + numbered("g", range(1, 5))},
            {"Partnerek", "Partnerek", "", "",
             numbered("sz", range(1, 11)) + numbered("g", range(3, 7))},
    };
    for (const Key& k : keys) {
        for (int lang = 1; lang <= 3; ++lang) {
            QTest::addRow("%s %d", k.key, lang)
                    << QString::fromLatin1(k.key) << QString::fromLatin1(k.screen)
                    << QString::fromLatin1(k.field) << QString::fromLatin1(k.value) << k.controls;
        }
    }
}

void tst_feliratoz::catalogueFillsEveryControl()
{
    QFETCH(QString, key);
    QFETCH(QString, screen);
    QFETCH(QString, field);
    QFETCH(QString, value);
    QFETCH(QStringList, controls);
    const QString row(QTest::currentDataTag());
    const int lang = row.right(1).toInt();
    Session::instance().language = qint16(lang);

    auto w = ::screen(screen, controls);
    if (!field.isEmpty())
        (new QLineEdit(value, w.get()))->setObjectName(field);
    feliratoz(w.get());
    for (const QString& c : controls) {
        const QString text = textOf(w.get(), c);
        QVERIFY2(!text.isEmpty() && text != QLatin1String("design"), qPrintable(c));
        QCOMPARE(text, caption(key, QString::number(lang) + c));
    }
}

QTEST_MAIN(tst_feliratoz)
#include "tst_feliratoz.moc"
