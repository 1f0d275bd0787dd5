#include "platform/view/ListModel.h"

namespace lamina {

ListModelBase::ListModelBase(QObject* parent)
    : QAbstractListModel(parent)
{
    connect(this, &QAbstractItemModel::rowsInserted, this, &ListModelBase::countChanged);
    connect(this, &QAbstractItemModel::rowsRemoved, this, &ListModelBase::countChanged);
    connect(this, &QAbstractItemModel::modelReset, this, &ListModelBase::countChanged);
}

int ListModelBase::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rowTotal());
}

QVariant ListModelBase::data(const QModelIndex& index, int role) const
{
    const int field = role == Qt::DisplayRole ? 0 : role - Qt::UserRole;
    const bool known = field >= 0 && static_cast<std::size_t>(field) < fieldTotal();
    if (!known || !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    return fieldValue(static_cast<std::size_t>(index.row()), static_cast<std::size_t>(field));
}

QHash<int, QByteArray> ListModelBase::roleNames() const
{
    QHash<int, QByteArray> names;
    for (std::size_t field = 0; field < fieldTotal(); ++field)
        names.insert(Qt::UserRole + static_cast<int>(field), fieldName(field));
    return names;
}

QVariantList ListModelBase::fieldValues(std::size_t row) const
{
    QVariantList values;
    for (std::size_t field = 0; field < fieldTotal(); ++field)
        values.append(fieldValue(row, field));
    return values;
}

void ListModelBase::tellChange(std::size_t row, const QVariantList& former)
{
    const QVariantList now = fieldValues(row);
    QList<int> roles;
    for (qsizetype field = 0; field < now.size(); ++field)
        if (now[field] != former[field])
            roles.append(Qt::UserRole + static_cast<int>(field));
    if (roles.isEmpty())
        return;
    if (roles.front() == Qt::UserRole)
        roles.append(Qt::DisplayRole);
    const QModelIndex changed = index(static_cast<int>(row));
    emit dataChanged(changed, changed, roles);
}

} // namespace lamina
