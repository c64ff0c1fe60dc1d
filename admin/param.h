#pragma once

#include "platform/CloseStepDialog.h"
#include "platform/Database.h"

#include <memory>

namespace Ui {
class param;
}

namespace admin {

// The parameters screen: the one row of parameterek. The default language is stored as soon as
// it is chosen; the login flag and the modem's port, prefix and dialling mode are stored when
// the screen closes, however it is closed. The version and the date of the last backup are only
// shown.
class param : public platform::CloseStepDialog
{
    Q_OBJECT
public:
    explicit param(platform::Database& db, QWidget* parent = nullptr);
    ~param() override;

public slots:
    void Activate();
    // Fills the language choices.
    void feltolt();
    void nyelve_LostFocus();
    void g5_Click();

protected:
    void showEvent(QShowEvent* e) override;
    // Esc and the close box store the settings as Bezár does.
    void closeStep() override { g5_Click(); }

private:
    std::unique_ptr<Ui::param> m_ui;
    platform::Database& m_db;
};

} // namespace admin
