#pragma once

#include <functional>
#include <memory>
#include <QMainWindow>

namespace platform {
class Database;
}

class QLabel;
enum class Right;

namespace Ui {
class Alap;
}

// The main menu: the first screen of the program and the way to every other one. Loading it
// opens the database; each button tests one position of the user's rights before it opens its
// screen. Closing the window asks before the program ends.
class Alap : public QMainWindow
{
    Q_OBJECT
public:
    explicit Alap(platform::Database& db, QWidget* parent = nullptr);
    ~Alap() override;

    // The Load step. False when the database could not be opened and the program must end.
    bool load();

    // The status bar's text panels, counted from 1: user, start date, start time.
    QString panelText(int panel) const;
    void setPanelText(int panel, const QString& text);

protected:
    bool event(QEvent* e) override;
    void closeEvent(QCloseEvent* e) override;

private:
    void helyez();
    void captionConflicts();
    void megnyit(Right right, const std::function<void()>& show, bool hidesMenu);
    // The same for a screen opened in one of its modes (the search screen's tipus, the lookup
    // list's hivo).
    void megnyit(Right right, const std::function<void(const QString&)>& show, const QString& mode,
                 bool hidesMenu);
    void mutat();

    void g1_Click();
    void g2_Click();
    void g3_Click();
    void g4_Click();
    void g5_Click();
    void g6_Click();
    void g7_Click();
    void g8_Click();
    void g9_Click();
    void g10_Click();
    void g11_Click();
    void g12_Click();
    void g13_Click();
    void g14_Click();
    void felirShow();

    std::unique_ptr<Ui::Alap> m_ui;
    platform::Database& m_db;
    QList<QLabel*> m_panels;
};
