#include "TestSupport.h"

#include "clients/ComboAutoComplete.h"

#include <QAbstractItemView>
#include <QVBoxLayout>

class tst_comboautocomplete : public QObject
{
    Q_OBJECT
private slots:
    // Typing opens the list and completes the first match; Tab and Enter take the highlighted
    // entry and move on, as in a text field; Shift+Tab goes back.
    void typeAhead_data()
    {
        QTest::addColumn<QStringList>("entries");
        QTest::addColumn<QString>("typed"); // \b is Backspace
        QTest::addColumn<int>("downs"); // arrow presses in the open list
        QTest::addColumn<int>("key"); // what leaves the box; 0: the list stays open
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("selected");
        QTest::addColumn<int>("found");
        QTest::addColumn<QString>("focus");
        const auto typing = [](const char* name, const QStringList& entries, const char* typed,
                               const char* shown, const char* selected, int found) {
            QTest::newRow(name) << entries << QString(typed) << 0 << 0 << QString(shown)
                                << QString(selected) << found << QString("box");
        };
        const QStringList countries{"Ausztria", "Magyarország", "Németország", "Ábel-sziget"};
        const QStringList britain{"Nagy-Britannia"};
        typing("first letter", britain, "n", "Nagy-Britannia", "agy-Britannia", 0);
        typing("next letter", britain, "na", "Nagy-Britannia", "gy-Britannia", 0);
        typing("accents count", countries, "á", "Ábel-sziget", "bel-sziget", 3);
        typing("no match keeps the typed text", countries, "nx", "Nx", "", -1);
        typing("backspace is not completed", {"Németország"}, "n\b", "N", "", 0);
        typing("apostrophe", {"Côte d'Ivoire"}, "côte d", "Côte d'Ivoire", "'Ivoire", 0);

        // Enter on the keypad and Shift+Tab are sent with their modifiers.
        const auto leaving = [](const char* name, const char* typed, int downs, Qt::Key key,
                                const char* shown, int found, const char* focus = "after") {
            QTest::newRow(name) << QStringList{"Ausztria", "Nagy-Britannia", "Németország"}
                                << QString(typed) << downs << int(key) << QString(shown)
                                << QString() << found << QString(focus);
        };
        leaving("Tab", "n", 0, Qt::Key_Tab, "Nagy-Britannia", 1);
        leaving("Enter", "n", 0, Qt::Key_Return, "Nagy-Britannia", 1);
        leaving("keypad Enter", "né", 0, Qt::Key_Enter, "Németország", 2);
        leaving("arrow, then Tab", "n", 1, Qt::Key_Tab, "Németország", 2);
        leaving("Shift+Tab", "n", 0, Qt::Key_Backtab, "Nagy-Britannia", 1, "before");
        leaving("no match, Enter keeps the typed text", "nx", 0, Qt::Key_Return, "Nx", -1);
    }
    void typeAhead()
    {
        QFETCH(QStringList, entries);
        QFETCH(QString, typed);
        QFETCH(int, downs);
        QFETCH(int, key);
        QWidget window;
        auto* layout = new QVBoxLayout(&window);
        auto* box = new QComboBox;
        for (QWidget* w : std::initializer_list<QWidget*>{new QLineEdit, box, new QLineEdit}) {
            w->setObjectName(QStringList{"before", "box", "after"}.at(layout->count()));
            layout->addWidget(w);
        }
        auto* complete = new clients::ComboAutoComplete(box);
        box->addItems(entries);
        box->clearEditText();
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        box->setFocus();
        QVERIFY(!box->view()->isVisible());
        // Types as a user would: the first letter opens the list, which then has the keyboard.
        for (const QChar c : typed)
            testsupport::type(box->view()->isVisible() ? box->view() : static_cast<QWidget*>(box),
                              c);
        QVERIFY(box->view()->isVisible());
        if (key) {
            for (int i = 0; i < downs; ++i)
                QTest::keyClick(box->view(), Qt::Key_Down);
            const auto modifier = key == Qt::Key_Enter     ? Qt::KeypadModifier
                                  : key == Qt::Key_Backtab ? Qt::ShiftModifier
                                                           : Qt::NoModifier;
            QTest::keyClick(box->view(), Qt::Key(key), modifier);
            QVERIFY(!box->view()->isVisible());
            QTEST(box->currentIndex(), "found");
        } else {
            QTEST(box->lineEdit()->selectedText(), "selected");
            QCOMPARE(complete->noMatch(), complete->foundIndex() < 0);
        }
        QTEST(box->currentText(), "shown");
        QTEST(complete->foundIndex(), "found");
        QTEST(window.focusWidget()->objectName(), "focus");
        box->hidePopup();
    }
};

QTEST_MAIN(tst_comboautocomplete)
#include "tst_comboautocomplete.moc"
