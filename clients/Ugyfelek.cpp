#include "clients/Ugyfelek.h"

#include "ui_Ugyfelek.h"

#include "clients/AddressBlock.h"
#include "comm/Emailkuld.h"
#include "comm/Telhivo.h"
#include "locale/Felirat.h"
#include "locale/Uzenet.h"
#include "platform/Display.h"
#include "platform/Messages.h"
#include "records/ConflictNotice.h"
#include "store/Clients.h"

#include <QButtonGroup>
#include <QCloseEvent>

namespace clients {

namespace {

QString defaultCountry()
{
    return QStringLiteral("Magyarország");
}

using records::Field;
using records::Mode;
using records::Role;

// The client's fields and the columns of ugyfelek they show. Empty texts are stored as no
// value; the option pair is never locked, and written only when one of it is chosen.
QList<Field> clientFields()
{
    return {
            {"nev1", "unev1"},
            {"nev2", "unev2"},
            {"orszag", "uorszag", Field::Choice},
            {"hely", "uhely"},
            {"utca", "uutca"},
            {"irsz", "uirsz"},
            {"tel1", "utel1"},
            {"tel2", "utel2"},
            {"fax", "ufax"},
            {"email", "uemail"},
            {"anyja", "uanyja"},
            {"szemszam", "uszemszam"},
            {"adoszam", "uadoszam"},
            {"cegszam", "ucegszam"},
            {"g1", "ucegprivat", Field::YesNo, "g2", true},
    };
}

QList<records::Button> clientButtons()
{
    return {{Role::New, "g3", Right::NewRecord},
            {Role::Change, "g4", Right::ChangeRecord},
            {Role::Save, "g5"},
            {Role::Delete, "g6", Right::DeleteRecord},
            {Role::Close, "g7"}};
}

const QString module = QStringLiteral("Ugyfelek");

} // namespace

Ugyfelek::Ugyfelek(platform::Database& db, const ListChoice& choice, QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::Ugyfelek>())
    , m_ksorsz(choice.key)
    , m_search(choice.search)
    , m_db(db)
    , m_browse(db)
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);

    // Loading: the browse set is the search screen's list query.
    m_browse.setRecordSource(choice.list);

    m_ui->ukod->hide();
    m_ui->hivo->hide();
    m_ui->g5->setEnabled(false);

    // Company or private person, or (for a new client) neither.
    m_cegprivat = new QButtonGroup(this);
    m_cegprivat->addButton(m_ui->g1);
    m_cegprivat->addButton(m_ui->g2);

    m_address
            = new AddressBlock(m_db, m_ui->orszag, m_ui->irsz, m_ui->hely, m_ui->helylista1, this);
    m_ui->orszag->clearEditText();
    m_form = new records::RecordForm(this, clientFields(), clientButtons(), m_ui->hivo);
    // The client's name against every case's opponent, at each edit; the notice only informs.
    m_nameCheck = new records::ConflictNotice(m_ui->nev1, [this](const QString& name) {
        return store::Conflicts(m_db).casesAgainst(name);
    });
    m_form->setLocked(true);

    connect(m_ui->g3, &QPushButton::clicked, this, &Ugyfelek::ujugyfel);
    connect(m_ui->g4, &QPushButton::clicked, this, &Ugyfelek::g4_Click);
    connect(m_ui->g5, &QPushButton::clicked, this, &Ugyfelek::g5_Click);
    connect(m_ui->g6, &QPushButton::clicked, this, &Ugyfelek::g6_Click);
    connect(m_ui->g7, &QPushButton::clicked, this, &Ugyfelek::g7_Click);
    connect(m_ui->Tg1, &QPushButton::clicked, this, &Ugyfelek::Tg1_Click);
    connect(m_ui->Tg2, &QPushButton::clicked, this, &Ugyfelek::Tg2_Click);
    connect(m_ui->em1, &QPushButton::clicked, this, &Ugyfelek::em1_Click);
}

Ugyfelek::~Ugyfelek() = default;

bool Ugyfelek::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        Activate();
    return QWidget::event(event);
}

void Ugyfelek::Activate()
{
    feliratoz(this);
    if (mode() == Mode::NewForCase)
        m_ui->g5->setText(QStringLiteral("Ment és Vissza"));
    m_address->refillCountries();
    platform::placeOnDisplay(this, 1.8);
}

void Ugyfelek::ugyffeltolt()
{
    m_browse.refresh();
    // The client is read from the table by its key, whether or not the list holds it.
    QString error;
    const platform::Row row = store::Clients(m_db).find(store::Clients::key(m_ksorsz), &error);
    if (!error.isEmpty())
        engineFailure(m_db.lastFailure(), error, module, QStringLiteral("ugyffeltolt"), this);
    if (row.isEmpty())
        return;
    m_ui->ukod->setText(row.text(QStringLiteral("ukod")));
    // A stored yes reads as -1; no and no value show a private person.
    m_form->load(row);
    m_nameCheck->clear();
    m_ui->nev1->setFocus();
}

