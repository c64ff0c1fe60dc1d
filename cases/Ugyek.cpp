#include "cases/Ugyek.h"

#include "ui_Ugyek.h"

#include "cases/CaseDate.h"
#include "cases/ClientChoices.h"
#include "clients/AddressBlock.h"
#include "clients/ComboAutoComplete.h"
#include "comm/Emailkuld.h"
#include "comm/Telhivo.h"
#include "locale/Felirat.h"
#include "locale/Uzenet.h"
#include "platform/Clipboard.h"
#include "platform/Display.h"
#include "platform/ListSource.h"
#include "platform/Messages.h"
#include "records/ConflictNotice.h"
#include "records/DateShape.h"
#include "session/Session.h"
#include "store/Cases.h"
#include "store/ErrorLog.h"
#include "store/SubNumbers.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QListView>
#include <QSignalBlocker>
#include <QTextCursor>
#include <QTimer>

namespace cases {

namespace {

using records::Field;
using records::Mode;
using records::Role;

const QString module = QStringLiteral("UGYEK");

// The case fields in the order every command treats them, then the sub-number fields, which
// are locked and opened with the case but belong to alszamok. The client box shows the name
// of the client whose key is in the hidden ugyfelkod.
QList<Field> caseFields()
{
    return {
            {"ugyszam", "ugyszam"},
            {"ugyfelnev", "unev1", Field::Shown},
            {"ugyfelkod", "ugyfelkod", Field::Text, {}, true},
            {"ugytipus", "ugytipus", Field::Choice},
            {"ugyved", "ugyved", Field::Choice},
            {"kezdet", "kezdet", Field::Date},
            {"zaras", "zaras", Field::Date},
            {"megjegyzes", "megjegyzes"},
            {"ellnev", "ellnev"},
            {"ellorszag", "ellorszag", Field::Choice},
            {"ellhely", "ellhely"},
            {"ellutca", "ellutca"},
            {"ellirsz", "ellirsz"},
            {"elltelefon", "elltelefon"},
            {"ellugyvnev", "ellugyvnev"},
            {"ellugyvorsz", "ellugyvorsz", Field::Choice},
            {"ellugyvhely", "ellugyvhely"},
            {"ellugyvutca", "ellugyvutca"},
            {"ellugyvirsz", "ellugyvirsz"},
            {"ellugyvtel1", "ellugyvtel1"},
            {"ellugyvtel2", "ellugyvtel2"},
            {"ellugyvfax", "ellugyvfax"},
            {"ellugyvemail", "ellugyvemail"},
            {"feljegyzes", "feljegyzes"},
            {"alszam", {}, Field::Shown},
            {"aldatum", {}, Field::Shown},
            {"almegjegyz", {}, Field::Shown},
    };
}

QList<records::Button> caseButtons()
{
    return {{Role::New, "g3", Right::NewRecord},
            {Role::Change, "g4", Right::ChangeRecord},
            {Role::Save, "g5"},
            {Role::Delete, "g6", Right::DeleteRecord},
            {Role::Close, "g7"}};
}

// The remark keeps its first 250 characters.
constexpr int remarkLength = 250;

qlonglong keyValue(const QVariant& key)
{
    return key.isValid() ? key.toLongLong() : 0;
}

QString today()
{
    return dateText(QDate::currentDate());
}

// Focus lost to another field of the screen; not to a message box, another window, an open
// drop-down list, or the screen closing.
bool leftForAnotherField(const QEvent* event, const QWidget* screen)
{
    const auto reason = static_cast<const QFocusEvent*>(event)->reason();
    const QWidget* now = QApplication::focusWidget();
    return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason && now
           && now->window() == screen;
}

} // namespace

Ugyek::Ugyek(platform::Database& db, const ListChoice& choice, CaseHandOffs handOffs,
             QWidget* parent)
    : QWidget(parent)
    , m_db(db)
    , m_ui(std::make_unique<Ui::Ugyek>())
    , m_ksorsz(choice.key)
    , m_search(choice.search)
    , m_handOffs(std::move(handOffs))
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);

    // The client list may hold a whole register: its entries are one model, laid out alike.
    m_clients = new ClientChoices(this);
    m_ui->ugyfelnev->setModel(m_clients);
    if (auto* view = qobject_cast<QListView*>(m_ui->ugyfelnev->view()))
        view->setUniformItemSizes(true);
    new clients::ComboAutoComplete(m_ui->ugyfelnev);
    new clients::ComboAutoComplete(m_ui->ugytipus);
    new clients::ComboAutoComplete(m_ui->ugyved);
    m_opponent = new clients::AddressBlock(m_db, m_ui->ellorszag, m_ui->ellirsz, m_ui->ellhely,
                                           m_ui->helylista, this);
    m_lawyer = new clients::AddressBlock(m_db, m_ui->ellugyvorsz, m_ui->ellugyvirsz,
                                         m_ui->ellugyvhely, m_ui->helylista2, this);
    // One mark for both postal codes of the screen.
    m_lawyer->shareMarkWith(*m_opponent);
    m_opponent->logFailures(module, QStringLiteral("ellirsz_lostfocus"),
                            QStringLiteral("Ellhely_lostfocus"));
    for (QComboBox* box :
         {m_ui->ugyfelnev, m_ui->ugytipus, m_ui->ugyved, m_ui->ellorszag, m_ui->ellugyvorsz})
        box->clearEditText();

    m_form = new records::RecordForm(this, caseFields(), caseButtons(), m_ui->hivo);
    m_form->setLocked(true);
    m_ui->ugyfelkod->setText(QStringLiteral("0"));

    m_subNumbers = new platform::ListSource(m_db, this);
    m_subNumbers->setObjectName(QStringLiteral("Adodc1"));
    m_subNumbers->bind(m_ui->DataGrid2);
    m_timer = new QTimer(this);
    m_timer->setObjectName(QStringLiteral("Timer1"));
    m_timer->setInterval(500);
    m_timer->setSingleShot(true);

    connect(m_ui->g1, &QPushButton::clicked, this, &Ugyek::g1_Click);
    connect(m_ui->g3, &QPushButton::clicked, this, &Ugyek::ujugy);
    connect(m_ui->g4, &QPushButton::clicked, this, &Ugyek::g4_Click);
    connect(m_ui->g5, &QPushButton::clicked, this, &Ugyek::g5_Click);
    connect(m_ui->g6, &QPushButton::clicked, this, &Ugyek::g6_Click);
    connect(m_ui->g7, &QPushButton::clicked, this, &Ugyek::g7_Click);
    connect(m_ui->g8, &QPushButton::clicked, this, &Ugyek::g8_Click);
    connect(m_ui->g9, &QPushButton::clicked, this, &Ugyek::g9_Click);
    connect(m_ui->g10, &QPushButton::clicked, this, &Ugyek::g10_Click);
    connect(m_ui->g11, &QPushButton::clicked, this, &Ugyek::g11_Click);
    connect(m_ui->g12, &QPushButton::clicked, this, &Ugyek::g12_Click);
    connect(m_ui->g13, &QPushButton::clicked, this, &Ugyek::g13_Click);
    connect(m_ui->g14, &QPushButton::clicked, this, &Ugyek::g14_Click);
    connect(m_ui->Tg1, &QPushButton::clicked, this, &Ugyek::Tg1_Click);
    connect(m_ui->Tg2, &QPushButton::clicked, this, &Ugyek::Tg2_Click);
    connect(m_ui->em1, &QPushButton::clicked, this, &Ugyek::em1_Click);
    connect(m_ui->SSTab1, &QTabWidget::currentChanged, this, &Ugyek::SSTab1_Click);
    connect(m_timer, &QTimer::timeout, this, &Ugyek::Timer1_Timer);

    // The opponent and the opponent's lawyer are checked against the clients, the partners
    // and the other cases' opponents at each edit; the notice only informs.
    const auto check = [this](const QString& name) {
        return store::Conflicts(m_db).matches(name, m_ui->ugyszam->text());
    };
    m_opponentCheck = new records::ConflictNotice(m_ui->ellnev, check);
    m_lawyerCheck = new records::ConflictNotice(m_ui->ellugyvnev, check);

    // The screen sees every key before its fields do (Enter moves on; the dates take shape);
    // the drop-down lists are windows of their own and keep their keys.
    for (QWidget* w : findChildren<QWidget*>()) {
        if (w->window() == this)
            w->installEventFilter(this);
    }
}

