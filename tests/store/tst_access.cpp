// Opening the data file as the engine does: the account file and the data file's own password,
// the marks that tell the two files from others, and a save a stopped workstation left behind.
#include "TestSupport.h"

#include "store/Access.h"
#include "store/Credentials.h"

#include <memory>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

using platform::Database;
using platform::Failure;

class tst_access : public QObject
{
    Q_OBJECT
private slots:
    void init() { m_folder = std::make_unique<testsupport::TestFolder>(); }
    void cleanup() { m_folder.reset(); }
    void refusesBadCredentialsAndForeignFiles_data()
    {
        // One thing changed from a good opening: "user=", "password=" or "connect=" replaces that
        // value; "data:<bytes>" or "account:<bytes>" overwrites that file; "swap" names each file
        // as the other; "no account file" removes it.
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("expected"); // <data> and <account> stand for the files' paths
        QTest::addColumn<Failure>("failure");
        const QString badAccount = store::accountOrPasswordError();
        const QString badPassword = "Not a valid password.";
        const QString notOurs = "Unrecognized database format '%1'.";
        QTest::addRow("wrong account") << "user=Kiss Béla" << badAccount << Failure::Refused;
        QTest::addRow("wrong account password")
                << "password=vm4818" << badAccount << Failure::Refused;
        QTest::addRow("wrong database password")
                << "connect=pwd=xx" << badPassword << Failure::Refused;
        QTest::addRow("no database password") << "connect=uid=x" << badPassword << Failure::Refused;
        QTest::addRow("text file") << "data:path=C:\\x\r\n"
                                   << notOurs.arg("<data>") << Failure::NotCausora;
        QTest::addRow("empty file") << "data:" << notOurs.arg("<data>") << Failure::NotCausora;
        QTest::addRow("text account file") << "account:[accounts]\r\n"
                                           << notOurs.arg("<account>") << Failure::NotCausora;
        // Each file is a database of the program, but not of the kind it is taken for.
        QTest::addRow("files swapped") << "swap" << notOurs.arg("<account>") << Failure::NotCausora;
        QTest::addRow("no account file") << "no account file"
                                         << "Could not find file '<account>'." << Failure::Missing;
    }
    void refusesBadCredentialsAndForeignFiles()
    {
        QFETCH(QString, change);
        QFETCH(QString, expected);
        QFETCH(Failure, failure);
        QString account = store::databaseAccount();
        QString password = store::databasePassword();
        QString connect = store::connectText();
        QString file = m_folder->dataFile();
        QString accounts = accountFile();
        const QString value = change.section(QRegularExpression("[=:]"), 1);
        if (change.startsWith("user="))
            account = value;
        else if (change.startsWith("password="))
            password = value;
        else if (change.startsWith("connect="))
            connect = value;
        else if (change.startsWith("data:"))
            testsupport::writeFile(file, value.toLatin1());
        else if (change.startsWith("account:"))
            testsupport::writeFile(accounts, value.toLatin1());
        else if (change == "swap")
            std::swap(file, accounts);
        else if (change == "no account file")
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

    void opensAfterAWorkstationStoppedInTheMiddleOfASave()
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

private:
    QString accountFile() const { return m_folder->dataFolder() + "/caujog.mdw"; }
    std::unique_ptr<testsupport::TestFolder> m_folder;
};

QTEST_MAIN(tst_access)
#include "tst_access.moc"
