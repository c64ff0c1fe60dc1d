#include "store/ErrorLog.h"

#include "platform/Display.h"
#include "store/Settings.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace store {

void hibanaplo(const QString& module, const QString& place, const QString& error)
{
    // Beside the program, or beside the user's own jog.ini when the program's folder may not
    // be written (the program installed for the whole machine).
    QString folder = platform::programFolder();
    if (!QFileInfo(folder).isWritable()) {
        folder = userSettingsFolder();
        QDir().mkpath(folder);
    }
    QFile log(QDir(folder).filePath(QStringLiteral("hiba.txt")));
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    // The date in the office's form, whatever the machine's locale.
    const QString line = QStringLiteral("Dátum: ")
                         + QDate::currentDate().toString(QStringLiteral("yyyy.MM.dd"))
                         + QStringLiteral(" ** Modul: ") + module + QStringLiteral(" ** Helye: ")
                         + place + QStringLiteral(" ** Hiba: ") + error + QStringLiteral("\r\n");
    // One write per record, so a record is never split by another.
    log.write(line.toLocal8Bit());
}

} // namespace store