void Ugyfelek::ujugyfel()
{
    if (!m_form->allowed(Role::New))
        return;
    m_form->setEntering(true);
    m_form->clear();
    m_form->setLocked(false);
    m_nameCheck->clear();
    m_ui->nev1->setFocus();
    if (mode() == Mode::NewForCase) {
        m_ui->g5->setText(QStringLiteral("Ment és Vissza"));
        m_ui->g4->hide();
        m_ui->g6->hide();
        m_ui->g3->hide();
    } else {
        m_form->setMode(Mode::New);
    }
}

void Ugyfelek::g4_Click()
{
    if (!m_form->allowed(Role::Change))
        return;
    m_form->setEntering(true);
    m_form->setLocked(false);
    m_ui->nev1->setFocus();
    m_form->setMode(Mode::Changed);
    m_nameCheck->recheck();
}

QVariantMap Ugyfelek::columnValues(bool newClient)
{
    // The default country applies to new clients only; a change may empty it.
    if (newClient && m_ui->orszag->currentText().isEmpty())
        m_ui->orszag->setEditText(defaultCountry());
    return m_form->values();
}

void Ugyfelek::g5_Click()
{
    store::Clients clients(m_db);
    if (mode() == Mode::New || mode() == Mode::NewForCase) {
        const store::Written written = clients.add(columnValues(true));
        if (!reportWrite(written, module, QStringLiteral("g5"), this))
            return;
        m_ui->ukod->setText(written.key.toString());
        if (mode() == Mode::NewForCase) {
            // Back to the case screen, which takes the new client; this screen stays loaded.
            if (m_caseScreen)
                m_caseScreen->show();
            hide();
            if (m_saved)
                m_saved(m_ui->ukod->text(), m_ui->nev1->text());
        }
    } else if (mode() == Mode::Changed) {
        m_browse.refresh();
        // A client deleted meanwhile on another workstation is told, and the entry stays on
        // screen; nothing is written into any other client.
        const store::Written written
                = clients.change(store::Clients::key(m_ui->ukod->text()), columnValues(false));
        if (!reportWrite(written, module, QStringLiteral("g5"), this)) {
            // The next save stores the entry as a new client.
            if (written.result == store::Written::Gone)
                m_form->setMode(Mode::New);
            return;
        }
    }
    // The fields stay open for typing, but nothing more is saved until new or change.
    m_form->setEntering(false);
}

void Ugyfelek::g6_Click()
{
    if (!m_form->allowed(Role::Delete))
        return;
    if (uzenet(QStringLiteral("torol"), platform::Confirmation, this) != platform::AnswerYes)
        return;
    // Counting the client's cases and deleting happen in one write transaction.
    const store::Written written
            = store::Clients(m_db).remove(store::Clients::key(m_ui->ukod->text()));
    if (written.result != store::Written::Gone
        && !reportWrite(written, module, QStringLiteral("g6"), this))
        return;
    // The deleted key stays in ukod.
    m_form->clear();
}

void Ugyfelek::g7_Click()
{
    if (!m_form->mayDiscard())
        return;
    unload();
}

bool Ugyfelek::entryPending() const
{
    return m_ui->g5->isEnabled();
}

void Ugyfelek::unload(bool showCaller)
{
    if (m_unloading)
        return;
    m_unloading = true;
    const QPointer<QWidget> next = mode() == Mode::NewForCase ? m_caseScreen : m_search;
    close();
    if (showCaller && next)
        next->show();
}

void Ugyfelek::closeEvent(QCloseEvent* event)
{
    // The window's own close button closes as Bezár does.
    if (!m_unloading) {
        event->ignore();
        g7_Click();
        return;
    }
    QWidget::closeEvent(event);
}

void Ugyfelek::newForCase(QWidget* caseScreen, const QString& typedName, ClientSaved saved)
{
    m_caseScreen = caseScreen;
    m_saved = std::move(saved);
    show();
    m_form->setMode(Mode::NewForCase);
    ujugyfel();
    m_ui->nev1->setText(typedName);
    m_nameCheck->recheck();
}

void Ugyfelek::Tg1_Click()
{
    comm::telefonhiv(m_db, m_ui->tel1->text());
}

void Ugyfelek::Tg2_Click()
{
    comm::telefonhiv(m_db, m_ui->tel2->text());
}

void Ugyfelek::em1_Click()
{
    comm::Emailkuld(m_ui->email->text());
}

} // namespace clients
