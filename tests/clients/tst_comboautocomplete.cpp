#include "clients/ComboAutoComplete.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

namespace {

// An empty editable box with type-ahead over the entries, shown.
struct Box
{
    QComboBox box;
    clients::ComboAutoComplete* complete = new clients::ComboAutoComplete(&box);

    explicit Box(const QStringList& entries)
    {
        box.addItems(entries);
        box.clearEditText();
        box.show();
    }
    ~Box() { box.hidePopup(); }
    // Types as a user would (\b is Backspace): the first letter opens the list, which then has
    // the keyboard.
    void type(const QString& text)
    {
        for (const QChar c : text) {
            QWidget* target = box.view()->isVisible() ? box.view() : static_cast<QWidget*>(&box);
            const Qt::Key key = c == u'\b' ? Qt::Key_Backspace : Qt::Key(c.toUpper().unicode());
            QTest::sendKeyEvent(QTest::Click, target, key, QString(c), {});
        }
    }
};

} // namespace

class tst_comboautocomplete : public QObject
{
    Q_OBJECT
private slots:
    void completesTheTypedPrefix_data();
    void completesTheTypedPrefix();
};

void tst_comboautocomplete::completesTheTypedPrefix_data()
{
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<int>("found");
    const auto row = [](const char* name, const QStringList& entries, const QString& typed,
                        const QString& shown, const QString& selected, int found) {
        QTest::newRow(name) << entries << typed << shown << selected << found;
    };
    const QStringList countries{"Ausztria", "Magyarország", "Németország", "Ábel-sziget"};
    row("first letter", {"Nagy-Britannia"}, "n", "Nagy-Britannia", "agy-Britannia", 0);
    row("next letter, list open", {"Nagy-Britannia"}, "na", "Nagy-Britannia", "gy-Britannia", 0);
    row("accents count", countries, "á", "Ábel-sziget", "bel-sziget", 3);
    row("no match keeps the typed text", countries, "nx", "Nx", "", -1);
    row("backspace removes the tail, not completed again", {"Németország"}, "n\b", "N", "", 0);
    row("apostrophe", {"Côte d'Ivoire"}, "côte d", "Côte d'Ivoire", "'Ivoire", 0);
}

void tst_comboautocomplete::completesTheTypedPrefix()
{
    QFETCH(QStringList, entries);
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    QFETCH(QString, selected);
    QFETCH(int, found);

    Box b(entries);
    QVERIFY(!b.box.view()->isVisible());
    b.type(typed);
    QVERIFY(b.box.view()->isVisible()); // the first letter into the empty box opens the list
    QCOMPARE(b.box.currentText(), shown);
    QCOMPARE(b.box.lineEdit()->selectedText(), selected);
    QCOMPARE(b.complete->foundIndex(), found);
    QCOMPARE(b.complete->noMatch(), found < 0);
}

QTEST_MAIN(tst_comboautocomplete)
#include "tst_comboautocomplete.moc"
