#include "cases/ClientChoices.h"

namespace cases {

void ClientChoices::reset(QStringList names, QList<qlonglong> keys)
{
    beginResetModel();
    m_names = std::move(names);
    m_keys = std::move(keys);
    endResetModel();
}

int ClientChoices::rowOfKey(qlonglong key) const
{
    return int(m_keys.indexOf(key));
}

int ClientChoices::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_names.size());
}

QVariant ClientChoices::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_names.size())
        return QVariant();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return m_names.at(index.row());
    case Qt::UserRole:
        return m_keys.value(index.row());
    default:
        return QVariant();
    }
}

} // namespace cases
