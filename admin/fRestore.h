#pragma once

#include "admin/BackupScreen.h"

#include <memory>

namespace Ui {
class fRestore;
}

namespace admin {

// The restore screen: puts a backup file back in the place of the data file. A file that is no
// data file of this program, or is damaged, is refused before anything is closed or written. A
// copy of the current data file is kept beside it, named with the date and time, before the
// backup is written into the data file through the engine, so that other workstations with the
// file open go on with the restored register.
class fRestore : public BackupScreen
{
    Q_OBJECT
public:
    fRestore(platform::Database& db, Screens& screens, Reopen reopen, QWidget* parent = nullptr);
    ~fRestore() override;

public slots:
    void cmdOk_Click();
    void cmdCancel_Click();

private:
    std::unique_ptr<Ui::fRestore> m_ui;
};

} // namespace admin
