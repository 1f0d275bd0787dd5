#include "editors/stickers/Sticker.h"

#include "editors/common/RecordReading.h"
#include "editors/stickers/IQStickerView.h"
#include "editors/stickers/StickerCatalogue.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <set>
#include <utility>

namespace lamina {

namespace {

/// The next one can still be counted.
constexpr int kLargestTag = 1'000'000'000;

/// More stickers than anybody lays on one canvas, in a record that somebody wrote.
constexpr std::size_t kMostStickers = 500;

/// But for roundings.
bool isTurn(const CGAffineTransform& t)
{
    constexpr double kRounding = 1e-6;
    const auto isNear = [](double a, double b) { return std::abs(a - b) <= kRounding; };
    return isNear(t.a, t.d) && isNear(t.b, -t.c) && isNear(t.a * t.a + t.b * t.b, 1) && t.tx == 0 && t.ty == 0;
}

bool isPossibleSide(double side)
{
    return side >= IQStickerView::kLeastSide && side <= IQStickerView::kLargestSide;
}

bool canBeShown(const Sticker& sticker)
{
    return sticker.tag > 0 && sticker.tag <= kLargestTag && stickerIndex(sticker.name) &&
           isPossibleSide(sticker.size.width) && isPossibleSide(sticker.size.height) && isFinite(sticker.center) &&
           isTurn(sticker.transform);
}

RecordValue recordOf(const Sticker& sticker)
{
    return {{"tag", sticker.tag},         {"name", sticker.name},           {"size", sticker.size},
            {"center", sticker.center},   {"transform", sticker.transform}, {"border", sticker.border},
            {"handles", sticker.handles}, {"active", sticker.active}};
}

bool readSticker(const RecordValue& record, Sticker& sticker)
{
    record.at("tag").get_to(sticker.tag);
    record.at("name").get_to(sticker.name);
    record.at("size").get_to(sticker.size);
    record.at("center").get_to(sticker.center);
    record.at("transform").get_to(sticker.transform);
    record.at("border").get_to(sticker.border);
    record.at("handles").get_to(sticker.handles);
    record.at("active").get_to(sticker.active);
    return canBeShown(sticker);
}

bool readAll(const RecordValue& record, Stickers& stickers)
{
    std::set<int> tags;
    for (const RecordValue& value : record) {
        if (stickers.size() == kMostStickers)
            break;
        if (!readSticker(value, stickers.emplace_back()) || !tags.insert(stickers.back().tag).second)
            return false;
    }
    return record.is_array();
}

bool looksAlike(const Sticker& one, const Sticker& other)
{
    return one.name == other.name && one.size == other.size && one.center == other.center &&
           one.transform == other.transform;
}

} // namespace

bool looksAlike(const Stickers& some, const Stickers& others)
{
    return std::equal(some.begin(), some.end(), others.begin(), others.end(),
                      [](const Sticker& one, const Sticker& other) { return looksAlike(one, other); });
}

RecordValue recordOf(const Stickers& stickers)
{
    RecordValue record = RecordValue::array();
    for (const Sticker& sticker : stickers)
        record.push_back(recordOf(sticker));
    return record;
}

bool readStickers(const RecordValue& record, Stickers& stickers)
{
    Stickers read;
    if (!readRecordValue([&] { return readAll(record, read); }))
        return false;
    stickers = std::move(read);
    return true;
}

} // namespace lamina
