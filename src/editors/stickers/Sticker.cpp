#include "editors/stickers/Sticker.h"

#include "editors/common/RecordReading.h"
#include "editors/stickers/IQStickerView.h"
#include "editors/stickers/StickerCatalogue.h"

#include <algorithm>
#include <set>
#include <utility>

namespace lamina {

namespace {

/// The next one can still be counted.
constexpr int kLargestTag = 1'000'000'000;

bool isPossibleSide(double side)
{
    return side >= IQStickerView::kLeastSide && side <= IQStickerView::kLargestSide;
}

bool canBeShown(const Sticker& sticker)
{
    const CGAffineTransform& t = sticker.transform;
    return sticker.tag > 0 && sticker.tag <= kLargestTag && stickerIndex(sticker.name) &&
           isPossibleSide(sticker.size.width) && isPossibleSide(sticker.size.height) && isFinite(sticker.center) &&
           t.inverted() && t.tx == 0 && t.ty == 0;
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
