#pragma once

#include "search/ListPrint.h"

class QWidget;

namespace platform {
class Database;
struct ExportedList;
} // namespace platform

namespace search {

// The print command of a list screen: the list on the default printer, and the user told when
// no printer is installed or printing failed.
void printList(const PrintedList& list, platform::Database& db, QWidget* screen);

// The export command of a list screen: the list written where the user chooses; a read
// failure told as the engine's failures are, a write failure logged under module and place and
// shown with the file and the reason.
void exportList(const platform::ExportedList& list, platform::Database& db, const QString& module,
                const QString& place, QWidget* screen);

} // namespace search
