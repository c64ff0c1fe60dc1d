// Opening the data file as the engine does: the account file and the data file's own password,
// the marks that tell the two files from others, and a save a stopped workstation left behind.
#include "TestSupport.h"

#include "store/Access.h"
#include "store/Credentials.h"

#include <memory>
#include <QDir>
#include <QFileInfo>
#include <QTest>

using platform::Database;
using platform::Failure;

class tst_access : public QObject
{
    Q_OBJECT
private slots:
    void init() { m_folder = std::make_unique<testsupport::TestFolder>(); }
    void cleanup() { m_folder.reset(); }
    void refusesBadCredentialsAndForeignFiles_data();
    void refusesBadCredentialsAndForeignFiles();
    void opensAfterAWorkstationStoppedInTheMiddleOfASave();

private:
    QString accountFile() const { return m_folder->dataFolder() + "/caujog.mdw"; }
    std::unique_ptr<testsupport::TestFolder> m_folder;
};

void tst_access::refusesBadCredentialsAndForeignFiles_data()
{
    QTest::addColumn<QString>("account");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("connect");
    // What is put in place of a file: "data:<bytes>" or "account:<bytes>" overwrites it,
    // "swap" names each file as the other, "no account file" removes it.
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QString>("expected"); // <data> and <account> stand for the files' paths
    QTest::addColumn<Failure>("failure");
    const QString account = store::databaseAccount();
    const QString badAccount = store::accountOrPasswordError();
    QTest::newRow("wrong account") << "Kiss Béla"
                                   << "vm4817"
                                   << "pwd=vm4817"
                                   << "" << badAccount << Failure::Refused;
    QTest::newRow("wrong account password") << account << "vm4818"
                                            << "pwd=vm4817"
                                            << "" << badAccount << Failure::Refused;
    QTest::newRow("wrong database password") << account << "vm4817"
                                             << "pwd=xx"
                                             << ""
                                             << "Not a valid password." << Failure::Refused;
    QTest::newRow("no database password") << account << "vm4817"
                                          << "uid=x"
                                          << ""
                                          << "Not a valid password." << Failure::Refused;
    QTest::newRow("text file") << account << "vm4817"
                               << "pwd=vm4817"
                               << "data:path=C:\\x\r\n"
                               << "Unrecognized database format '<data>'." << Failure::NotCausora;
    QTest::newRow("empty file") << account << "vm4817"
                                << "pwd=vm4817"
                                << "data:"
                                << "Unrecognized database format '<data>'." << Failure::NotCausora;
    QTest::newRow("text account file")
            << account << "vm4817"
            << "pwd=vm4817"
            << "account:[accounts]\r\n"
            << "Unrecognized database format '<account>'." << Failure::NotCausora;
    // Each file is a database of the program, but not of the kind it is taken for.
    QTest::newRow("files swapped")
            << account << "vm4817"
            << "pwd=vm4817"
            << "swap"
            << "Unrecognized database format '<account>'." << Failure::NotCausora;
    QTest::newRow("no account file") << account << "vm4817"
                                     << "pwd=vm4817"
                                     << "no account file"
                                     << "Could not find file '<account>'." << Failure::Missing;
}

void tst_access::refusesBadCredentialsAndForeignFiles()
{
    QFETCH(QString, account);
    QFETCH(QString, password);
    QFETCH(QString, connect);
    QFETCH(QString, setup);
    QFETCH(QString, expected);
    QFETCH(Failure, failure);
    QString file = m_folder->dataFile();
    QString accounts = accountFile();
    if (setup.startsWith("data:"))
        testsupport::writeFile(file, setup.mid(5).toLatin1());
    else if (setup.startsWith("account:"))
        testsupport::writeFile(accounts, setup.mid(8).toLatin1());
    else if (setup == "swap")
        std::swap(file, accounts);
    else if (setup == "no account file")
        QVERIFY(QFile::remove(accounts));
    expected.replace("<data>", file).replace("<account>", accounts);
    const QByteArray dataBefore = testsupport::readFile(file);
    const QByteArray accountsBefore = testsupport::readFile(accounts);
    const QDateTime modified = QFileInfo(file).lastModified();

    Database db;
    QString error;
    QVERIFY(!store::openDataFile(db, file, accounts, account, password, connect, &error));
    QCOMPARE(error, expected);
    QCOMPARE(db.lastFailure(), failure);
    QVERIFY(!db.isOpen());
    // Nothing was written to the files that failed to open.
    QCOMPARE(testsupport::readFile(file), dataBefore);
    QCOMPARE(testsupport::readFile(accounts), accountsBefore);
    QCOMPARE(QFileInfo(file).lastModified(), modified);
    QVERIFY(!QFileInfo::exists(file + "-journal"));
    QVERIFY(!QFileInfo::exists(accounts + "-journal"));
}

void tst_access::opensAfterAWorkstationStoppedInTheMiddleOfASave()
{
    // The files as a workstation killed during a save leaves them: the data file already
    // holding part of the save (a small cache spills it early) and the journal holding what the
    // save overwrote.
    QVERIFY(m_folder->open());
    Database& db = m_folder->db();
    const QString folder = m_folder->dataFolder();
    const QString crashed = m_folder->root() + "/crashed";
    QVERIFY(QDir().mkpath(crashed));
    const double before = db.scalar("SELECT total(length(uzen1)) FROM uzenetek").toDouble();
    QVERIFY(db.exec("PRAGMA cache_size = 2"));
    QVERIFY(db.begin());
    // Long enough to fill more pages than the cache holds, however many messages there are.
    QVERIFY(db.exec("UPDATE uzenetek SET uzen1 = uzen1 || ?", {QString(2000, u'x')}));
    for (const QString name : {"causora.mdb", "causora.mdb-journal", "caujog.mdw"})
        QVERIFY(QFile::copy(folder + '/' + name, crashed + '/' + name));
    db.rollback();
    QVERIFY(testsupport::readFile(crashed + "/causora.mdb")
            != testsupport::readFile(m_folder->dataFile()));

    // The next workstation gets in, and finds the file as it was before the broken save.
    Database next;
    QString error;
    QVERIFY2(store::openDataFile(next, crashed + "/causora.mdb", crashed + "/caujog.mdw",
                                 store::databaseAccount(), store::databasePassword(),
                                 store::connectText(), &error),
             qPrintable(error));
    QVERIFY(!next.isReadOnly());
    QCOMPARE(next.scalar("SELECT total(length(uzen1)) FROM uzenetek").toDouble(), before);
    QVERIFY(!QFileInfo::exists(crashed + "/causora.mdb-journal"));
}

QTEST_MAIN(tst_access)
#include "tst_access.moc"
