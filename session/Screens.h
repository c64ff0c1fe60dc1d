#pragma once

#include "platform/ListQuery.h"

#include <functional>
#include <QString>

class QWidget;

// What the search screen hands to a register screen: the chosen row's key (ksorsz: a client's
// ukod or a case's ugyszam), the list query the search screen shows (the browse set of the
// register screen), and the search screen itself, shown again when the register screen closes.
struct ListChoice
{
    QString key;
    platform::ListQuery list;
    QWidget* search = nullptr;
};

// How an open register screen (client or case) is to make room for the search screen: closed
// (the search screen is loaded), or replaced by another row or a new record. Either way an entry
// in progress asks "ments" first; Yes drops the entry, any other answer keeps the screen.
enum class GiveWay { Close, Replace };

// Where the screens of the subsystems plug in. The program wires these once at start; a slot
// left empty makes its command do nothing beyond its rights test.
struct Screens
{
    std::function<void(const QString& tipus)> showSearch; // "1" clients, "2" cases
    std::function<void(const QString& hivo)>
            showLookupList; // "1" countries, "2" types, "3" lawyers
    // From the case screen (hivo "11", "12" countries, "21" types, "31" lawyers): the editor is
    // shown, not modal; when it closes it calls closed with the entry added last (empty when
    // none), and the case screen writes it into its field and refills its choice lists.
    std::function<void(const QString& hivo, QWidget* caseScreen,
                       std::function<void(const QString& added)> closed)>
            addToLookupList;
    std::function<void()> showUsers;
    std::function<void()> showParameters;
    std::function<void()> showPostalCodes;
    std::function<void()> showPartners;
    std::function<void()> showBackup;
    std::function<void()> showRestore;
    std::function<void()> showCaptionEditor;
    // The list of every conflict of interest in the register.
    std::function<void()> showConflicts;
    std::function<void()> showLogin;
    // Screens that hide the main menu show it again through this when they close.
    std::function<void()> showMainMenu;
    // From the search screen: a chosen row, or a new record (the key is then empty).
    std::function<void(const ListChoice&)> showClient;
    std::function<void(const ListChoice&)> newClient;
    std::function<void(const ListChoice&)> showCase;
    std::function<void(const ListChoice&)> newCase;
    // Asked by the search screen before it closes the client (case) screen or shows another row
    // or a new record in it. True when the screen is gone or may be replaced, or none is open;
    // false when it stays as it is, with its entry, in front.
    std::function<bool(GiveWay)> clientGivesWay;
    std::function<bool(GiveWay)> caseGivesWay;
};
