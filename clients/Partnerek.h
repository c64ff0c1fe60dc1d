#pragma once

#include "records/RecordForm.h"

#include <memory>
#include <QVariant>
#include <QWidget>

namespace platform {
class Database;
class ListSource;
} // namespace platform

namespace Ui {
class Partnerek;
}

namespace clients {

class AddressBlock;

// The partner screen: every partner of the table partner in a grid, and below it the fields of
// the partner last chosen in the grid, with commands to add, change and delete. A partner is
// always read, written and deleted by its key, the one the chosen grid row holds.
//
// The hidden field hivo holds the mode: "" shown only, "1" a new partner, "2" a change of the
// shown partner.
//
// Always created with new: closing the screen deletes it and shows the main menu.
class Partnerek : public QWidget
{
    Q_OBJECT
public:
    explicit Partnerek(platform::Database& db, QWidget* parent = nullptr);
    ~Partnerek() override;

    bool isUnloading() const { return m_unloading; }

public slots:
    // Every time the screen becomes the active window: captions and grid headings, the country
    // list, placement.
    void Activate();
    // The grid's visible columns, headed by the labels' current texts.
    void gridoszlopok();
    // The grid's row event: a double click or Enter on a row shows that partner.
    void DataGrid2_RowChosen();
    // New partner; the command of g3.
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
    // The list read anew after a save or a delete; the shown partner's row becomes current.
    void listafrissites();
    void markShownRow();

    std::unique_ptr<Ui::Partnerek> m_ui;
    platform::Database& m_db;
    platform::ListSource* m_lista = nullptr;
    AddressBlock* m_address = nullptr;
    records::RecordForm* m_form = nullptr;
    bool m_unloading = false;
};

} // namespace clients
