#pragma once

#include <functional>
#include <memory>
#include <QString>

class QWidget;

namespace platform {

// What a long step shows while it runs: a title, a line of text and the cancel button's text.
struct ProgressRequest
{
    QString title;
    QString text;
    QString cancel;
};

// The progress of a long step, shown to the user, who may cancel it. The step reports how far
// it has come; the window appears only when the step lasts long enough to need it.
class Progress
{
public:
    virtual ~Progress() = default;
    // done of total units are finished. False once the user has cancelled.
    virtual bool advance(qint64 done, qint64 total) = 0;
};

// A modal progress window with a bar and a cancel button; it closes when it is destroyed.
std::unique_ptr<Progress> openProgress(const ProgressRequest& request, QWidget* parent = nullptr);

// Tests replace the window: the handler makes the progress that the step reports to.
using ProgressHandler = std::function<std::unique_ptr<Progress>(const ProgressRequest&)>;
void setProgressHandler(ProgressHandler handler);

} // namespace platform
