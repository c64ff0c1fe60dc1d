#include "platform/Display.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace platform {

namespace {
QString& programFolderOverride()
{
    static QString folder;
    return folder;
}

double dotsPerInch()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInch() : 96.0;
}
} // namespace

int twipsToPixels(int twips)
{
    return qRound(twips * dotsPerInch() / 1440.0);
}

int pixelsToTwips(int pixels)
{
    return qRound(pixels * 1440.0 / dotsPerInch());
}

QSize displaySizeTwips()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QSize px = screen ? screen->availableGeometry().size() : QSize(1024, 768);
    return QSize(pixelsToTwips(px.width()), pixelsToTwips(px.height()));
}

void placeOnDisplay(QWidget* screen, double verticalDivisor)
{
    const QScreen* display = QGuiApplication::primaryScreen();
    if (!display || !screen)
        return;
    const QRect area = display->availableGeometry();
    const QSize own = screen->frameGeometry().size();
    const int left = area.left() + area.width() / 2 - own.width() / 2;
    const int top = area.top() + int(area.height() / 2.0 - own.height() / verticalDivisor);
    screen->move(qMax(area.left(), left), qMax(area.top(), top));
}

QString programFolder()
{
    const QString& o = programFolderOverride();
    return o.isEmpty() ? QCoreApplication::applicationDirPath() : o;
}

void setProgramFolder(const QString& folder)
{
    programFolderOverride() = folder;
}

} // namespace platform
