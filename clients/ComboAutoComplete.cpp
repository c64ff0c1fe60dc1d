#include "clients/ComboAutoComplete.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>

namespace clients {

ComboAutoComplete::ComboAutoComplete(QComboBox* box) : QObject(box), m_box(box)
{
    box->setEditable(true);
    box->setCompleter(nullptr);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->installEventFilter(this);
    box->view()->installEventFilter(this);
}

int ComboAutoComplete::findPrefix(const QString& prefix) const
{
    for (int i = 0; i < m_box->count(); ++i) {
        const QString entry = m_box->itemText(i);
        // Unicode case folding: Á matches á but not a. A collator would not do here, as it
        // reads the Hungarian double letters (gy, sz) as one letter only in some letter cases.
        if (QStringView(entry).startsWith(prefix, Qt::CaseInsensitive))
            return i;
    }
    return -1;
}

void ComboAutoComplete::type(QChar c)
{
    QLineEdit* edit = m_box->lineEdit();
    if (!edit || edit->isReadOnly())
        return;
    edit->insert(QString(c));
    const int start = edit->cursorPosition();
    if (edit->text().size() == 1 && !m_box->view()->isVisible())
        m_box->showPopup();

    const QString typed = edit->text();
    m_found = findPrefix(typed.left(start));
    m_noMatch = m_found < 0;
    if (m_found >= 0) {
        m_box->setCurrentIndex(m_found);
        edit->setText(m_box->itemText(m_found));
    } else {
        // Choosing no entry would empty the box; the typed text is to stay.
        m_box->setCurrentIndex(-1);
        edit->setText(typed);
    }
    if (m_box->view()->isVisible())
        m_box->view()->setCurrentIndex(m_found >= 0 ? m_box->model()->index(m_found, 0)
                                                    : QModelIndex());
    edit->setSelection(start, edit->text().size() - start);
}

void ComboAutoComplete::takeAndLeave(bool backwards)
{
    const QModelIndex highlighted = m_box->view()->currentIndex();
    m_box->hidePopup();
    // Choosing the entry puts its text into the box; with none highlighted the typed text stays.
    if (highlighted.isValid()) {
        m_box->setCurrentIndex(highlighted.row());
        m_found = highlighted.row();
        m_noMatch = false;
    }
    // On to the next (or previous) field, as Tab does from the closed box.
    QKeyEvent tab(QEvent::KeyPress, backwards ? Qt::Key_Backtab : Qt::Key_Tab,
                  backwards ? Qt::ShiftModifier : Qt::NoModifier);
    QCoreApplication::sendEvent(m_box, &tab);
}

bool ComboAutoComplete::eventFilter(QObject* watched, QEvent* event)
{
    const bool keyEvent
            = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (keyEvent && m_box->view()->isVisible()) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const int code = key->key();
        if (code == Qt::Key_Tab || code == Qt::Key_Backtab || code == Qt::Key_Return
            || code == Qt::Key_Enter) {
            // The shortcut check comes first: claiming it keeps the open list from taking Enter
            // for itself (it would keep the focus in the box), so the key press comes here.
            if (event->type() == QEvent::KeyPress)
                takeAndLeave(code == Qt::Key_Backtab || (key->modifiers() & Qt::ShiftModifier));
            event->accept();
            return true;
        }
    }
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    const QString text = key->text();
    const bool printable
            = text.size() == 1 && text.at(0).unicode() > 31 && text.at(0).unicode() != 127
              && !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    if (printable) {
        type(text.at(0));
        return true;
    }
    // While the drop-down list is open it has the keyboard: Backspace still edits the box.
    if (watched == m_box->view() && key->key() == Qt::Key_Backspace && m_box->lineEdit()) {
        m_box->lineEdit()->backspace();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace clients
