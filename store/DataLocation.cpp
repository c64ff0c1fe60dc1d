#include "store/DataLocation.h"

#include "platform/Display.h"
#include "platform/Messages.h"
#include "session/Session.h"
#include "store/Credentials.h"
#include "store/Settings.h"
#include "store/Upgrade.h"
#include "store/dataeler.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace store {

namespace {

// Shows the data-location screen modally; the choice takes effect at the next start.
void offerLocationScreen()
{
    dataeler screen;
    screen.exec();
}

// The text of a message for the moments before the database is open: read from the data file
// itself, without the account check, in Hungarian (the language every start begins with).
QString earlyMessage(const QString& dataFile, const QString& code)
{
    platform::Database db;
    if (!db.openForReading(dataFile, nullptr))
        return code;
    const QVariant text = db.scalar(
            QStringLiteral("SELECT uzen1 FROM uzenetek WHERE uzenkod = ? COLLATE HU"), {code});
    return text.isNull() ? code : text.toString();
}

} // namespace

bool adatmegnyitas()
{
    Session& session = Session::instance();
    const QString settingsPath = platform::programFolder() + QStringLiteral("/jog.ini");
    if (!QFileInfo::exists(settingsPath)) {
        platform::messageBox(settingsPath + QStringLiteral("    Not found "));
        return false;
    }
    QString text;
    {
        QFile f(settingsPath);
        if (f.open(QIODevice::ReadOnly))
            text = QString::fromLocal8Bit(f.readAll());
    }
    QString folder;
    if (text.isEmpty() || !dataFolderFromSettings(text, &folder)) {
        platform::messageBox(QStringLiteral("Bad inifile"));
        offerLocationScreen();
        return false;
    }

    session.dataFilePath = folder + u'/' + dataFileName();
    session.language = 1;
    session.rights = QStringLiteral("00000000000000000000");
    session.userName.clear();
    session.dateFormat = QStringLiteral("yyyy.mm.dd");
    session.defaultLawyer.clear();

    if (!QFileInfo::exists(session.dataFilePath)) {
        platform::messageBox(session.dataFilePath + QStringLiteral("   Not found"));
        offerLocationScreen();
        return false;
    }
    const QString workgroupPath = folder + u'/' + workgroupFileName();
    if (!QFileInfo::exists(workgroupPath)) {
        platform::messageBox(workgroupPath + QStringLiteral("  ")
                             + earlyMessage(session.dataFilePath, QStringLiteral("nincsmeg")));
        return false;
    }

    session.workgroupFilePath = workgroupPath;
    QString error;
    if (!session.database.open(session.dataFilePath, session.workgroupFilePath, databaseAccount(),
                               databasePassword(), connectText(), &error)) {
        platform::messageBox(error, platform::ErrorNotice);
        return false;
    }

    adatfrissites(session.database);

    const platform::Rows lawyers =
            session.database.select(QStringLiteral("SELECT * FROM ugyvedek"));
    if (lawyers.size() == 1)
        session.defaultLawyer = lawyers.front().text(QStringLiteral("ugyvednev"));

    const platform::Row params =
            session.database.first(QStringLiteral("SELECT * FROM parameterek"), {}, &error);
    if (params.isEmpty()) {
        platform::messageBox(error.isEmpty() ? QStringLiteral("parameterek: no row") : error,
                             platform::ErrorNotice);
        session.database.close();
        return false;
    }
    session.language = qint16(params.value(QStringLiteral("alapnyelv")).toInt());
    session.rights = params.value(QStringLiteral("kelllogon")).toInt() != 0
            ? QStringLiteral("00000000000000000000")
            : QStringLiteral("11111111111111111111");
    return true;
}

} // namespace store
