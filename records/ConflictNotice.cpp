#include "records/ConflictNotice.h"

#include "locale/Uzenet.h"

#include <QDialog>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace records {

namespace {

// How many records the label names; the rest are in the list window.
constexpr int namedInLabel = 3;

QString kindText(store::ConflictMatch::Kind kind)
{
    switch (kind) {
    case store::ConflictMatch::Client:
        return uzenetszoveg(QStringLiteral("utkozesugyfel"));
    case store::ConflictMatch::Partner:
        return uzenetszoveg(QStringLiteral("utkozespartner"));
    case store::ConflictMatch::Case:
        break;
    }
    return uzenetszoveg(QStringLiteral("utkozesugy"));
}

} // namespace

ConflictNotice::ConflictNotice(QLineEdit* field, Check check)
    : QObject(field), m_field(field), m_check(std::move(check))
{
    QWidget* page = field->parentWidget();
    m_label = new QLabel(page);
    m_label->setObjectName(field->objectName() + QStringLiteral("utkozes"));
    m_label->setStyleSheet(QStringLiteral("color: #b00000"));
    m_button = new QPushButton(page);
    m_button->setObjectName(field->objectName() + QStringLiteral("utkozeslista"));
    // Out of the Tab order, so that moving through the fields is as it was.
    m_button->setFocusPolicy(Qt::NoFocus);
    m_button->setAutoDefault(false);
    m_label->hide();
    m_button->hide();

    if (auto* grid = qobject_cast<QGridLayout*>(page->layout())) {
        const int at = grid->indexOf(field);
        int row = 0, column = 0, rows = 1, columns = 1;
        if (at >= 0)
            grid->getItemPosition(at, &row, &column, &rows, &columns);
        if (at >= 0 && columns >= 3) {
            // The field stays in its parent, so its place in the Tab order is kept.
            grid->removeWidget(field);
            grid->addWidget(field, row, column, rows, columns - 2);
            grid->addWidget(m_label, row, column + columns - 2);
            grid->addWidget(m_button, row, column + columns - 1);
        }
    }
    connect(field, &QLineEdit::textEdited, this, &ConflictNotice::recheck);
    connect(m_button, &QPushButton::clicked, this, &ConflictNotice::showList);
}

QDialog* ConflictNotice::listWindow() const
{
    return m_window;
}

QString ConflictNotice::describe(const store::ConflictMatch& match)
{
    if (match.kind == store::ConflictMatch::Case)
        return QStringLiteral("%1 %2: %3")
                .arg(kindText(match.kind), match.key.toString(), match.name);
    return QStringLiteral("%1 %2 (%3)").arg(kindText(match.kind), match.name, match.key.toString());
}

void ConflictNotice::recheck()
{
    m_matches = m_check ? m_check(m_field->text()) : QList<store::ConflictMatch>();
    if (m_matches.isEmpty()) {
        clear();
        return;
    }
    QStringList named;
    for (const store::ConflictMatch& m : m_matches)
        named << describe(m);
    QString text = named.mid(0, namedInLabel).join(QStringLiteral("; "));
    if (named.size() > namedInLabel)
        text += QStringLiteral("; … (%1)").arg(named.size());
    m_label->setText(uzenetszoveg(QStringLiteral("utkozes")) + u' ' + text);
    m_label->setToolTip(named.join(u'\n'));
    m_button->setText(uzenetszoveg(QStringLiteral("utkozeslista")));
    m_label->show();
    m_button->show();
    if (m_window)
        showList();
}

void ConflictNotice::clear()
{
    m_matches.clear();
    m_label->clear();
    m_label->hide();
    m_button->hide();
    if (m_window)
        m_window->close();
}

void ConflictNotice::showList()
{
    // One window per field, not modal: the entry goes on while it is open.
    if (!m_window) {
        m_window = new QDialog(m_field->window());
        m_window->setObjectName(m_field->objectName() + QStringLiteral("utkozesek"));
        m_window->setAttribute(Qt::WA_DeleteOnClose);
        m_window->setModal(false);
        auto* table = new QTableWidget(m_window);
        table->setObjectName(QStringLiteral("lista"));
        table->setEditTriggers(QAbstractItemView::NoEditTriggers);
        table->verticalHeader()->hide();
        table->horizontalHeader()->hide();
        table->horizontalHeader()->setStretchLastSection(true);
        auto* layout = new QVBoxLayout(m_window);
        layout->addWidget(table);
        m_window->resize(520, 260);
    }
    m_window->setWindowTitle(uzenetszoveg(QStringLiteral("utkozes")) + u' ' + m_field->text());
    auto* table = m_window->findChild<QTableWidget*>(QStringLiteral("lista"));
    table->setColumnCount(3);
    table->setRowCount(int(m_matches.size()));
    for (int i = 0; i < m_matches.size(); ++i) {
        const store::ConflictMatch& m = m_matches.at(i);
        table->setItem(i, 0, new QTableWidgetItem(kindText(m.kind)));
        table->setItem(i, 1, new QTableWidgetItem(m.key.toString()));
        table->setItem(i, 2, new QTableWidgetItem(m.name));
    }
    table->resizeColumnsToContents();
    m_window->show();
    m_window->raise();
}

} // namespace records
