#pragma once

#include <functional>
#include <QString>

class QWidget;

namespace platform {

// File dialogs through one place, so that tests can choose the file instead of a user.
enum class FileDialogKind { Open, Save, Folder };

struct FileDialogRequest
{
    FileDialogKind kind = FileDialogKind::Open;
    QString caption;
    QString folder;
    QString filter;
};

// Returns the chosen path, or an empty text when the user cancels.
QString chooseFile(const FileDialogRequest& request, QWidget* parent = nullptr);

using FileDialogHandler = std::function<QString(const FileDialogRequest&)>;
void setFileDialogHandler(FileDialogHandler handler);

} // namespace platform
