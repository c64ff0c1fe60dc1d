#pragma once

#include <memory>
#include <QDialog>

class Alap;
namespace platform {
class Database;
}

namespace Ui {
class Login;
}

// Identifies the user by login name and password. While the screen is up nobody has any right;
// a successful login gives the session the user's name, rights, language and default lawyer,
// and the main menu then speaks the user's language.
class Login : public QDialog
{
    Q_OBJECT
public:
    Login(platform::Database& db, Alap* menu, QWidget* parent = nullptr);
    ~Login() override;

protected:
    void showEvent(QShowEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    void Activate();
    void login1_KeyUp(int key);
    void login2_GotFocus();
    void login2_KeyUp(int key);
    void g1_Click();
    void g2_Click();

    std::unique_ptr<Ui::Login> m_ui;
    platform::Database& m_db;
    Alap* m_menu;
    bool m_checking = false;
};
