#include "platform/LockedCombo.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>

namespace platform {

namespace {

// Keys with which a choice box changes its value or opens its list by itself. A box with an
// edit part leaves the other keys to it, and a read-only edit part changes nothing; a box
// without one also chooses by Home, End, Space and the first letters of an entry, so there
// only the keys that leave the box or its window are let through.
bool changesChoice(const QKeyEvent* key, bool editable)
{
    switch (key->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_F4:
    case Qt::Key_Select:
        return true;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return false;
    default:
        return !editable;
    }
}

} // namespace

LockedCombo::LockedCombo(QComboBox* box) : QObject(box), m_box(box)
{
    box->installEventFilter(this);
}

LockedCombo* LockedCombo::of(QComboBox* box)
{
    auto* lock = box->findChild<LockedCombo*>(QString(), Qt::FindDirectChildrenOnly);
    return lock ? lock : new LockedCombo(box);
}

void LockedCombo::setLocked(bool locked)
{
    m_locked = locked;
    if (locked)
        m_box->hidePopup();
    if (QLineEdit* edit = m_box->lineEdit())
        edit->setReadOnly(locked);
    // Should the list be open all the same, none of its entries can be chosen.
    m_box->view()->setEnabled(!locked);
}

bool LockedCombo::eventFilter(QObject* watched, QEvent* event)
{
    if (!m_locked || watched != m_box)
        return QObject::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::Wheel:
        // Taken here, so the box does not step to another entry; a wheel turned over the edit
        // part comes here too, as the edit part passes it on.
        event->accept();
        return true;
    case QEvent::KeyPress:
        return changesChoice(static_cast<QKeyEvent*>(event), m_box->isEditable());
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        // A click on the box outside its edit part opens the list.
        return true;
    default:
        return QObject::eventFilter(watched, event);
    }
}

void lockComboBox(QComboBox* box, bool locked)
{
    LockedCombo::of(box)->setLocked(locked);
}

} // namespace platform
