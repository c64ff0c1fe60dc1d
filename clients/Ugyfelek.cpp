#include "clients/Ugyfelek.h"

#include "ui_Ugyfelek.h"

#include "clients/AddressBlock.h"
#include "comm/Emailkuld.h"
#include "comm/Telhivo.h"
#include "locale/Felirat.h"
#include "locale/Uzenet.h"
#include "platform/Display.h"
#include "platform/LockedCombo.h"
#include "platform/Messages.h"
#include "session/Jog.h"
#include "store/Clients.h"

#include <QButtonGroup>
#include <QCloseEvent>
#include <QSignalBlocker>

namespace clients {

namespace {

QString defaultCountry()
{
    return QStringLiteral("Magyarország");
}

// An empty field is stored as no value, as the rest of the register keeps absent texts.
QVariant textValue(const QString& text)
{
    return text.isEmpty() ? QVariant(QMetaType(QMetaType::QString)) : QVariant(text);
}

const QString module = QStringLiteral("Ugyfelek");

} // namespace

Ugyfelek::Ugyfelek(const ListChoice& choice, QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::Ugyfelek>())
    , m_ksorsz(choice.key)
    , m_search(choice.search)
    , m_browse(Session::instance().database)
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

    m_address = new AddressBlock(m_ui->orszag, m_ui->irsz, m_ui->hely, m_ui->helylista1, this);
    m_ui->orszag->clearEditText();
    setEntryFieldsLocked(true);

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

QList<QLineEdit*> Ugyfelek::entryFields() const
{
    return {m_ui->nev1,     m_ui->nev2,    m_ui->hely,   m_ui->utca,  m_ui->irsz,
            m_ui->tel1,     m_ui->tel2,    m_ui->fax,    m_ui->email, m_ui->anyja,
            m_ui->szemszam, m_ui->adoszam, m_ui->cegszam};
}

void Ugyfelek::setEntryFieldsLocked(bool locked)
{
    for (QLineEdit* field : entryFields())
        field->setReadOnly(locked);
    // A locked country box takes neither typing nor a choice from its list.
    platform::lockComboBox(m_ui->orszag, locked);
}

void Ugyfelek::emptyEntryFields()
{
    for (QLineEdit* field : entryFields())
        field->clear();
    m_ui->orszag->setEditText(QString());
}

void Ugyfelek::clearCompanyOption()
{
    m_cegprivat->setExclusive(false);
    m_ui->g1->setChecked(false);
    m_ui->g2->setChecked(false);
    m_cegprivat->setExclusive(true);
}

QString Ugyfelek::hivo() const
{
    return m_ui->hivo->text();
}

void Ugyfelek::setEntryButtons(bool entering)
{
    m_ui->g5->setEnabled(entering);
    m_ui->g3->setEnabled(!entering);
    m_ui->g4->setEnabled(!entering);
    m_ui->g6->setEnabled(!entering);
}

bool Ugyfelek::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        Activate();
    return QWidget::event(event);
}

void Ugyfelek::Activate()
{
    feliratoz(this);
    if (hivo() == QLatin1String("3"))
        m_ui->g5->setText(QStringLiteral("Ment és Vissza"));

    // The list is filled anew; what the box shows stays.
    const QString shown = m_ui->orszag->currentText();
    {
        const QSignalBlocker blocker(m_ui->orszag);
        m_ui->orszag->clear();
        const platform::Rows rows = Session::instance().database.select(
                QStringLiteral("select * from Orszagok order by orszagnev COLLATE HU"));
        for (const platform::Row& row : rows)
            m_ui->orszag->addItem(row.text(QStringLiteral("orszagnev")));
        m_ui->orszag->setCurrentIndex(-1);
        m_ui->orszag->setEditText(shown);
    }
    platform::placeOnDisplay(this, 1.8);
}

void Ugyfelek::ugyffeltolt()
{
    m_browse.refresh();
    // The client is read from the table by its key, whether or not the list holds it.
    QString error;
    const platform::Row row = store::Clients(Session::instance().database)
                                      .find(store::Clients::key(m_ksorsz), &error);
    if (!error.isEmpty())
        engineFailure(Session::instance().database.lastFailure(), error, module,
                      QStringLiteral("ugyffeltolt"), this);
    if (row.isEmpty())
        return;
    m_ui->ukod->setText(row.text(QStringLiteral("ukod")));
    m_ui->nev1->setText(row.text(QStringLiteral("unev1")));
    m_ui->nev2->setText(row.text(QStringLiteral("unev2")));
    m_ui->orszag->setEditText(row.text(QStringLiteral("uorszag")));
    m_ui->hely->setText(row.text(QStringLiteral("uhely")));
    m_ui->utca->setText(row.text(QStringLiteral("uutca")));
    m_ui->irsz->setText(row.text(QStringLiteral("uirsz")));
    m_ui->tel1->setText(row.text(QStringLiteral("utel1")));
    m_ui->tel2->setText(row.text(QStringLiteral("utel2")));
    m_ui->fax->setText(row.text(QStringLiteral("ufax")));
    m_ui->email->setText(row.text(QStringLiteral("uemail")));
    m_ui->anyja->setText(row.text(QStringLiteral("uanyja")));
    m_ui->szemszam->setText(row.text(QStringLiteral("uszemszam")));
    m_ui->adoszam->setText(row.text(QStringLiteral("uadoszam")));
    m_ui->cegszam->setText(row.text(QStringLiteral("ucegszam")));
    // A stored yes reads as -1; no and no value show a private person.
    if (row.value(QStringLiteral("ucegprivat")).toInt() != 0)
        m_ui->g1->setChecked(true);
    else
        m_ui->g2->setChecked(true);
    m_ui->nev1->setFocus();
}

