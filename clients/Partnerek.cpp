#include "clients/Partnerek.h"

#include "ui_Partnerek.h"

#include "clients/AddressBlock.h"
#include "comm/Emailkuld.h"
#include "comm/Telhivo.h"
#include "locale/Felirat.h"
#include "locale/Uzenet.h"
#include "platform/Database.h"
#include "platform/Display.h"
#include "platform/ListSource.h"
#include "platform/Messages.h"
#include "session/Session.h"
#include "store/Partners.h"

#include <QCloseEvent>
#include <QItemSelectionModel>

namespace clients {

namespace {

using records::Field;
using records::Mode;
using records::Role;

// The partner's fields and the columns of partner they show; empty texts are stored as no
// value.
QList<Field> partnerFields()
{
    return {
            {"nev1", "pnev1"},   {"nev2", "pnev2"}, {"orszag", "porszag", Field::Choice},
            {"hely", "phely"},   {"utca", "putca"}, {"irsz", "pirsz"},
            {"tel1", "ptel1"},   {"tel2", "ptel2"}, {"fax", "pfax"},
            {"email", "pemail"},
    };
}

QList<records::Button> partnerButtons()
{
    return {{Role::New, "g3", Right::NewRecord},
            {Role::Change, "g4", Right::ChangeRecord},
            {Role::Save, "g5"},
            {Role::Delete, "g6", Right::DeleteRecord},
            {Role::Close, "g7"}};
}

const QString module = QStringLiteral("Partnerek");

} // namespace

Partnerek::Partnerek(platform::Database& db, QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::Partnerek>())
    , m_db(db)
    , m_lista(new platform::ListSource(db, this))
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    m_ui->ukod->hide();
    m_ui->hivo->hide();
    m_ui->g5->setEnabled(false);

    m_address
            = new AddressBlock(m_db, m_ui->orszag, m_ui->irsz, m_ui->hely, m_ui->helylista1, this);
    m_ui->orszag->clearEditText();
    m_form = new records::RecordForm(this, partnerFields(), partnerButtons(), m_ui->hivo);
    m_form->setLocked(true);

    connect(m_ui->g3, &QPushButton::clicked, this, &Partnerek::ujugyfel);
    connect(m_ui->g4, &QPushButton::clicked, this, &Partnerek::g4_Click);
    connect(m_ui->g5, &QPushButton::clicked, this, &Partnerek::g5_Click);
    connect(m_ui->g6, &QPushButton::clicked, this, &Partnerek::g6_Click);
    connect(m_ui->g7, &QPushButton::clicked, this, &Partnerek::g7_Click);
    connect(m_ui->Tg1, &QPushButton::clicked, this, &Partnerek::Tg1_Click);
    connect(m_ui->Tg2, &QPushButton::clicked, this, &Partnerek::Tg2_Click);
    connect(m_ui->em1, &QPushButton::clicked, this, &Partnerek::em1_Click);
    // A double click or Enter on a row, the same gesture as on the search screen.
    connect(m_ui->DataGrid2, &QAbstractItemView::activated, this, &Partnerek::DataGrid2_RowChosen);

    // Loading: every partner in the grid.
    m_lista->setObjectName(QStringLiteral("Adodc1"));
    m_lista->setRecordSource(store::Partners::list());
    m_lista->bind(m_ui->DataGrid2);
    listafrissites();
}

Partnerek::~Partnerek() = default;

bool Partnerek::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        Activate();
    return QWidget::event(event);
}

void Partnerek::Activate()
{
    feliratoz(this);
    // The headings are the labels' texts, so they follow the language too.
    gridoszlopok();
    m_address->refillCountries();
    platform::placeOnDisplay(this, 1.8);
}

void Partnerek::gridoszlopok()
{
    platform::gridoszlopok(m_ui->DataGrid2, {{QStringLiteral("pnev1"), m_ui->sz2, 1800},
                                             {QStringLiteral("phely"), m_ui->sz6, 2400},
                                             {QStringLiteral("porszag"), m_ui->sz4, 1500},
                                             {QStringLiteral("putca"), m_ui->sz7, 1500},
                                             {QStringLiteral("ptel1"), m_ui->sz8, 1300},
                                             {QStringLiteral("ptel2"), m_ui->sz9, 1300}});
}

void Partnerek::listafrissites()
{
    QString error;
    const bool ok = m_lista->refresh(&error);
    gridoszlopok();
    if (!ok) {
        engineFailure(m_db.lastFailure(), error, module, QStringLiteral("listafrissites"), this);
        return;
    }
    markShownRow();
}

void Partnerek::markShownRow()
{
    const QVariant key = store::Partners::key(m_ui->ukod->text());
    if (!key.isValid())
        return;
    QItemSelectionModel* selection = m_ui->DataGrid2->selectionModel();
    const int column = m_lista->columnIndex(QStringLiteral("pnev1"));
    for (int row = 0; row < m_lista->rowCount(); ++row) {
        if (m_lista->value(row, QStringLiteral("pkod")).toLongLong() == key.toLongLong()) {
            const QModelIndex index = m_lista->model()->index(row, qMax(column, 0));
            selection->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect
                                                      | QItemSelectionModel::Rows);
            m_ui->DataGrid2->scrollTo(index);
            return;
        }
    }
}

