#include "search/keres.h"
#include "ui_keres.h"

#include "locale/Felirat.h"
#include "locale/Uzenet.h"
#include "platform/Display.h"
#include "platform/Export.h"
#include "platform/ListSource.h"
#include "platform/Messages.h"
#include "platform/Printer.h"
#include "records/DateShape.h"
#include "search/ListCommands.h"
#include "session/Jog.h"
#include "session/Session.h"
#include "store/Cases.h"
#include "store/Clients.h"
#include "store/ErrorLog.h"
#include "store/Upgrade.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>

keres::keres(platform::Database& db, QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::keres>())
    , m_db(db)
    , m_forras(new platform::ListSource(db, this))
{
    ui->setupUi(this);
    m_forras->setObjectName(QStringLiteral("forras"));
    m_forras->bind(ui->DataGrid1);
    for (QLineEdit* filter : {ui->ker1, ui->ker2, ui->ker3, ui->ker4, ui->ker5})
        filter->installEventFilter(this);
    connect(ui->g1, &QPushButton::clicked, this, &keres::g1_Click);
    connect(ui->g2, &QPushButton::clicked, this, &keres::g2_Click);
    connect(ui->g3, &QPushButton::clicked, this, &keres::szukites);
    connect(ui->g4, &QPushButton::clicked, this, &keres::g4_Click);
    connect(ui->g5, &QPushButton::clicked, this, &keres::g5_Click);
    connect(ui->g6, &QPushButton::clicked, this, &keres::g6_Click);
    // Activation is a double click or Enter on a row (a single click where the desktop is set
    // to open items so), the same gesture as on the partner and postal-code screens.
    connect(ui->DataGrid1, &QAbstractItemView::activated, this, &keres::DataGrid1_RowChosen);
}

keres::~keres() = default;

void keres::setTipus(const QString& tipus)
{
    ui->tipus->setText(tipus);
}

bool keres::clientsMode() const
{
    return ui->tipus->text().trimmed() == QLatin1String("1");
}

bool keres::Load()
{
    const Screens& screens = Session::instance().screens;
    bool closed = true;
    for (const auto* givesWay : {&screens.clientGivesWay, &screens.caseGivesWay}) {
        if (*givesWay && !(*givesWay)(GiveWay::Close))
            closed = false;
    }
    return closed;
}

bool keres::registerGivesWay() const
{
    const Screens& screens = Session::instance().screens;
    const auto& givesWay = clientsMode() ? screens.clientGivesWay : screens.caseGivesWay;
    return !givesWay || givesWay(GiveWay::Replace);
}

void keres::Activate()
{
    platform::placeOnDisplay(this, 1.8);
    for (QLineEdit* filter : {ui->ker1, ui->ker2, ui->ker3, ui->ker4, ui->ker5})
        filter->clear();
    const QColor colour = clientsMode() ? QColor(255, 128, 0) : QColor(0, 192, 192);
    feliratoz(this);
    for (QWidget* w : {static_cast<QWidget*>(this), static_cast<QWidget*>(ui->sz1)}) {
        QPalette p = w->palette();
        p.setColor(QPalette::Window, colour);
        w->setPalette(p);
    }
    showList(clientsMode() ? store::Clients::list() : store::Cases::list());
    ui->ker1->setFocus();
}

void keres::szukites()
{
    if (clientsMode())
        showList(store::Clients::list({ui->ker1->text(), ui->ker2->text(), ui->ker3->text(),
                                       ui->ker4->text(), ui->ker5->text()}));
    else
        showList(store::Cases::list({ui->ker1->text(), ui->ker2->text(), ui->ker3->text(),
                                     ui->ker4->text(), records::dateFilter(ui->ker5->text())}));
}

void keres::showList(const platform::ListQuery& list)
{
    if (clientsMode())
        store::fillClientSortKeys(m_db);
    m_forras->setRecordSource(list);
    QString error;
    const bool ok = m_forras->refresh(&error);
    oszlopok();
    if (!ok)
        engineFailure(m_db.lastFailure(), error, QStringLiteral("keres"),
                      QStringLiteral("szukites"), this);
}

