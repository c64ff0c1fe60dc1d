#include "clients/Install.h"

#include "records/LoadedScreen.h"

namespace clients {

namespace {

Ugyfelek* loadAnew(platform::Database& db, const ListChoice& choice)
{
    if (Ugyfelek* old = records::loadedScreen<Ugyfelek>())
        old->unload(false);
    return new Ugyfelek(db, choice);
}

} // namespace

void install(Screens& screens, platform::Database& db)
{
    screens.clientGivesWay = records::givesWay<Ugyfelek>;
    screens.showClient = [&db](const ListChoice& choice) {
        Ugyfelek* screen = loadAnew(db, choice);
        screen->ugyffeltolt();
        screen->show();
    };
    screens.newClient = [&db](const ListChoice& choice) {
        Ugyfelek* screen = loadAnew(db, choice);
        screen->show();
        screen->ujugyfel();
    };
}

Ugyfelek* newClientForCase(platform::Database& db, QWidget* caseScreen, const QString& typedName,
                           Ugyfelek::ClientSaved saved)
{
    Ugyfelek* screen = records::loadedScreen<Ugyfelek>();
    if (!screen)
        screen = new Ugyfelek(db, ListChoice{});
    screen->newForCase(caseScreen, typedName, std::move(saved));
    return screen;
}

} // namespace clients
