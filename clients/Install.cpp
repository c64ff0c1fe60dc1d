#include "clients/Install.h"

#include <QApplication>

namespace clients {

namespace {

// The client screen exists once: the one loaded, shown or hidden.
Ugyfelek* loadedScreen()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* screen = qobject_cast<Ugyfelek*>(widget);
        if (screen && !screen->isUnloading())
            return screen;
    }
    return nullptr;
}

Ugyfelek* loadAnew(const ListChoice& choice)
{
    if (Ugyfelek* old = loadedScreen())
        old->unload(false);
    return new Ugyfelek(choice);
}

} // namespace

void install(Screens& screens)
{
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
    Ugyfelek* screen = loadedScreen();
    if (!screen)
        screen = new Ugyfelek(ListChoice{});
    screen->newForCase(caseScreen, typedName, std::move(saved));
    return screen;
}

} // namespace clients
