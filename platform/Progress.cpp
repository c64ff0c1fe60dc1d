#include "platform/Progress.h"

#include <QElapsedTimer>
#include <QProgressDialog>

namespace platform {

namespace {

ProgressHandler& handlerSlot()
{
    static ProgressHandler handler;
    return handler;
}

// The bar counts in thousandths, so that a count of any size fits its int range.
constexpr int barSteps = 1000;
// A step that ends sooner than this shows no window at all.
constexpr int showAfterMs = 400;
// The window is repainted and its cancel button looked at no more often than this.
constexpr int refreshMs = 50;

class ProgressWindow : public Progress
{
public:
    ProgressWindow(const ProgressRequest& request, QWidget* parent)
        : m_dialog(request.text, request.cancel, 0, barSteps, parent)
    {
        m_dialog.setWindowTitle(request.title);
        m_dialog.setObjectName(QStringLiteral("folyamat"));
        // Nothing else of the program takes input while the step runs, so no screen changes
        // under it.
        m_dialog.setWindowModality(Qt::ApplicationModal);
        m_dialog.setMinimumDuration(showAfterMs);
        m_dialog.setAutoClose(false);
        m_dialog.setAutoReset(false);
        m_dialog.setValue(0);
        m_clock.start();
    }

    bool advance(qint64 done, qint64 total) override
    {
        if (m_lastRefresh >= 0 && m_clock.elapsed() - m_lastRefresh < refreshMs)
            return !m_dialog.wasCanceled();
        m_lastRefresh = m_clock.elapsed();
        const int value
                = total > 0 ? int(qBound(qint64(0), done * barSteps / total, qint64(barSteps - 1)))
                            : 0;
        // Once the window is up, this also answers the user's clicks (only the window's own,
        // as it is modal).
        m_dialog.setValue(value);
        return !m_dialog.wasCanceled();
    }

private:
    QProgressDialog m_dialog;
    QElapsedTimer m_clock;
    qint64 m_lastRefresh = -1;
};

} // namespace

std::unique_ptr<Progress> openProgress(const ProgressRequest& request, QWidget* parent)
{
    if (handlerSlot())
        return handlerSlot()(request);
    return std::make_unique<ProgressWindow>(request, parent);
}

void setProgressHandler(ProgressHandler handler)
{
    handlerSlot() = std::move(handler);
}

} // namespace platform
