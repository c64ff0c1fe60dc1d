#pragma once

#include "admin/BackupScreen.h"

#include <memory>

namespace Ui {
class fBackup;
}

namespace admin {

// The backup screen: copies the data file to a backup file (*.bck) the user names, while other
// workstations keep working. The copy is one consistent state of the register, written under
// a working name, checked, and put in place under the chosen name only when it is sound.
class fBackup : public BackupScreen
{
    Q_OBJECT
public:
    fBackup(platform::Database& db, Screens& screens, Reopen reopen, QWidget* parent = nullptr);
    ~fBackup() override;

public slots:
    void cmdOk_Click();
    void cmdCancel_Click();

private:
    std::unique_ptr<Ui::fBackup> m_ui;
};

} // namespace admin
