#pragma once

#include <QString>

namespace platform {

// The desktop's clipboard, as plain text.
QString clipboardText();
// Empties the clipboard and puts the text on it.
void setClipboardText(const QString& text);

} // namespace platform
