#include "session/Alap.h"

#include "locale/Felirat.h"
#include "locale/Uzenet.h"
#include "platform/Display.h"
#include "session/Jog.h"
#include "session/Login.h"
#include "session/Session.h"
#include "ui_Alap.h"
#include "version.h"

#include <QCloseEvent>
#include <QDate>
#include <QGuiApplication>
#include <QLabel>
#include <QLocale>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>
#include <QTime>

namespace {

// The menu's design, in twips: the block of fields is 6700 high and stands centred on the
// display; buttons sit in rows, each at a fraction of the display's width.
constexpr int menuHeight = 6700;
constexpr int buttonHeight = 500;
constexpr int buttonWidth = 1800;
constexpr int buttonGap = 120;

struct Placement
{
    const char* field;
    double middle; // fraction of the display's width where the field's middle sits
    int top;
    int width;
    int height;
};

} // namespace

Alap::Alap(platform::Database& db, QWidget* parent)
    : QMainWindow(parent), m_ui(std::make_unique<Ui::Alap>()), m_db(db)
{
    m_ui->setupUi(this);
    for (int i = 0; i < 3; ++i) {
        auto* panel = new QLabel(m_ui->StatusBar1);
        panel->setObjectName(QStringLiteral("panel%1").arg(i + 1));
        panel->setMinimumWidth(i == 0 ? 260 : 110);
        m_ui->StatusBar1->addWidget(panel, i == 0 ? 1 : 0);
        m_panels << panel;
    }

    connect(m_ui->g1, &QPushButton::clicked, this, &Alap::g1_Click);
    connect(m_ui->g2, &QPushButton::clicked, this, &Alap::g2_Click);
    connect(m_ui->g3, &QPushButton::clicked, this, &Alap::g3_Click);
    connect(m_ui->g4, &QPushButton::clicked, this, &Alap::g4_Click);
    connect(m_ui->g5, &QPushButton::clicked, this, &Alap::g5_Click);
    connect(m_ui->g6, &QPushButton::clicked, this, &Alap::g6_Click);
    connect(m_ui->g7, &QPushButton::clicked, this, &Alap::g7_Click);
    connect(m_ui->g8, &QPushButton::clicked, this, &Alap::g8_Click);
    connect(m_ui->g9, &QPushButton::clicked, this, &Alap::g9_Click);
    connect(m_ui->g10, &QPushButton::clicked, this, &Alap::g10_Click);
    connect(m_ui->g11, &QPushButton::clicked, this, &Alap::g11_Click);
    connect(m_ui->g12, &QPushButton::clicked, this, &Alap::g12_Click);
    connect(m_ui->g13, &QPushButton::clicked, this, &Alap::g13_Click);
    connect(m_ui->g14, &QPushButton::clicked, this, &Alap::g14_Click);

    // Shift+F5, whatever field has the focus; the key sequence matches Shift alone, so F5 and
    // Ctrl+Shift+F5 do not open the caption editor.
    auto* felirKey = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F5), this);
    felirKey->setContext(Qt::WindowShortcut);
    connect(felirKey, &QShortcut::activated, this, &Alap::felirShow);

    Screens& screens = Session::instance().screens;
    screens.showMainMenu = [this] { mutat(); };
    screens.showLogin = [this] {
        Login login(m_db, this, this);
        login.exec();
    };
}

Alap::~Alap()
{
    Screens& screens = Session::instance().screens;
    screens.showMainMenu = nullptr;
    screens.showLogin = nullptr;
}

bool Alap::load()
{
    if (!Session::instance().start(m_db))
        return false;
    const QLocale locale = QLocale::system();
    setPanelText(2, locale.toString(QDate::currentDate(), QLocale::ShortFormat));
    setPanelText(3, locale.toString(QTime::currentTime(), QLocale::ShortFormat));
    feliratoz(this);
    captionConflicts();
    m_ui->verz->setText(QStringLiteral(CAUSORA_VERSION));
    helyez();
    return true;
}

QString Alap::panelText(int panel) const
{
    return panel >= 1 && panel <= m_panels.size() ? m_panels.at(panel - 1)->text() : QString();
}

void Alap::setPanelText(int panel, const QString& text)
{
    if (panel >= 1 && panel <= m_panels.size())
        m_panels.at(panel - 1)->setText(text);
}

bool Alap::event(QEvent* e)
{
    // Captions again on every activation, so that a new language or an edited caption shows.
    if (e->type() == QEvent::WindowActivate) {
        feliratoz(this);
        captionConflicts();
    }
    return QMainWindow::event(e);
}

void Alap::closeEvent(QCloseEvent* e)
{
    if (uzenet(QStringLiteral("kilep"), platform::Confirmation, this) == platform::AnswerYes) {
        e->accept();
        QCoreApplication::quit();
        return;
    }
    e->ignore();
    mutat();
}

