#include "cases/Install.h"

#include "locale/Uzenet.h"

#include <QApplication>

namespace cases {

namespace {

// The case screen exists once: the one loaded.
Ugyek* loadedScreen()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* screen = qobject_cast<Ugyek*>(widget);
        if (screen && !screen->isUnloading())
            return screen;
    }
    return nullptr;
}

// The case screen makes room for the search screen (see GiveWay). An entry in progress is
// brought to the front and "ments" asked: any answer but Yes keeps it there, as Bezár does; Yes
// drops it.
bool givesWay(GiveWay how)
{
    Ugyek* screen = loadedScreen();
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

} // namespace

void install(Screens& screens, platform::Database& db, CaseHandOffs::NewClient newClient)
{
    CaseHandOffs handOffs;
    // Read when a button asks, so that the editor may plug in after this screen.
    handOffs.addToLookupList
            = [&screens](const QString& hivo, QWidget* caseScreen, CaseHandOffs::Closed closed) {
                  if (screens.addToLookupList)
                      screens.addToLookupList(hivo, caseScreen, std::move(closed));
              };
    handOffs.newClient = std::move(newClient);
    auto loadAnew = [&db, handOffs](const ListChoice& choice) {
        if (Ugyek* old = loadedScreen())
            old->unload(false);
        return new Ugyek(db, choice, handOffs);
    };
    screens.caseGivesWay = givesWay;
    screens.showCase = [loadAnew](const ListChoice& choice) {
        Ugyek* screen = loadAnew(choice);
        screen->ugyfeltolt();
        screen->show();
    };
    screens.newCase = [loadAnew](const ListChoice& choice) {
        Ugyek* screen = loadAnew(choice);
        screen->show();
        screen->ujugy();
    };
}

} // namespace cases