void Partnerek::DataGrid2_RowChosen()
{
    const int position = m_lista->position();
    if (position == -1)
        return;
    // The key of the row the grid shows; the partner is then read by that key alone, so a
    // list that changed meanwhile never leads to another partner.
    const QVariant key = m_lista->value(position - 1, QStringLiteral("pkod"));
    // An entry in progress is given up only when the user says so.
    if (!m_form->mayDiscard())
        return;
    QString error;
    const platform::Row row = store::Partners(m_db).find(key, &error);
    if (!error.isEmpty()) {
        engineFailure(m_db.lastFailure(), error, module, QStringLiteral("DataGrid2"), this);
        return;
    }
    if (row.isEmpty()) {
        // Deleted on another workstation: nothing is shown in its place, and the list drops it.
        uzenet(QStringLiteral("mastorolte"), platform::Notice, this);
        listafrissites();
        return;
    }
    // A shown partner is read-only until new or change; a dropped entry is saved no more.
    m_form->setEntering(false);
    m_form->setLocked(true);
    m_ui->ukod->setText(row.text(QStringLiteral("pkod")));
    m_form->load(row);
}

void Partnerek::ujugyfel()
{
    if (!m_form->allowed(Role::New))
        return;
    m_form->setEntering(true);
    // ukod keeps the key of the partner shown before.
    m_form->clear();
    m_form->setLocked(false);
    m_ui->nev1->setFocus();
    // Partners are never entered for another screen.
    m_form->setMode(Mode::New);
}

void Partnerek::g4_Click()
{
    if (!m_form->allowed(Role::Change))
        return;
    // Nothing shown, nothing to change.
    if (m_ui->ukod->text().isEmpty())
        return;
    m_form->setEntering(true);
    m_form->setLocked(false);
    m_ui->nev1->setFocus();
    m_form->setMode(Mode::Changed);
}

void Partnerek::g5_Click()
{
    store::Partners partners(m_db);
    if (mode() == Mode::New || mode() == Mode::NewForCase) {
        // A new partner without a country is a Hungarian one; a change may empty the country.
        if (m_ui->orszag->currentText().isEmpty())
            m_ui->orszag->setEditText(QStringLiteral("Magyarország"));
        const store::Written written = partners.add(m_form->values());
        if (!reportWrite(written, module, QStringLiteral("g5"), this))
            return;
        m_ui->ukod->setText(written.key.toString());
    } else if (mode() == Mode::Changed) {
        // A partner deleted meanwhile on another workstation is told, and the entry stays on
        // screen; nothing is written into any other partner.
        const store::Written written
                = partners.change(store::Partners::key(m_ui->ukod->text()), m_form->values());
        if (!reportWrite(written, module, QStringLiteral("g5"), this)) {
            // The next save stores the entry as a new partner.
            if (written.result == store::Written::Gone) {
                m_form->setMode(Mode::New);
                listafrissites();
            }
            return;
        }
    } else {
        return;
    }
    // The fields stay open for typing, but nothing more is saved until new or change.
    m_form->setEntering(false);
    listafrissites();
}

void Partnerek::g6_Click()
{
    if (!m_form->allowed(Role::Delete))
        return;
    const QVariant key = store::Partners::key(m_ui->ukod->text());
    if (!key.isValid())
        return;
    if (uzenet(QStringLiteral("torol"), platform::Confirmation, this) != platform::AnswerYes)
        return;
    const store::Written written = store::Partners(m_db).remove(key);
    // Already deleted elsewhere is as good as deleted here.
    if (written.result != store::Written::Gone
        && !reportWrite(written, module, QStringLiteral("g6"), this))
        return;
    // The deleted key stays in ukod.
    m_form->clear();
    listafrissites();
}

void Partnerek::g7_Click()
{
    if (!m_form->mayDiscard())
        return;
    m_unloading = true;
    close();
}

void Partnerek::closeEvent(QCloseEvent* event)
{
    // The window's own close button closes as Bezár does.
    if (!m_unloading) {
        event->ignore();
        g7_Click();
        return;
    }
    // The main menu is shown before this window goes, so the program is never left without a
    // window, which would end it without the exit question.
    QWidget::closeEvent(event);
    if (const auto& menu = Session::instance().screens.showMainMenu)
        menu();
}

void Partnerek::Tg1_Click()
{
    comm::telefonhiv(m_db, m_ui->tel1->text());
}

void Partnerek::Tg2_Click()
{
    comm::telefonhiv(m_db, m_ui->tel2->text());
}

void Partnerek::em1_Click()
{
    comm::Emailkuld(m_ui->email->text());
}

} // namespace clients
