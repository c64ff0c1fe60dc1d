#include "store/DataLocation.h"

#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Causora"));
    if (!store::adatmegnyitas())
        return 1;
    QMainWindow window;
    window.setObjectName(QStringLiteral("fo"));
    window.setWindowTitle(QStringLiteral("Causora"));
    window.show();
    return app.exec();
}
