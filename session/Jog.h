#pragma once

class QWidget;

// The rights gate: true when the session's rights string holds "1" at the position (counting
// from 1). Otherwise the user is told "nincsjog" and the command must do nothing at all.
bool jogos(int position, QWidget* parent = nullptr);
