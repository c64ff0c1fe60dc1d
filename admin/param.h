#pragma once

#include "platform/Database.h"

#include <memory>
#include <QDialog>

namespace Ui {
class param;
}

namespace admin {

// The parameters screen: the one row of parameterek. The default language is stored as soon as
// it is chosen; the login flag and the modem's port, prefix and dialling mode are stored when
// the screen closes, however it is closed. The version and the date of the last backup are only
// shown.
class param : public QDialog
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
    void reject() override;

protected:
    void showEvent(QShowEvent* e) override;
    void closeEvent(QCloseEvent* e) override;

private:
    std::unique_ptr<Ui::param> m_ui;
    platform::Database& m_db;
    bool m_closing = false;
};

} // namespace admin
