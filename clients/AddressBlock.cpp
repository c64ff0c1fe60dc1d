#include "clients/AddressBlock.h"

#include "clients/ComboAutoComplete.h"
#include "locale/Uzenet.h"
#include "session/Session.h"
#include "store/ErrorLog.h"
#include "store/Lookups.h"
#include "store/PostalCodes.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalBlocker>

namespace clients {

namespace {

// Country names are compared as the database compares them: letter case ignored.
bool sameName(const QString& a, const QString& b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

bool inLayout(const QLayout* layout, const QWidget* widget)
{
    if (!layout)
        return false;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem* item = layout->itemAt(i);
        if (item->widget() == widget || inLayout(item->layout(), widget))
            return true;
    }
    return false;
}

} // namespace

QString irszhelybol(platform::Database& db, const QString& country, const QString& place,
                    QString* error)
{
    if (country.isEmpty()) {
        uzenet(QStringLiteral("nincsorsz"), platform::Notice);
        return QString();
    }
    return store::PostalCodes(db).codeOf(country, place, error);
}

AddressBlock::AddressBlock(platform::Database& db, QComboBox* country, QLineEdit* postalCode,
                           QLineEdit* place, QListWidget* placeList, QObject* parent)
    : QObject(parent)
    , m_db(db)
    , m_country(country)
    , m_postalCode(postalCode)
    , m_place(place)
    , m_placeList(placeList)
    , m_autoComplete(new ComboAutoComplete(country))
{
    m_placeList->hide();
    connect(m_postalCode, &QLineEdit::textChanged, this, [this] { *m_irszvaltozott = true; });
    connect(m_placeList, &QListWidget::itemClicked, this, &AddressBlock::helylistaClick);
    // Enter on the list chooses as a click does, for users of the keyboard.
    connect(m_placeList, &QListWidget::itemActivated, this, &AddressBlock::helylistaClick);
    m_postalCode->installEventFilter(this);
    m_place->installEventFilter(this);
    m_placeList->installEventFilter(this);
}

bool AddressBlock::eventFilter(QObject* watched, QEvent* event)
{
    // Focus lost to another field; not to a message box, another window or a drop-down list.
    const auto reason = event->type() == QEvent::FocusOut
                                ? static_cast<QFocusEvent*>(event)->reason()
                                : Qt::OtherFocusReason;
    if (event->type() == QEvent::FocusOut && reason != Qt::ActiveWindowFocusReason
        && reason != Qt::PopupFocusReason) {
        if (watched == m_postalCode)
            irszbolhely();
        else if (watched == m_place)
            helybolirsz();
        else if (watched == m_placeList)
            helylistaLostFocus();
    }
    return QObject::eventFilter(watched, event);
}

void AddressBlock::logFailures(const QString& module, const QString& codePlace,
                               const QString& placePlace)
{
    m_logModule = module;
    m_codePlace = codePlace;
    m_placePlace = placePlace;
}

void AddressBlock::refillCountries()
{
    const QString shown = m_country->currentText();
    const QSignalBlocker blocker(m_country);
    m_country->clear();
    m_country->addItems(store::Lookups(m_db, store::LookupList::Countries).names());
    m_country->setCurrentIndex(-1);
    m_country->setEditText(shown);
}

void AddressBlock::irszbolhely()
{
    if (!*m_irszvaltozott)
        return;
    const QString country = m_country->currentText();
    const QString code = m_postalCode->text();
    if (country.isEmpty()) {
        uzenet(QStringLiteral("nincsorsz"), platform::Notice);
        return;
    }
    // The capitals' codes all begin with 1 and name one place; the mark stays set, so leaving
    // the field again gives the same answer.
    if (code.startsWith(u'1')) {
        if (sameName(country, QStringLiteral("Magyarország"))) {
            m_place->setText(QStringLiteral("Budapest"));
            return;
        }
        if (sameName(country, QStringLiteral("Ausztria"))) {
            m_place->setText(QStringLiteral("Wien"));
            return;
        }
    }

    QString error;
    const QStringList places = store::PostalCodes(m_db).places(country, code, &error);
    if (!error.isEmpty() && !m_logModule.isEmpty()) {
        store::hibanaplo(m_logModule, m_codePlace, error);
        return;
    }
    m_placeList->clear();
    m_placeList->addItems(places);

    QString chosen;
    if (m_placeList->count() == 1) {
        chosen = m_placeList->item(0)->text();
    } else if (m_placeList->count() > 1) {
        // A list that floats over the form (outside its layout) opens beneath the place field.
        QWidget* host = m_placeList->parentWidget();
        if (host && !inLayout(host->layout(), m_placeList)) {
            const QPoint below = m_place->mapTo(host, QPoint(0, m_place->height()));
            m_placeList->move(below);
            m_placeList->resize(m_place->width(), m_placeList->height());
        }
        m_placeList->show();
        m_placeList->raise();
        m_placeList->setFocus(Qt::OtherFocusReason);
        m_placeList->setCurrentRow(0);
    }
    if (!chosen.isEmpty())
        m_place->setText(chosen);
    *m_irszvaltozott = false;
}

void AddressBlock::helybolirsz()
{
    if (!m_postalCode->text().isEmpty())
        return;
    QString error;
    const QString code = irszhelybol(m_db, m_country->currentText(), m_place->text(), &error);
    if (!error.isEmpty() && !m_logModule.isEmpty()) {
        store::hibanaplo(m_logModule, m_placePlace, error);
        return;
    }
    if (!code.isEmpty())
        m_postalCode->setText(code);
}

void AddressBlock::helylistaClick(QListWidgetItem* item)
{
    if (!item)
        item = m_placeList->currentItem();
    if (item && !item->text().isEmpty())
        m_place->setText(item->text());
    *m_irszvaltozott = false;
}

void AddressBlock::helylistaLostFocus()
{
    m_placeList->hide();
}

} // namespace clients
