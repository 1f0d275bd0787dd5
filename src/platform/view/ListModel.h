#pragma once

#include <QAbstractListModel>
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace lamina {

/// What all list models have in common, whatever their rows are.
class ListModelBase : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

public:
    int count() const { return rowCount(); }
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    /// Field i is role `Qt::UserRole + i`; the first one serves `Qt::DisplayRole` too.
    QHash<int, QByteArray> roleNames() const override;

signals:
    /// The number of rows may have changed.
    void countChanged();

protected:
    explicit ListModelBase(QObject* parent);

    virtual std::size_t rowTotal() const = 0;
    virtual std::size_t fieldTotal() const = 0;
    virtual QByteArray fieldName(std::size_t field) const = 0;
    virtual QVariant fieldValue(std::size_t row, std::size_t field) const = 0;
    /// The values of all fields of a row.
    QVariantList fieldValues(std::size_t row) const;
    /// Tells views of the fields that have another value than they had in `former`.
    void tellChange(std::size_t row, const QVariantList& former);
};

/// A value as QML takes it: texts as `QString`, numbers of enumerations as `int`, objects as `QObject*`, all others as
/// they are.
template <class Value>
QVariant listValue(const Value& value)
{
    if constexpr (std::is_convertible_v<const Value&, std::string_view>) {
        const std::string_view text = value;
        return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    } else if constexpr (std::is_enum_v<Value>) {
        return static_cast<int>(value);
    } else if constexpr (std::is_convertible_v<const Value&, QObject*>) {
        return QVariant::fromValue<QObject*>(value);
    } else {
        return QVariant::fromValue(value);
    }
}

/// See above.
template <std::derived_from<QObject> Object>
QVariant listValue(const std::shared_ptr<Object>& object)
{
    return QVariant::fromValue<QObject*>(object.get());
}

/// One field of a row as views know it.
template <class Row>
struct ListField {
    /// `read` is a data member of the row, or is called with the row; what it gives goes through listValue.
    template <class Read>
    ListField(const char* name_, Read read_)
        : name(name_)
        , read([read_](const Row& row) { return listValue(std::invoke(read_, row)); })
    {
    }

    QByteArray name;
    std::function<QVariant(const Row&)> read;
};

/// A list for views, of rows that are plain values: a strip of stickers, a table of formats, the cells of a grid. The
/// controller that holds it reads and changes the rows themselves; views see the fields that it names.
///
///   struct Format { std::string label; std::string icon; bool chosen = false; };
///   ListModel<Format> m_formats{{"label", &Format::label}, {"icon", &Format::icon}, {"chosen", &Format::chosen}};
///   m_formats.reset({{"JPG", "jpg"}, {"PNG", "png"}});
///   m_formats.edit(0, [](Format& format) { format.chosen = true; });      // wakes `chosen` of that row alone
///
/// In the layout, with the model as a constant property of type `QAbstractItemModel*`:
///
///   ListView { model: controller.formats; delegate: FormatRow { required property string label ... } }
///
/// Whatever can be told as a change of single rows should be: a view keeps the items, the keyboard and the place of
/// rows that stay. Indices count from 0; what lies beyond the end is clamped by `insert` and `move`, and ignored by the
/// others. Main thread.
template <class Row>
class ListModel : public ListModelBase {
public:
    using Field = ListField<Row>;

    explicit ListModel(std::initializer_list<Field> fields, QObject* parent = nullptr)
        : ListModelBase(parent)
        , m_fields(fields)
    {
    }

    const std::vector<Row>& rows() const { return m_rows; }

    /// Puts a row before row `index`.
    void insert(std::size_t index, Row row)
    {
        const int place = static_cast<int>(std::min(index, m_rows.size()));
        beginInsertRows({}, place, place);
        m_rows.insert(m_rows.begin() + place, std::move(row));
        endInsertRows();
    }
    void append(Row row) { insert(m_rows.size(), std::move(row)); }

    /// Takes row `index` out.
    void remove(std::size_t index)
    {
        if (index >= m_rows.size())
            return;
        const int place = static_cast<int>(index);
        beginRemoveRows({}, place, place);
        m_rows.erase(m_rows.begin() + place);
        endRemoveRows();
    }

    /// Puts `row` in the place of another. Views hear of the fields that differ, and of nothing where none does.
    void change(std::size_t index, Row row)
    {
        edit(index, [&row](Row& changed) { changed = std::move(row); });
    }
    /// The same for what `change` does to the row.
    template <std::invocable<Row&> Change>
    void edit(std::size_t index, Change change)
    {
        if (index >= m_rows.size())
            return;
        const QVariantList former = fieldValues(index);
        change(m_rows[index]);
        tellChange(index, former);
    }

    /// Takes row `from` to where row `to` stood; those between make way.
    void move(std::size_t from, std::size_t to)
    {
        if (from >= m_rows.size())
            return;
        const int source = static_cast<int>(from);
        const int target = static_cast<int>(std::min(to, m_rows.size() - 1));
        // Views count the target with the row still in its old place.
        if (source == target || !beginMoveRows({}, source, source, {}, target > source ? target + 1 : target))
            return;
        const auto first = m_rows.begin();
        if (source < target)
            std::rotate(first + source, first + source + 1, first + target + 1);
        else
            std::rotate(first + target, first + source, first + source + 1);
        endMoveRows();
    }

    /// Other rows instead of all that there are.
    void reset(std::vector<Row> rows)
    {
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
    }

protected:
    std::size_t rowTotal() const override { return m_rows.size(); }
    std::size_t fieldTotal() const override { return m_fields.size(); }
    QByteArray fieldName(std::size_t field) const override { return m_fields[field].name; }
    QVariant fieldValue(std::size_t row, std::size_t field) const override { return m_fields[field].read(m_rows[row]); }

private:
    std::vector<Field> m_fields;
    std::vector<Row> m_rows;
};

} // namespace lamina
