#pragma once

#include <QString>

namespace records {

// Dates are typed as "yyyy.mm.dd": the case screen's start and end dates and the search
// screen's date filter take the same typing aid.

// The keys after which the typing aid runs: not Backspace, Tab, Enter, Shift, Ctrl, Alt, Pause
// or Caps Lock, so that the user can still correct the text.
bool shapesDate(int key);

// The field's text after one keystroke, shaped towards "yyyy.mm.dd": a point follows a
// completed year and month by itself, a digit or a separator ("." or "/") where one belongs
// stays, and any other character just typed is taken back. Empty text stays empty. Only the
// digits 0 to 9 count: the register's dates hold no others.
QString shapeTypedDate(const QString& text);

// The date filter as the case query uses it: one trailing separator dropped, and only a year
// ("yyyy"), a month ("yyyy.mm") or a whole day ("yyyy.mm.dd") kept; anything else gives "".
QString dateFilter(const QString& typed);

} // namespace records
