#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QStringList>

namespace cases {

// The client box's list: every client's name, with the client's key (ukod) as the entry's
// value (Qt::UserRole). A register of a hundred thousand clients is filled in one step.
class ClientChoices : public QAbstractListModel
{
    Q_OBJECT
public:
    using QAbstractListModel::QAbstractListModel;

    void reset(QStringList names, QList<qlonglong> keys);
    // The entry of the client with that key, or -1.
    int rowOfKey(qlonglong key) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    QStringList m_names;
    QList<qlonglong> m_keys;
};

} // namespace cases