Ugyek::~Ugyek() = default;

bool Ugyek::event(QEvent* event)
{
    // The first activation, and each coming back from another screen of the program; not the
    // return from its own message boxes or from another program.
    const bool back = m_return.returning(this, event);
    if (back || (event->type() == QEvent::WindowActivate && !m_activated))
        Activate();
    return QWidget::event(event);
}

void Ugyek::Activate()
{
    m_activated = true;
    feliratoz(this);
    listatolt();
    const QLabel* captions[] = {m_ui->sz24, m_ui->sz25, m_ui->sz28, m_ui->sz29};
    for (int page = 0; page < 4; ++page)
        m_ui->SSTab1->setTabText(page, captions[page]->text());
    platform::placeOnDisplay(this, 1.85);
    m_ui->SSTab1->setCurrentIndex(0);
    m_opponent->setIrszvaltozott(false);
}

void Ugyek::listatolt()
{
    store::CaseChoices lists;
    QString error;
    if (!store::Cases(m_db).choices(&lists, &error)) {
        store::hibanaplo(module, QStringLiteral("listatolt"), error);
        return;
    }
    QComboBox* const boxes[]
            = {m_ui->ugyfelnev, m_ui->ugyved, m_ui->ugytipus, m_ui->ellorszag, m_ui->ellugyvorsz};
    QStringList shown;
    for (QComboBox* box : boxes)
        shown << box->currentText();
    for (QComboBox* box : boxes) {
        const QSignalBlocker blocker(box);
        if (box == m_ui->ugyfelnev)
            m_clients->reset(lists.clientNames, lists.clientKeys);
        else
            box->clear();
    }
    m_ui->ugyved->addItems(lists.lawyers);
    m_ui->ugytipus->addItems(lists.types);
    m_ui->ellorszag->addItems(lists.countries);
    m_ui->ellugyvorsz->addItems(lists.countries);
    for (int i = 0; i < 5; ++i) {
        const QSignalBlocker blocker(boxes[i]);
        boxes[i]->setCurrentIndex(-1);
        boxes[i]->setEditText(shown.at(i));
    }
    // The client shown is the entry of its key, not a namesake's.
    const int own = m_clients->rowOfKey(m_ui->ugyfelkod->text().toLongLong());
    if (own >= 0 && m_ui->ugyfelnev->itemText(own) == shown.first()) {
        const QSignalBlocker blocker(m_ui->ugyfelnev);
        m_ui->ugyfelnev->setCurrentIndex(own);
    }
}

