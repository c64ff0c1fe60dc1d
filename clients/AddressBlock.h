#pragma once

#include <memory>
#include <QObject>
#include <QString>

namespace platform {
class Database;
}

class QComboBox;
class QLineEdit;
class QListWidget;
class QListWidgetItem;

namespace clients {

class ComboAutoComplete;

// The postal code of a place in a country from the postal code register: the first matching
// row in the register's order, or an empty text. An empty country shows "nincsorsz". A failed
// look-up gives an empty text, with the engine's text in error when given.
QString irszhelybol(platform::Database& db, const QString& country, const QString& place,
                    QString* error = nullptr);

// One address block of a screen: the country box, the postal-code field, the place field and
// the hidden list of places. It fills the place from a changed postal code (with the
// "Budapest" and "Wien" shortcuts for the two capitals), offers the list when a code has
// several places, fills an empty postal code from the place, and completes the country as it
// is typed. It writes only into the block's own fields.
class AddressBlock : public QObject
{
    Q_OBJECT
public:
    AddressBlock(platform::Database& db, QComboBox* country, QLineEdit* postalCode,
                 QLineEdit* place, QListWidget* placeList, QObject* parent = nullptr);

    // Set whenever the postal code's text changes (typed or written by the screen); cleared by
    // a register lookup or a choice from the list.
    bool irszvaltozott() const { return *m_irszvaltozott; }
    void setIrszvaltozott(bool changed) { *m_irszvaltozott = changed; }
    // From now on this block keeps its mark together with the other block: a change of either
    // postal code sets it, a look-up or a choice in either clears it.
    void shareMarkWith(const AddressBlock& other) { m_irszvaltozott = other.m_irszvaltozott; }
    // A failed look-up of the postal code (of the place) is written to hiba.txt with the module
    // and that place name, and the rest of the look-up is skipped. Without this a failed
    // look-up finds nothing.
    void logFailures(const QString& module, const QString& codePlace, const QString& placePlace);
    ComboAutoComplete* autoComplete() const { return m_autoComplete; }
    // Fills the country box anew from the register; the text it shows stays.
    void refillCountries();

public slots:
    // On leaving the postal-code field.
    void irszbolhely();
    // On leaving the place field, when the postal code is empty.
    void helybolirsz();
    // A place chosen from the list.
    void helylistaClick(QListWidgetItem* item);
    void helylistaLostFocus();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    platform::Database& m_db;
    QComboBox* m_country;
    QLineEdit* m_postalCode;
    QLineEdit* m_place;
    QListWidget* m_placeList;
    ComboAutoComplete* m_autoComplete;
    std::shared_ptr<bool> m_irszvaltozott = std::make_shared<bool>(false);
    QString m_logModule;
    QString m_codePlace;
    QString m_placePlace;
};

} // namespace clients
