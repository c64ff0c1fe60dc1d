#include "store/DataLocation.h"

#include "platform/Display.h"
#include "platform/Messages.h"
#include "platform/StructureCheck.h"
#include "store/Access.h"
#include "store/Catalogue.h"
#include "store/Credentials.h"
#include "store/ErrorLog.h"
#include "store/Prepare.h"
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
    return Catalogue(db).message(code, 1);
}

// The look at the file's structure made at start-up stops after this long (a whole register
// of 200,000 cases takes about a quarter of a second); what it looked at by then is checked.
constexpr int structureCheckBudgetMs = 5000;

// Why the data file cannot be used, told in the office's words; the engine's own text goes to
// the error log.
void startupFailure(platform::Failure failure, const QString& dataFile, const QString& engineText)
{
    hibanaplo(QStringLiteral("adatmegnyitas"), dataFile, engineText);
    QString code;
    switch (failure) {
    case platform::Failure::Busy:
        code = QStringLiteral("zarolt");
        break;
    case platform::Failure::Unreadable:
        code = QStringLiteral("nemolvashato");
        break;
    case platform::Failure::Damaged:
        code = QStringLiteral("serult");
        break;
    case platform::Failure::NotCausora:
        code = QStringLiteral("nemcausora");
        break;
    default:
        // Refused credentials and anything unforeseen: the engine's own words.
        platform::messageBox(engineText, platform::ErrorNotice, QStringLiteral("Causora"));
        return;
    }
    // Every start begins in Hungarian; the file's own catalogue may be out of reach.
    platform::messageBox(catalogueMessage(code, 1) + QStringLiteral("\n\n") + dataFile,
                         platform::ErrorNotice, QStringLiteral("Causora"));
}

} // namespace

QString settingsFile()
{
    return settingsPath(platform::programFolder(), userSettingsFolder());
}

bool adatmegnyitas(platform::Database& db, StartValues* start)
{
    *start = StartValues();
    const QString iniPath = settingsFile();
    if (!QFileInfo::exists(iniPath)) {
        platform::messageBox(iniPath + QStringLiteral("    Not found "));
        return false;
    }
    QString text;
    {
        QFile f(iniPath);
        if (f.open(QIODevice::ReadOnly))
            text = QString::fromLocal8Bit(f.readAll());
    }
    QString folder;
    if (text.isEmpty() || !dataFolderFromSettings(text, &folder)) {
        platform::messageBox(QStringLiteral("Bad inifile"));
        offerLocationScreen();
        return false;
    }

    const QString dataFile = folder + u'/' + dataFileName();
    start->dataFilePath = dataFile;
    if (!QFileInfo::exists(dataFile)) {
        platform::messageBox(dataFile + QStringLiteral("   Not found"));
        offerLocationScreen();
        return false;
    }
    const QString workgroupPath = folder + u'/' + workgroupFileName();
    if (!QFileInfo::exists(workgroupPath)) {
        platform::messageBox(workgroupPath + QStringLiteral("  ")
                             + earlyMessage(dataFile, QStringLiteral("nincsmeg")));
        return false;
    }

    start->workgroupFilePath = workgroupPath;
    QString error;
    if (!openDataFile(db, dataFile, workgroupPath, databaseAccount(), databasePassword(),
                      connectText(), &error)) {
        startupFailure(db.lastFailure(), dataFile, error);
        return false;
    }
    // The file's structure is looked at in the background, so the program is ready at once
    // however large the register; every write waits for the look, and nothing is written into
    // a file it finds damaged. Damage is told as soon as the look ends.
    QObject::connect(db.startStructureCheck(structureCheckBudgetMs),
                     &platform::StructureCheck::finished,
                     [dataFile](bool damaged, const QString& report) {
                         if (damaged)
                             startupFailure(platform::Failure::Damaged, dataFile, report);
                     });
    if (db.isReadOnly())
        platform::messageBox(catalogueMessage(QStringLiteral("olvasomod"), 1)
                                     + QStringLiteral("\n\n") + dataFile,
                             platform::Notice, QStringLiteral("Causora"));

    adatfrissites(db);

    const platform::Rows lawyers = db.select(QStringLiteral("SELECT * FROM ugyvedek"));
    if (lawyers.size() == 1)
        start->defaultLawyer = lawyers.front().text(QStringLiteral("ugyvednev"));

    const platform::Row params = db.first(QStringLiteral("SELECT * FROM parameterek"), {}, &error);
    if (params.isEmpty()) {
        startupFailure(error.isEmpty() ? platform::Failure::NotCausora : db.lastFailure(), dataFile,
                       error.isEmpty() ? QStringLiteral("parameterek: no row") : error);
        db.close();
        return false;
    }
    start->language = qint16(params.value(QStringLiteral("alapnyelv")).toInt());
    start->rights = params.value(QStringLiteral("kelllogon")).toInt() != 0
                            ? QStringLiteral("00000000000000000000")
                            : QStringLiteral("11111111111111111111");
    return true;
}

} // namespace store