void Ugyek::ugyfeltolt()
{
    // The case is read by its number, whether or not the search screen's list holds it.
    QString error;
    const platform::Row row = store::Cases(m_db).findWithClient(m_ksorsz, &error);
    if (!error.isEmpty())
        engineFailure(m_db.lastFailure(), error, module, QStringLiteral("ugyfeltolt"), this);
    if (row.isEmpty())
        return;
    m_ui->ugyfelnev->setCurrentIndex(-1);
    m_form->load(row);
    setClient(row.value(QStringLiteral("ugyfelkod")), row.text(QStringLiteral("unev1")));
    m_ui->ugyszam->setFocus();
}

void Ugyek::showPictureButtons(bool entering)
{
    for (QPushButton* b : {m_ui->g10, m_ui->g11, m_ui->g13, m_ui->g14})
        b->setVisible(entering);
    m_ui->g12->setVisible(false);
}

void Ugyek::emptyFields()
{
    m_ui->ugyfelnev->setCurrentIndex(-1);
    m_form->clear();
    setClient(0, QString());
    m_ui->kezdet->setText(today());
}

void Ugyek::ujugy()
{
    if (!m_form->allowed(Role::New))
        return;
    showPictureButtons(true);
    m_form->setEntering(true);
    emptyFields();
    m_opponentCheck->clear();
    m_lawyerCheck->clear();
    m_ui->ugyved->setEditText(Session::instance().defaultLawyer);
    m_form->setLocked(false);
    m_ui->ugyszam->setFocus();
    m_form->setMode(Mode::New);
}

