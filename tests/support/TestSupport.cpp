#include "TestSupport.h"

#include "platform/Display.h"
#include "platform/ListSource.h"
#include "session/Session.h"
#include "store/Prepare.h"
#include "store/Settings.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QPointer>
#include <QRegularExpression>
#include <QTableView>
#include <QTest>
#include <QTimer>

namespace testsupport {

namespace {
// One prepared folder per test process and kind; each test copies it, which is far quicker
// than preparing anew and gives the same files.
QString templateFolder(bool demo)
{
    static QTemporaryDir templates;
    const QString folder
            = templates.filePath(demo ? QStringLiteral("demo") : QStringLiteral("plain"));
    if (!QFile::exists(folder + QStringLiteral("/causora.mdb"))) {
        QString error;
        if (!store::prepareDataFolder(folder, demo, &error))
            qWarning("prepare failed: %s", qPrintable(error));
    }
    return folder;
}
// With no recorder in place a box must never wait for a user: it is reported and answered with
// its default button.
int unexpectedMessage(const platform::ShownMessage& m)
{
    qWarning("message box: %s", qPrintable(m.text));
    if (m.style == platform::Confirmation)
        return platform::AnswerNo;
    return m.style == platform::RestoreQuestion ? platform::AnswerYes : platform::AnswerOk;
}
// Watches for a modal dialog that no test drives: one still up at two looks half a second
// apart is reported (failing the test) and closed, so the test ends at once instead of
// waiting for a user until its time runs out.
class ModalGuard : public QObject
{
public:
    ModalGuard() : QObject(QCoreApplication::instance())
    {
        connect(&m_timer, &QTimer::timeout, this, &ModalGuard::look);
        m_timer.start(500);
    }
    static ModalGuard& instance()
    {
        static QPointer<ModalGuard> guard;
        if (!guard)
            guard = new ModalGuard;
        return *guard;
    }
    int allowed = 0;

private:
    void look()
    {
        QWidget* modal = QApplication::activeModalWidget();
        if (modal && modal == m_seen && allowed == 0) {
            qWarning("unexpected modal dialog: %s", qPrintable(modal->objectName()));
            modal->close();
            modal = nullptr;
        }
        m_seen = modal;
    }
    QTimer m_timer;
    QPointer<QWidget> m_seen;
};

TestFolder* current = nullptr;

} // namespace

void installUnexpectedMessageHandler()
{
    platform::setMessageHandler(unexpectedMessage);
    ModalGuard::instance();
    QTest::failOnWarning(QRegularExpression(QStringLiteral("^unexpected modal dialog")));
}

ModalDialogsExpected::ModalDialogsExpected()
{
    ++ModalGuard::instance().allowed;
}

ModalDialogsExpected::~ModalDialogsExpected()
{
    --ModalGuard::instance().allowed;
}

TestFolder::TestFolder(bool demo)
{
    const QString source = templateFolder(demo);
    QDir().mkpath(programFolder());
    QDir().mkpath(dataFolder());
    m_valid = QFile::copy(source + QStringLiteral("/causora.mdb"), dataFile())
              && QFile::copy(source + QStringLiteral("/caujog.mdw"),
                             dataFolder() + QStringLiteral("/caujog.mdw"));
    Session::instance().reset();
    Session::instance().catalogue = &m_catalogue;
    current = this;
    platform::setProgramFolder(programFolder());
    installUnexpectedMessageHandler();
}

TestFolder::~TestFolder()
{
    if (current == this) {
        current = nullptr;
        Session::instance().reset();
        platform::setProgramFolder(QString());
    }
    m_db.close();
}

QString TestFolder::programFolder() const
{
    return m_dir.filePath(QStringLiteral("program"));
}

QString TestFolder::dataFolder() const
{
    return m_dir.filePath(QStringLiteral("adat"));
}

QString TestFolder::dataFile() const
{
    return dataFolder() + QStringLiteral("/causora.mdb");
}

bool TestFolder::open()
{
    writeFile(programFolder() + QStringLiteral("/jog.ini"),
              store::settingsLine(dataFolder()).toLocal8Bit());
    return Session::instance().start(m_db);
}

platform::Database& database()
{
    Q_ASSERT(current);
    return current->db();
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(bytes);
}

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

MessageRecorder::MessageRecorder()
{
    platform::setMessageHandler([this](const platform::ShownMessage& m) {
        m_shown << m;
        if (!m_answers.empty()) {
            const int a = m_answers.front();
            m_answers.pop_front();
            return a;
        }
        if (m.style == platform::Confirmation)
            return int(platform::AnswerNo);
        if (m.style == platform::RestoreQuestion)
            return int(platform::AnswerYes);
        return int(platform::AnswerOk);
    });
}

MessageRecorder::~MessageRecorder()
{
    installUnexpectedMessageHandler();
}

QStringList MessageRecorder::texts() const
{
    QStringList t;
    for (const auto& m : m_shown)
        t << m.text;
    return t;
}

QList<QStringList> gridShown(const QTableView* grid, platform::ListSource& source)
{
    while (source.canReadMore())
        source.readMore();
    const QHeaderView* header = grid->horizontalHeader();
    QList<int> columns;
    QStringList headings;
    for (int visual = 0; visual < header->count(); ++visual) {
        const int c = header->logicalIndex(visual);
        if (!grid->isColumnHidden(c)) {
            columns << c;
            headings << grid->model()->headerData(c, Qt::Horizontal).toString();
        }
    }
    QList<QStringList> rows{headings};
    for (int r = 0; r < source.rowCount(); ++r) {
        QStringList values;
        for (const int c : columns)
            values << source.value(r, c).toString();
        rows << values;
    }
    return rows;
}

} // namespace testsupport
