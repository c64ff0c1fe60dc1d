#include "search/utkozesek.h"

#include "ui_utkozesek.h"

#include "locale/Felirat.h"
#include "locale/Uzenet.h"
#include "platform/Display.h"
#include "platform/Export.h"
#include "platform/ListSource.h"
#include "platform/Messages.h"
#include "platform/Printer.h"
#include "search/ListCommands.h"
#include "session/Session.h"
#include "store/Conflicts.h"
#include "store/ErrorLog.h"

namespace {
const QString module = QStringLiteral("utkozesek");
} // namespace

utkozesek::utkozesek(platform::Database& db, QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::utkozesek>())
    , m_db(db)
    , m_forras(new platform::ListSource(db, this))
{
    ui->setupUi(this);
    m_forras->setObjectName(QStringLiteral("forras"));
    m_forras->bind(ui->DataGrid1);
    connect(ui->g1, &QPushButton::clicked, this, &utkozesek::g1_Click);
    connect(ui->g2, &QPushButton::clicked, this, &utkozesek::g2_Click);
    connect(ui->g3, &QPushButton::clicked, this, &utkozesek::g3_Click);
}

utkozesek::~utkozesek() = default;

void utkozesek::Activate()
{
    feliratoz(this);
    setWindowTitle(ui->sz1->text());
    m_forras->setRecordSource(store::Conflicts::list(Session::instance().language));
    QString error;
    if (!m_forras->refresh(&error))
        engineFailure(m_db.lastFailure(), error, module, QStringLiteral("Activate"), this);
    platform::gridoszlopok(ui->DataGrid1, {{QStringLiteral("ugyszam"), ui->sz2, 900},
                                           {QStringLiteral("mezonev"), ui->sz3, 1600},
                                           {QStringLiteral("nev"), ui->sz4, 2800},
                                           {QStringLiteral("rekord"), ui->sz5, 1500},
                                           {QStringLiteral("egyezonev"), ui->sz7, 2800}});
}

void utkozesek::g1_Click()
{
    search::PrintedList list;
    list.clients = false;
    list.query = m_forras->recordSource();
    list.title = ui->sz1->text();
    list.fields = QStringList{QStringLiteral("ugyszam"), QStringLiteral("nev"),
                              QStringLiteral("rekord"), QStringLiteral("egyezonev")};
    list.widths = {1000, 3350, 1800};
    list.headings = QStringList{ui->sz2->text(), ui->sz4->text(), ui->sz5->text(), ui->sz7->text()};
    list.measureFont = font();
    search::printList(list, m_db, this);
}

void utkozesek::g2_Click()
{
    platform::ExportedList list;
    list.query = m_forras->recordSource();
    list.columns = platform::gridExportColumns(ui->DataGrid1);
    list.title = ui->sz1->text();
    search::exportList(list, m_db, module, QStringLiteral("g2"), this);
}

void utkozesek::g3_Click()
{
    close();
}
