#include "cases/Install.h"

#include "records/LoadedScreen.h"

namespace cases {

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
        if (Ugyek* old = records::loadedScreen<Ugyek>())
            old->unload(false);
        return new Ugyek(db, choice, handOffs);
    };
    screens.caseGivesWay = records::givesWay<Ugyek>;
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
