#include "store/Prepare.h"

namespace store {

namespace {

// A date column as an older layout had it: a DATE column holding ISO dates, put in the place
// of today's text column of the same name.
QStringList isoDateColumn(const QString& column)
{
    const QString working = column + QStringLiteral("datum");
    return {QStringLiteral("ALTER TABLE ugyek ADD COLUMN %1 DATE").arg(working),
            QStringLiteral("UPDATE ugyek SET %1 = replace(%2, '.', '-')").arg(working, column),
            QStringLiteral("ALTER TABLE ugyek DROP COLUMN %1").arg(column),
            QStringLiteral("ALTER TABLE ugyek RENAME COLUMN %1 TO %2").arg(working, column)};
}

} // namespace

bool makeOldLayout(platform::Database& db, QString* error)
{
    QStringList s = {
            // Newer helpers of the lists and the guards of cases and clients.
            QStringLiteral("DROP TRIGGER ugyfelek_ugyek_kapcsolat"),
            QStringLiteral("DROP TRIGGER ugyek_ugyfel_kell"),
            QStringLiteral("DROP TRIGGER ugyek_ugyfel_valtozik"),
            QStringLiteral("DROP INDEX ugyek_sorrend"),
            QStringLiteral("ALTER TABLE ugyek DROP COLUMN ugyszamertek"),
            QStringLiteral("DROP INDEX ugyfelek_sorrend"),
            QStringLiteral("ALTER TABLE ugyfelek DROP COLUMN unev1kulcs"),
            // The case's notes and its dates as dates.
            QStringLiteral("ALTER TABLE ugyek DROP COLUMN feljegyzes"),
            QStringLiteral("ALTER TABLE ugyek DROP COLUMN kezdete"),
    };
    s << isoDateColumn(QStringLiteral("kezdet")) << isoDateColumn(QStringLiteral("zaras"));
    // No default lawyer of a user, and so nothing about him in the lawyer list's triggers.
    s << QStringLiteral("DROP TRIGGER ugyvedek_felhasznalo_alapugyv_kapcsolat")
      << QStringLiteral("DROP TRIGGER ugyvedek_atnevezes")
      << QStringLiteral("CREATE TRIGGER ugyvedek_atnevezes AFTER UPDATE OF ugyvednev ON ugyvedek "
                        "WHEN OLD.ugyvednev IS NOT NEW.ugyvednev BEGIN UPDATE ugyek SET ugyved = "
                        "NEW.ugyvednev WHERE ugyved = OLD.ugyvednev COLLATE NOCASE; END")
      << QStringLiteral("ALTER TABLE felhasznalo DROP COLUMN alapugyv");
    // No sub-numbers, no labels 31 to 39, and the newer captions and message not yet there.
    s << QStringLiteral("DROP TABLE alszamok");
    for (int lang = 1; lang <= 3; ++lang) {
        for (int n = 31; n <= 39; ++n)
            s << QStringLiteral("ALTER TABLE felirat DROP COLUMN [%1sz%2]").arg(lang).arg(n);
        for (int n = 27; n <= 30; ++n)
            s << QStringLiteral("UPDATE felirat SET [%1sz%2] = NULL WHERE felirkod = 'ugyek' "
                                "COLLATE NOCASE")
                            .arg(lang)
                            .arg(n);
        for (int n = 17; n <= 19; ++n)
            s << QStringLiteral("UPDATE felirat SET [%1sz%2] = NULL WHERE felirkod = 'users' "
                                "COLLATE NOCASE")
                            .arg(lang)
                            .arg(n);
        // The search screen had no export button.
        s << QStringLiteral("UPDATE felirat SET [%1g6] = NULL WHERE felirkod IN ('keres', "
                            "'keres2')")
                        .arg(lang);
    }
    s << QStringLiteral("DELETE FROM uzenetek WHERE uzenkod = 'hibasadat'");
    for (const QString& statement : s) {
        if (!db.exec(statement, {}, error))
            return false;
    }
    return true;
}

} // namespace store
