#include "search/ListCommands.h"

#include "locale/Uzenet.h"
#include "platform/Database.h"
#include "platform/Export.h"
#include "platform/Messages.h"
#include "platform/Printer.h"
#include "store/ErrorLog.h"

#include <memory>
#include <QWidget>

namespace search {

void printList(const PrintedList& list, platform::Database& db, QWidget* screen)
{
    const std::unique_ptr<platform::Printer> printer = platform::openDefaultPrinter(screen);
    switch (listanyomtatas(list, db, printer.get())) {
    case PrintResult::NoPrinter:
        // The one notice whose text is the program's own, not the catalogue's.
        platform::messageBox(QStringLiteral("nincs nyomtató telepítve"), platform::Notice,
                             QString(), screen);
        break;
    case PrintResult::Failed:
        uzenet(QStringLiteral("nyomhiba"), platform::Notice, screen);
        break;
    case PrintResult::Printed:
        break;
    }
}

void exportList(const platform::ExportedList& list, platform::Database& db, const QString& module,
                const QString& place, QWidget* screen)
{
    const platform::ExportTexts texts{uzenetszoveg(QStringLiteral("exportcim")),
                                      {uzenetszoveg(QStringLiteral("exportcim")),
                                       uzenetszoveg(QStringLiteral("exportfolyik")),
                                       uzenetszoveg(QStringLiteral("exportmegse"))}};
    const platform::ExportResult done = platform::exportListAs(db, list, texts, screen);
    switch (done.outcome) {
    case platform::ExportOutcome::ReadFailed:
        engineFailure(db.lastFailure(), done.error, module, place, screen);
        break;
    case platform::ExportOutcome::WriteFailed:
        store::hibanaplo(module, place, done.path + QStringLiteral(": ") + done.error);
        platform::messageBox(uzenetszoveg(QStringLiteral("exporthiba")) + QStringLiteral("\n\n")
                                     + done.path + QStringLiteral("\n") + done.error,
                             platform::ErrorNotice, QString(), screen);
        break;
    case platform::ExportOutcome::Written:
    case platform::ExportOutcome::Cancelled:
        break;
    }
}

} // namespace search
