#pragma once

#include "platform/ListQuery.h"
#include "store/Written.h"

#include <functional>
#include <vector>
#include <QRandomGenerator>
#include <QStringList>

class QIODevice;
class QTextStream;

namespace stress {

// What one played workstation is told to do.
struct Settings
{
    // Marks this workstation's rows: case numbers "<n>/<tag>", client names ending "<tag>-<n>".
    QString tag;
    int saves = 100; // confirmed saves before it stops; 0 works until the process is ended
    quint32 seed = 1;
    int maxPauseMs = 3; // the longest pause between two steps
    int maxBusyTries = 20; // tries of one step refused busy before it counts as unhandled
};

// What happened, counted.
struct Figures
{
    int saves = 0;
    int adds = 0;
    int changes = 0;
    int deletes = 0;
    int busy = 0; // steps the engine refused busy (saves and list pages)
    int busyRetried = 0; // steps that went through on a later try after a busy refusal
    int busyUnhandled = 0; // steps still refused busy after every try
    int gone = 0; // a change or delete found the row deleted by another workstation
    int inUse = 0; // a client delete refused because cases name the client
    int clientGone = 0; // a case add or move refused because its client was deleted meanwhile
    int pages = 0; // list pages read
    int unexpected = 0; // any other outcome
    QString toJson() const;
};

// Plays one workstation on an open data file: does what the client and case screens do, in
// a random order, through the store classes, and keeps its two lists open between steps.
//
// Every save is written to the log before it starts ("try ...") and again once it is stored
// ("add client ...", "chg case ...", "del client ..."), or with the reason it was not
// ("not ..."). Each line is written to the file at once, so a log cut short by a killed
// process still holds every save that had been confirmed.
class Workstation
{
public:
    Workstation(platform::Database& db, const Settings& settings, QIODevice* log,
                QTextStream* problems);
    // Works until the saves are made. False when a step ended in a way no screen expects.
    bool run();
    const Figures& figures() const { return m_figures; }

private:
    // A list the user keeps open: where it stands, and nothing held in the engine.
    struct HeldList
    {
        platform::ListPager pager;
        QVariantList position;
    };
    struct OwnCase
    {
        QString number;
        qlonglong client;
        QString note;
    };

    void step();
    void browse(HeldList& list, const QString& clientColumn);
    void browseFiltered();
    void addClient();
    void changeClient();
    void removeClient();
    void addCase();
    void changeCase();
    void removeCase();

    // Runs a save until the engine no longer refuses it busy, pausing a moment between tries,
    // as a user does who is told that another workstation holds the file.
    store::Written save(const std::function<store::Written()>& write);
    // Runs a read the same way; false when it could not be read.
    bool read(const std::function<bool(QString*)>& attempt, const QString& what);
    bool readPage(const platform::ListPager& pager, const QVariantList& after,
                  platform::Rows* rows);
    // True when the outcome is what the screens expect; anything else is reported.
    bool expected(const store::Written& w, std::initializer_list<store::Written::Result> ok,
                  const QString& what);
    // A case refused because its client is gone: true when the client is indeed gone.
    bool clientWasDeleted(qlonglong client);

    void log(const QStringList& fields);
    void logNot(const QStringList& what, const store::Written& w);
    void problem(const QString& text);
    void pause(int minMs, int maxMs);
    int pick(int size) { return int(m_random.bounded(quint32(size))); }
    QString pickOf(const QStringList& values) { return values.at(pick(int(values.size()))); }
    qlonglong pickClient();
    QVariantMap clientValues(const QString& name);
    void remember(qlonglong client);
    void confirmed();

    platform::Database& m_db;
    Settings m_settings;
    QIODevice* m_log;
    QTextStream* m_problems;
    QRandomGenerator m_random;
    Figures m_figures;
    HeldList m_clientList;
    HeldList m_caseList;
    QStringList m_types;
    QStringList m_lawyers;
    std::vector<qlonglong> m_ownClients;
    std::vector<OwnCase> m_ownCases;
    std::vector<qlonglong> m_seenClients; // client keys read from the lists lately
    size_t m_seenNext = 0;
    int m_serial = 0;
};

} // namespace stress