void Ugyek::g4_Click()
{
    if (!m_form->allowed(Role::Change))
        return;
    showPictureButtons(true);
    m_form->setEntering(true);
    // The number of a shown case cannot be changed.
    m_form->setLocked(false, {QStringLiteral("ugyszam")});
    m_form->setMode(Mode::Changed);
    m_opponentCheck->recheck();
    m_lawyerCheck->recheck();
    m_ui->ugyszam->setFocus();
}

bool Ugyek::dateToStore(QLineEdit* field, QLabel* label, bool newCase, QVariant* value)
{
    const QString text = field->text();
    if (text.isEmpty() || text == QLatin1String(" ")) {
        // A new case keeps an empty date as one blank, a changed one as an empty text.
        *value = QString(newCase ? QLatin1String(" ") : QLatin1String(""));
        return true;
    }
    const std::optional<QDate> date = readDate(text);
    if (!date || !date->isValid() || *date < firstDate() || *date > lastDate()) {
        store::hibanaplo(module, QStringLiteral("g5"),
                         QStringLiteral("%1: %2").arg(field->objectName(), text));
        platform::messageBox(label->text() + QStringLiteral(" - ") + uzenetszoveg("hibasadat"),
                             platform::ErrorNotice, QString(), this);
        field->setFocus();
        return false;
    }
    field->setText(dateText(*date));
    *value = field->text();
    return true;
}

void Ugyek::g5_Click()
{
    showPictureButtons(false);
    for (const QString& text : {m_ui->ugyszam->text(), m_ui->ugyfelnev->currentText(),
                                m_ui->ugytipus->currentText(), m_ui->ugyved->currentText()}) {
        if (text.isEmpty()) {
            uzenet(QStringLiteral("kotelezo"), platform::Notice, this);
            return;
        }
    }
    const Mode mode = m_form->mode();
    const QString number = m_ui->ugyszam->text();
    store::Cases cases(m_db);
    if (mode == Mode::New) {
        QString error;
        const bool taken = cases.exists(number, &error);
        if (!error.isEmpty()) {
            engineFailure(m_db.lastFailure(), error, module, QStringLiteral("g5"), this);
            return;
        }
        if (taken) {
            uzenet(QStringLiteral("vanmar"), platform::Notice, this);
            return;
        }
    }
    if (mode == Mode::New || mode == Mode::Changed) {
        // The key stored is that of the client the box names; a name no client has, on a new
        // case or a changed one, stores no case at all.
        const QString name = m_ui->ugyfelnev->currentText();
        const QVariant key = clientKeyOf(name);
        if (keyValue(key) == 0) {
            uzenet(QStringLiteral("nincsugyf"), platform::Notice, this);
            return;
        }
        setClient(key, name);

        QVariantMap values = m_form->values();
        values.insert(QStringLiteral("ugyfelkod"), keyValue(key));
        const QString remark = m_ui->megjegyzes->text().left(remarkLength);
        values.insert(QStringLiteral("megjegyzes"), remark.isEmpty() ? QVariant() : remark);
        QVariant start, end;
        if (!dateToStore(m_ui->kezdet, m_ui->sz7, mode == Mode::New, &start)
            || !dateToStore(m_ui->zaras, m_ui->sz27, mode == Mode::New, &end))
            return;
        values.insert(QStringLiteral("kezdet"), start);
        values.insert(QStringLiteral("zaras"), end);

        // One row is written, in one transaction: the new case, or the case of the shown number.
        const store::Written written
                = mode == Mode::New ? cases.add(values) : cases.change(number, values);
        if (!reportWrite(written, module, QStringLiteral("g5"), this)) {
            // A case another workstation deleted meanwhile: the next save stores it anew.
            if (written.result == store::Written::Gone)
                m_form->setMode(Mode::New);
            return;
        }
    }
    belockol();
    m_form->setEntering(false);
}

