#include "platform/CloseStepDialog.h"

#include <QCloseEvent>
#include <QShowEvent>

namespace platform {

void CloseStepDialog::reject()
{
    if (m_closing)
        QDialog::reject();
    else
        closeStep();
}

void CloseStepDialog::finish(int result)
{
    m_closing = true;
    done(result);
}

void CloseStepDialog::closeEvent(QCloseEvent* e)
{
    if (m_closing) {
        QDialog::closeEvent(e);
        return;
    }
    e->ignore();
    closeStep();
}

void CloseStepDialog::showEvent(QShowEvent* e)
{
    m_closing = false;
    QDialog::showEvent(e);
}

} // namespace platform
