#pragma once

#include "locale/Uzenet.h"
#include "session/Screens.h"

#include <QApplication>
#include <QWidget>

namespace records {

// A record screen exists once: the one of its class that is loaded (shown or hidden) and not
// being unloaded. The screen class has isUnloading(); givesWay also uses its entryPending() and
// unload(bool).
template<class Screen>
Screen* loadedScreen()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* screen = qobject_cast<Screen*>(widget);
        if (screen && !screen->isUnloading())
            return screen;
    }
    return nullptr;
}

// The loaded screen makes room for the search screen (see GiveWay). An entry in progress is
// brought to the front and "ments" ("close without saving?") asked: any answer but Yes keeps it
// there, as Bezár does; Yes drops it.
template<class Screen>
bool givesWay(GiveWay how)
{
    Screen* screen = loadedScreen<Screen>();
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

} // namespace records
