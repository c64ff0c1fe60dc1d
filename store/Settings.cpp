#include "store/Settings.h"

#include <QFileInfo>
#include <QStandardPaths>

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

QString userSettingsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
           + QStringLiteral("/causora");
}

QString settingsPath(const QString& programFolder, const QString& userFolder)
{
    const QString beside = programFolder + QStringLiteral("/jog.ini");
    if (QFileInfo(programFolder).isWritable())
        return beside;
    const QString own = userFolder + QStringLiteral("/jog.ini");
    if (!QFileInfo::exists(own) && QFileInfo::exists(beside))
        return beside;
    return own;
}

} // namespace store
