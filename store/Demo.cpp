#include "store/Prepare.h"

namespace store {

namespace {

struct DemoClient
{
    const char* name;
    const char* name2;
    const char* country;
    const char* postcode;
    const char* place;
    const char* street;
    const char* phone;
    const char* email;
    bool company;
};

// Sample clients: companies and private persons, mostly Hungarian, a few Austrian.
const DemoClient demoClients[] = {
        {"Kovács János", "", "Magyarország", "1118", "Budapest", "Ménesi út 12.", "06 1 385 2211",
         "kovacs.janos@freemail.hu", false},
        {"kovács és Társa Bt.", "Építőipari szolgáltatás", "Magyarország", "6720", "Szeged",
         "Kárász utca 6.", "06 62 420 118", "iroda@kovacstarsa.hu", true},
        {"Ábel Ferenc", "", "Magyarország", "4025", "Debrecen", "Piac utca 21.", "06 52 311 908",
         "", false},
        {"Csaba Ilona", "", "Magyarország", "7621", "Pécs", "Király utca 40.", "06 72 510 332",
         "csaba.ilona@gmail.com", false},
        {"Cecília Kft.", "Kereskedelem", "Magyarország", "9021", "Győr", "Baross Gábor út 15.",
         "06 96 312 440", "info@ceciliakft.hu", true},
        {"Oszkár Tibor", "", "Magyarország", "3525", "Miskolc", "Széchenyi István út 77.",
         "06 46 412 005", "", false},
        {"Ödön Gyula", "", "Magyarország", "8000", "Székesfehérvár", "Fő utca 3.", "06 22 329 170",
         "odon.gyula@t-online.hu", false},
        {"Zoltán Erzsébet", "", "Magyarország", "1051", "Budapest", "Október 6. utca 19.",
         "06 1 317 4420", "", false},
        {"Nagy és Fia Zrt.", "Gépgyártás", "Magyarország", "2600", "Vác", "Széchenyi utca 9.",
         "06 27 315 600", "titkarsag@nagyesfia.hu", true},
        {"Tóth Katalin", "", "Magyarország", "6000", "Kecskemét", "Rákóczi út 5.", "06 76 481 212",
         "toth.kata@citromail.hu", false},
        {"Szabó Péter", "", "Magyarország", "5000", "Szolnok", "Baross út 22.", "06 56 420 901", "",
         false},
        {"Horváth Anna", "", "Magyarország", "9400", "Sopron", "Várkerület 48.", "06 99 312 774",
         "horvath.anna@gmail.com", false},
        {"Molnár Építő Kft.", "", "Magyarország", "2000", "Szentendre", "Dumtsa Jenő utca 8.",
         "06 26 310 455", "molnarepito@molnarepito.hu", true},
        {"Varga Lajos", "", "Magyarország", "8200", "Veszprém", "Óváros tér 2.", "06 88 423 118",
         "", false},
        {"Farkas Mária", "", "Magyarország", "7400", "Kaposvár", "Fő utca 31.", "06 82 512 090",
         "farkas.maria@freemail.hu", false},
        {"Huber GmbH", "Holzhandel", "Ausztria", "1010", "Wien", "Kärntner Straße 21",
         "+43 1 512 4411", "office@huber-holz.at", true},
        {"Gruber Johann", "", "Ausztria", "8010", "Graz", "Herrengasse 9", "+43 316 822 310", "",
         false},
        {"Papp Zsuzsanna", "", "Magyarország", "1137", "Budapest", "Pozsonyi út 38.",
         "06 1 349 2277", "papp.zsuzsa@gmail.com", false},
        {"Balogh Sándor", "", "Magyarország", "3300", "Eger", "Dobó István tér 6.", "06 36 413 550",
         "", false},
        {"Kiss és Kiss Kft.", "Ingatlanforgalmazás", "Magyarország", "1062", "Budapest",
         "Andrássy út 66.", "06 1 354 1020", "kiss@kisskiss.hu", true},
        {"Lakatos Béla", "", "Magyarország", "4400", "Nyíregyháza", "Kossuth tér 1.",
         "06 42 310 221", "", false},
        {"Juhász Éva", "", "Magyarország", "6720", "Szeged", "Tisza Lajos körút 50.",
         "06 62 425 630", "juhasz.eva@citromail.hu", false},
        {"Mészáros Gábor", "", "Magyarország", "9700", "Szombathely", "Fő tér 14.", "06 94 511 402",
         "", false},
        {"Simon Judit", "", "Magyarország", "2400", "Dunaújváros", "Vasmű út 10.", "06 25 411 830",
         "simon.judit@gmail.com", false},
        {"Fekete Logisztika Kft.", "", "Magyarország", "2040", "Budaörs", "Szabadság út 117.",
         "06 23 420 010", "info@feketelog.hu", true},
};

struct DemoCase
{
    const char* number;
    int client; // index into demoClients
    const char* type;
    const char* lawyer;
    const char* start;
    const char* end;
    const char* opponent;
    const char* opponentPlace;
    const char* remark;
};

const DemoCase demoCases[] = {
        {"9", 0, "Polgári ügy", "Dr. Szabó Katalin", "2007.10.26", "", "Lakásszövetkezet Ménesi út",
         "Budapest", "Közös költség vita"},
        {"10", 1, "Cégügy", "Dr. Németh Gábor", "2007.11.05", "2008.03.14", "", "",
         "Társasági szerződés módosítása"},
        {"10/A", 1, "Cégügy", "Dr. Németh Gábor", "2008.01.10", "", "", "",
         "Cégbírósági változásbejegyzés"},
        {"11", 2, "Munkajogi ügy", "Dr. Szabó Katalin", "2008.02.18", "", "Hajdú Bútor Kft.",
         "Debrecen", "Jogellenes felmondás"},
        {"12", 3, "Családjogi ügy", "Dr. Horváth Péter", "2008.04.02", "2009.06.30", "Csaba Ferenc",
         "Pécs", "Gyermekelhelyezés"},
        {"25", 4, "Polgári ügy", "Dr. Németh Gábor", "2009.09.21", "", "Rába Trade Zrt.", "Győr",
         "Szállítási szerződés, kötbér"},
        {"2019/123", 5, "Büntetőügy", "Dr. Horváth Péter", "2019.05.13", "", "", "",
         "Védelem, könnyű testi sértés"},
        {"2019/124", 6, "Ingatlanügy", "Dr. Szabó Katalin", "2019.05.20", "2019.08.01",
         "Fehérvár Ingatlan Kft.", "Székesfehérvár", "Adásvételi szerződés"},
        {"2020/7", 7, "Öröklési ügy", "Dr. Szabó Katalin", "2020.01.15", "", "Zoltán Béla",
         "Budapest", "Hagyatéki eljárás"},
        {"2020/31", 8, "Cégügy", "Dr. Németh Gábor", "2020.03.09", "", "", "", "Végelszámolás"},
        {"2021/5", 9, "Polgári ügy", "Dr. Horváth Péter", "2021.02.01", "",
         "Alföldi Biztosító Zrt.", "Kecskemét", "Kártérítés"},
        {"2021/18", 10, "Munkajogi ügy", "Dr. Szabó Katalin", "2021.04.12", "2021.12.20",
         "Tisza Gép Kft.", "Szolnok", "Munkabér-követelés"},
        {"2022/3", 11, "Családjogi ügy", "Dr. Horváth Péter", "2022.01.24", "", "Horváth István",
         "Sopron", "Házassági vagyonjogi per"},
        {"2022/44", 12, "Ingatlanügy", "Dr. Németh Gábor", "2022.06.06", "",
         "Szentendre Város Önkormányzata", "Szentendre", "Építési engedély"},
        {"2022/45", 15, "Polgári ügy", "Dr. Németh Gábor", "2022.06.20", "", "Dunamenti Fa Kft.",
         "Győr", "Nemzetközi adásvétel"},
        {"2023/2", 16, "Polgári ügy", "Dr. Szabó Katalin", "2023.01.09", "", "Pannon Autó Kft.",
         "Sopron", "Szavatossági igény"},
        {"2023/19", 17, "Öröklési ügy", "Dr. Horváth Péter", "2023.03.27", "", "Papp Levente",
         "Budapest", "Végrendelet érvényessége"},
        {"2024/8", 19, "Ingatlanügy", "Dr. Németh Gábor", "2024.02.05", "",
         "Andrássy Lakópark Kft.", "Budapest", "Bérleti szerződés felmondása"},
        {"2024/51", 21, "Polgári ügy", "Dr. Szabó Katalin", "2024.09.16", "", "Szegedi Vízmű Zrt.",
         "Szeged", "Díjvita"},
        {"2025/12", 24, "Cégügy", "Dr. Németh Gábor", "2025.03.03", "", "", "", "Tőkeemelés"},
        {"2025/13", 0, "Polgári ügy", "Dr. Horváth Péter", "2025.03.10", "", "Budai Parkoló Kft.",
         "Budapest", "Birtokvédelem"},
        {"A1", 13, "Polgári ügy", "Dr. Szabó Katalin", "2006.05.30", "2007.02.28",
         "Veszprémi Ker. Kft.", "Veszprém", "Régi ügy, iktatószám betűvel"},
};

struct DemoPartner
{
    const char* name;
    const char* country;
    const char* postcode;
    const char* place;
    const char* street;
    const char* phone;
    const char* email;
};

const DemoPartner demoPartners[] = {
        {"Budapesti Ügyvédi Kamara", "Magyarország", "1055", "Budapest", "Szalay utca 7.",
         "06 1 311 5011", "info@bpbar.hu"},
        {"Fővárosi Törvényszék", "Magyarország", "1055", "Budapest", "Markó utca 27.",
         "06 1 354 6000", ""},
        {"Dr. Fodor Mihály közjegyző", "Magyarország", "6720", "Szeged", "Széchenyi tér 4.",
         "06 62 424 181", "fodor.kozjegyzo@mokk.hu"},
        {"Precíz Fordítóiroda Kft.", "Magyarország", "1088", "Budapest", "Rákóczi út 11.",
         "06 1 266 3030", "forditas@preciz.hu"},
        {"Dr. Weber Anwaltskanzlei", "Ausztria", "1010", "Wien", "Graben 12", "+43 1 533 7722",
         "kanzlei@weber-recht.at"},
        {"Gyorsfutár Bt.", "Magyarország", "1118", "Budapest", "Budaörsi út 64.", "06 1 466 2020",
         ""},
        {"Számvitel Plusz Kft.", "Magyarország", "9021", "Győr", "Árpád út 20.", "06 96 518 400",
         "konyveles@szamvitelplusz.hu"},
        {"Dr. Kelemen Ágnes végrehajtó", "Magyarország", "4025", "Debrecen", "Hatvan utca 2.",
         "06 52 530 115", "kelemen.vegrehajto@mbvk.hu"},
};

QString t(const char* s)
{
    return QString::fromUtf8(s);
}

// Empty demo texts are left Null, as a field that nobody typed into.
QVariant orNull(const char* s)
{
    return *s ? QVariant(t(s)) : QVariant();
}

} // namespace

bool fillDemoData(platform::Database& db, QString* error)
{
    const char* countries[] = {"Németország", "Szlovákia", "Románia", "Horvátország", "Szerbia"};
    for (const char* c : countries) {
        if (!db.insert(QStringLiteral("orszagok"), {{QStringLiteral("orszagnev"), t(c)}}, nullptr,
                       error))
            return false;
    }
    const char* types[] = {"Polgári ügy", "Büntetőügy",  "Munkajogi ügy", "Családjogi ügy",
                           "Cégügy",      "Ingatlanügy", "Öröklési ügy"};
    for (const char* c : types) {
        if (!db.insert(QStringLiteral("tipusok"), {{QStringLiteral("tipus"), t(c)}}, nullptr,
                       error))
            return false;
    }
    const char* lawyers[] = {"Dr. Szabó Katalin", "Dr. Németh Gábor", "Dr. Horváth Péter"};
    for (const char* c : lawyers) {
        if (!db.insert(QStringLiteral("ugyvedek"), {{QStringLiteral("ugyvednev"), t(c)}}, nullptr,
                       error))
            return false;
    }

    QList<QVariant> clientKeys;
    for (const DemoClient& c : demoClients) {
        QVariant key;
        if (!db.insert(QStringLiteral("ugyfelek"),
                       {{QStringLiteral("unev1"), t(c.name)},
                        {QStringLiteral("unev2"), orNull(c.name2)},
                        {QStringLiteral("uorszag"), t(c.country)},
                        {QStringLiteral("uirsz"), t(c.postcode)},
                        {QStringLiteral("uhely"), t(c.place)},
                        {QStringLiteral("uutca"), t(c.street)},
                        {QStringLiteral("utel1"), t(c.phone)},
                        {QStringLiteral("uemail"), orNull(c.email)},
                        {QStringLiteral("ucegprivat"), c.company ? -1 : 0}},
                       &key, error))
            return false;
        clientKeys << key;
    }
    for (const DemoCase& c : demoCases) {
        if (!db.insert(QStringLiteral("ugyek"),
                       {{QStringLiteral("ugyszam"), t(c.number)},
                        {QStringLiteral("ugyfelkod"), clientKeys.at(c.client)},
                        {QStringLiteral("ugytipus"), t(c.type)},
                        {QStringLiteral("ugyved"), t(c.lawyer)},
                        {QStringLiteral("kezdet"), t(c.start)},
                        {QStringLiteral("kezdete"), t(c.start)},
                        {QStringLiteral("zaras"), t(c.end)},
                        {QStringLiteral("megjegyzes"), t(c.remark)},
                        {QStringLiteral("ellnev"), orNull(c.opponent)},
                        {QStringLiteral("ellorszag"),
                         *c.opponent ? QVariant(QStringLiteral("Magyarország")) : QVariant()},
                        {QStringLiteral("ellhely"), orNull(c.opponentPlace)},
                        {QStringLiteral("feljegyzes"), QString()}},
                       nullptr, error))
            return false;
    }
    if (!db.insert(QStringLiteral("alszamok"),
                   {{QStringLiteral("xx"), 1},
                    {QStringLiteral("fougyszam"), QStringLiteral("10")},
                    {QStringLiteral("alugyszam"), QStringLiteral("10/1")},
                    {QStringLiteral("aldatum"), QStringLiteral("2007.12.03")},
                    {QStringLiteral("almegjegyz"), QStringLiteral("Beadvány a cégbírósághoz")}},
                   nullptr, error))
        return false;
    for (const DemoPartner& p : demoPartners) {
        if (!db.insert(QStringLiteral("partner"),
                       {{QStringLiteral("pnev1"), t(p.name)},
                        {QStringLiteral("porszag"), t(p.country)},
                        {QStringLiteral("pirsz"), t(p.postcode)},
                        {QStringLiteral("phely"), t(p.place)},
                        {QStringLiteral("putca"), t(p.street)},
                        {QStringLiteral("ptel1"), t(p.phone)},
                        {QStringLiteral("pemail"), orNull(p.email)}},
                       nullptr, error))
            return false;
    }
    // Users who read the program in German and in English.
    return db.insert(QStringLiteral("felhasznalo"),
                     {{QStringLiteral("felhnev"), QStringLiteral("Anna Müller")},
                      {QStringLiteral("loginnev"), QStringLiteral("MUELLER")},
                      {QStringLiteral("jelszo"), QStringLiteral("anna")},
                      {QStringLiteral("felhnyelv"), 2},
                      {QStringLiteral("felhjog"), QStringLiteral("11100000111111111111")},
                      {QStringLiteral("alapugyv"), QStringLiteral("Dr. Németh Gábor")}},
                     nullptr, error)
           && db.insert(QStringLiteral("felhasznalo"),
                        {{QStringLiteral("felhnev"), QStringLiteral("John Smith")},
                         {QStringLiteral("loginnev"), QStringLiteral("SMITH")},
                         {QStringLiteral("jelszo"), QStringLiteral("john")},
                         {QStringLiteral("felhnyelv"), 3},
                         {QStringLiteral("felhjog"), QStringLiteral("11000000111111111111")},
                         {QStringLiteral("alapugyv"), QStringLiteral("Dr. Szabó Katalin")}},
                        nullptr, error);
}

} // namespace store
