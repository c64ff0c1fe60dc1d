#include "platform/ReturnActivation.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace platform {

bool ReturnActivation::returning(const QWidget* screen, const QEvent* e)
{
    if (e->type() == QEvent::WindowDeactivate) {
        const QWidget* next = QApplication::activeWindow();
        m_away = next && next != screen && !QApplication::activeModalWidget()
                 && next->windowModality() == Qt::NonModal;
    } else if (e->type() == QEvent::WindowActivate && m_away) {
        m_away = false;
        return true;
    }
    return false;
}

} // namespace platform
