// Prepares a large data folder for the benchmarks: 100,000 clients, 200,000 cases with the
// office's kinds of case numbers (9, 10, 10/A, 2019/123) and 3,500 postal codes.
#include "platform/Database.h"
#include "store/Prepare.h"
#include "store/Upgrade.h"

#include <QCoreApplication>
#include <QTextStream>

namespace {

const char* const surnames[]
        = {"Kovács", "Nagy",   "Tóth",   "Szabó",  "Horváth",  "Varga",  "Kiss",    "Molnár",
           "Németh", "Farkas", "Balogh", "Papp",   "Takács",   "Juhász", "Lakatos", "Mészáros",
           "Oláh",   "Simon",  "Rácz",   "Fekete", "Szilágyi", "Török",  "Fehér",   "Balázs",
           "Gál",    "Kis",    "Szűcs",  "Kocsis", "Orsós",    "Pintér", "Fodor",   "Szalai",
           "Sipos",  "Magyar", "Lukács", "Gulyás", "Biró",     "Király", "Katona",  "László",
           "Jakab",  "Bogdán", "Ábel",   "Ödön",   "Csonka"};
const char* const givenNames[]
        = {"János",  "István", "László",    "József", "Zoltán",   "Sándor",  "Gábor",
           "Ferenc", "Attila", "Péter",     "Mária",  "Erzsébet", "Katalin", "Ilona",
           "Éva",    "Anna",   "Zsuzsanna", "Margit", "Judit",    "Ágnes",   "Csaba",
           "Tibor",  "Ildikó", "Krisztina", "Andrea", "Gyula"};
const char* const places[]
        = {"Budapest",    "Debrecen",  "Szeged",         "Miskolc",     "Pécs",    "Győr",
           "Nyíregyháza", "Kecskemét", "Székesfehérvár", "Szombathely", "Szolnok", "Érd",
           "Tatabánya",   "Kaposvár",  "Sopron",         "Veszprém"};
const char* const types[] = {"Polgári ügy", "Cégügy",      "Munkajogi ügy", "Családjogi ügy",
                             "Büntetőügy",  "Ingatlanügy", "Öröklési ügy",  "Közigazgatási ügy"};

template<size_t N>
const char* pick(const char* const (&list)[N], quint64 n)
{
    return list[n % N];
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTextStream err(stderr);
    if (argc != 2) {
        err << "usage: causora-bench-generate <folder>\n";
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    QString error;
    if (!store::prepareDataFolder(folder, false, &error)) {
        err << error << "\n";
        return 1;
    }
    platform::Database db;
    if (!db.openUnchecked(folder + QStringLiteral("/causora.mdb"), &error)) {
        err << error << "\n";
        return 1;
    }
    platform::Transaction t(db, &error);
    for (const char* type : types)
        db.exec(QStringLiteral("INSERT INTO tipusok (tipus) VALUES (?)"),
                {QString::fromUtf8(type)});

    const int clients = 100000;
    for (int i = 1; i <= clients; ++i) {
        const quint64 h = quint64(i) * 2654435761u;
        QString name = QStringLiteral("%1 %2").arg(QString::fromUtf8(pick(surnames, h >> 7)),
                                                   QString::fromUtf8(pick(givenNames, h >> 13)));
        if (i % 7 == 0)
            name = QStringLiteral("%1 és Társa Kft.")
                           .arg(QString::fromUtf8(pick(surnames, h >> 5)));
        else if (i % 11 == 0)
            name = name.toLower();
        const bool noPlace = i % 97 == 0;
        if (!db.exec(QStringLiteral("INSERT INTO ugyfelek (ukod, unev1, uorszag, uirsz, uhely,"
                                    " uutca, utel1, uemail, ucegprivat)"
                                    " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                     {i, name, QStringLiteral("Magyarország"), QString::number(1000 + h % 9000),
                      noPlace ? QVariant() : QString::fromUtf8(pick(places, h >> 3)),
                      QStringLiteral("Fő utca %1.").arg(1 + h % 120),
                      QStringLiteral("06 1 %1").arg(1000000 + h % 9000000),
                      QStringLiteral("ugyfel%1@example.hu").arg(i), i % 7 == 0},
                     &error)) {
            err << error << "\n";
            return 1;
        }
    }

    // A third of the cases carry a running number, some with a letter after it (10/A); the
    // others a year and a number within the year (2019/123).
    int plain = 0;
    int perYear[40] = {};
    for (int i = 0; i < 200000; ++i) {
        const quint64 h = quint64(i + 1) * 40503u;
        QString number;
        int year;
        if (i % 10 < 3) {
            number = i % 20 == 0 && plain > 0 ? QStringLiteral("%1/A").arg(plain)
                                              : QString::number(++plain);
            year = 1990 + int(plain / 2000);
        } else {
            year = 1995 + int(h % 31);
            number = QStringLiteral("%1/%2").arg(year).arg(++perYear[year - 1995]);
        }
        const QString start = QStringLiteral("%1.%2.%3")
                                      .arg(year)
                                      .arg(1 + h % 12, 2, 10, QChar(u'0'))
                                      .arg(1 + h % 28, 2, 10, QChar(u'0'));
        const QVariant opponent = i % 5 == 0 ? QVariant()
                                             : QVariant(QStringLiteral("%1 %2").arg(
                                                     QString::fromUtf8(pick(surnames, h >> 4)),
                                                     QString::fromUtf8(pick(givenNames, h >> 9))));
        if (!db.exec(QStringLiteral(
                             "INSERT INTO ugyek (ugyszam, ugyfelkod, ugytipus, ugyved, kezdet,"
                             " megjegyzes, ellnev, ellhely) VALUES (?, ?, ?, ?, ?, ?, ?, ?)"),
                     {number, int(1 + h % clients), QString::fromUtf8(pick(types, h >> 2)),
                      QStringLiteral("Dr. Szabó Katalin"), start,
                      QStringLiteral("Megjegyzés %1").arg(i), opponent,
                      QString::fromUtf8(pick(places, h >> 6))},
                     &error)) {
            err << error << "\n";
            return 1;
        }
    }

    for (int i = 0; i < 3500; ++i)
        db.exec(QStringLiteral("INSERT INTO irsz (orszag, irsz, hely) VALUES (?, ?, ?)"),
                {QStringLiteral("Magyarország"), QString::number(1000 + i * 2),
                 QStringLiteral("%1 %2").arg(QString::fromUtf8(pick(places, i))).arg(i / 16)});
    if (!t.commit(&error)) {
        err << error << "\n";
        return 1;
    }
    // The clients' sort keys, as the program's first start would write them.
    store::fillClientSortKeys(db);
    db.exec(QStringLiteral("ANALYZE"));
    return 0;
}
