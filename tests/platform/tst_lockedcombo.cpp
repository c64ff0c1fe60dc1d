#include "platform/LockedCombo.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace {

// Gestures that are not a key.
constexpr int wheel = 0;
constexpr int clickOnArrow = 1;

void perform(QComboBox* box, int gesture, Qt::KeyboardModifiers modifiers)
{
    box->setFocus();
    if (gesture == wheel) {
        const QPointF at(box->width() / 2, box->height() / 2);
        QWheelEvent turn(at, box->mapToGlobal(at), QPoint(), QPoint(0, -120), Qt::NoButton,
                         Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(box, &turn);
    } else if (gesture == clickOnArrow) {
        QStyleOptionComboBox option;
        option.initFrom(box);
        option.editable = box->isEditable();
        QTest::mouseClick(box, Qt::LeftButton, {},
                          box->style()
                                  ->subControlRect(QStyle::CC_ComboBox, &option,
                                                   QStyle::SC_ComboBoxArrow, box)
                                  .center());
    } else {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(gesture), modifiers);
    }
}

} // namespace

class tst_lockedcombo : public QObject
{
    Q_OBJECT
private slots:
    // Each gesture changes an unlocked box (so the test sees it act) and leaves a locked one,
    // with or without an edit part, exactly as it was.
    void aLockedBoxTakesNoChange_data()
    {
        QTest::addColumn<int>("gesture"); // a key, or one of the gestures above
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("editable");
        const auto row = [](const char* name, int gesture, Qt::KeyboardModifiers modifiers,
                            bool editable) {
            QTest::addRow("%s, %s", name, editable ? "editable" : "list only")
                    << gesture << int(modifiers) << editable;
        };
        for (const bool editable : {true, false}) {
            row("mouse wheel", wheel, {}, editable);
            row("click on the arrow", clickOnArrow, {}, editable);
            row("arrow down", Qt::Key_Down, {}, editable);
            row("page up", Qt::Key_PageUp, {}, editable);
            row("F4 opens the list", Qt::Key_F4, {}, editable);
            row("typed letter", Qt::Key_X, {}, editable);
        }
        row("paste", Qt::Key_V, Qt::ControlModifier, true);
        row("backspace", Qt::Key_Backspace, {}, true);
    }
    void aLockedBoxTakesNoChange()
    {
        QFETCH(int, gesture);
        QFETCH(int, modifiers);
        QFETCH(bool, editable);
        QWidget window;
        auto* box = new QComboBox;
        auto* after = new QLineEdit;
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(box);
        layout->addWidget(after);
        box->setEditable(editable);
        box->addItems({"Ausztria", "Magyarország", "Németország", "Xanadu"});
        box->setCurrentIndex(1);
        QApplication::clipboard()->setText("Beillesztett");
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto changed = [box] {
            const bool open = box->view()->isVisible();
            box->hidePopup();
            return open || box->currentIndex() != 1 || box->currentText() != "Magyarország";
        };

        platform::lockComboBox(box, true);
        perform(box, gesture, Qt::KeyboardModifiers(modifiers));
        QVERIFY(!changed());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); // leaving still works
        QCOMPARE(QApplication::focusWidget(), after);

        platform::lockComboBox(box, false);
        perform(box, gesture, Qt::KeyboardModifiers(modifiers));
        QVERIFY2(changed(), "the gesture does nothing even to an unlocked box");
    }
};

QTEST_MAIN(tst_lockedcombo)
#include "tst_lockedcombo.moc"
