#include "session/Login.h"

#include "locale/Felirat.h"
#include "locale/Uzenet.h"
#include "session/Alap.h"
#include "session/Session.h"
#include "store/Users.h"
#include "ui_Login.h"

#include <QKeyEvent>

namespace {

constexpr const char* noRights = "0000000000";

bool isEnter(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

// The user's row by login name, whatever the letter case the name was typed in. The name is
// bound, so a quote in it is just a character that no login name holds.
platform::Row felhasznalo(platform::Database& db, const QString& loginName)
{
    return store::Users(db).findByLogin(loginName);
}

} // namespace

Login::Login(platform::Database& db, Alap* menu, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::Login>()), m_db(db), m_menu(menu)
{
    m_ui->setupUi(this);
    m_ui->login1->installEventFilter(this);
    m_ui->login2->installEventFilter(this);
    connect(m_ui->g1, &QPushButton::clicked, this, &Login::g1_Click);
    connect(m_ui->g2, &QPushButton::clicked, this, &Login::g2_Click);
}

Login::~Login() = default;

void Login::showEvent(QShowEvent* e)
{
    QDialog::showEvent(e);
    Activate();
}

bool Login::eventFilter(QObject* watched, QEvent* e)
{
    if (e->type() == QEvent::KeyRelease) {
        const int key = static_cast<QKeyEvent*>(e)->key();
        if (watched == m_ui->login1)
            login1_KeyUp(key);
        else if (watched == m_ui->login2)
            login2_KeyUp(key);
    } else if (e->type() == QEvent::FocusIn && watched == m_ui->login2) {
        login2_GotFocus();
    }
    return QDialog::eventFilter(watched, e);
}

void Login::Activate()
{
    feliratoz(this);
    m_ui->login1->clear();
    m_ui->login2->clear();
    Session& session = Session::instance();
    session.userName.clear();
    session.rights = QLatin1String(noRights);
    m_ui->login1->setFocus();
    if (m_menu)
        m_menu->setPanelText(1, QString());
}

void Login::login1_KeyUp(int key)
{
    if (isEnter(key) && m_ui->login1->text().size() >= 2)
        m_ui->login2->setFocus();
}

// An early check of the name, so that a mistyped name is caught before the password.
void Login::login2_GotFocus()
{
    if (m_checking || m_ui->login1->text().size() < 2)
        return;
    m_checking = true;
    if (felhasznalo(m_db, m_ui->login1->text()).isEmpty()) {
        uzenet(QStringLiteral("nincs"), platform::Notice, this);
        m_ui->login1->clear();
        m_ui->login1->setFocus();
    } else {
        m_ui->login1->setText(m_ui->login1->text().toUpper());
    }
    m_checking = false;
}

void Login::login2_KeyUp(int key)
{
    if (!isEnter(key) || m_ui->login2->text().isEmpty())
        return;
    Session& session = Session::instance();
    const platform::Row user = felhasznalo(m_db, m_ui->login1->text());
    if (user.isEmpty()) {
        uzenet(QStringLiteral("nincs"), platform::Notice, this);
        m_ui->login1->clear();
        m_ui->login1->setFocus();
        return;
    }
    // Letter case counts; a user without a password never matches.
    const QString jelszo = QStringLiteral("jelszo");
    if (user.isNull(jelszo) || user.text(jelszo) != m_ui->login2->text()) {
        session.rights = QLatin1String(noRights);
        session.userName.clear();
        uzenet(QStringLiteral("rjelszo"), platform::Notice, this);
        m_ui->login2->clear();
        return;
    }

    session.userName = user.text(QStringLiteral("felhnev"));
    session.rights = user.text(QStringLiteral("felhjog"));
    session.language = qint16(user.value(QStringLiteral("felhnyelv")).toInt());
    session.defaultLawyer = user.text(QStringLiteral("alapugyv"));
    if (m_menu) {
        switch (session.language) {
        case 1:
            m_menu->setPanelText(1, QStringLiteral("Felhasználó :  ") + session.userName);
            break;
        case 2:
            m_menu->setPanelText(1, QStringLiteral("Benutzer :  ") + session.userName);
            break;
        case 3:
            m_menu->setPanelText(1, QStringLiteral("USER :  ") + session.userName);
            break;
        default:
            break;
        }
        feliratoz(m_menu);
    }
    accept();
    if (m_menu)
        m_menu->show();
}

void Login::g1_Click()
{
    reject();
    if (m_menu)
        m_menu->show();
}

void Login::g2_Click()
{
    login2_KeyUp(Qt::Key_Return);
}
