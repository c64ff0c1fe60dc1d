#pragma once

class QWidget;

// The positions of the user's rights string (felhjog), counted from 1; each grants the command
// named. The string is 20 characters long; positions 13 to 20 grant nothing.
enum class Right {
    ClientSearch = 1, // the client list from the main menu
    CaseSearch = 2, // the case list from the main menu
    CountriesAndPostalCodes = 3, // the country list and the postal codes
    CaseTypes = 4,
    Lawyers = 5,
    Users = 6,
    Parameters = 7,
    NewRecord = 8, // a new client or case
    DeleteRecord = 9,
    ChangeRecord = 10,
    Partners = 11,
    BackupAndRestore = 12,
};

// The rights gate: true when the session's rights string holds "1" at the right's position.
// Otherwise the user is told "nincsjog" and the command must do nothing at all.
bool jogos(Right right, QWidget* parent = nullptr);
// The same gate by the position's number.
bool jogos(int position, QWidget* parent = nullptr);
