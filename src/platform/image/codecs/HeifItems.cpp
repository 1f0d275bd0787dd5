#include "platform/image/codecs/HeifItems_p.h"

#include "platform/base/Causes.h"
#include "platform/image/codecs/ByteCursor_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace lamina {

namespace {

constexpr std::size_t kFlags = 3;
constexpr std::uint64_t kVersionAndFlags = 4;

struct MetaBoxes {
    HeifBox meta;
    HeifBox primary;
    HeifBox items;
    HeifBox places;
    HeifBox references;
    HeifBox properties;
    HeifBox data;
    bool isMovie = false;
};

/// The first box of each kind in the first meta box; false when there are too many boxes.
bool findMetaBoxes(ByteSource& source, MetaBoxes& boxes)
{
    const auto keep = [](HeifBox& place, const HeifBox& box) {
        if (place.end == 0)
            place = box;
    };
    const bool walked = eachHeifBox(source, 0, source.size(), [&](const HeifBox& top) {
        if (top.is("meta"))
            keep(boxes.meta, top);
        boxes.isMovie = boxes.isMovie || top.is("moov");
    });
    const std::pair<const char*, HeifBox*> wanted[]{{"pitm", &boxes.primary},    {"iinf", &boxes.items},
                                                    {"iloc", &boxes.places},     {"iref", &boxes.references},
                                                    {"iprp", &boxes.properties}, {"idat", &boxes.data}};
    return walked &&
           eachHeifBox(source, boxes.meta.content + kVersionAndFlags, boxes.meta.end, [&](const HeifBox& box) {
               for (const auto& [name, place] : wanted) {
                   if (box.is(name))
                       keep(*place, box);
               }
           });
}

class ItemsReader {
public:
    explicit ItemsReader(ByteSource& source)
        : m_source(source)
    {
    }

    Result<HeifItems> read()
    {
        if (!findMetaBoxes(m_source, m_boxes))
            return Error{{}, cause::kDamaged};
        if (m_boxes.meta.end == 0)
            return Error{{}, m_boxes.isMovie ? cause::kOtherHeif : cause::kTruncated};
        if (m_boxes.meta.isCut)
            return Error{{}, cause::kTruncated};
        if (m_boxes.primary.end == 0 || m_boxes.items.end == 0 || m_boxes.places.end == 0 ||
            m_boxes.properties.end == 0)
            return Error{{}, cause::kDamaged};
        for (const auto step : {&ItemsReader::readPrimary, &ItemsReader::readKinds, &ItemsReader::readPlaces,
                                &ItemsReader::readReferences, &ItemsReader::readProperties}) {
            if (const Outcome done = (this->*step)(); !done)
                return done.error();
        }
        return std::move(m_items);
    }

private:
    static Outcome soundIf(bool sound) { return sound ? success() : Outcome(Error{{}, cause::kDamaged}); }

    HeifItem* find(std::uint64_t id)
    {
        const auto found = m_items.items.find(id);
        return found == m_items.items.end() ? nullptr : &found->second;
    }

    Outcome readPrimary()
    {
        const auto content = readHeifContent(m_source, m_boxes.primary);
        if (!content)
            return content.error();
        ByteCursor cursor(*content);
        const bool wide = cursor.number(1) > 0;
        cursor.skip(kFlags);
        m_items.primary = cursor.number(wide ? 4 : 2);
        return soundIf(!cursor.overran());
    }

    Outcome readKinds()
    {
        const auto content = readHeifContent(m_source, m_boxes.items);
        if (!content)
            return content.error();
        const std::size_t start = kVersionAndFlags + (!content->empty() && content->front() > 0 ? 4 : 2);
        const auto entries = memorySource(*content);
        return soundIf(eachHeifBox(*entries, start, content->size(), [&](const HeifBox& entry) {
            ByteCursor cursor{std::span(*content).subspan(entry.content, entry.size())};
            const std::uint64_t version = cursor.number(1);
            cursor.skip(kFlags);
            const std::uint64_t id = cursor.number(version > 2 ? 4 : 2);
            cursor.skip(2);
            const std::span<const std::uint8_t> type = cursor.bytes(4);
            if (entry.is("infe") && version >= 2 && !type.empty())
                std::ranges::copy(type, m_items.items.try_emplace(id).first->second.type.begin());
        }));
    }

    Outcome readPlaces()
    {
        const auto content = readHeifContent(m_source, m_boxes.places);
        if (!content)
            return content.error();
        ByteCursor cursor(*content);
        const std::uint64_t version = cursor.number(1);
        cursor.skip(kFlags);
        const std::uint64_t sizes = cursor.number(2);
        const std::size_t idSize = version < 2 ? 2 : 4;
        for (std::uint64_t count = cursor.number(idSize); count > 0 && !cursor.overran(); --count) {
            HeifItem* item = find(cursor.number(idSize));
            if (!readPieces(cursor, version, sizes, item && item->pieces.empty() ? item : nullptr))
                return soundIf(false);
        }
        return soundIf(!cursor.overran());
    }

