#include "admin/users.h"

#include "ui_users.h"

#include "locale/Felirat.h"
#include "locale/Uzenet.h"
#include "platform/LockedCombo.h"
#include "records/RecordForm.h"
#include "session/Jog.h"
#include "session/Session.h"
#include "store/Parameters.h"
#include "store/Users.h"

#include <array>
#include <QShowEvent>
#include <QSignalBlocker>

namespace admin {

namespace {

using records::Mode;
using records::Role;

const QString module = QStringLiteral("users");

// The rights the check boxes grant, in the order of the rights string.
constexpr std::array<Right, 12> rightBoxes{
        Right::ClientSearch, Right::CaseSearch, Right::CountriesAndPostalCodes,
        Right::CaseTypes,    Right::Lawyers,    Right::Users,
        Right::Parameters,   Right::NewRecord,  Right::DeleteRecord,
        Right::ChangeRecord, Right::Partners,   Right::BackupAndRestore};

// The rights string is 20 characters long; the positions after the check boxes always hold "1".
constexpr int rightsLength = 20;

// The text fields the record model keeps; the two choice boxes and the check boxes are set here.
QList<records::Field> userFields()
{
    return {{"felhnev", "felhnev"},
            {"loginnev", "loginnev"},
            {"jelszo", "jelszo"},
            {"felhnyelv", "felhnyelv"}};
}

QList<records::Button> userButtons()
{
    return {{Role::New, "g1", Right::NewRecord},
            {Role::Change, "g2", Right::ChangeRecord},
            {Role::Save, "g3"},
            {Role::Delete, "g4", Right::DeleteRecord},
            {Role::Close, "g5"}};
}

} // namespace

users::users(platform::Database& db, QWidget* parent)
    : CloseStepDialog(parent), m_ui(std::make_unique<Ui::users>()), m_db(db)
{
    m_ui->setupUi(this);
    m_ui->felhnyelv->hide();
    m_ui->hivo->hide();
    m_form = new records::RecordForm(this, userFields(), userButtons(), m_ui->hivo);
    m_form->setEntering(false);
    lock(true);
    m_ui->jelszo->installEventFilter(this);

    connect(m_ui->adatlst, &QListWidget::itemClicked, this, &users::adatlst_Click);
    connect(m_ui->adatlst, &QListWidget::currentRowChanged, this, &users::adatlst_Click);
    connect(m_ui->nyelve, qOverload<int>(&QComboBox::activated), this, &users::nyelve_LostFocus);
    connect(m_ui->g1, &QPushButton::clicked, this, &users::g1_Click);
    connect(m_ui->g2, &QPushButton::clicked, this, &users::g2_Click);
    connect(m_ui->g3, &QPushButton::clicked, this, &users::g3_Click);
    connect(m_ui->g4, &QPushButton::clicked, this, &users::g4_Click);
    connect(m_ui->g5, &QPushButton::clicked, this, &users::g5_Click);
}

users::~users() = default;

void users::showEvent(QShowEvent* e)
{
    CloseStepDialog::showEvent(e);
    // Once per showing: a message box closing activates the window again, and that must not
    // refill the lists under an entry.
    if (!e->spontaneous())
        Activate();
}

void users::Activate()
{
    feliratoz(this);
    feltolt();
    m_ui->adatlst->setFocus();
}

bool users::eventFilter(QObject* watched, QEvent* e)
{
    if (watched == m_ui->jelszo && e->type() == QEvent::FocusIn)
        jelszo_GotFocus();
    return QDialog::eventFilter(watched, e);
}

QCheckBox* users::box(Right right) const
{
    return findChild<QCheckBox*>(QStringLiteral("jog%1").arg(int(right)));
}

QString users::rightsString() const
{
    QString rights(rightsLength, u'1');
    for (Right r : rightBoxes) {
        const Qt::CheckState state = box(r)->checkState();
        rights[int(r) - 1] = state == Qt::Checked            ? u'1'
                             : state == Qt::PartiallyChecked ? u'2'
                                                             : u'0';
    }
    return rights;
}

void users::showRights(const QString& felhjog)
{
    // A position the string does not reach grants nothing.
    for (Right r : rightBoxes) {
        const int at = int(r) - 1;
        const QChar digit = at < felhjog.size() ? felhjog.at(at) : QChar(u'0');
        box(r)->setTristate(digit == u'2');
        box(r)->setCheckState(digit == u'1'   ? Qt::Checked
                              : digit == u'2' ? Qt::PartiallyChecked
                                              : Qt::Unchecked);
    }
}

void users::lock(bool locked, const QStringList& except)
{
    m_form->setLocked(locked, except);
    platform::lockComboBox(m_ui->nyelve, locked);
    platform::lockComboBox(m_ui->alapugyved, locked);
    for (Right r : rightBoxes)
        box(r)->setEnabled(!locked);
    // The list chooses the user only while none is being entered, so a save always goes to
    // the user whose entry it is.
    m_ui->adatlst->setEnabled(locked);
}

void users::feltolt()
{
    QString error;
    const platform::Rows list = store::Users(m_db).list(&error);
    const platform::Rows languages
            = error.isEmpty() ? store::Parameters(m_db).languages(&error) : platform::Rows();
    const QStringList lawyers
            = error.isEmpty() ? store::Users(m_db).lawyerNames(&error) : QStringList();
    if (!error.isEmpty()) {
        engineFailure(m_db.lastFailure(), error, module, QStringLiteral("feltolt"), this);
        return;
    }
    const QSignalBlocker listQuiet(m_ui->adatlst);
    const QSignalBlocker languageQuiet(m_ui->nyelve);
    const QSignalBlocker lawyerQuiet(m_ui->alapugyved);
    const QString lawyer = m_ui->alapugyved->currentText();
    m_ui->adatlst->clear();
    for (const platform::Row& row : list) {
        auto* item = new QListWidgetItem(row.text(QStringLiteral("felhnev")), m_ui->adatlst);
        item->setData(Qt::UserRole, row.value(QStringLiteral("kulcs")));
        if (m_shown.isValid() && row.value(QStringLiteral("kulcs")) == m_shown)
            m_ui->adatlst->setCurrentItem(item);
    }
    m_ui->nyelve->clear();
    for (const platform::Row& row : languages)
        m_ui->nyelve->addItem(row.text(QStringLiteral("nyelvnev")),
                              row.value(QStringLiteral("nyelvkod")));
    m_ui->nyelve->setCurrentIndex(
            m_ui->felhnyelv->text().isEmpty()
                    ? -1
                    : m_ui->nyelve->findData(m_ui->felhnyelv->text().toInt()));
    // The first choice is no default lawyer.
    m_ui->alapugyved->clear();
    m_ui->alapugyved->addItem(QString());
    m_ui->alapugyved->addItems(lawyers);
    if (m_ui->alapugyved->findText(lawyer) < 0)
        m_ui->alapugyved->addItem(lawyer);
    m_ui->alapugyved->setCurrentIndex(m_ui->alapugyved->findText(lawyer));
}

void users::showUser(const platform::Row& row)
{
    m_shown = row.value(QStringLiteral("kulcs"));
    m_shownName = row.text(QStringLiteral("felhnev"));
    m_form->load(row);
    m_ui->nyelve->setCurrentIndex(
            m_ui->nyelve->findData(row.value(QStringLiteral("felhnyelv")).toInt()));
    // A lawyer no longer on the list is still shown, so a save keeps him.
    const QString lawyer = row.text(QStringLiteral("alapugyv"));
    if (m_ui->alapugyved->findText(lawyer) < 0)
        m_ui->alapugyved->addItem(lawyer);
    m_ui->alapugyved->setCurrentIndex(m_ui->alapugyved->findText(lawyer));
    showRights(row.text(QStringLiteral("felhjog")));
}

void users::empty()
{
    m_shown = QVariant();
    m_shownName.clear();
    m_form->clear();
    m_ui->nyelve->setCurrentIndex(-1);
    m_ui->alapugyved->setCurrentIndex(0);
}

void users::adatlst_Click()
{
    QListWidgetItem* item = m_ui->adatlst->currentItem();
    if (!item || m_form->isEntering())
        return;
    QString error;
    const platform::Row row = store::Users(m_db).find(item->data(Qt::UserRole), &error);
    if (!error.isEmpty()) {
        engineFailure(m_db.lastFailure(), error, module, QStringLiteral("adatlst"), this);
        return;
    }
    if (row.isEmpty()) {
        // Deleted on another workstation meanwhile.
        empty();
        feltolt();
        return;
    }
    showUser(row);
}

void users::g1_Click()
{
    if (!m_form->allowed(Role::New))
        return;
    m_form->setEntering(true);
    empty();
    // The rights are set before the user is first stored, so nobody is ever stored with
    // rights that were not meant for him; every right is ticked to begin with.
    lock(false);
    m_ui->felhnyelv->setText(QString::number(Session::instance().language));
    m_ui->nyelve->setCurrentIndex(m_ui->nyelve->findData(int(Session::instance().language)));
    showRights(QString(rightsLength, u'1'));
    m_form->setMode(Mode::New);
    m_ui->felhnev->setFocus();
}

void users::g2_Click()
{
    if (!m_form->allowed(Role::Change))
        return;
    if (m_ui->felhnev->text().isEmpty() || !m_shown.isValid())
        return;
    m_form->setEntering(true);
    // A user changes only his own password.
    const Session& session = Session::instance();
    const bool own = !session.userName.isEmpty() && m_shownName == session.userName;
    lock(false, own ? QStringList() : QStringList{QStringLiteral("jelszo")});
    m_form->setMode(Mode::Changed);
    m_ui->felhnev->setFocus();
}

void users::jelszo_GotFocus()
{
    // Login names are kept in capitals, as the login shows them.
    if (!m_ui->loginnev->isReadOnly())
        m_ui->loginnev->setText(m_ui->loginnev->text().toUpper());
}

void users::nyelve_LostFocus()
{
    if (m_ui->nyelve->currentIndex() >= 0)
        m_ui->felhnyelv->setText(m_ui->nyelve->currentData().toString());
}

QVariantMap users::columnValues() const
{
    QVariantMap values = m_form->values();
    const QString login = m_ui->loginnev->text().toUpper();
    values.insert(QStringLiteral("loginnev"), login.isEmpty() ? QVariant() : QVariant(login));
    // A password the user may not change is not written, so a change made meanwhile on another
    // workstation stays.
    if (m_ui->jelszo->isReadOnly())
        values.remove(QStringLiteral("jelszo"));
    const QString lawyer = m_ui->alapugyved->currentText();
    values.insert(QStringLiteral("alapugyv"), lawyer.isEmpty() ? QVariant() : QVariant(lawyer));
    values.insert(QStringLiteral("felhjog"), rightsString());
    return values;
}

void users::g3_Click()
{
    nyelve_LostFocus();
    store::Users store(m_db);
    const Mode mode = m_form->mode();
    if (mode == Mode::New && !m_ui->felhnev->text().isEmpty()) {
        const store::Written written = store.add(columnValues());
        if (written.result == store::Written::Exists) {
            uzenet(QStringLiteral("loginfoglalt"), platform::Notice, this);
            m_ui->loginnev->setFocus();
            return;
        }
        if (!reportWrite(written, module, QStringLiteral("g3"), this))
            return;
        m_shown = written.key;
    } else if (mode == Mode::Changed) {
        const store::Written written = store.change(m_shown, columnValues());
        if (written.result == store::Written::Exists) {
            uzenet(QStringLiteral("loginfoglalt"), platform::Notice, this);
            m_ui->loginnev->setFocus();
            return;
        }
        if (!reportWrite(written, module, QStringLiteral("g3"), this)) {
            // The entry stays; the next save stores it as a new user.
            if (written.result == store::Written::Gone) {
                m_form->setMode(Mode::New);
                lock(false);
            }
            return;
        }
    }
    m_shownName = m_ui->felhnev->text();
    m_form->setMode(Mode::Showing);
    m_form->setEntering(false);
    lock(true);
    feltolt();
    if (mode == Mode::New && m_ui->felhnev->text().isEmpty())
        empty();
}

void users::g4_Click()
{
    if (!m_form->allowed(Role::Delete) || !m_shown.isValid())
        return;
    if (uzenet(QStringLiteral("torol"), platform::Confirmation, this) != platform::AnswerYes)
        return;
    const store::Written written = store::Users(m_db).remove(m_shown);
    if (written.result == store::Written::InUse)
        uzenet(QStringLiteral("utolsofelh"), platform::Notice, this);
    else if (written.result != store::Written::Gone
             && !reportWrite(written, module, QStringLiteral("g4"), this))
        return;
    empty();
    feltolt();
}

void users::g5_Click()
{
    if (!m_form->mayDiscard())
        return;
    finish(QDialog::Rejected);
}

} // namespace admin
