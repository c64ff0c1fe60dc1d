#include "search/Install.h"

#include "search/keres.h"
#include "search/utkozesek.h"
#include "session/Session.h"

#include <memory>
#include <QCoreApplication>
#include <QPointer>

namespace search {

void install(Screens& screens, platform::Database& db)
{
    auto screen = std::make_shared<QPointer<keres>>();
    screens.showSearch = [screen, &db](const QString& tipus) {
        if (!*screen) {
            *screen = new keres(db);
            // The screen lives until the program ends, hidden while it is closed.
            QObject::connect(qApp, &QCoreApplication::aboutToQuit, *screen,
                             [w = screen->data()] { delete w; });
        }
        keres* w = *screen;
        const bool loading = !w->isVisible();
        w->setTipus(tipus);
        if (loading)
            w->show();
        else
            w->Activate();
        // Loading closes the client and case screens. It runs once this screen is shown, so
        // that the program always has a window; a screen that keeps its entry stays in front.
        if (!loading || w->Load()) {
            w->raise();
            w->activateWindow();
        }
    };
}

void installConflicts(Screens& screens, platform::Database& db)
{
    auto screen = std::make_shared<QPointer<utkozesek>>();
    screens.showConflicts = [screen, &db] {
        if (!*screen) {
            *screen = new utkozesek(db);
            QObject::connect(qApp, &QCoreApplication::aboutToQuit, *screen,
                             [w = screen->data()] { delete w; });
        }
        utkozesek* w = *screen;
        w->show();
        w->Activate();
        w->raise();
        w->activateWindow();
    };
}

} // namespace search
