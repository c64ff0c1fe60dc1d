#include "clients/Install.h"

#include "records/LoadedScreen.h"

namespace clients {

namespace {

Ugyfelek* loadAnew(const ListChoice& choice)
{
    if (Ugyfelek* old = records::loadedScreen<Ugyfelek>())
        old->unload(false);
    return new Ugyfelek(choice);
}

} // namespace

void install(Screens& screens)
{
    screens.clientGivesWay = records::givesWay<Ugyfelek>;
    screens.showClient = [](const ListChoice& choice) {
        Ugyfelek* screen = loadAnew(choice);
        screen->ugyffeltolt();
        screen->show();
    };
    screens.newClient = [](const ListChoice& choice) {
        Ugyfelek* screen = loadAnew(choice);
        screen->show();
        screen->ujugyfel();
    };
}

Ugyfelek* newClientForCase(QWidget* caseScreen, const QString& typedName,
                           Ugyfelek::ClientSaved saved)
{
    Ugyfelek* screen = records::loadedScreen<Ugyfelek>();
    if (!screen)
        screen = new Ugyfelek(ListChoice{});
    screen->newForCase(caseScreen, typedName, std::move(saved));
    return screen;
}

} // namespace clients