void Ugyfelek::ujugyfel()
{
    if (!jogos(8, this))
        return;
    setEntryButtons(true);
    emptyEntryFields();
    clearCompanyOption();
    setEntryFieldsLocked(false);
    m_ui->nev1->setFocus();
    if (hivo() == QLatin1String("3")) {
        m_ui->g5->setText(QStringLiteral("Ment és Vissza"));
        m_ui->g4->hide();
        m_ui->g6->hide();
        m_ui->g3->hide();
    } else {
        m_ui->hivo->setText(QStringLiteral("1"));
    }
}

void Ugyfelek::g4_Click()
{
    if (!jogos(10, this))
        return;
    setEntryButtons(true);
    setEntryFieldsLocked(false);
    m_ui->nev1->setFocus();
    m_ui->hivo->setText(QStringLiteral("2"));
}

QVariantMap Ugyfelek::columnValues(bool newClient)
{
    // The default country applies to new clients only; a change may empty it.
    if (newClient && m_ui->orszag->currentText().isEmpty())
        m_ui->orszag->setEditText(defaultCountry());
    QVariantMap values{
            {QStringLiteral("unev1"), textValue(m_ui->nev1->text())},
            {QStringLiteral("unev2"), textValue(m_ui->nev2->text())},
            {QStringLiteral("uorszag"), textValue(m_ui->orszag->currentText())},
            {QStringLiteral("uhely"), textValue(m_ui->hely->text())},
            {QStringLiteral("uutca"), textValue(m_ui->utca->text())},
            {QStringLiteral("uirsz"), textValue(m_ui->irsz->text())},
            {QStringLiteral("utel1"), textValue(m_ui->tel1->text())},
            {QStringLiteral("utel2"), textValue(m_ui->tel2->text())},
            {QStringLiteral("ufax"), textValue(m_ui->fax->text())},
            {QStringLiteral("uemail"), textValue(m_ui->email->text())},
            {QStringLiteral("uanyja"), textValue(m_ui->anyja->text())},
            {QStringLiteral("uszemszam"), textValue(m_ui->szemszam->text())},
            {QStringLiteral("uadoszam"), textValue(m_ui->adoszam->text())},
            {QStringLiteral("ucegszam"), textValue(m_ui->cegszam->text())},
    };
    // Written only when one of the pair is chosen; yes is stored as -1.
    if (m_ui->g1->isChecked())
        values.insert(QStringLiteral("ucegprivat"), -1);
    else if (m_ui->g2->isChecked())
        values.insert(QStringLiteral("ucegprivat"), 0);
    return values;
}

void Ugyfelek::g5_Click()
{
    store::Clients clients(Session::instance().database);
    const QString mode = hivo();
    if (mode == QLatin1String("1") || mode == QLatin1String("3")) {
        const store::Written written = clients.add(columnValues(true));
        if (!reportWrite(written, module, QStringLiteral("g5"), this))
            return;
        m_ui->ukod->setText(written.key.toString());
        if (mode == QLatin1String("3")) {
            // Back to the case screen, which takes the new client; this screen stays loaded.
            if (m_caseScreen)
                m_caseScreen->show();
            hide();
            if (m_saved)
                m_saved(m_ui->ukod->text(), m_ui->nev1->text());
        }
    } else if (mode == QLatin1String("2")) {
        m_browse.refresh();
        // A client deleted meanwhile on another workstation is told, and the entry stays on
        // screen; nothing is written into any other client.
        if (!reportWrite(clients.change(store::Clients::key(m_ui->ukod->text()),
                                        columnValues(false)),
                         module, QStringLiteral("g5"), this))
            return;
    }
    // The fields stay open for typing, but nothing more is saved until new or change.
    setEntryButtons(false);
}

void Ugyfelek::g6_Click()
{
    if (!jogos(9, this))
        return;
    if (uzenet(QStringLiteral("torol"), platform::Confirmation, this) != platform::AnswerYes)
        return;
    // Counting the client's cases and deleting happen in one write transaction.
    const store::Written written = store::Clients(Session::instance().database)
                                           .remove(store::Clients::key(m_ui->ukod->text()));
    if (written.result != store::Written::Gone
        && !reportWrite(written, module, QStringLiteral("g6"), this))
        return;
    // The deleted key stays in ukod.
    emptyEntryFields();
    clearCompanyOption();
}

void Ugyfelek::g7_Click()
{
    if (m_ui->g5->isEnabled()
        && uzenet(QStringLiteral("ments"), platform::Confirmation, this) != platform::AnswerYes)
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
    const QPointer<QWidget> next = hivo() == QLatin1String("3") ? m_caseScreen : m_search;
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
    m_ui->hivo->setText(QStringLiteral("3"));
    ujugyfel();
    m_ui->nev1->setText(typedName);
}

void Ugyfelek::Tg1_Click()
{
    comm::telefonhiv(m_ui->tel1->text());
}

void Ugyfelek::Tg2_Click()
{
    comm::telefonhiv(m_ui->tel2->text());
}

void Ugyfelek::em1_Click()
{
    comm::Emailkuld(m_ui->email->text());
}

} // namespace clients
