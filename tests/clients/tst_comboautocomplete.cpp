#include "clients/ComboAutoComplete.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

// Types as a user would: the first letter opens the list, which then has the keyboard. \b is
// Backspace.
static void type(QComboBox* box, const QString& typed)
{
    for (const QChar c : typed) {
        QWidget* target = box->view()->isVisible() ? box->view() : static_cast<QWidget*>(box);
        const Qt::Key key = c == u'\b' ? Qt::Key_Backspace : Qt::Key(c.toUpper().unicode());
        QTest::sendKeyEvent(QTest::Click, target, key, QString(c), {});
    }
}

class tst_comboautocomplete : public QObject
{
    Q_OBJECT
private slots:
    void completesTheTypedPrefix_data()
    {
        QTest::addColumn<QStringList>("entries");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("selected");
        QTest::addColumn<int>("found");
        const auto row = [](const char* name, const QStringList& entries, const char* typed,
                            const char* shown, const char* selected, int found) {
            QTest::newRow(name) << entries << QString(typed) << QString(shown) << QString(selected)
                                << found;
        };
        const QStringList countries{"Ausztria", "Magyarország", "Németország", "Ábel-sziget"};
        const QStringList britain{"Nagy-Britannia"};
        row("first letter", britain, "n", "Nagy-Britannia", "agy-Britannia", 0);
        row("next letter", britain, "na", "Nagy-Britannia", "gy-Britannia", 0);
        row("accents count", countries, "á", "Ábel-sziget", "bel-sziget", 3);
        row("no match keeps the typed text", countries, "nx", "Nx", "", -1);
        row("backspace is not completed", {"Németország"}, "n\b", "N", "", 0);
        row("apostrophe", {"Côte d'Ivoire"}, "côte d", "Côte d'Ivoire", "'Ivoire", 0);
    }
    void completesTheTypedPrefix()
    {
        QFETCH(QStringList, entries);
        QFETCH(QString, typed);
        QComboBox box;
        auto* complete = new clients::ComboAutoComplete(&box);
        box.addItems(entries);
        box.clearEditText();
        box.show();
        QVERIFY(!box.view()->isVisible());
        type(&box, typed);
        QVERIFY(box.view()->isVisible());
        QTEST(box.currentText(), "shown");
        QTEST(box.lineEdit()->selectedText(), "selected");
        QTEST(complete->foundIndex(), "found");
        QCOMPARE(complete->noMatch(), complete->foundIndex() < 0);
        box.hidePopup();
    }
    // Tab and Enter take the highlighted entry from the open list, close it and go on to the
    // next field, as they do in a text field; Shift+Tab goes back.
    void leavingTakesTheHighlightedEntry_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("downs"); // arrow presses in the open list
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<int>("found");
        QTest::addColumn<QString>("focus");
        const auto row
                = [](const char* name, QString typed, int downs, Qt::Key key,
                     Qt::KeyboardModifiers modifiers, QString shown, int found, QString focus) {
                      QTest::newRow(name) << typed << downs << int(key) << int(modifiers) << shown
                                          << found << focus;
                  };
        row("Tab", "n", 0, Qt::Key_Tab, {}, "Nagy-Britannia", 1, "after");
        row("Enter", "n", 0, Qt::Key_Return, {}, "Nagy-Britannia", 1, "after");
        row("keypad Enter", "né", 0, Qt::Key_Enter, Qt::KeypadModifier, "Németország", 2, "after");
        row("arrow, then Tab", "n", 1, Qt::Key_Tab, {}, "Németország", 2, "after");
        row("Shift+Tab", "n", 0, Qt::Key_Backtab, Qt::ShiftModifier, "Nagy-Britannia", 1, "before");
        row("no match, Enter keeps the typed text", "nx", 0, Qt::Key_Return, {}, "Nx", -1, "after");
    }
    void leavingTakesTheHighlightedEntry()
    {
        QFETCH(QString, typed);
        QFETCH(int, downs);
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QWidget window;
        auto* before = new QLineEdit;
        auto* box = new QComboBox;
        auto* after = new QLineEdit;
        before->setObjectName("before");
        after->setObjectName("after");
        auto* layout = new QVBoxLayout(&window);
        for (QWidget* w : std::initializer_list<QWidget*>{before, box, after})
            layout->addWidget(w);
        auto* complete = new clients::ComboAutoComplete(box);
        box->addItems({"Ausztria", "Nagy-Britannia", "Németország"});
        box->clearEditText();
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        box->setFocus();
        type(box, typed);
        QVERIFY(box->view()->isVisible());
        for (int i = 0; i < downs; ++i)
            QTest::keyClick(box->view(), Qt::Key_Down);
        QTest::keyClick(box->view(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));

        QVERIFY(!box->view()->isVisible());
        QTEST(box->currentText(), "shown");
        QTEST(box->currentIndex(), "found");
        QTEST(complete->foundIndex(), "found");
        QTEST(window.focusWidget()->objectName(), "focus");
    }
};

QTEST_MAIN(tst_comboautocomplete)
#include "tst_comboautocomplete.moc"
