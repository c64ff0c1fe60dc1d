#pragma once

#include "platform/CloseStepDialog.h"
#include "platform/ListSource.h"
#include "platform/ReturnActivation.h"
#include "records/RecordForm.h"

#include <memory>
#include <QVariant>

class QListWidgetItem;

namespace Ui {
class irszam;
}

namespace reference {

// The postal-code register: a country chosen from orszlst, its postal codes and places in the
// grid DataGrid2, and one row in the fields irsz and hely, added, changed and deleted there.
// A row is always written and deleted by its key, the one of the row last activated.
class irszam : public platform::CloseStepDialog
{
    Q_OBJECT
public:
    // What is pending: nothing, a new row, or a change of the row shown.
    enum Mode { Nothing = 0, NewRow = 1, Changing = 2 };

    explicit irszam(platform::Database& db, QWidget* parent = nullptr);
    ~irszam() override;

    Mode mode() const { return m_mode; }
    // The key of the row shown (last activated); invalid when none is shown.
    QVariant shownKey() const { return m_key; }
    platform::ListSource* source() const { return m_source; }

public slots:
    // Every time the screen becomes active: the whole register in the grid, captions, the
    // countries.
    void Activate();
    // Fills orszlst with the countries in Hungarian order.
    void feltolt();
    void gridoszlopok();
    // A country chosen: the grid shows its rows; the fields are emptied.
    void orszlst_Click();
    // The grid's row activation (double click or Enter): the row shown in the fields.
    void DataGrid2_RowChosen();
    void g1_Click();
    void g2_Click();
    void g3_Click();
    void g4_Click();
    void g5_Click();

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    // Esc and the close box close as Bezár does.
    void closeStep() override { g5_Click(); }

private:
    // Shows the chosen country's rows again, as choosing it does.
    void orszagValaszt();
    // An entry in progress may be dropped before another row or country replaces it: asks
    // "ments" when something is typed; on Yes the screen is back to showing.
    bool mayDrop();
    void showList(const platform::ListQuery& list, const QString& place);

    std::unique_ptr<Ui::irszam> m_ui;
    platform::Database& m_db;
    platform::ListSource* m_source = nullptr;
    records::RecordForm* m_form = nullptr;
    Mode m_mode = Nothing;
    QVariant m_key;
    int m_chosenCountry = -1;
    platform::ReturnActivation m_return;
};

} // namespace reference
