#include "clients/PartnerInstall.h"

#include "clients/Partnerek.h"

#include <QApplication>

namespace clients {

namespace {

Partnerek* loadedScreen()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* screen = qobject_cast<Partnerek*>(widget);
        if (screen && !screen->isUnloading())
            return screen;
    }
    return nullptr;
}

} // namespace

void installPartners(Screens& screens, platform::Database& db)
{
    screens.showPartners = [&db] {
        Partnerek* screen = loadedScreen();
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
