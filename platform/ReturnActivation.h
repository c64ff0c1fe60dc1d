#pragma once

class QEvent;
class QWidget;

namespace platform {

// Tells when a screen becomes the active window again coming back from another screen of the
// program, the moment its activation step runs. Its own message boxes and dialogs, and other
// programs, do not count: an entry in progress behind a question stays as it is.
class ReturnActivation
{
public:
    // Fed every event of the screen; true on the activation that ends a visit elsewhere.
    bool returning(const QWidget* screen, const QEvent* e);

private:
    bool m_away = false;
};

} // namespace platform
