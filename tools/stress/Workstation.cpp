#include "Workstation.h"

#include "store/Cases.h"
#include "store/Clients.h"

#include <algorithm>
#include <QIODevice>
#include <QTextStream>
#include <QThread>

namespace stress {

namespace {

using store::Written;

constexpr int pageRows = 25;
constexpr size_t seenKept = 200;

const QStringList surnames
        = {"Kovács",  "Szabó",    "Tóth",   "Nagy",    "Horváth", "Varga",  "Kiss",
           "Molnár",  "Németh",   "Farkas", "Balogh",  "Papp",    "Takács", "Juhász",
           "Lakatos", "Mészáros", "Oláh",   "Simon",   "Rácz",    "Fekete", "Ábrahám",
           "Ökrös",   "Czakó",    "Csonka", "Zsoldos", "Érsek",   "Úrházi"};
const QStringList givenNames
        = {"János",  "Éva",      "Péter", "Katalin",   "László", "Ildikó", "Zoltán", "Ágnes",
           "István", "Erzsébet", "Gábor", "Zsuzsanna", "Ödön",   "Csilla", "Tamás",  "Judit"};
const QStringList places
        = {"1051 Budapest", "1118 Budapest",  "6720 Szeged",  "4025 Debrecen",
           "7621 Pécs",     "9021 Győr",      "3525 Miskolc", "8000 Székesfehérvár",
           "2600 Vác",      "6000 Kecskemét", "9400 Sopron",  "3300 Eger"};
const QStringList streets = {"Fő utca",        "Kossuth Lajos utca", "Petőfi tér",
                             "Rákóczi út",     "Szent István körút", "Árpád fejedelem útja",
                             "Dózsa György út"};
const QStringList notes
        = {"Első tárgyalás kitűzve", "Iratok bekérve",           "Hiánypótlás beadva",
           "Egyezségi ajánlat",      "Fellebbezés előkészítése", "Ügyfél tájékoztatva",
           "Szakértő kirendelve",    "Végzés kézbesítve"};
const QStringList opponents = {"Magyar Állam",     "Budapest Főváros",  "Víz- és Csatornamű Zrt.",
                               "Kelemen Bertalan", "Ősz és Társa Kft.", "Nemzeti Adóhivatal"};

QString resultName(const Written& w)
{
    switch (w.result) {
    case Written::Stored:
        return QStringLiteral("stored");
    case Written::Gone:
        return QStringLiteral("gone");
    case Written::Exists:
        return QStringLiteral("exists");
    case Written::InUse:
        return QStringLiteral("in-use");
    case Written::Failed:
        break;
    }
    switch (w.failure) {
    case platform::Failure::Busy:
        return QStringLiteral("busy");
    case platform::Failure::Refused:
        return QStringLiteral("refused");
    default:
        return QStringLiteral("failed");
    }
}

} // namespace

QString Figures::toJson() const
{
    return QStringLiteral("{\"saves\": %1, \"adds\": %2, \"changes\": %3, \"deletes\": %4, "
                          "\"busy\": %5, \"busy_retried\": %6, \"busy_unhandled\": %7, "
                          "\"gone\": %8, \"in_use\": %9, \"client_gone\": %10, \"pages\": %11, "
                          "\"unexpected\": %12}")
            .arg(saves)
            .arg(adds)
            .arg(changes)
            .arg(deletes)
            .arg(busy)
            .arg(busyRetried)
            .arg(busyUnhandled)
            .arg(gone)
            .arg(inUse)
            .arg(clientGone)
            .arg(pages)
            .arg(unexpected);
}

Workstation::Workstation(platform::Database& db, const Settings& settings, QIODevice* log,
                         QTextStream* problems)
    : m_db(db)
    , m_settings(settings)
    , m_log(log)
    , m_problems(problems)
    , m_random(settings.seed)
    , m_clientList{platform::ListPager(db, store::Clients::list()), {}}
    , m_caseList{platform::ListPager(db, store::Cases::list()), {}}
{
}

bool Workstation::run()
{
    // The case screen's choices: case types and lawyers.
    const auto choices = [&](const QString& sql, QStringList* into) {
        return read(
                [&](QString* error) {
                    into->clear();
                    for (const auto& r : m_db.select(sql, {}, error))
                        *into << r.value(0).toString();
                    return error->isEmpty();
                },
                sql);
    };
    if (!choices(QStringLiteral("SELECT tipus FROM tipusok"), &m_types)
        || !choices(QStringLiteral("SELECT ugyvednev FROM ugyvedek"), &m_lawyers))
        return false;
    if (m_types.isEmpty() || m_lawyers.isEmpty()) {
        problem(QStringLiteral("the data file has no case types or lawyers"));
        return false;
    }
    while (m_settings.saves == 0 || m_figures.saves < m_settings.saves) {
        step();
        if (m_figures.unexpected > 0 || m_figures.busyUnhandled > 0)
            return false;
    }
    return true;
}

void Workstation::step()
{
    // Between two saves the user looks at the lists: the next rows of each list from where it
    // was left, or a search by a name's beginning.
    const int look = pick(10);
    if (look < 5)
        browse(m_clientList, QStringLiteral("ukod"));
    else if (look < 8)
        browse(m_caseList, QStringLiteral("ugyfelkod"));
    else if (look < 9)
        browseFiltered();

    const int what = pick(100);
    if (what < 28 || m_ownClients.empty())
        addClient();
    else if (what < 42)
        changeClient();
    else if (what < 50)
        removeClient();
    else if (what < 76)
        addCase();
    else if (m_ownCases.empty())
        addCase();
    else if (what < 89)
        changeCase();
    else
        removeCase();
    pause(0, m_settings.maxPauseMs);
}

bool Workstation::read(const std::function<bool(QString*)>& attempt, const QString& what)
{
    for (int tries = 1;; ++tries) {
        QString error;
        if (attempt(&error)) {
            if (tries > 1)
                ++m_figures.busyRetried;
            return true;
        }
        if (m_db.lastFailure() != platform::Failure::Busy) {
            ++m_figures.unexpected;
            problem(QStringLiteral("%1: %2").arg(what, error));
            return false;
        }
        ++m_figures.busy;
        if (tries >= m_settings.maxBusyTries) {
            ++m_figures.busyUnhandled;
            problem(QStringLiteral("%1: still busy after %2 tries").arg(what).arg(tries));
            return false;
        }
        pause(10, 60);
    }
}

bool Workstation::readPage(const platform::ListPager& pager, const QVariantList& after,
                           platform::Rows* rows)
{
    if (!read([&](QString* error) { return pager.page(after, pageRows, rows, nullptr, error); },
              QStringLiteral("list page")))
        return false;
    ++m_figures.pages;
    return true;
}

void Workstation::browse(HeldList& list, const QString& clientColumn)
{
    const int pages = 1 + pick(3);
    for (int i = 0; i < pages; ++i) {
        platform::Rows rows;
        if (!readPage(list.pager, list.position, &rows))
            return;
        for (const auto& r : rows) {
            if (!r.isNull(clientColumn))
                remember(r.value(clientColumn).toLongLong());
        }
        // At the end of the list the next look starts at the top again.
        if (int(rows.size()) < pageRows) {
            list.position.clear();
            return;
        }
        list.position = list.pager.orderValues(rows.back());
    }
}

void Workstation::browseFiltered()
{
    store::ClientFilter filter;
    filter.name = pickOf(surnames).left(3);
    const platform::ListPager pager(m_db, store::Clients::list(filter));
    platform::Rows rows;
    if (!readPage(pager, {}, &rows))
        return;
    for (const auto& r : rows)
        remember(r.value(QStringLiteral("ukod")).toLongLong());
}

void Workstation::remember(qlonglong client)
{
    if (m_seenClients.size() < seenKept) {
        m_seenClients.push_back(client);
        return;
    }
    m_seenClients[m_seenNext] = client;
    m_seenNext = (m_seenNext + 1) % seenKept;
}

qlonglong Workstation::pickClient()
{
    if (!m_ownClients.empty() && (m_seenClients.empty() || pick(2) == 0))
        return m_ownClients.at(size_t(pick(int(m_ownClients.size()))));
    if (m_seenClients.empty())
        return 0;
    return m_seenClients.at(size_t(pick(int(m_seenClients.size()))));
}

QVariantMap Workstation::clientValues(const QString& name)
{
    const QString place = pickOf(places);
    return {{QStringLiteral("unev1"), name},
            {QStringLiteral("uorszag"), QStringLiteral("Magyarország")},
            {QStringLiteral("uirsz"), place.left(4)},
            {QStringLiteral("uhely"), place.mid(5)},
            {QStringLiteral("uutca"),
             QStringLiteral("%1 %2.").arg(pickOf(streets)).arg(1 + pick(120))},
            {QStringLiteral("utel1"),
             QStringLiteral("06 %1 %2").arg(20 + pick(80)).arg(1000000 + pick(9000000))},
            {QStringLiteral("ucegprivat"), 0}};
}

void Workstation::addClient()
{
    const QString name = QStringLiteral("%1 %2 %3-%4")
                                 .arg(pickOf(surnames), pickOf(givenNames), m_settings.tag)
                                 .arg(++m_serial);
    const QVariantMap values = clientValues(name);
    const QStringList fields = {QStringLiteral("client"), QString(), name,
                                values.value(QStringLiteral("uhely")).toString(),
                                values.value(QStringLiteral("utel1")).toString()};
    log(QStringList{QStringLiteral("try"), QStringLiteral("add")} + fields);
    store::Clients clients(m_db);
    const Written w = save([&] { return clients.add(values); });
    if (!expected(w, {Written::Stored}, QStringLiteral("add client ") + name)) {
        logNot({QStringLiteral("add"), QStringLiteral("client"), name}, w);
        return;
    }
    QStringList done = fields;
    done[1] = w.key.toString();
    log(QStringList{QStringLiteral("add")} + done);
    m_ownClients.push_back(w.key.toLongLong());
    ++m_figures.adds;
    confirmed();
}

void Workstation::changeClient()
{
    const size_t index = size_t(pick(int(m_ownClients.size())));
    const qlonglong key = m_ownClients.at(index);
    // A new name now and then, so that the name's sort key is rewritten too.
    store::Clients clients(m_db);
    QString name;
    if (pick(4) == 0) {
        name = QStringLiteral("%1 %2 %3-%4")
                       .arg(pickOf(surnames), pickOf(givenNames), m_settings.tag)
                       .arg(++m_serial);
    } else {
        platform::Row row;
        if (!read(
                    [&](QString* error) {
                        row = clients.find(key, error);
                        return error->isEmpty();
                    },
                    QStringLiteral("read client %1").arg(key)))
            return;
        if (row.isEmpty()) {
            ++m_figures.gone;
            m_ownClients.erase(m_ownClients.begin() + ptrdiff_t(index));
            return;
        }
        name = row.text(QStringLiteral("unev1"));
    }
    QVariantMap values = clientValues(name);
    values.remove(QStringLiteral("ucegprivat"));
    const QStringList fields = {QStringLiteral("client"), QString::number(key), name,
                                values.value(QStringLiteral("uhely")).toString(),
                                values.value(QStringLiteral("utel1")).toString()};
    log(QStringList{QStringLiteral("try"), QStringLiteral("chg")} + fields);
    const Written w = save([&] { return clients.change(key, values); });
    // Another workstation may have deleted the client meanwhile.
    if (!expected(w, {Written::Stored, Written::Gone}, QStringLiteral("change client %1").arg(key))
        || w.result == Written::Gone) {
        logNot({QStringLiteral("chg"), QStringLiteral("client"), QString::number(key)}, w);
        if (w.result == Written::Gone) {
            ++m_figures.gone;
            m_ownClients.erase(m_ownClients.begin() + ptrdiff_t(index));
        }
        return;
    }
    log(QStringList{QStringLiteral("chg")} + fields);
    ++m_figures.changes;
    confirmed();
}

void Workstation::removeClient()
{
    // Mostly one of this workstation's own clients (some of them have cases); now and then any
    // client seen in the lists, which another workstation may be using or deleting too.
    const bool own = m_seenClients.empty() || pick(10) < 7;
    const size_t index = own ? size_t(pick(int(m_ownClients.size()))) : 0;
    const qlonglong key = own ? m_ownClients.at(index)
                              : m_seenClients.at(size_t(pick(int(m_seenClients.size()))));
    const QString keyText = QString::number(key);
    log({QStringLiteral("try"), QStringLiteral("del"), QStringLiteral("client"), keyText});
    store::Clients clients(m_db);
    const Written w = save([&] { return clients.remove(key); });
    if (!expected(w, {Written::Stored, Written::InUse, Written::Gone},
                  QStringLiteral("delete client ") + keyText)
        || w.result != Written::Stored) {
        logNot({QStringLiteral("del"), QStringLiteral("client"), keyText}, w);
        if (w.result == Written::InUse)
            ++m_figures.inUse;
        if (w.result == Written::Gone) {
            ++m_figures.gone;
            if (own)
                m_ownClients.erase(m_ownClients.begin() + ptrdiff_t(index));
        }
        return;
    }
    log({QStringLiteral("del"), QStringLiteral("client"), keyText});
    if (own)
        m_ownClients.erase(m_ownClients.begin() + ptrdiff_t(index));
    ++m_figures.deletes;
    confirmed();
}

void Workstation::addCase()
{
    const qlonglong client = pickClient();
    if (client == 0) {
        addClient();
        return;
    }
    const QString number = QStringLiteral("%1/%2").arg(++m_serial).arg(m_settings.tag);
    const QString note
            = QStringLiteral("%1 %2-%3").arg(pickOf(notes), m_settings.tag).arg(m_serial);
    const QString start = QStringLiteral("2024.%1.%2")
                                  .arg(1 + pick(12), 2, 10, QLatin1Char('0'))
                                  .arg(1 + pick(28), 2, 10, QLatin1Char('0'));
    const QVariantMap values = {{QStringLiteral("ugyszam"), number},
                                {QStringLiteral("ugyfelkod"), client},
                                {QStringLiteral("ugytipus"), pickOf(m_types)},
                                {QStringLiteral("ugyved"), pickOf(m_lawyers)},
                                {QStringLiteral("kezdet"), start},
                                {QStringLiteral("kezdete"), start},
                                {QStringLiteral("megjegyzes"), note},
                                {QStringLiteral("ellnev"), pickOf(opponents)},
                                {QStringLiteral("ellorszag"), QStringLiteral("Magyarország")}};
    const QStringList fields = {QStringLiteral("case"), number, QString::number(client), note};
    log(QStringList{QStringLiteral("try"), QStringLiteral("add")} + fields);
    store::Cases cases(m_db);
    const Written w = save([&] { return cases.add(values); });
    if (w.result == Written::Failed && w.failure == platform::Failure::Refused
        && clientWasDeleted(client)) {
        logNot({QStringLiteral("add"), QStringLiteral("case"), number}, w);
        return;
    }
    if (!expected(w, {Written::Stored}, QStringLiteral("add case ") + number)) {
        logNot({QStringLiteral("add"), QStringLiteral("case"), number}, w);
        return;
    }
    log(QStringList{QStringLiteral("add")} + fields);
    m_ownCases.push_back({number, client, note});
    ++m_figures.adds;
    confirmed();
}

void Workstation::changeCase()
{
    OwnCase& c = m_ownCases.at(size_t(pick(int(m_ownCases.size()))));
    const QString note
            = QStringLiteral("%1 %2-%3").arg(pickOf(notes), m_settings.tag).arg(++m_serial);
    QVariantMap values = {{QStringLiteral("megjegyzes"), note},
                          {QStringLiteral("ugyved"), pickOf(m_lawyers)},
                          {QStringLiteral("ellhely"), pickOf(places).mid(5)}};
    // Now and then the case moves to another client, who may be gone by the time it is saved.
    qlonglong client = c.client;
    if (pick(5) == 0) {
        const qlonglong other = pickClient();
        if (other != 0)
            client = other;
    }
    values.insert(QStringLiteral("ugyfelkod"), client);
    const QStringList fields = {QStringLiteral("case"), c.number, QString::number(client), note};
    log(QStringList{QStringLiteral("try"), QStringLiteral("chg")} + fields);
    store::Cases cases(m_db);
    const Written w = save([&] { return cases.change(c.number, values); });
    if (w.result == Written::Failed && w.failure == platform::Failure::Refused && client != c.client
        && clientWasDeleted(client)) {
        logNot({QStringLiteral("chg"), QStringLiteral("case"), c.number}, w);
        return;
    }
    // Only this workstation changes or deletes its cases: the case must be there.
    if (!expected(w, {Written::Stored}, QStringLiteral("change case ") + c.number)) {
        logNot({QStringLiteral("chg"), QStringLiteral("case"), c.number}, w);
        return;
    }
    log(QStringList{QStringLiteral("chg")} + fields);
    c.client = client;
    c.note = note;
    ++m_figures.changes;
    confirmed();
}

void Workstation::removeCase()
{
    const size_t index = size_t(pick(int(m_ownCases.size())));
    const QString number = m_ownCases.at(index).number;
    log({QStringLiteral("try"), QStringLiteral("del"), QStringLiteral("case"), number});
    store::Cases cases(m_db);
    const Written w = save([&] { return cases.remove(number); });
    if (!expected(w, {Written::Stored}, QStringLiteral("delete case ") + number)) {
        logNot({QStringLiteral("del"), QStringLiteral("case"), number}, w);
        return;
    }
    log({QStringLiteral("del"), QStringLiteral("case"), number});
    m_ownCases.erase(m_ownCases.begin() + ptrdiff_t(index));
    ++m_figures.deletes;
    confirmed();
}

Written Workstation::save(const std::function<Written()>& write)
{
    for (int tries = 1;; ++tries) {
        const Written w = write();
        if (w.result != Written::Failed || w.failure != platform::Failure::Busy) {
            if (tries > 1)
                ++m_figures.busyRetried;
            return w;
        }
        ++m_figures.busy;
        if (tries >= m_settings.maxBusyTries) {
            ++m_figures.busyUnhandled;
            problem(QStringLiteral("still busy after %1 tries: %2").arg(tries).arg(w.engineText));
            return w;
        }
        pause(10, 60);
    }
}

bool Workstation::expected(const Written& w, std::initializer_list<Written::Result> ok,
                           const QString& what)
{
    for (const Written::Result r : ok) {
        if (w.result == r)
            return true;
    }
    // A busy refusal after every try has been counted already.
    if (w.result == Written::Failed && w.failure == platform::Failure::Busy)
        return false;
    ++m_figures.unexpected;
    problem(QStringLiteral("%1: %2 %3").arg(what, resultName(w), w.engineText));
    return false;
}

bool Workstation::clientWasDeleted(qlonglong client)
{
    platform::Row row;
    if (!read(
                [&](QString* error) {
                    row = store::Clients(m_db).find(client, error);
                    return error->isEmpty();
                },
                QStringLiteral("read client %1").arg(client))
        || !row.isEmpty())
        return false;
    ++m_figures.clientGone;
    m_ownClients.erase(std::remove(m_ownClients.begin(), m_ownClients.end(), client),
                       m_ownClients.end());
    return true;
}

void Workstation::log(const QStringList& fields)
{
    // One write per line: the line is in the file as soon as this returns.
    const QByteArray line = fields.join(u'\t').toUtf8() + '\n';
    if (m_log->write(line) != line.size()) {
        ++m_figures.unexpected;
        problem(QStringLiteral("cannot write the log: %1").arg(m_log->errorString()));
    }
}

void Workstation::logNot(const QStringList& what, const Written& w)
{
    log(QStringList{QStringLiteral("not")} + what + QStringList{resultName(w)});
}

void Workstation::problem(const QString& text)
{
    *m_problems << m_settings.tag << ": " << text << Qt::endl;
}

void Workstation::pause(int minMs, int maxMs)
{
    const int ms = minMs + (maxMs > minMs ? pick(maxMs - minMs + 1) : 0);
    if (ms > 0)
        QThread::msleep(ulong(ms));
}

void Workstation::confirmed()
{
    ++m_figures.saves;
}

} // namespace stress
