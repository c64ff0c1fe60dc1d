#include "locale/felir.h"
#include "session/Alap.h"

#include <QApplication>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Causora"));
    Alap menu;
    if (!menu.load())
        return 1;
    installCaptionEditor(&menu);
    menu.show();
    return app.exec();
}
