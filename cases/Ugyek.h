#pragma once

#include "platform/ReturnActivation.h"
#include "records/RecordForm.h"
#include "session/Screens.h"

#include <functional>
#include <memory>
#include <QPointer>
#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QTimer;

namespace Ui {
class Ugyek;
}

namespace platform {
class Database;
class ListSource;
} // namespace platform

namespace clients {
class AddressBlock;
} // namespace clients

namespace records {
class ConflictNotice;
} // namespace records

namespace cases {

class ClientChoices;

// The screens the case screen hands work to; an empty one makes its button do nothing.
struct CaseHandOffs
{
    using Closed = std::function<void(const QString& added)>;
    using Saved = std::function<void(const QString& ukod, const QString& nev1)>;
    // The lookup-list editor with a caller code ("11", "12" countries, "21" case types, "31"
    // lawyers); closed receives the entry added there (empty when none).
    std::function<void(const QString& hivo, QWidget* caseScreen, Closed closed)> addToLookupList;
    // The client screen for a new client with the typed name; saved receives the stored
    // client's key and name.
    using NewClient
            = std::function<void(QWidget* caseScreen, const QString& typedName, Saved saved)>;
    NewClient newClient;
};

// The case screen: one case of ugyek at a time, with its client, type, lawyer, dates, remarks,
// the opponent and the opponent's lawyer, and on its last page the case's sub-numbers. Cases
// are created, changed and deleted here; they are found on the search screen.
//
// The case is always read, changed and deleted by its number in ugyek, so a case that the
// search screen's list does not hold (a filtered list, a case just created) is still the one
// shown, and no other case is ever written in its place. The key in ugyfelkod is always that
// of the client whose name the client box shows.
//
// The hidden field hivo holds the mode: "" shown only, "1" a new case, "2" a change of the
// shown case. Always created with new: closing the screen deletes it.
class Ugyek : public QWidget
{
    Q_OBJECT
public:
    Ugyek(platform::Database& db, const ListChoice& choice, CaseHandOffs handOffs,
          QWidget* parent = nullptr);
    ~Ugyek() override;

    // Closes without asking and shows the search screen, unless the screen is being replaced.
    void unload(bool showCaller = true);
    bool isUnloading() const { return m_unloading; }
    // True while an entry is in progress (new or changed, not saved): Ment is enabled.
    bool entryPending() const;

public slots:
    // Every time the screen becomes the active window (from another screen of the program):
    // captions, the choice lists, page captions, placement, the first page.
    void Activate();
    // Fills the five choice lists; the texts the boxes show stay.
    void listatolt();
    // Shows the case whose number the search screen handed over.
    void ugyfeltolt();
    // New case; the command of g3.
    void ujugy();
    void g4_Click();
    void g5_Click();
    void g6_Click();
    void g7_Click();
    // Locks every case field and the sub-number fields.
    void belockol();
    // An empty case number pulls the focus back to it: the number comes first.
    void ugyszamvizsg();
    void g1_Click();
    void g8_Click();
    void g9_Click();
    void g10_Click();
    void g11_Click();
    void g12_Click();
    void g13_Click();
    void g14_Click();
    void Tg1_Click();
    void Tg2_Click();
    void em1_Click();
    // A page change: the grid shows the sub-numbers of the number in ugyszam.
    void SSTab1_Click();
    // Half a second after a sub-number was added: the grid reads it.
    void Timer1_Timer();
    void gridoszlopok();

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showPictureButtons(bool entering);
    void keltezes(QLineEdit* field);
    bool datumvizsg(QLineEdit* field, QLabel* label);
    bool dateToStore(QLineEdit* field, QLabel* label, bool newCase, QVariant* value);
    void ugyfelnevLostFocus();
    QVariant clientKeyOf(const QString& name) const;
    void setClient(const QVariant& key, const QString& name);
    void clientSaved(const QString& ukod, const QString& nev1);
    void addToLookupList(QComboBox* box, const QString& hivo);
    void emptyFields();

    platform::Database& m_db;
    std::unique_ptr<Ui::Ugyek> m_ui;
    QString m_ksorsz;
    QPointer<QWidget> m_search;
    CaseHandOffs m_handOffs;
    records::RecordForm* m_form = nullptr;
    ClientChoices* m_clients = nullptr;
    clients::AddressBlock* m_opponent = nullptr;
    clients::AddressBlock* m_lawyer = nullptr;
    records::ConflictNotice* m_opponentCheck = nullptr;
    records::ConflictNotice* m_lawyerCheck = nullptr;
    platform::ListSource* m_subNumbers = nullptr;
    QTimer* m_timer = nullptr;
    // The name of the client whose key ugyfelkod holds.
    QString m_clientName;
    // The client name the user chose to record as a new client.
    QString m_pendingName;
    // The field that last took the focus: its leaving counts only once it did.
    QPointer<QObject> m_focused;
    platform::ReturnActivation m_return;
    bool m_activated = false;
    bool m_unloading = false;
};

} // namespace cases