// The menu fills the display, so that buttons placed at fractions of the display's width are
// all on it; the block of fields stands in the middle of the display's height.
void Alap::helyez()
{
    const QScreen* display = QGuiApplication::primaryScreen();
    const QRect area = display ? display->availableGeometry() : QRect(0, 0, 1024, 768);
    const QSize twips = platform::displaySizeTwips();
    const int W = twips.width();
    const int H = twips.height();
    const int top = qMax(0, H / 2 - menuHeight / 2);
    const int narrow = qMin(buttonWidth, W / 7 - buttonGap);

    const Placement fields[] = {
            {"sz1", 1.0 / 2, 300, 7000, 650},
            {"sz2", 1.0 / 2, 950, 7000, 450},
            {"verz", 1.0 / 2, 1400, 2000, 300},
            {"g3", 1.0 / 4, 2000, buttonWidth, buttonHeight},
            {"g1", 1.0 / 2, 2000, buttonWidth, buttonHeight},
            {"g4", 3.0 / 4, 2000, buttonWidth, buttonHeight},
            {"g5", 1.0 / 7, 2900, narrow, buttonHeight},
            {"g10", 2.0 / 7, 2900, narrow, buttonHeight},
            {"g6", 3.0 / 7, 2900, narrow, buttonHeight},
            {"g7", 4.0 / 7, 2900, narrow, buttonHeight},
            {"g8", 5.0 / 7, 2900, narrow, buttonHeight},
            {"g9", 6.0 / 7, 2900, narrow, buttonHeight},
            {"g12", 1.0 / 4, 3800, buttonWidth, buttonHeight},
            {"g11", 1.0 / 2, 3800, buttonWidth, buttonHeight},
            {"g13", 3.0 / 4, 3800, buttonWidth, buttonHeight},
            {"g14", 3.0 / 4, 4900, buttonWidth, buttonHeight},
            {"g2", 1.0 / 2, 4900, buttonWidth, buttonHeight},
    };
    for (const Placement& p : fields) {
        auto* w = findChild<QWidget*>(QLatin1String(p.field));
        if (!w)
            continue;
        const int left = qMax(0, int(W * p.middle) - p.width / 2);
        w->setGeometry(platform::twipsToPixels(left), platform::twipsToPixels(top + p.top),
                       platform::twipsToPixels(p.width), platform::twipsToPixels(p.height));
    }
    setGeometry(area);
    setWindowState(windowState() | Qt::WindowMaximized);
}

void Alap::mutat()
{
    show();
    raise();
    activateWindow();
}

// The gate, then the screen. A screen that hides the menu shows it again when it closes; a
// screen that is not there yet leaves the menu as it is.
void Alap::megnyit(Right right, const std::function<void()>& show, bool hidesMenu)
{
    if (!jogos(right, this) || !show)
        return;
    if (hidesMenu)
        hide();
    show();
}

void Alap::megnyit(Right right, const std::function<void(const QString&)>& show,
                   const QString& mode, bool hidesMenu)
{
    megnyit(right, show ? [show, mode] { show(mode); } : std::function<void()>(), hidesMenu);
}

void Alap::g1_Click()
{
    if (const auto& show = Session::instance().screens.showLogin)
        show();
}

void Alap::g2_Click()
{
    close();
}

void Alap::g3_Click()
{
    megnyit(Right::ClientSearch, Session::instance().screens.showSearch, QStringLiteral("1"), true);
}

void Alap::g4_Click()
{
    megnyit(Right::CaseSearch, Session::instance().screens.showSearch, QStringLiteral("2"), true);
}

void Alap::g5_Click()
{
    megnyit(Right::CountriesAndPostalCodes, Session::instance().screens.showLookupList,
            QStringLiteral("1"), false);
}

void Alap::g6_Click()
{
    megnyit(Right::CaseTypes, Session::instance().screens.showLookupList, QStringLiteral("2"),
            false);
}

void Alap::g7_Click()
{
    megnyit(Right::Lawyers, Session::instance().screens.showLookupList, QStringLiteral("3"), false);
}

void Alap::g8_Click()
{
    megnyit(Right::Users, Session::instance().screens.showUsers, false);
}

void Alap::g9_Click()
{
    megnyit(Right::Parameters, Session::instance().screens.showParameters, false);
}

void Alap::g10_Click()
{
    megnyit(Right::CountriesAndPostalCodes, Session::instance().screens.showPostalCodes, false);
}

void Alap::g11_Click()
{
    megnyit(Right::Partners, Session::instance().screens.showPartners, true);
}

void Alap::g12_Click()
{
    megnyit(Right::BackupAndRestore, Session::instance().screens.showBackup, true);
}

void Alap::captionConflicts()
{
    // The caption table has no column for this button: its caption is a message.
    m_ui->g14->setText(uzenetszoveg(QStringLiteral("utkozesgomb")));
}

// The conflict list shows cases with their opponents: it asks the case-list right.
void Alap::g14_Click()
{
    megnyit(Right::CaseSearch, Session::instance().screens.showConflicts, false);
}

void Alap::g13_Click()
{
    megnyit(Right::BackupAndRestore, Session::instance().screens.showRestore, true);
}

void Alap::felirShow()
{
    if (const auto& show = Session::instance().screens.showCaptionEditor)
        show();
}
