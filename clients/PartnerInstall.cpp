#include "clients/PartnerInstall.h"

#include "clients/Partnerek.h"
#include "records/LoadedScreen.h"

#include <QApplication>

namespace clients {

void installPartners(Screens& screens, platform::Database& db)
{
    screens.showPartners = [&db] {
        Partnerek* screen = records::loadedScreen<Partnerek>();
        if (!screen) {
            screen = new Partnerek(db);
            // A screen still open when the program ends goes with it.
            QObject::connect(qApp, &QCoreApplication::aboutToQuit, screen,
                             [screen] { delete screen; });
        }
        screen->show();
        screen->raise();
        screen->activateWindow();
    };
}

} // namespace clients
