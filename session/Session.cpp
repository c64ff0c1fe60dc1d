#include "session/Session.h"

#include "store/DataLocation.h"

Session& Session::instance()
{
    static Session session;
    return session;
}

bool Session::start(platform::Database& db)
{
    store::StartValues values;
    const bool opened = store::adatmegnyitas(db, &values);
    userName.clear();
    dateFormat = QStringLiteral("yyyy.mm.dd");
    dataFilePath = values.dataFilePath;
    workgroupFilePath = values.workgroupFilePath;
    language = values.language;
    rights = values.rights;
    defaultLawyer = values.defaultLawyer;
    return opened;
}

bool Session::hasRight(int position) const
{
    return position >= 1 && position <= rights.size() && rights.at(position - 1) == u'1';
}

void Session::reset()
{
    catalogue = nullptr;
    userName.clear();
    rights = QStringLiteral("00000000000000000000");
    language = 1;
    dateFormat = QStringLiteral("yyyy.mm.dd");
    defaultLawyer.clear();
    dataFilePath.clear();
    workgroupFilePath.clear();
    screens = Screens();
}
