#pragma once

#include "platform/ListSource.h"
#include "records/RecordForm.h"
#include "session/Session.h"

#include <functional>
#include <memory>
#include <QPointer>
#include <QWidget>

class QButtonGroup;
class QLineEdit;

namespace Ui {
class Ugyfelek;
}

namespace records {
class ConflictNotice;
}

namespace clients {

class AddressBlock;

// The client screen: one client of ugyfelek at a time, shown, created, changed and deleted.
// It is opened on the search screen's list query (its browse set) and always reads and writes
// the client by its key, so a client the list does not hold is still the one shown.
//
// The hidden field hivo holds the mode: "" shown only, "1" a new client, "2" a change of the
// shown client, "3" a new client for the case screen.
//
// Always created with new: closing the screen deletes it.
class Ugyfelek : public QWidget
{
    Q_OBJECT
public:
    // Receives the key and name of a client saved for the case screen.
    using ClientSaved = std::function<void(const QString& ukod, const QString& nev1)>;

    Ugyfelek(platform::Database& db, const ListChoice& choice, QWidget* parent = nullptr);
    ~Ugyfelek() override;

    // A new client for the case screen (mode "3"): shows this screen, starts a new client and
    // puts the typed name into nev1. Saving calls saved() with the new key and name after
    // showing the case screen again, and then only hides this screen; closing shows the case
    // screen again.
    void newForCase(QWidget* caseScreen, const QString& typedName, ClientSaved saved);

    // Closes without asking and shows the screen it was opened from, unless the screen is
    // being replaced by a new one.
    void unload(bool showCaller = true);
    bool isUnloading() const { return m_unloading; }

    // True while an entry is in progress (new or changed, not saved): Ment is enabled.
    bool entryPending() const;

public slots:
    // Every time the screen becomes the active window: captions, the country list, placement.
    void Activate();
    // Shows the client whose key the search screen handed over.
    void ugyffeltolt();
    // New client; the command of g3.
    void ujugyfel();
    void g4_Click();
    void g5_Click();
    void g6_Click();
    void g7_Click();
    void Tg1_Click();
    void Tg2_Click();
    void em1_Click();

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    records::Mode mode() const { return m_form->mode(); }
    QVariantMap columnValues(bool newClient);

    std::unique_ptr<Ui::Ugyfelek> m_ui;
    QString m_ksorsz;
    QPointer<QWidget> m_search;
    platform::Database& m_db;
    platform::ListSource m_browse;
    AddressBlock* m_address = nullptr;
    QButtonGroup* m_cegprivat = nullptr;
    records::RecordForm* m_form = nullptr;
    records::ConflictNotice* m_nameCheck = nullptr;
    QPointer<QWidget> m_caseScreen;
    ClientSaved m_saved;
    bool m_unloading = false;
};

} // namespace clients
