#include "locale/felir.h"

#include "locale/Uzenet.h"
#include "platform/Messages.h"
#include "platform/TableEditor.h"
#include "session/Session.h"
#include "ui_felir.h"

#include <QApplication>
#include <QCloseEvent>
#include <QPointer>

felir::felir(platform::Database& db, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , m_ui(std::make_unique<Ui::felir>())
    , m_db(db)
    , m_felirrst(new platform::TableEditor(db, QStringLiteral("felirat"), this))
{
    m_ui->setupUi(this);
    connect(m_ui->g1, &QPushButton::clicked, this, &felir::g1_Click);
    // Reported after the grid has finished moving to the new row, so that the message box does
    // not interrupt the grid's own handling of the click or key.
    connect(m_felirrst, &platform::TableEditor::failed, this, &felir::elutasitva,
            Qt::QueuedConnection);
}

felir::~felir() = default;

bool felir::event(QEvent* e)
{
    if (e->type() == QEvent::Show || e->type() == QEvent::WindowActivate)
        Activate();
    return QWidget::event(e);
}

void felir::closeEvent(QCloseEvent* e)
{
    m_felirrst->store();
    QWidget::closeEvent(e);
}

// Reads the table again each time the editor becomes active, unless the user is in the middle
// of changing a row or a cell (coming back from another window must not throw that away).
void felir::Activate()
{
    const QWidget* focus = QApplication::focusWidget();
    if (m_felirrst->hasPendingEdit() || (focus && m_ui->DataGrid1->viewport()->isAncestorOf(focus)))
        return;
    QString error;
    if (!m_felirrst->refresh(&error)) {
        engineFailure(m_db.lastFailure(), error, QStringLiteral("felir"),
                      QStringLiteral("Activate"), this);
        return;
    }
    m_felirrst->bind(m_ui->DataGrid1);
}

void felir::g1_Click()
{
    close();
    if (const auto& show = Session::instance().screens.showMainMenu)
        show();
}

void felir::elutasitva(platform::Failure failure, const QString& engineText)
{
    engineFailure(failure, engineText, QStringLiteral("felir"), QStringLiteral("DataGrid1"), this);
}

void installCaptionEditor(QWidget* owner, platform::Database& db)
{
    QPointer<QWidget> guard(owner);
    Session::instance().screens.showCaptionEditor = [guard, &db] {
        if (!guard)
            return;
        auto* editor = guard->findChild<felir*>(QString(), Qt::FindDirectChildrenOnly);
        if (!editor)
            editor = new felir(db, guard);
        editor->show();
        editor->raise();
        editor->activateWindow();
    };
}
