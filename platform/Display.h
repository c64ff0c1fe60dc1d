#pragma once

#include <QSize>
#include <QString>

class QWidget;

namespace platform {

// Screen geometry of the office's screens is given in twips, 1440 to the inch.
int twipsToPixels(int twips);
int pixelsToTwips(int pixels);
// The display's size in twips.
QSize displaySizeTwips();

// Places a record screen a little above the centre of the display:
// left = W / 2 - width / 2, top = H / 2 - height / divisor.
void placeOnDisplay(QWidget* screen, double verticalDivisor);

// The folder of the running program, where jog.ini and hiba.txt live. Tests point it elsewhere.
QString programFolder();
void setProgramFolder(const QString& folder);

} // namespace platform
