#pragma once

#include <QString>

namespace store {

// The fixed database account under which every copy of the program opens the data file.
inline QString databaseAccount()
{
    return QStringLiteral("Vida Márton");
}
inline QString databasePassword()
{
    return QStringLiteral("vm4817");
}
inline QString connectText()
{
    return QStringLiteral("pwd=") + databasePassword();
}
inline QString dataFileName()
{
    return QStringLiteral("causora.mdb");
}
inline QString workgroupFileName()
{
    return QStringLiteral("caujog.mdw");
}

} // namespace store
