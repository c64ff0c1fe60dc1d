#pragma once

class QWidget;

// Writes the captions of the session's language onto a screen's labels sz1..sz39 and buttons
// g1..g10 from its row of felirat. The row's key is the screen's object name, "keres2" for the
// search screen in cases mode, and the list's key for the lookup-list editor. A missing row,
// control, column or Null leaves that text as it was.
void feliratoz(QWidget* screen);
