#include "clients/Install.h"

#include "locale/Uzenet.h"

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

// The client screen makes room for the search screen (see GiveWay). An entry in progress is
// brought to the front and "ments" ("close without saving?") asked: any answer but Yes keeps it
// there, as Bezár does; Yes drops it.
bool givesWay(GiveWay how)
{
    Ugyfelek* screen = loadedScreen();
    if (!screen)
        return true;
    if (screen->entryPending()) {
        screen->raise();
        screen->activateWindow();
        if (uzenet(QStringLiteral("ments"), platform::Confirmation, screen) != platform::AnswerYes)
            return false;
    }
    if (how == GiveWay::Close)
        screen->unload(false);
    return true;
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
    screens.clientGivesWay = givesWay;
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
