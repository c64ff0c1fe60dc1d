#include "admin/fRestore.h"

#include "ui_fRestore.h"

#include "locale/Uzenet.h"
#include "platform/Dialogs.h"
#include "platform/Messages.h"

#include <QDateTime>

namespace admin {

fRestore::fRestore(platform::Database& db, Screens& screens, Reopen reopen, QWidget* parent)
    : BackupScreen(db, screens, std::move(reopen), parent), m_ui(std::make_unique<Ui::fRestore>())
{
    m_ui->setupUi(this);
    connect(m_ui->cmdOk, &QPushButton::clicked, this, &fRestore::cmdOk_Click);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &fRestore::cmdCancel_Click);
    Load();
}

fRestore::~fRestore() = default;

void fRestore::cmdOk_Click()
{
    const QString failureText = uzenetszoveg(QStringLiteral("RestoreH"));
    const QString candidate
            = platform::chooseFile({platform::FileDialogKind::Open, windowTitle(), dataFolder(),
                                    QStringLiteral("Backup files (*.bck)")},
                                   this);
    if (candidate.isEmpty())
        return;
    // Kept here: while the session reopens, its database has no file.
    const QString dataPath = dataFile();
    const store::Backup backup(dataPath, accountFile());
    const store::Backup::Outcome usable = backup.check(candidate);
    if (!usable.done()) {
        failed(usable, QStringLiteral("nemmentes"), QStringLiteral("serultmentes"), failureText,
               QStringLiteral("cmdOk"));
        return;
    }
    if (uzenet(QStringLiteral("RestoreK"), platform::RestoreQuestion, this) != platform::AnswerYes)
        return;
    if (!closeOtherScreens())
        return;
    const QString doneText = uzenetszoveg(QStringLiteral("RestoreOK"));
    const QString keptText = uzenetszoveg(QStringLiteral("biztmasolat"));
    const QString safetyCopy
            = store::Backup::safetyCopyPath(dataPath, QDateTime::currentDateTime());
    const store::Backup::Outcome outcome
            = withProgress([&](const platform::CopyProgress& progress) {
                  return backup.restore(candidate, safetyCopy, progress);
              });
    if (outcome.result == store::Backup::Cancelled)
        return;
    // A restore that did not happen has left the data file, and the session on it, as it was.
    if (!outcome.done()) {
        failed(outcome, QStringLiteral("nemmentes"), QStringLiteral("serultmentes"), failureText,
               QStringLiteral("cmdOk"));
        return;
    }
    if (!reopen(false)) {
        // The restored register does not open: the data file as it was goes back, and the
        // program ends only if even that does not open.
        withProgress([&](const platform::CopyProgress& progress) {
            return backup.restore(safetyCopy, QString(), progress);
        });
        if (reopen())
            platform::messageBox(failureText, platform::ErrorNotice, windowTitle(), this);
        return;
    }
    platform::messageBox(doneText + QStringLiteral("\r\n\r\n") + keptText + u' ' + safetyCopy,
                         platform::Notice, windowTitle(), this);
    unload();
}

void fRestore::cmdCancel_Click()
{
    unload();
}

} // namespace admin
