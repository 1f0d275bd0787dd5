#include "picker/PhotoGridModel.h"

#include <array>
#include <iterator>
#include <numeric>
#include <ranges>
#include <utility>

namespace lamina {

namespace {

enum Field : std::size_t { Identifier, IsCamera, Stamp };
constexpr std::array kFieldNames{"identifier", "isCamera", "stamp"};

/// Items before the first photo.
constexpr std::size_t kCameraItems = 1;
/// With more ranges than this a change is told as a new list.
constexpr std::size_t kRangesTold = 64;

} // namespace

PhotoGridModel::PhotoGridModel(QObject* parent)
    : ListModelBase(parent)
{
}

void PhotoGridModel::reset(PHFetchResult photos)
{
    beginResetModel();
    m_photos = std::move(photos);
    endResetModel();
}

std::vector<PhotoGridModel::Range> PhotoGridModel::rangesOf(const std::vector<std::size_t>& indexes)
{
    std::vector<Range> ranges;
    for (const std::size_t index : indexes) {
        if (ranges.empty() || ranges.back().first + ranges.back().count != index)
            ranges.push_back({index, 0});
        ++ranges.back().count;
    }
    return ranges;
}

void PhotoGridModel::update(const PHFetchResultChangeDetails& changes)
{
    const std::vector<Range> removed = rangesOf(changes.removedIndexes());
    const std::vector<Range> inserted = rangesOf(changes.insertedIndexes());
    if (removed.size() + inserted.size() > kRangesTold) {
        reset(changes.fetchResultAfterChanges());
        return;
    }
    m_former = std::exchange(m_photos, changes.fetchResultAfterChanges());
    m_underway.resize(m_former.count());
    std::iota(m_underway.begin(), m_underway.end(), std::size_t{0});
    m_updating = true;
    // From the end, so that the places of the ranges before stay right.
    for (const Range& range : std::views::reverse(removed))
        remove(range);
    for (const Range& range : inserted)
        insert(range);
    m_updating = false;
    m_underway = {};
    m_former = {};
}

void PhotoGridModel::remove(const Range& range)
{
    const int first = static_cast<int>(range.first + kCameraItems);
    beginRemoveRows({}, first, first + static_cast<int>(range.count) - 1);
    const auto begin = m_underway.begin() + static_cast<std::ptrdiff_t>(range.first);
    m_underway.erase(begin, begin + static_cast<std::ptrdiff_t>(range.count));
    endRemoveRows();
}

void PhotoGridModel::insert(const Range& range)
{
    const int first = static_cast<int>(range.first + kCameraItems);
    beginInsertRows({}, first, first + static_cast<int>(range.count) - 1);
    const auto place = m_underway.begin() + static_cast<std::ptrdiff_t>(range.first);
    const auto begin = m_underway.insert(place, range.count, 0);
    std::iota(begin, begin + static_cast<std::ptrdiff_t>(range.count), m_former.count() + range.first);
    endInsertRows();
}

void PhotoGridModel::reload(int item)
{
    const QModelIndex row = index(item);
    if (row.isValid())
        emit dataChanged(row, row);
}

std::size_t PhotoGridModel::rowTotal() const
{
    return (m_updating ? m_underway.size() : m_photos.count()) + kCameraItems;
}

std::size_t PhotoGridModel::fieldTotal() const
{
    return kFieldNames.size();
}

QByteArray PhotoGridModel::fieldName(std::size_t field) const
{
    return kFieldNames[field];
}

PHAsset PhotoGridModel::photoAt(std::size_t index) const
{
    if (!m_updating)
        return m_photos.objectAtIndex(index);
    const std::size_t place = m_underway[index];
    return place < m_former.count() ? m_former.objectAtIndex(place) : m_photos.objectAtIndex(place - m_former.count());
}

QVariant PhotoGridModel::fieldValue(std::size_t row, std::size_t field) const
{
    if (field == IsCamera)
        return row < kCameraItems;
    const PHAsset photo = row < kCameraItems ? PHAsset() : photoAt(row - kCameraItems);
    if (field == Stamp)
        return static_cast<qlonglong>(photo.modified);
    return QString::fromStdString(photo.localIdentifier);
}

} // namespace lamina
