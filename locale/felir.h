#pragma once

#include "platform/Database.h"

#include <memory>
#include <QWidget>

namespace Ui {
class felir;
}
namespace platform {
class TableEditor;
}

// The caption editor: every row and column of felirat in an editable grid. A changed row is
// stored when the user leaves it; a change the database refuses is reported, not dropped in
// silence. Its own texts are never taken from the catalogue.
class felir : public QWidget
{
    Q_OBJECT
public:
    explicit felir(platform::Database& db, QWidget* parent = nullptr);
    ~felir() override;

protected:
    bool event(QEvent* e) override;
    void closeEvent(QCloseEvent* e) override;

private:
    void Activate();
    void g1_Click();
    void elutasitva(platform::Failure failure, const QString& engineText);

    std::unique_ptr<Ui::felir> m_ui;
    platform::Database& m_db;
    platform::TableEditor* m_felirrst;
};

// Makes Shift+F5 on the main menu open the one caption editor, as a window of its own owned by
// the given screen.
void installCaptionEditor(QWidget* owner, platform::Database& db);
