#pragma once

#include "platform/ReturnActivation.h"

#include "records/RecordForm.h"
#include "store/Lookups.h"

#include <functional>
#include <memory>
#include <QDialog>
#include <QPointer>

class QListWidgetItem;

namespace Ui {
class Egyebadat;
}

namespace reference {

// The lookup-list editor: one of the three lookup lists (countries, case types, lawyers),
// chosen by the mode in the hidden field hivo: "1", "11", "12" countries; "2", "21" case types;
// "3", "31" lawyers. The one-digit modes come from the main menu, which shows the editor
// modally; the two-digit ones from the case screen, which gets the entry added last back when
// the editor closes.
class Egyebadat : public QDialog
{
    Q_OBJECT
public:
    // Receives the entry added last when the editor closes (empty when none).
    using Closed = std::function<void(const QString& added)>;

    explicit Egyebadat(platform::Database& db, QWidget* parent = nullptr);
    ~Egyebadat() override;

    // The mode; written before the screen is first shown.
    void setHivo(const QString& hivo);
    QString hivo() const;
    // For the case screen's modes: the screen shown again on closing, and what it is given.
    void returnTo(QWidget* caseScreen, Closed closed);

    // True while a renaming waits to be stored (Ment is enabled).
    bool renamePending() const;

public slots:
    // Every time the screen becomes active: the list of the mode, captions, the entries.
    void Activate();
    // Fills adatlst with the list's entries in Hungarian order.
    void feltolt();
    void adatlst_Click(QListWidgetItem* item);
    void g1_Click();
    void g2_Click();
    void g3_Click();
    void g4_Click();
    void g5_Click();

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

private:
    store::Lookups lookups() const;
    // The buttons after activation and after a stored renaming: only adding is open.
    void kezdo();
    void unload();

    std::unique_ptr<Ui::Egyebadat> m_ui;
    platform::Database& m_db;
    records::RecordForm* m_form = nullptr;
    // The entry last clicked, by name: a list refilled in between cannot move it to another.
    QString m_chosen;
    // The entry added last, handed to the case screen on closing.
    QString m_added;
    QPointer<QWidget> m_caseScreen;
    Closed m_closed;
    bool m_unloading = false;
    platform::ReturnActivation m_return;
};

} // namespace reference
