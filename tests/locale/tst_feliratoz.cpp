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

// A stand-in screen: a window of the given name with the listed labels (sz) and buttons (g),
// each showing its design text "design".
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

// The prefix followed by each number from first to last.
QStringList numbered(const char* prefix, int first, int last)
{
    QStringList names;
    for (int n = first; n <= last; ++n)
        names << QLatin1String(prefix) + QString::number(n);
    return names;
}

} // namespace

class tst_feliratoz : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void nullLeavesTheCaption();
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

// A screen that owns another window (the menu owns the login screen) writes only its own.
void tst_feliratoz::ownedWindowsKeepTheirTexts()
{
    auto menu = screen(QStringLiteral("Alap"), {"sz2"});
    auto owned = screen(QStringLiteral("Login"), {"sz1"});
    owned->setParent(menu.get(), Qt::Window);
    feliratoz(menu.get());
    QCOMPARE(textOf(owned.get(), "sz1"), QStringLiteral("design"));
    QCOMPARE(textOf(menu.get(), "sz2"), QStringLiteral("Nyilvántartó program"));
}

// For every screen key and language, every label and button the screen has gets the text of
// that key; the search and list screens choose the key by their mode. Each key's sz1 names its
// own list, so a wrong key shows.
void tst_feliratoz::catalogueFillsEveryControl_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QStringList>("controls");
    QTest::addColumn<int>("language");
    const auto add = [](const char* key, const char* screen, const char* mode,
                        const QStringList& controls) {
        for (int lang = 1; lang <= 3; ++lang) {
            QTest::addRow("%s on %s, mode '%s', language %d", key, screen, mode, lang)
                    << QString(key) << QString(screen) << QString(mode) << controls << lang;
        }
    };
    const QStringList search = numbered("sz", 1, 6) + numbered("g", 1, 5);
    const QStringList list = numbered("sz", 1, 2) + numbered("g", 1, 5);
    const QStringList clients = numbered("sz", 1, 15) + numbered("g", 1, 7);
    add("Alap", "Alap", "", numbered("sz", 1, 2) + numbered("g", 1, 10));
    add("Login", "Login", "", numbered("sz", 1, 3) + numbered("g", 1, 2));
    add("Ugyfelek", "Ugyfelek", "", clients);
    add("Ugyfelek", "UGYFELEK", "", clients);
    add("keres", "keres", "1", search);
    add("keres2", "keres", "2", search);
    add("keres", "keres", "", search);
    add("Ugyek", "Ugyek", "",
        numbered("sz", 1, 4) + numbered("sz", 6, 7) + numbered("sz", 9, 32) + numbered("g", 1, 1)
                + numbered("g", 3, 10));
    add("orszag", "Egyebadat", "1", list);
    add("tipus", "Egyebadat", "2", list);
    add("ugyved", "Egyebadat", "3", list);
    add("Egyebadat", "Egyebadat", "", list);
    add("Egyebadat", "Egyebadat", "21", list); // called from the case screen
    add("users", "users", "", numbered("sz", 1, 19) + numbered("g", 1, 5));
    add("param", "param", "", numbered("sz", 1, 7) + numbered("g", 1, 3) + numbered("g", 5, 5));
    add("irszam", "irszam", "", numbered("sz", 1, 4) + numbered("g", 1, 5));
    add("Partnerek", "Partnerek", "", numbered("sz", 1, 11) + numbered("g", 3, 7));
}

void tst_feliratoz::catalogueFillsEveryControl()
{
    QFETCH(QString, key);
    QFETCH(QString, screen);
    QFETCH(QString, mode);
    QFETCH(QStringList, controls);
    QFETCH(int, language);
    Session::instance().language = qint16(language);
    auto w = ::screen(screen, controls);
    // The search screen keeps its mode in tipus, the list screen in hivo; each reads only its own.
    for (const char* field : {"tipus", "hivo"})
        (new QLineEdit(mode, w.get()))->setObjectName(QLatin1String(field));
    feliratoz(w.get());
    for (const QString& c : controls) {
        const QString text = textOf(w.get(), c);
        const QString column = QString::number(language) + c;
        const QVariant stored = m_folder->db().scalar(
                QStringLiteral("SELECT [%1] FROM felirat WHERE felirkod = ?").arg(column), {key});
        QVERIFY2(!text.isEmpty() && text != QLatin1String("design"), qPrintable(c));
        QCOMPARE(text, stored.toString());
    }
}

QTEST_MAIN(tst_feliratoz)
#include "tst_feliratoz.moc"