void Ugyek::belockol()
{
    m_form->setLocked(true);
    m_opponentCheck->clear();
    m_lawyerCheck->clear();
}

void Ugyek::g6_Click()
{
    if (!m_form->allowed(Role::Delete))
        return;
    // With no case shown there is nothing to delete (and no empty number to look for).
    const QString number = m_ui->ugyszam->text();
    if (number.isEmpty())
        return;
    if (uzenet(QStringLiteral("torol"), platform::Confirmation, this) != platform::AnswerYes)
        return;
    // The case of the shown number, and nothing else: its sub-numbers stay.
    const store::Written written = store::Cases(m_db).remove(number);
    if (written.result != store::Written::Gone
        && !reportWrite(written, module, QStringLiteral("g6"), this))
        return;
    emptyFields();
}

void Ugyek::g7_Click()
{
    if (!m_form->mayDiscard())
        return;
    unload();
}

bool Ugyek::entryPending() const
{
    return m_form->isEntering();
}

void Ugyek::unload(bool showCaller)
{
    if (m_unloading)
        return;
    m_unloading = true;
    close();
    if (showCaller && m_search)
        m_search->show();
}

void Ugyek::closeEvent(QCloseEvent* event)
{
    // The window's own close button closes as Bezár does.
    if (!m_unloading) {
        event->ignore();
        g7_Click();
        return;
    }
    QWidget::closeEvent(event);
}

void Ugyek::ugyszamvizsg()
{
    if (m_ui->ugyszam->text().isEmpty())
        m_ui->ugyszam->setFocus();
}

// --- Dates ---------------------------------------------------------------------------------

void Ugyek::keltezes(QLineEdit* field)
{
    const QString text = field->text();
    const QString shaped = records::shapeTypedDate(text);
    if (shaped != text) {
        field->setText(shaped);
        field->end(false);
    }
}

bool Ugyek::datumvizsg(QLineEdit* field, QLabel* label)
{
    QString text = field->text();
    if (text.isEmpty())
        return true;
    if (text.endsWith(u'.'))
        text.chop(1);
    const std::optional<QDate> date = readDate(text);
    if (!date) {
        // Not a date at all: the field keeps its text, and the focus goes back one field.
        uzenet(QStringLiteral("hibasadat"), platform::Notice, this);
        focusPreviousChild();
        return false;
    }
    if (date->isValid())
        field->setText(dateText(*date));
    if (!date->isValid() || *date < firstDate() || *date > lastDate()) {
        platform::messageBox(label->text() + QStringLiteral(" - ") + uzenetszoveg("hibasadat"),
                             platform::ErrorNotice, QString(), this);
        field->setFocus();
        return false;
    }
    return true;
}

// --- The client ----------------------------------------------------------------------------

QVariant Ugyek::clientKeyOf(const QString& name) const
{
    if (name.isEmpty())
        return QVariant();
    QComboBox* box = m_ui->ugyfelnev;
    // The entry chosen in the box (typed ahead to or clicked), while the box shows its name.
    const int chosen = box->currentIndex();
    if (chosen >= 0 && box->itemText(chosen) == name)
        return box->itemData(chosen);
    // The client the key names already (the shown case's own): a namesake never takes its
    // place.
    const qlonglong current = m_ui->ugyfelkod->text().toLongLong();
    if (current != 0 && name == m_clientName)
        return current;
    const int found = box->findText(name, Qt::MatchExactly | Qt::MatchCaseSensitive);
    return found >= 0 ? box->itemData(found) : QVariant();
}

