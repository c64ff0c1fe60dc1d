#pragma once

#include "platform/Database.h"
#include "platform/ListQuery.h"

#include <QString>
#include <functional>

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

// How an open register screen (client or case) is to make room for the search screen.
enum class GiveWay {
    // The search screen is loaded: the register screen closes as its Bezár does. An entry in
    // progress asks "ments"; Yes drops the entry.
    Close,
    // Another row or a new record is to be shown in it. An entry in progress asks "ments"; Yes
    // saves the entry first (a save that fails keeps it).
    Replace,
};

// Where the screens of the subsystems plug in. The program wires these once at start; a slot
// left empty makes its command do nothing beyond its rights test.
struct Screens
{
    std::function<void(const QString& tipus)> showSearch; // "1" clients, "2" cases
    std::function<void(const QString& hivo)> showLookupList; // "1" countries, "2" types, "3" lawyers
    std::function<void()> showUsers;
    std::function<void()> showParameters;
    std::function<void()> showPostalCodes;
    std::function<void()> showPartners;
    std::function<void()> showBackup;
    std::function<void()> showRestore;
    std::function<void()> showCaptionEditor;
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

// The state of the one running session: who is logged in, what he may do, which language he
// reads, and the open database that every screen uses.
class Session
{
public:
    static Session& instance();

    QString userName;
    QString rights = QStringLiteral("00000000000000000000");
    qint16 language = 1;
    QString dateFormat = QStringLiteral("yyyy.mm.dd");
    QString defaultLawyer;
    QString dataFilePath;
    QString workgroupFilePath;
    platform::Database database;
    Screens screens;

    // True when the character at position (counting from 1) of the rights string is "1".
    bool hasRight(int position) const;

    // Back to the values a session has before anything is opened (tests start from here).
    void reset();

private:
    Session() = default;
};
