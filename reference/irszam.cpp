#include "reference/irszam.h"

#include "ui_irszam.h"

#include "locale/Felirat.h"
#include "locale/Uzenet.h"
#include "store/Lookups.h"
#include "store/PostalCodes.h"

#include <QApplication>
#include <QShowEvent>

namespace reference {

namespace {

using records::Role;

const QString module = QStringLiteral("irszam");

// The country a new row takes when the list offers none.
QString defaultCountry()
{
    return QStringLiteral("Magyarország");
}

} // namespace

irszam::irszam(platform::Database& db, QWidget* parent)
    : CloseStepDialog(parent)
    , m_ui(std::make_unique<Ui::irszam>())
    , m_db(db)
    , m_source(new platform::ListSource(db, this))
{
    m_ui->setupUi(this);
    m_source->setObjectName(QStringLiteral("Adodc1"));
    m_source->bind(m_ui->DataGrid2);
    m_ui->orszag->hide();
    m_form = new records::RecordForm(this, {{"irsz", "irsz"}, {"hely", "hely"}},
                                     {{Role::New, "g1", Right::NewRecord},
                                      {Role::Change, "g2", Right::ChangeRecord},
                                      {Role::Save, "g3"},
                                      {Role::Delete, "g4", Right::DeleteRecord},
                                      {Role::Close, "g5"}});
    m_form->setLocked(true);
    m_ui->g2->setEnabled(false);
    m_ui->g3->setEnabled(false);

    connect(m_ui->orszlst, &QListWidget::itemClicked, this, &irszam::orszlst_Click);
    // Enter on a country chooses it as a click does, for users of the keyboard.
    connect(m_ui->orszlst, &QListWidget::itemActivated, this, &irszam::orszlst_Click);
    // Activation is a double click or Enter on a row, as on the search screen.
    connect(m_ui->DataGrid2, &QAbstractItemView::activated, this, &irszam::DataGrid2_RowChosen);
    connect(m_ui->g1, &QPushButton::clicked, this, &irszam::g1_Click);
    connect(m_ui->g2, &QPushButton::clicked, this, &irszam::g2_Click);
    connect(m_ui->g3, &QPushButton::clicked, this, &irszam::g3_Click);
    connect(m_ui->g4, &QPushButton::clicked, this, &irszam::g4_Click);
    connect(m_ui->g5, &QPushButton::clicked, this, &irszam::g5_Click);
}

irszam::~irszam() = default;

bool irszam::event(QEvent* e)
{
    if (m_return.returning(this, e))
        Activate();
    return QDialog::event(e);
}

void irszam::showEvent(QShowEvent* e)
{
    CloseStepDialog::showEvent(e);
    if (!e->spontaneous())
        Activate();
}

void irszam::Activate()
{
    feliratoz(this);
    showList(store::PostalCodes::list(), QStringLiteral("Activate"));
    feltolt();
    m_ui->orszlst->setFocus();
}

void irszam::feltolt()
{
    m_ui->orszlst->clear();
    m_chosenCountry = -1;
    QString error;
    const QStringList names = store::Lookups(m_db, store::LookupList::Countries).names(&error);
    if (!error.isEmpty())
        engineFailure(m_db.lastFailure(), error, module, QStringLiteral("feltolt"), this);
    m_ui->orszlst->addItems(names);
}

void irszam::gridoszlopok()
{
    platform::gridoszlopok(m_ui->DataGrid2, {{QStringLiteral("IRSZ"), m_ui->sz3, 800},
                                             {QStringLiteral("Hely"), m_ui->sz4, 2400},
                                             {QStringLiteral("Orszag"), m_ui->sz2, 1500}});
}

void irszam::showList(const platform::ListQuery& list, const QString& place)
{
    m_source->setRecordSource(list);
    QString error;
    const bool ok = m_source->refresh(&error);
    gridoszlopok();
    if (!ok)
        engineFailure(m_db.lastFailure(), error, module, place, this);
}

bool irszam::mayDrop()
{
    if (!m_form->isEntering() || (m_ui->irsz->text().isEmpty() && m_ui->hely->text().isEmpty()))
        return true;
    if (uzenet(QStringLiteral("ments"), platform::Confirmation, this) != platform::AnswerYes)
        return false;
    m_mode = Nothing;
    m_form->clear();
    m_form->setLocked(true);
    m_form->setEntering(false);
    return true;
}

void irszam::orszlst_Click()
{
    const int row = m_ui->orszlst->currentRow();
    if (row < 0)
        return;
    if (!mayDrop()) {
        // The entry stays, and so does its country.
        m_ui->orszlst->setCurrentRow(m_chosenCountry);
        return;
    }
    m_chosenCountry = row;
    orszagValaszt();
}

void irszam::orszagValaszt()
{
    QListWidgetItem* item = m_ui->orszlst->item(m_chosenCountry);
    if (item) {
        m_ui->orszag->setText(item->text());
        showList(store::PostalCodes::list(item->text()), QStringLiteral("orszlst"));
    } else {
        showList(store::PostalCodes::list(), QStringLiteral("orszlst"));
    }
    m_form->clear();
}

void irszam::DataGrid2_RowChosen()
{
    const int position = m_source->position();
    if (position == -1 || !mayDrop())
        return;
    const QVariant key = m_source->value(position - 1, QStringLiteral("irszsorszam"));
    m_mode = Nothing;
    QString error;
    const platform::Row row = store::PostalCodes(m_db).find(key, &error);
    if (!error.isEmpty())
        engineFailure(m_db.lastFailure(), error, module, QStringLiteral("DataGrid2"), this);
    // A row deleted meanwhile on another workstation shows nothing, so nothing else is
    // changed or deleted in its place.
    m_key = row.isEmpty() ? QVariant() : key;
    m_ui->irsz->setText(row.text(QStringLiteral("irsz")));
    m_ui->hely->setText(row.text(QStringLiteral("hely")));
    // A shown row can be changed; an entry in progress keeps the buttons as they are.
    if (!m_form->isEntering())
        m_ui->g2->setEnabled(m_key.isValid());
}

void irszam::g1_Click()
{
    if (!m_form->allowed(Role::New))
        return;
    m_form->setEntering(true);
    if (m_chosenCountry < 0 && m_ui->orszlst->count() > 0) {
        m_ui->orszlst->setCurrentRow(0);
        m_chosenCountry = 0;
        orszagValaszt();
    }
    if (m_ui->orszag->text().isEmpty())
        m_ui->orszag->setText(defaultCountry());
    m_form->setLocked(false);
    m_ui->irsz->setFocus();
    m_form->clear();
    m_mode = NewRow;
}

void irszam::g2_Click()
{
    if (!m_form->allowed(Role::Change))
        return;
    if (m_ui->hely->text().isEmpty() || !m_key.isValid())
        return;
    m_form->setEntering(true);
    m_form->setLocked(false);
    m_ui->irsz->setFocus();
    m_mode = Changing;
}

void irszam::g3_Click()
{
    store::PostalCodes codes(m_db);
    if (m_mode != Nothing && m_ui->hely->text().trimmed().isEmpty()) {
        // A row without a place is not stored; the entry stays to be completed.
        m_ui->hely->setFocus();
        return;
    }
    if (m_mode == NewRow) {
        const store::Written written
                = codes.add(m_ui->orszag->text(), m_ui->irsz->text(), m_ui->hely->text());
        if (!reportWrite(written, module, QStringLiteral("g3"), this))
            return;
    } else if (m_mode == Changing) {
        const store::Written written
                = codes.change(m_key, m_ui->orszag->text(), m_ui->irsz->text(), m_ui->hely->text());
        if (!reportWrite(written, module, QStringLiteral("g3"), this)) {
            // Deleted meanwhile on another workstation: the entry stays, and the next save
            // stores it as a new row.
            if (written.result == store::Written::Gone) {
                m_mode = NewRow;
                m_key = QVariant();
            }
            return;
        }
    }
    // The fields stay open, emptied; no row is shown until one is activated again.
    m_key = QVariant();
    orszagValaszt();
    m_form->setEntering(false);
}

void irszam::g4_Click()
{
    if (m_ui->hely->text().isEmpty() || !m_key.isValid())
        return;
    if (!m_form->allowed(Role::Delete))
        return;
    if (uzenet(QStringLiteral("torol"), platform::Confirmation, this) != platform::AnswerYes)
        return;
    // The row last activated, by its key, whatever the grid highlights now.
    const store::Written written = store::PostalCodes(m_db).remove(m_key);
    if (written.result != store::Written::Gone
        && !reportWrite(written, module, QStringLiteral("g4"), this))
        return;
    m_key = QVariant();
    orszagValaszt();
}

void irszam::g5_Click()
{
    if (!m_form->mayDiscard())
        return;
    finish(QDialog::Rejected);
}

} // namespace reference
