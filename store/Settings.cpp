#include "store/Settings.h"

namespace store {

bool dataFolderFromSettings(const QString& text, QString* folder)
{
    const int start = text.indexOf(QStringLiteral("path="));
    if (start < 0)
        return false;
    const int from = start + 5;
    // The line ends at a carriage return; a file edited on this platform may end in a bare LF.
    int end = text.indexOf(u'\r', from);
    const int lf = text.indexOf(u'\n', from);
    if (end < 0 || (lf >= 0 && lf < end))
        end = lf;
    if (end < 0)
        return false;
    QString f = text.mid(from, end - from);
    if (f.endsWith(u'"'))
        f.chop(1);
    *folder = f;
    return true;
}

QString settingsLine(const QString& folder)
{
    return QStringLiteral("\"path=") + folder + QStringLiteral("\"\r\n");
}

} // namespace store
