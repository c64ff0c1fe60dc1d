#include "clients/Install.h"
#include "locale/felir.h"
#include "search/Install.h"
#include "session/Alap.h"
#include "session/Session.h"

#include <QApplication>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Causora"));
    Alap menu;
    if (!menu.load())
        return 1;
    // The screens of the subsystems plug into the session's hand-off points.
    Screens& screens = Session::instance().screens;
    installCaptionEditor(&menu);
    search::install(screens);
    clients::install(screens);
    menu.show();
    return app.exec();
}
