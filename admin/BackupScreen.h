#pragma once

#include "platform/Backup.h"
#include "session/Screens.h"
#include "store/Backup.h"

#include <functional>
#include <QWidget>

class QProgressDialog;

namespace admin {

// What the backup and the restore screen share. Either is shown without waiting while the main
// menu is hidden, closes every other screen before it starts, copies with a progress dialog on
// large files, and resets the session afterwards by the start-up open. Closing it shows the
// main menu again.
class BackupScreen : public QWidget
{
    Q_OBJECT
public:
    // The start-up open, run again after a backup or restore; false when the program must end.
    using Reopen = std::function<bool()>;

protected:
    BackupScreen(platform::Database& db, Screens& screens, Reopen reopen, QWidget* parent);

    // Placed 1500 twips below the top of the display, centred across it.
    void Load();
    // Every other screen closed through its own close, which asks "ments" where an entry is
    // not saved. False, with the screens closed so far staying closed, when one stays open.
    bool closeOtherScreens();
    // Runs a copy with a progress dialog that shows when the copy takes more than a moment and
    // can stop it. This screen takes no input meanwhile.
    store::Backup::Outcome
    withProgress(const std::function<store::Backup::Outcome(const platform::CopyProgress&)>& copy);
    // Tells why a backup or restore did not happen: the reason (the message of a code for the
    // file's kinds of fault, the engine's text otherwise), a line break and the screen's failure
    // text. The engine's own text goes to hiba.txt too.
    void failed(const store::Backup::Outcome& outcome, const QString& notCausoraCode,
                const QString& damagedCode, const QString& failureText, const QString& place);
    // The session as after a fresh start. When that fails the start has told why, and unless
    // the caller has another way out the program ends, as it cannot go on without its database.
    bool reopen(bool endOnFailure = true);
    // Unloads the screen; the main menu shows again.
    void unload();

    QString dataFile() const;
    QString accountFile() const;
    QString dataFolder() const;

    void closeEvent(QCloseEvent* e) override;

    platform::Database& m_db;

private:
    Screens& m_screens;
    Reopen m_reopen;
};

} // namespace admin
