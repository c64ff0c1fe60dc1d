#pragma once

#include <memory>
#include <QWidget>

namespace platform {
class Database;
class ListSource;
} // namespace platform

namespace Ui {
class utkozesek;
} // namespace Ui

// The conflict list: every case whose opponent or opponent's lawyer has the name of a client,
// a partner or another case's opponent, read page by page into the grid, printable and
// exportable. It is a list to look at; nothing is changed from it.
class utkozesek : public QWidget
{
    Q_OBJECT
public:
    explicit utkozesek(platform::Database& db, QWidget* parent = nullptr);
    ~utkozesek() override;

    platform::ListSource& forras() const { return *m_forras; }

public slots:
    // Each time the screen is opened: captions, and the list read again from the register.
    void Activate();
    // Prints the list.
    void g1_Click();
    // Saves the list with its visible columns and headings to a CSV file or a spreadsheet.
    void g2_Click();
    void g3_Click();

private:
    std::unique_ptr<Ui::utkozesek> ui;
    platform::Database& m_db;
    platform::ListSource* m_forras;
};
