#pragma once

#include "platform/ReturnActivation.h"

#include <memory>
#include <QWidget>

namespace platform {
class Database;
class ListSource;
struct ListQuery;
} // namespace platform

namespace Ui {
class keres;
} // namespace Ui

// The search screen: lists every client ("1" in tipus) or every case ("2"), narrows the list
// by five prefix filters and hands the chosen row to the client or case screen.
class keres : public QWidget
{
    Q_OBJECT
public:
    explicit keres(platform::Database& db, QWidget* parent = nullptr);
    ~keres() override;

    // The mode, "1" clients or "2" cases; set it before the screen is shown.
    void setTipus(const QString& tipus);
    platform::ListSource& forras() const { return *m_forras; }

    // Loading, when the main menu opens the screen (run once it is shown): the client and case
    // screens close, each asking about an entry in progress. False when one of them keeps its
    // entry and stays open in front of this screen.
    bool Load();

public slots:
    // What happens each time the screen becomes active: the whole register listed again with
    // empty filters, captions and colour by mode, focus on the first filter.
    void Activate();
    void szukites();
    void g1_Click();
    void g2_Click();
    void g4_Click();
    void g5_Click();
    // Saves the list as shown (its rows, visible columns and headings) to a CSV file or an
    // OpenDocument spreadsheet.
    void g6_Click();
    // The grid's row event: a double click or Enter on a row.
    void DataGrid1_RowChosen();

protected:
    bool event(QEvent* e) override;
    void showEvent(QShowEvent* e) override;
    void closeEvent(QCloseEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    bool clientsMode() const;
    // Whether the register screen of the mode makes room for another row or a new record.
    bool registerGivesWay() const;
    void oszlopok();
    void showList(const platform::ListQuery& list);
    void keltezes();

    std::unique_ptr<Ui::keres> ui;
    platform::Database& m_db;
    platform::ListSource* m_forras;
    // Set when another screen of the program took the focus; coming back then lists again.
    platform::ReturnActivation m_return;
};