    /// `item`: null when it is not to be kept. False where many pieces are told in no bytes: the file's length bounds
    /// what reading takes, and such entries would be bounded by nothing.
    bool readPieces(ByteCursor& cursor, std::uint64_t version, std::uint64_t sizes, HeifItem* item)
    {
        constexpr std::uint64_t kMostPieces = 32; // libheif takes no more
        constexpr std::uint64_t kInDataBox = 1;
        const auto size = [sizes](int shift) { return std::min<std::size_t>(8, sizes >> shift & 15); };
        const std::uint64_t method = version > 0 ? cursor.number(2) & 15 : 0;
        const bool elsewhere = cursor.number(2) != 0 || method > kInDataBox;
        const std::uint64_t base = cursor.number(size(4));
        const std::uint64_t count = cursor.number(2);
        if (count > 1 && size(12) + size(8) + (version > 0 ? size(0) : 0) == 0)
            return false;
        const HeifBox whole = method == kInDataBox ? m_boxes.data : HeifBox{0, m_source.size(), {}};
        for (std::uint64_t i = 0; i < count && !cursor.overran(); ++i) {
            cursor.skip(version > 0 ? size(0) : 0);
            const std::uint64_t offset = base + cursor.number(size(12));
            const std::uint64_t length = cursor.number(size(8));
            if (!item)
                continue;
            const bool isRead = !elsewhere && i < kMostPieces;
            const bool within = offset >= base && offset <= whole.size() && length <= whole.size() - offset;
            item->isScattered = item->isScattered || !isRead;
            item->isCut = item->isCut || !within;
            if (isRead && within)
                item->pieces.push_back({whole.content + offset, length});
        }
        return true;
    }

    Outcome readReferences()
    {
        if (m_boxes.references.end == 0)
            return success();
        const auto content = readHeifContent(m_source, m_boxes.references);
        if (!content)
            return content.error();
        const std::size_t idSize = !content->empty() && content->front() > 0 ? 4 : 2;
        const auto boxes = memorySource(*content);
        return soundIf(eachHeifBox(*boxes, kVersionAndFlags, content->size(), [&](const HeifBox& box) {
            ByteCursor cursor{std::span(*content).subspan(box.content, box.size())};
            const std::uint64_t from = cursor.number(idSize);
            for (std::uint64_t count = cursor.number(2); count > 0 && cursor.left() >= idSize; --count)
                addReference(box, from, cursor.number(idSize));
        }));
    }

    void addReference(const HeifBox& kind, std::uint64_t from, std::uint64_t to)
    {
        HeifItem* subject = find(from);
        HeifItem* object = find(to);
        if (kind.is("dimg") && subject && subject->isComposed())
            subject->parts.push_back(to);
        else if (kind.is("prem") && subject)
            subject->premultipliedBy.push_back(to);
        else if (kind.is("auxl") && object)
            object->auxiliaries.push_back(from);
        else if (kind.is("thmb") && object)
            object->thumbnails.push_back(from);
    }

    Outcome readProperties()
    {
        std::vector<HeifBox> known;
        std::vector<HeifBox> associations;
        bool walked = true;
        const HeifBox& box = m_boxes.properties;
        walked = eachHeifBox(m_source, box.content, box.end,
                             [&](const HeifBox& part) {
                                 if (part.is("ipco") && known.empty())
                                     walked = eachHeifBox(m_source, part.content, part.end,
                                                          [&](const HeifBox& property) { known.push_back(property); });
                                 else if (part.is("ipma") && associations.size() < kMostAssociationBoxes)
                                     associations.push_back(part);
                             }) &&
                 walked;
        for (const HeifBox& part : associations) {
            const auto content = readHeifContent(m_source, part);
            if (!content)
                return content.error();
            associate(*content, known);
        }
        return soundIf(walked);
    }

    void associate(std::span<const std::uint8_t> content, const std::vector<HeifBox>& known)
    {
        ByteCursor cursor(content);
        const bool wideItem = cursor.number(1) > 0;
        const bool wideProperty = (cursor.number(kFlags) & 1) != 0;
        cursor.skip(4);
        while (!cursor.atEnd()) {
            HeifItem* item = find(cursor.number(wideItem ? 4 : 2));
            const bool isFirst = item && item->properties.empty();
            for (std::uint64_t count = cursor.number(1); count > 0; --count) {
                const std::uint64_t number = cursor.number(wideProperty ? 2 : 1) & (wideProperty ? 0x7FFF : 0x7F);
                if (isFirst && number > 0 && number <= known.size())
                    item->properties.push_back(known[static_cast<std::size_t>(number - 1)]);
            }
        }
    }

