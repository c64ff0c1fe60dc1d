#include "admin/param.h"

#include "ui_param.h"

#include "locale/Felirat.h"
#include "locale/Uzenet.h"
#include "session/Session.h"
#include "store/Parameters.h"

#include <QApplication>
#include <QShowEvent>
#include <QSignalBlocker>

namespace admin {

namespace {

const QString module = QStringLiteral("param");

void setOption(QRadioButton* option, bool checked)
{
    // Both of the pair may be unchosen, as a parameters row without a dialling mode shows.
    option->setAutoExclusive(false);
    option->setChecked(checked);
    option->setAutoExclusive(true);
}

} // namespace

param::param(platform::Database& db, QWidget* parent)
    : CloseStepDialog(parent), m_ui(std::make_unique<Ui::param>()), m_db(db)
{
    m_ui->setupUi(this);
    m_ui->alapnyelv->hide();
    connect(m_ui->nyelve, qOverload<int>(&QComboBox::activated), this, &param::nyelve_LostFocus);
    connect(m_ui->g5, &QPushButton::clicked, this, &param::g5_Click);
}

param::~param() = default;

void param::showEvent(QShowEvent* e)
{
    CloseStepDialog::showEvent(e);
    if (!e->spontaneous())
        Activate();
}

void param::feltolt()
{
    QString error;
    const platform::Rows languages = store::Parameters(m_db).languages(&error);
    if (!error.isEmpty())
        engineFailure(m_db.lastFailure(), error, module, QStringLiteral("feltolt"), this);
    const QSignalBlocker quiet(m_ui->nyelve);
    m_ui->nyelve->clear();
    for (const platform::Row& row : languages)
        m_ui->nyelve->addItem(row.text(QStringLiteral("nyelvnev")),
                              row.value(QStringLiteral("nyelvkod")));
}

void param::Activate()
{
    feliratoz(this);
    feltolt();
    QString error;
    const platform::Row row = store::Parameters(m_db).read(&error);
    if (!error.isEmpty())
        engineFailure(m_db.lastFailure(), error, module, QStringLiteral("Activate"), this);
    m_ui->alapnyelv->setText(row.text(QStringLiteral("alapnyelv")));
    m_ui->utolsoment->setText(row.text(QStringLiteral("utolsoment")));
    m_ui->verzio->setText(row.text(QStringLiteral("verzio")));
    m_ui->nyelve->setCurrentIndex(
            m_ui->nyelve->findData(row.value(QStringLiteral("alapnyelv")).toInt()));
    m_ui->modemport->setText(row.text(QStringLiteral("modemport")));
    m_ui->elotag->setText(row.text(QStringLiteral("elotag")));
    const QVariant tone = row.value(QStringLiteral("tonepulse"));
    setOption(m_ui->g1, !tone.isNull() && tone.toInt() != 0);
    setOption(m_ui->g2, !tone.isNull() && tone.toInt() == 0);
    m_ui->g3->setChecked(row.value(QStringLiteral("kelllogon")).toInt() != 0);
}

void param::nyelve_LostFocus()
{
    if (m_ui->nyelve->currentIndex() < 0)
        return;
    const int code = m_ui->nyelve->currentData().toInt();
    m_ui->alapnyelv->setText(QString::number(code));
    if (!reportWrite(store::Parameters(m_db).save({{QStringLiteral("alapnyelv"), code}}), module,
                     QStringLiteral("nyelve"), this))
        return;
    // Until somebody logs in the program speaks the default language, so the open screens
    // change to it now; a logged-in user keeps his own.
    Session& session = Session::instance();
    if (session.userName.isEmpty()) {
        session.language = qint16(code);
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (w->isVisible())
                feliratoz(w);
        }
    }
}

void param::g5_Click()
{
    if (m_ui->modemport->text().isEmpty())
        m_ui->modemport->setText(QStringLiteral("1"));
    if (m_ui->elotag->text().isEmpty())
        m_ui->elotag->setText(QStringLiteral(" "));
    QVariantMap values{{QStringLiteral("modemport"), m_ui->modemport->text()},
                       {QStringLiteral("elotag"), m_ui->elotag->text()},
                       {QStringLiteral("kelllogon"), m_ui->g3->isChecked() ? -1 : 0}};
    if (m_ui->g1->isChecked())
        values.insert(QStringLiteral("tonepulse"), -1);
    else if (m_ui->g2->isChecked())
        values.insert(QStringLiteral("tonepulse"), 0);
    // What could not be stored stays on screen to be closed again.
    if (!reportWrite(store::Parameters(m_db).save(values), module, QStringLiteral("g5"), this))
        return;
    finish(QDialog::Accepted);
}

} // namespace admin
