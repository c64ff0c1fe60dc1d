#include "admin/Install.h"

#include "admin/fBackup.h"
#include "admin/fRestore.h"
#include "admin/param.h"
#include "admin/users.h"
#include "session/Session.h"

#include <QApplication>

namespace admin {

namespace {

// The backup and the restore screen exist once: a second command brings the one there to the
// front.
template<typename Screen>
void showOnce(platform::Database& db, Screens& screens)
{
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (auto* screen = qobject_cast<Screen*>(w); screen && screen->isVisible()) {
            screen->raise();
            screen->activateWindow();
            return;
        }
    }
    auto* screen = new Screen(db, screens, [&db] { return Session::instance().start(db); });
    screen->show();
    screen->activateWindow();
}

} // namespace

void install(Screens& screens, platform::Database& db)
{
    screens.showUsers = [&db] {
        users screen(db, QApplication::activeWindow());
        screen.exec();
    };
    screens.showParameters = [&db] {
        param screen(db, QApplication::activeWindow());
        screen.exec();
    };
    screens.showBackup = [&db, &screens] { showOnce<fBackup>(db, screens); };
    screens.showRestore = [&db, &screens] { showOnce<fRestore>(db, screens); };
}

} // namespace admin