void Ugyek::setClient(const QVariant& key, const QString& name)
{
    m_ui->ugyfelkod->setText(QString::number(keyValue(key)));
    m_clientName = keyValue(key) == 0 ? QString() : name;
}

void Ugyek::ugyfelnevLostFocus()
{
    m_pendingName.clear();
    if (m_form->isLocked(QStringLiteral("ugyfelnev")))
        return;
    const QString name = m_ui->ugyfelnev->currentText();
    if (name.isEmpty())
        return;
    const QVariant key = clientKeyOf(name);
    if (key.isValid()) {
        setClient(key, name);
        return;
    }
    // No key of another client stays behind a name that is not in the list.
    setClient(0, QString());
    if (uzenet(QStringLiteral("nincsujat"), platform::Confirmation, this) != platform::AnswerYes)
        return;
    m_pendingName = name;
    m_ui->ugyfelnev->setCurrentIndex(-1);
    m_ui->ugyfelnev->clearEditText();
    g10_Click();
}

void Ugyek::g10_Click()
{
    ugyszamvizsg();
    const QString shown = m_ui->ugyfelnev->currentText();
    if (clientKeyOf(shown).isValid())
        return;
    if (!m_handOffs.newClient)
        return;
    // The name the user chose to record, or the one typed when the button came first.
    const QString name = m_pendingName.isEmpty() ? shown : m_pendingName;
    m_handOffs.newClient(this, name,
                         [self = QPointer<Ugyek>(this)](const QString& ukod, const QString& nev1) {
                             if (self)
                                 self->clientSaved(ukod, nev1);
                         });
}

void Ugyek::clientSaved(const QString& ukod, const QString& nev1)
{
    setClient(ukod.toLongLong(), nev1);
    m_ui->ugyfelnev->setCurrentIndex(-1);
    m_ui->ugyfelnev->setEditText(nev1);
    // The new client joins the list, and is the box's entry.
    listatolt();
    m_ui->ugytipus->setFocus();
}

// --- Lookup lists, clipboard, dialer -------------------------------------------------------

void Ugyek::addToLookupList(QComboBox* box, const QString& hivo)
{
    if (!box->currentText().isEmpty() || !m_handOffs.addToLookupList)
        return;
    m_handOffs.addToLookupList(
            hivo, this, [self = QPointer<Ugyek>(this), box](const QString& added) {
                if (!self)
                    return;
                // Written only into a box that still takes an entry.
                if (!added.isEmpty() && !self->m_form->isLocked(box->objectName()))
                    box->setEditText(added);
                self->listatolt();
            });
}

void Ugyek::g11_Click()
{
    addToLookupList(m_ui->ugytipus, QStringLiteral("21"));
}

void Ugyek::g12_Click()
{
    addToLookupList(m_ui->ugyved, QStringLiteral("31"));
}

void Ugyek::g13_Click()
{
    addToLookupList(m_ui->ellorszag, QStringLiteral("11"));
}

void Ugyek::g14_Click()
{
    addToLookupList(m_ui->ellugyvorsz, QStringLiteral("12"));
}

void Ugyek::g8_Click()
{
    // Also into locked notes: they are stored only by a save.
    m_ui->feljegyzes->setFocus();
    m_ui->feljegyzes->setPlainText(m_ui->feljegyzes->toPlainText() + platform::clipboardText());
}

void Ugyek::g9_Click()
{
    QPlainTextEdit* notes = m_ui->feljegyzes;
    notes->setFocus();
    QTextCursor cursor = notes->textCursor();
    if (!cursor.hasSelection()) {
        cursor.select(QTextCursor::Document);
        notes->setTextCursor(cursor);
    }
    platform::setClipboardText(cursor.selectedText().replace(QChar::ParagraphSeparator, u'\n'));
}

