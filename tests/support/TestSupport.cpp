#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "platform/Display.h"
#include "platform/ListSource.h"
#include "session/Session.h"
#include "store/Prepare.h"
#include "store/Settings.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QListWidget>
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
// The answer of a box's default button.
int defaultAnswer(const platform::ShownMessage& m)
{
    if (m.style == platform::Confirmation)
        return platform::AnswerNo;
    return m.style == platform::RestoreQuestion ? platform::AnswerYes : platform::AnswerOk;
}
// With no recorder in place a box must never wait for a user: it is reported and answered with
// its default button.
int unexpectedMessage(const platform::ShownMessage& m)
{
    qWarning("message box: %s", qPrintable(m.text));
    return defaultAnswer(m);
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

MessageRecorder::MessageRecorder(std::initializer_list<int> answers) : m_answers(answers)
{
    platform::setMessageHandler([this](const platform::ShownMessage& m) {
        m_shown << m;
        if (m_answers.empty())
            return defaultAnswer(m);
        const int a = m_answers.front();
        m_answers.pop_front();
        return a;
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

void deleteWindows(const QWidget* keep)
{
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w != keep && !w->parentWidget())
            w->deleteLater();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void type(QWidget* w, const QString& text)
{
    for (const QChar c : text) {
        const Qt::Key key = c == u'\b' ? Qt::Key_Backspace : Qt::Key(c.toUpper().unicode());
        QTest::sendKeyEvent(QTest::Click, w, key, QString(c), {});
    }
}

void leave(QWidget* w, const QString& typed)
{
    w->setFocus();
    type(w, typed);
    QTest::keyClick(w, Qt::Key_Tab);
}

void clickItem(QListWidget* list, const QString& text)
{
    const QList<QListWidgetItem*> found = list->findItems(text, Qt::MatchExactly);
    QVERIFY2(!found.isEmpty(), qPrintable(text));
    list->scrollToItem(found.first());
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(found.first()).center());
}

QStringList shown(const QWidget* screen, const QStringList& names)
{
    QStringList texts;
    for (const QString& name : names) {
        const QWidget* w = screen->findChild<QWidget*>(name);
        const auto* box = qobject_cast<const QComboBox*>(w);
        const QVariant text = w ? w->property("text") : QVariant();
        texts << (box ? box->currentText() : text.isValid() ? text.toString() : "?");
    }
    return texts;
}

QList<int> columnWidths(const QTableView* grid)
{
    QList<int> widths;
    for (int c = 0; c < grid->model()->columnCount(); ++c)
        if (!grid->isColumnHidden(c))
            widths << grid->columnWidth(c);
    return widths;
}

QList<int> pixels(QList<int> twips)
{
    for (int& t : twips)
        t = platform::twipsToPixels(t);
    return twips;
}

QStringList messages(QStringList codes)
{
    for (QString& code : codes)
        code = uzenetszoveg(code);
    return codes;
}

QStringList values(platform::Database& db, const QString& sql, const QVariantList& params)
{
    QStringList texts;
    for (const platform::Row& row : db.select(sql, params))
        for (int i = 0; i < row.count(); ++i)
            texts << row.value(i).toString();
    return texts;
}

} // namespace testsupport