    static constexpr std::size_t kMostAssociationBoxes = 4; // of two sizes of items and two of properties

    ByteSource& m_source;
    MetaBoxes m_boxes;
    HeifItems m_items;
};

void cropOrTurn(HeifSides& sides, ByteSource& source, const HeifBox& property)
{
    if (property.is("irot")) {
        if (numberAt(source, property.content, 1).value_or(0) % 2 != 0)
            std::swap(sides.width, sides.height);
    } else if (property.is("clap")) {
        std::uint64_t at = property.content;
        for (std::uint64_t* side : {&sides.width, &sides.height}) {
            const std::uint64_t part = numberAt(source, at, 4).value_or(0);
            const std::uint64_t divisor = std::max<std::uint64_t>(1, numberAt(source, at + 4, 4).value_or(1));
            *side = std::min(*side, (part + divisor / 2) / divisor);
            at += 8;
        }
    }
}

} // namespace

std::optional<HeifBox> HeifItem::property(const char* name) const
{
    const auto found = std::ranges::find_if(properties, [name](const HeifBox& box) { return box.is(name); });
    return found == properties.end() ? std::nullopt : std::optional(*found);
}

std::uint64_t HeifItem::length() const
{
    std::uint64_t sum = 0;
    for (const ByteRange& piece : pieces)
        sum += piece.length;
    return sum;
}

const HeifItem* HeifItems::find(std::uint64_t id) const
{
    const auto found = items.find(id);
    return found == items.end() ? nullptr : &found->second;
}

Result<HeifItems> readHeifItems(ByteSource& source)
{
    return ItemsReader(source).read();
}

Result<std::vector<std::uint8_t>> readHeifContent(ByteSource& source, const HeifBox& box, std::uint64_t most)
{
    if (box.size() > most)
        return Error{{}, cause::kDamaged};
    std::vector<std::uint8_t> content(static_cast<std::size_t>(box.size()));
    if (!content.empty() && source.read(box.content, content) < content.size())
        return Error{{}, cause::kTruncated};
    return content;
}

HeifSides toldHeifSides(ByteSource& source, const HeifItem& item)
{
    const std::optional<HeifBox> told = item.property("ispe");
    if (!told || told->size() < kVersionAndFlags + 8)
        return {};
    const std::uint64_t at = told->content + kVersionAndFlags;
    return {numberAt(source, at, 4).value_or(0), numberAt(source, at + 4, 4).value_or(0)};
}

HeifSides shownHeifSides(ByteSource& source, const HeifItem& item)
{
    HeifSides sides = toldHeifSides(source, item);
    for (const HeifBox& property : item.properties)
        cropOrTurn(sides, source, property);
    return sides;
}

std::optional<std::uint64_t> alphaOfHeifItem(ByteSource& source, const HeifItems& items, const HeifItem& item)
{
    constexpr std::string_view kAlphas[]{"urn:mpeg:mpegB:cicp:systems:auxiliary:alpha", "urn:mpeg:hevc:2015:auxid:1",
                                         "urn:mpeg:avc:2015:auxid:1"};
    const auto isAlpha = [&](std::uint64_t id) {
        const HeifItem* auxiliary = items.find(id);
        const std::optional<HeifBox> kind = auxiliary ? auxiliary->property("auxC") : std::nullopt;
        if (!kind || kind->size() < kVersionAndFlags)
            return false;
        std::array<std::uint8_t, 64> text{};
        const std::size_t length = std::min<std::uint64_t>(kind->size() - kVersionAndFlags, text.size() - 1);
        source.read(kind->content + kVersionAndFlags, std::span(text).first(length));
        const char* name = reinterpret_cast<const char*>(text.data());
        return std::ranges::find(kAlphas, std::string_view(name)) != std::end(kAlphas);
    };
    const auto found = std::ranges::find_if(item.auxiliaries, isAlpha);
    return found == item.auxiliaries.end() ? std::nullopt : std::optional(*found);
}

std::size_t HeifItemSource::read(std::uint64_t offset, std::span<std::uint8_t> target)
{
    std::size_t done = 0;
    for (const ByteRange& piece : m_item.pieces) {
        if (offset >= piece.length) {
            offset -= piece.length;
            continue;
        }
        const std::size_t wanted = std::min<std::uint64_t>(piece.length - offset, target.size() - done);
        const std::size_t count = m_source.read(piece.offset + offset, target.subspan(done, wanted));
        done += count;
        if (count < wanted || done == target.size())
            return done;
        offset = 0;
    }
    return done;
}

} // namespace lamina
