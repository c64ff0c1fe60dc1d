#include "platform/Dialogs.h"

#include <QFileDialog>

namespace platform {

namespace {
FileDialogHandler& handlerSlot()
{
    static FileDialogHandler handler;
    return handler;
}
} // namespace

void setFileDialogHandler(FileDialogHandler handler)
{
    handlerSlot() = std::move(handler);
}

QString chooseFile(const FileDialogRequest& request, QWidget* parent)
{
    if (handlerSlot())
        return handlerSlot()(request);
    switch (request.kind) {
    case FileDialogKind::Open:
        return QFileDialog::getOpenFileName(parent, request.caption, request.folder,
                                            request.filter);
    case FileDialogKind::Save:
        return QFileDialog::getSaveFileName(parent, request.caption, request.folder,
                                            request.filter);
    case FileDialogKind::Folder:
        return QFileDialog::getExistingDirectory(parent, request.caption, request.folder);
    }
    return QString();
}

} // namespace platform