void keres::oszlopok()
{
    if (clientsMode())
        platform::gridoszlopok(ui->DataGrid1, {{QStringLiteral("unev1"), ui->sz2, 3000},
                                               {QStringLiteral("uorszag"), ui->sz3, 1500},
                                               {QStringLiteral("uirsz"), ui->sz6, 700},
                                               {QStringLiteral("uhely"), ui->sz4, 2500},
                                               {QStringLiteral("uutca"), ui->sz5, 2200}});
    else
        platform::gridoszlopok(ui->DataGrid1, {{QStringLiteral("ugyszam"), ui->sz2, 900},
                                               {QStringLiteral("unev1"), ui->sz3, 2700},
                                               {QStringLiteral("ugytipus"), ui->sz4, 2100},
                                               {QStringLiteral("kezdet"), ui->sz6, 1300},
                                               {QStringLiteral("ellnev"), ui->sz5, 2800}});
}

void keres::g1_Click()
{
    if (!jogos(Right::NewRecord, this))
        return;
    // An entry in progress on the register screen is answered for before anything changes.
    if (!registerGivesWay())
        return;
    for (QLineEdit* filter : {ui->ker1, ui->ker2, ui->ker3, ui->ker4, ui->ker5})
        filter->clear();
    szukites();
    const ListChoice choice{QString(), m_forras->recordSource(), this};
    const Screens& screens = Session::instance().screens;
    const auto& open = clientsMode() ? screens.newClient : screens.newCase;
    if (open)
        open(choice);
}

void keres::g2_Click()
{
    close();
}

void keres::closeEvent(QCloseEvent* e)
{
    // However the screen is closed (Bezár or the window's close box), the main menu comes
    // back. It is shown before this window goes, so the program is never left without a
    // window, which would end it without the exit question.
    QWidget::closeEvent(e);
    if (const auto& menu = Session::instance().screens.showMainMenu)
        menu();
}

void keres::g4_Click()
{
    DataGrid1_RowChosen();
}

void keres::DataGrid1_RowChosen()
{
    const int position = m_forras->position();
    ui->jelzo->setText(QString::number(position));
    if (position == -1)
        return;
    // No: the register screen keeps its entry, and nothing is handed over.
    if (!registerGivesWay())
        return;
    ui->ksorsz->setText(m_forras->value(position - 1, 0).toString());
    const ListChoice choice{ui->ksorsz->text(), m_forras->recordSource(), this};
    const Screens& screens = Session::instance().screens;
    const QString tipus = ui->tipus->text().trimmed();
    if (tipus == QLatin1String("1") && screens.showClient)
        screens.showClient(choice);
    else if (tipus == QLatin1String("2") && screens.showCase)
        screens.showCase(choice);
}

void keres::g5_Click()
{
    search::PrintedList list;
    list.clients = clientsMode();
    list.query = m_forras->recordSource();
    list.headings = list.clients ? QStringList{ui->sz2->text(), ui->sz6->text(), ui->sz4->text(),
                                               ui->sz5->text()}
                                 : QStringList{ui->sz2->text(), ui->sz3->text(), ui->sz4->text(),
                                               ui->sz5->text()};
    list.measureFont = font();
    search::printList(list, m_db, this);
}

void keres::g6_Click()
{
    platform::ExportedList list;
    list.query = m_forras->recordSource();
    list.columns = platform::gridExportColumns(ui->DataGrid1);
    list.title = ui->sz1->text();
    search::exportList(list, m_db, QStringLiteral("keres"), QStringLiteral("g6"), this);
}

void keres::keltezes()
{
    // Shapes the date filter into "yyyy.mm.dd" while it is typed.
    QLineEdit* field = ui->ker5;
    const QString text = field->text();
    const QString shaped = records::shapeTypedDate(text);
    if (shaped != text) {
        field->setText(shaped);
        field->end(false);
    }
}

bool keres::eventFilter(QObject* watched, QEvent* e)
{
    if (e->type() == QEvent::KeyRelease) {
        const auto* key = static_cast<QKeyEvent*>(e);
        if (!key->isAutoRepeat()) {
            if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
                szukites();
            } else if (watched == ui->ker5 && !clientsMode() && records::shapesDate(key->key())) {
                keltezes();
            }
        }
    }
    return QWidget::eventFilter(watched, e);
}

bool keres::event(QEvent* e)
{
    if (m_return.returning(this, e))
        Activate();
    return QWidget::event(e);
}

void keres::showEvent(QShowEvent* e)
{
    QWidget::showEvent(e);
    if (!e->spontaneous())
        Activate();
}