void Ugyek::Tg1_Click()
{
    comm::telefonhiv(m_db, m_ui->ellugyvtel1->text());
}

void Ugyek::Tg2_Click()
{
    comm::telefonhiv(m_db, m_ui->ellugyvtel2->text());
}

void Ugyek::em1_Click()
{
    comm::Emailkuld(m_ui->ellugyvemail->text());
}

// --- Sub-numbers ---------------------------------------------------------------------------

void Ugyek::SSTab1_Click()
{
    for (QLineEdit* field : {m_ui->alszam, m_ui->aldatum, m_ui->almegjegyz})
        field->clear();
    m_subNumbers->setRecordSource(store::SubNumbers::list(m_ui->ugyszam->text()));
    QString error;
    const bool ok = m_subNumbers->refresh(&error);
    gridoszlopok();
    if (!ok)
        engineFailure(m_db.lastFailure(), error, module, QStringLiteral("SSTab1"), this);
}

void Ugyek::g1_Click()
{
    if (m_ui->alszam->text().isEmpty())
        return;
    // A sub-number belongs to a case number: with none typed yet it waits, as typed.
    if (m_ui->ugyszam->text().isEmpty()) {
        ugyszamvizsg();
        return;
    }
    const store::Written written
            = store::SubNumbers(m_db).add(m_ui->ugyszam->text(), m_ui->alszam->text(),
                                          m_ui->aldatum->text(), m_ui->almegjegyz->text());
    if (!reportWrite(written, module, QStringLiteral("g1"), this))
        return;
    m_timer->start();
    for (QLineEdit* field : {m_ui->alszam, m_ui->aldatum, m_ui->almegjegyz})
        field->clear();
}

void Ugyek::Timer1_Timer()
{
    m_timer->stop();
    m_subNumbers->refresh();
    gridoszlopok();
}

void Ugyek::gridoszlopok()
{
    platform::gridoszlopok(m_ui->DataGrid2, {{QStringLiteral("alugyszam"), m_ui->sz30, 800},
                                             {QStringLiteral("aldatum"), m_ui->sz31, 1500},
                                             {QStringLiteral("almegjegyz"), m_ui->sz32, 6500}});
}

// --- Keys and focus ------------------------------------------------------------------------

bool Ugyek::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress: {
        // Enter moves on as Tab does; the notes keep it as a line break.
        const auto* key = static_cast<QKeyEvent*>(event);
        // The place lists take it as a choice.
        if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter)
            && key->modifiers() == Qt::NoModifier && watched != m_ui->feljegyzes
            && watched != m_ui->helylista && watched != m_ui->helylista2) {
            focusNextChild();
            return true;
        }
        break;
    }
    case QEvent::KeyRelease: {
        const auto* key = static_cast<QKeyEvent*>(event);
        if ((watched == m_ui->kezdet || watched == m_ui->zaras) && !key->isAutoRepeat()
            && records::shapesDate(key->key()))
            keltezes(static_cast<QLineEdit*>(watched));
        break;
    }
    case QEvent::FocusIn:
        m_focused = watched;
        if (watched == m_ui->ugyfelnev)
            ugyszamvizsg();
        break;
    case QEvent::FocusOut:
        // A field that lost the focus before it had it (the focus was sent back meanwhile) is
        // not left.
        if (watched != m_focused || !leftForAnotherField(event, this))
            break;
        m_focused = nullptr;
        if (watched == m_ui->kezdet)
            datumvizsg(m_ui->kezdet, m_ui->sz7);
        else if (watched == m_ui->zaras)
            datumvizsg(m_ui->zaras, m_ui->sz27);
        else if (watched == m_ui->ugyfelnev)
            ugyfelnevLostFocus();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace cases
