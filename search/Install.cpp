#include "search/Install.h"

#include "search/keres.h"
#include "session/Session.h"

#include <QCoreApplication>
#include <QPointer>
#include <memory>

namespace search {

void install(Screens& screens)
{
    auto screen = std::make_shared<QPointer<keres>>();
    screens.showSearch = [screen](const QString& tipus) {
        if (!*screen) {
            *screen = new keres;
            // The screen lives until the program ends, hidden while it is closed.
            QObject::connect(qApp, &QCoreApplication::aboutToQuit, *screen,
                             [w = screen->data()] { delete w; });
        }
        keres* w = *screen;
        w->setTipus(tipus);
        if (w->isVisible())
            w->Activate();
        else
            w->show();
        w->raise();
        w->activateWindow();
    };
}

} // namespace search
