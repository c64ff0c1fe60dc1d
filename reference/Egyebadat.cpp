#include "reference/Egyebadat.h"

#include "ui_Egyebadat.h"

#include "locale/Felirat.h"
#include "locale/Uzenet.h"
#include "session/Session.h"

#include <QApplication>
#include <QCloseEvent>

namespace reference {

namespace {

using records::Role;

const QString module = QStringLiteral("Egyebadat");

std::optional<store::LookupList> listOf(const QString& hivo)
{
    const QString h = hivo.trimmed();
    if (h == QLatin1String("1") || h == QLatin1String("11") || h == QLatin1String("12"))
        return store::LookupList::Countries;
    if (h == QLatin1String("2") || h == QLatin1String("21"))
        return store::LookupList::CaseTypes;
    if (h == QLatin1String("3") || h == QLatin1String("31"))
        return store::LookupList::Lawyers;
    return std::nullopt;
}

// The modes of the case screen have two digits.
bool forCaseScreen(const QString& hivo)
{
    return hivo.trimmed().size() == 2;
}

} // namespace

Egyebadat::Egyebadat(platform::Database& db, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::Egyebadat>()), m_db(db)
{
    m_ui->setupUi(this);
    m_ui->ujadatom->hide();
    m_ui->hivo->hide();
    // The entry field is always open: it takes a new entry or an entry's new name.
    m_form = new records::RecordForm(this, {{"ujadat", "ujadat", records::Field::Text, {}, true}},
                                     {{Role::New, "g1", Right::NewRecord},
                                      {Role::Delete, "g2", Right::DeleteRecord},
                                      {Role::Change, "g4"},
                                      {Role::Save, "g5"},
                                      {Role::Close, "g3"}});
    kezdo();

    connect(m_ui->adatlst, &QListWidget::itemClicked, this, &Egyebadat::adatlst_Click);
    connect(m_ui->g1, &QPushButton::clicked, this, &Egyebadat::g1_Click);
    connect(m_ui->g2, &QPushButton::clicked, this, &Egyebadat::g2_Click);
    connect(m_ui->g3, &QPushButton::clicked, this, &Egyebadat::g3_Click);
    connect(m_ui->g4, &QPushButton::clicked, this, &Egyebadat::g4_Click);
    connect(m_ui->g5, &QPushButton::clicked, this, &Egyebadat::g5_Click);
}

Egyebadat::~Egyebadat() = default;

void Egyebadat::setHivo(const QString& hivo)
{
    m_ui->hivo->setText(hivo);
}

QString Egyebadat::hivo() const
{
    return m_ui->hivo->text();
}

void Egyebadat::returnTo(QWidget* caseScreen, Closed closed)
{
    m_caseScreen = caseScreen;
    m_closed = std::move(closed);
}

bool Egyebadat::renamePending() const
{
    return m_ui->g5->isEnabled();
}

store::Lookups Egyebadat::lookups() const
{
    return store::Lookups(m_db, listOf(hivo()).value_or(store::LookupList::Countries));
}

bool Egyebadat::event(QEvent* e)
{
    if (m_return.returning(this, e))
        Activate();
    return QDialog::event(e);
}

void Egyebadat::showEvent(QShowEvent* e)
{
    QDialog::showEvent(e);
    if (!e->spontaneous())
        Activate();
}

void Egyebadat::Activate()
{
    feliratoz(this);
    feltolt();
    // A renaming in progress stays; otherwise the screen starts afresh.
    if (!renamePending()) {
        m_chosen.clear();
        kezdo();
    }
}

void Egyebadat::kezdo()
{
    const bool known = listOf(hivo()).has_value();
    m_ui->g1->setEnabled(known);
    m_ui->g2->setEnabled(false);
    m_ui->g4->setEnabled(false);
    m_ui->g5->setEnabled(false);
    m_ui->adatlst->setEnabled(true);
}

void Egyebadat::feltolt()
{
    m_ui->adatlst->clear();
    if (!listOf(hivo()))
        return;
    QString error;
    const QStringList names = lookups().names(&error);
    if (!error.isEmpty()) {
        engineFailure(m_db.lastFailure(), error, module, QStringLiteral("feltolt"), this);
        return;
    }
    m_ui->adatlst->addItems(names);
    if (!m_chosen.isEmpty()) {
        const QList<QListWidgetItem*> found = m_ui->adatlst->findItems(m_chosen, Qt::MatchExactly);
        if (!found.isEmpty())
            m_ui->adatlst->setCurrentItem(found.first());
    }
}

void Egyebadat::adatlst_Click(QListWidgetItem* item)
{
    if (!item || renamePending())
        return;
    m_chosen = item->text();
    m_ui->ujadat->setText(m_chosen);
    m_ui->g1->setEnabled(false);
    m_ui->g5->setEnabled(false);
    m_ui->g2->setEnabled(true);
    m_ui->g4->setEnabled(true);
}

void Egyebadat::g1_Click()
{
    if (!m_form->allowed(Role::New))
        return;
    if (m_ui->ujadat->text().trimmed().isEmpty())
        return;
    const store::Written written = lookups().add(m_ui->ujadat->text());
    if (written.result == store::Written::Exists) {
        uzenet(QStringLiteral("vanmar"), platform::Notice, this);
    } else if (!reportWrite(written, module, QStringLiteral("g1"), this)) {
        // Not stored (another workstation holds the file, say): the entry stays to try again.
        return;
    } else {
        m_added = written.key.toString();
        m_ui->ujadatom->setText(m_added);
        m_chosen = m_added;
    }
    m_ui->ujadat->clear();
    // The new entry is shown chosen in the list.
    feltolt();
    m_chosen.clear();
}

void Egyebadat::g2_Click()
{
    if (!m_form->allowed(Role::Delete))
        return;
    if (m_chosen.isEmpty())
        return;
    if (uzenet(QStringLiteral("torol"), platform::Confirmation, this) != platform::AnswerYes)
        return;
    bool lastEntry = false;
    const store::Written written = lookups().remove(m_chosen, &lastEntry);
    // Gone: another workstation deleted it first, which is what was asked.
    if (!lastEntry && written.result != store::Written::Gone
        && !reportWrite(written, module, QStringLiteral("g2"), this))
        return;
    m_chosen.clear();
    feltolt();
    m_ui->ujadat->clear();
    m_ui->ujadatom->clear();
    m_added.clear();
}

void Egyebadat::g4_Click()
{
    if (m_chosen.isEmpty())
        return;
    m_ui->g1->setEnabled(false);
    m_ui->g2->setEnabled(false);
    m_ui->g4->setEnabled(false);
    m_ui->g5->setEnabled(true);
    // The list stays on the entry being renamed until the renaming is stored or dropped.
    m_ui->adatlst->setEnabled(false);
    // The name before the change is the entry chosen, whatever was typed since.
    m_ui->ujadatom->setText(m_chosen);
    m_ui->ujadat->setFocus();
}

void Egyebadat::g5_Click()
{
    const QString newName = m_ui->ujadat->text().trimmed();
    if (newName.isEmpty()) {
        // An entry has a name; the renaming waits for one.
        m_ui->ujadat->setFocus();
        return;
    }
    const QString oldName = m_ui->ujadatom->text();
    const store::Written written = lookups().rename(oldName, newName);
    if (written.result == store::Written::Exists) {
        // Another entry has that name: the old entry stays, the name can be corrected.
        uzenet(QStringLiteral("vanmar"), platform::Notice, this);
        m_ui->ujadat->setFocus();
        return;
    }
    if (!reportWrite(written, module, QStringLiteral("g5"), this)) {
        if (written.result != store::Written::Gone)
            return;
        if (m_added == oldName)
            m_added.clear();
    } else {
        m_added.clear();
        // The session's default lawyer follows, so new cases take the name the list holds.
        Session& session = Session::instance();
        if (listOf(hivo()) == store::LookupList::Lawyers && session.defaultLawyer == oldName)
            session.defaultLawyer = written.key.toString();
    }
    m_ui->ujadatom->clear();
    m_ui->ujadat->clear();
    m_chosen.clear();
    feltolt();
    kezdo();
}

void Egyebadat::g3_Click()
{
    if (!m_form->mayDiscard())
        return;
    unload();
}

void Egyebadat::unload()
{
    if (m_unloading)
        return;
    m_unloading = true;
    const QPointer<QWidget> caseScreen = m_caseScreen;
    const Closed closed = m_closed;
    const QString added = m_added;
    const bool handBack = forCaseScreen(hivo());
    close();
    if (!handBack)
        return;
    if (caseScreen)
        caseScreen->show();
    if (closed)
        closed(added);
}

void Egyebadat::closeEvent(QCloseEvent* e)
{
    // The window's close box closes as Bezár does.
    if (!m_unloading) {
        e->ignore();
        g3_Click();
        return;
    }
    QDialog::closeEvent(e);
}

void Egyebadat::reject()
{
    // Escape closes as Bezár does.
    if (!m_unloading) {
        g3_Click();
        return;
    }
    QDialog::reject();
}

} // namespace reference
