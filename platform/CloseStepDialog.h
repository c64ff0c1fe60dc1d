#pragma once

#include <QDialog>

namespace platform {

// A screen shown as a dialog that closes only through its own close step (its Bezár button):
// Esc and the window's close box run that step, which may ask first, store what is shown, or
// keep the screen open. The step ends with finish() once the screen may go.
class CloseStepDialog : public QDialog
{
public:
    using QDialog::QDialog;

    void reject() override;

protected:
    // The screen's close step.
    virtual void closeStep() = 0;
    // Closes the screen with the result that exec() returns.
    void finish(int result);

    void closeEvent(QCloseEvent* e) override;
    // A screen shown again closes through its step again.
    void showEvent(QShowEvent* e) override;

private:
    bool m_closing = false;
};

} // namespace platform
