#include "admin/fBackup.h"

#include "ui_fBackup.h"

#include "locale/Uzenet.h"
#include "platform/Dialogs.h"
#include "platform/Messages.h"

#include <QFileInfo>

namespace admin {

namespace {

// A backup onto a floppy disk must fit on it.
constexpr qint64 floppySize = 1210000;

} // namespace

fBackup::fBackup(platform::Database& db, Screens& screens, Reopen reopen, QWidget* parent)
    : BackupScreen(db, screens, std::move(reopen), parent), m_ui(std::make_unique<Ui::fBackup>())
{
    m_ui->setupUi(this);
    connect(m_ui->cmdOk, &QPushButton::clicked, this, &fBackup::cmdOk_Click);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &fBackup::cmdCancel_Click);
    Load();
}

fBackup::~fBackup() = default;

void fBackup::cmdOk_Click()
{
    const QString failureText = uzenetszoveg(QStringLiteral("backup2"));
    QString target = platform::chooseFile({platform::FileDialogKind::Save, windowTitle(),
                                           dataFolder(), QStringLiteral("Backup files (*.bck)")},
                                          this);
    if (target.isEmpty())
        return;
    if (QFileInfo(target).suffix().isEmpty())
        target += QStringLiteral(".bck");
    if (target.startsWith(u'A') && QFileInfo(dataFile()).size() > floppySize) {
        uzenet(QStringLiteral("backup1"), platform::Notice, this);
        return;
    }
    // A backup written over the data file or its account file would destroy the register.
    const QString chosen = QFileInfo(target).canonicalFilePath();
    if (!chosen.isEmpty()
        && (chosen == QFileInfo(dataFile()).canonicalFilePath()
            || chosen == QFileInfo(accountFile()).canonicalFilePath())) {
        uzenet(QStringLiteral("onmaga"), platform::ErrorNotice, this);
        return;
    }
    if (!closeOtherScreens())
        return;
    const QString doneText = uzenetszoveg(QStringLiteral("backupOK"));
    const store::Backup backup(dataFile(), accountFile());
    const store::Backup::Outcome outcome = withProgress(
            [&](const platform::CopyProgress& progress) { return backup.save(target, progress); });
    if (outcome.result == store::Backup::Cancelled)
        return;
    if (!outcome.done()) {
        // A copy that fails its check means the data file itself is damaged.
        failed(outcome, QStringLiteral("serult"), QStringLiteral("mentesserult"), failureText,
               QStringLiteral("cmdOk"));
        return;
    }
    if (!reopen())
        return;
    platform::messageBox(doneText, platform::Notice, windowTitle(), this);
    unload();
}

void fBackup::cmdCancel_Click()
{
    unload();
}

} // namespace admin
