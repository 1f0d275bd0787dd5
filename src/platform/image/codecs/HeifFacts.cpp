#include "platform/image/codecs/HeifFacts_p.h"

#include "platform/base/Causes.h"
#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/HeifBoxes_p.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// Reads one number after the other out of a box; what would stand behind its end is 0.
class Numbers {
public:
    Numbers(ByteSource& source, const HeifBox& box)
        : m_source(source)
        , m_at(box.content)
        , m_end(box.end)
    {
    }

    std::uint64_t next(std::size_t size)
    {
        const std::uint64_t at = std::exchange(m_at, m_at + size);
        if (size == 0 || m_at > m_end)
            return 0;
        const std::optional<std::uint64_t> number = numberAt(m_source, at, size);
        if (!number)
            m_at = m_end; // a box may claim to go on for gigabytes
        return number.value_or(0);
    }
    /// The version with which many boxes begin; their flags come next.
    std::uint64_t version() { return next(1); }
    void skip(std::size_t size) { m_at += size; }
    bool atEnd() const { return m_at >= m_end; }

private:
    ByteSource& m_source;
    std::uint64_t m_at;
    std::uint64_t m_end;
};

constexpr std::size_t kFlags = 3;

struct MetaBoxes {
    HeifBox primary;
    HeifBox items;
    HeifBox places;
    HeifBox properties;
    HeifBox data;
};

MetaBoxes findMetaBoxes(ByteSource& source)
{
    MetaBoxes boxes;
    const std::pair<const char*, HeifBox*> wanted[]{{"pitm", &boxes.primary},
                                                    {"iinf", &boxes.items},
                                                    {"iloc", &boxes.places},
                                                    {"iprp", &boxes.properties},
                                                    {"idat", &boxes.data}};
    eachHeifMetaBox(source, [&](const HeifBox& box) {
        for (const auto& [name, place] : wanted) {
            if (box.is(name))
                *place = box;
        }
    });
    return boxes;
}

std::uint64_t primaryItem(ByteSource& source, const HeifBox& box)
{
    Numbers numbers(source, box);
    const bool wide = numbers.version() > 0;
    numbers.skip(kFlags);
    return numbers.next(wide ? 4 : 2);
}

/// The item of type "Exif".
std::optional<std::uint64_t> exifItem(ByteSource& source, const HeifBox& box)
{
    std::optional<std::uint64_t> found;
    const bool wideCount = Numbers(source, box).version() > 0;
    eachHeifBox(source, box.content + (wideCount ? 8 : 6), box.end, [&](const HeifBox& entry) {
        constexpr std::uint64_t kExif = 0x45786966;
        Numbers numbers(source, entry);
        const std::uint64_t version = numbers.version();
        numbers.skip(kFlags);
        const std::uint64_t item = numbers.next(version > 2 ? 4 : 2);
        numbers.skip(2);
        if (!found && version >= 2 && numbers.next(4) == kExif)
            found = item;
    });
    return found;
}

/// Where an item's bytes stand, or the first piece of them. `data`: the box that some items stand in.
ByteRange placeOfItem(ByteSource& source, const HeifBox& box, const HeifBox& data, std::uint64_t wanted)
{
    constexpr std::uint64_t kInDataBox = 1;
    Numbers numbers(source, box);
    const std::uint64_t version = numbers.version();
    numbers.skip(kFlags);
    const std::uint64_t sizes = numbers.next(2);
    const auto size = [sizes](int shift) { return std::min<std::size_t>(8, sizes >> shift & 15); };
    const std::size_t indexSize = version > 0 ? size(0) : 0;
    numbers.skip(version < 2 ? 2 : 4);
    while (!numbers.atEnd()) {
        const std::uint64_t item = numbers.next(version < 2 ? 2 : 4);
        const std::uint64_t method = version > 0 ? numbers.next(2) & 15 : 0;
        numbers.skip(2);
        const std::uint64_t base = numbers.next(size(4));
        const std::uint64_t pieces = numbers.next(2);
        if (item != wanted) {
            numbers.skip(pieces * (indexSize + size(12) + size(8)));
            continue;
        }
        numbers.skip(indexSize);
        const std::uint64_t offset = base + numbers.next(size(12));
        const std::uint64_t length = numbers.next(size(8));
        return pieces > 0 && method <= kInDataBox
                   ? ByteRange{method == kInDataBox ? data.content + offset : offset, length}
                   : ByteRange{};
    }
    return {};
}

/// The block in an item, which begins with the distance to its TIFF header.
ByteRange exifBlock(ByteSource& source, ByteRange item)
{
    const std::uint64_t skipped = 4 + numberAt(source, item.offset, 4).value_or(0);
    return item.length > skipped ? ByteRange{item.offset + skipped, item.length - skipped} : ByteRange{};
}

/// The numbers of an item's properties, in their order, counted from 1.
std::vector<std::uint64_t> propertiesOf(ByteSource& source, const HeifBox& associations, std::uint64_t wanted)
{
    std::vector<std::uint64_t> properties;
    Numbers numbers(source, associations);
    const bool wideItem = numbers.version() > 0;
    const bool wideProperty = (numbers.next(kFlags) & 1) != 0;
    numbers.skip(4);
    while (!numbers.atEnd() && properties.empty()) {
        const std::uint64_t item = numbers.next(wideItem ? 4 : 2);
        for (std::uint64_t count = numbers.next(1); count > 0; --count) {
            const std::uint64_t property = numbers.next(wideProperty ? 2 : 1) & (wideProperty ? 0x7FFF : 0x7F);
            if (item == wanted)
                properties.push_back(property);
        }
    }
    return properties;
}

/// Lets a property change the sides.
void apply(StoredFacts& facts, ByteSource& source, const HeifBox& property)
{
    Numbers numbers(source, property);
    if (property.is("ispe")) {
        numbers.skip(1 + kFlags);
        facts.width = numbers.next(4);
        facts.height = numbers.next(4);
    } else if (property.is("irot")) {
        if (numbers.next(1) % 2 != 0)
            std::swap(facts.width, facts.height);
    } else if (property.is("clap")) {
        for (std::uint64_t* side : {&facts.width, &facts.height}) {
            const std::uint64_t part = numbers.next(4);
            const std::uint64_t divisor = std::max<std::uint64_t>(1, numbers.next(4));
            *side = std::min(*side, (part + divisor / 2) / divisor);
        }
    }
}

void applyProperties(StoredFacts& facts, ByteSource& source, const HeifBox& box, std::uint64_t item)
{
    std::vector<HeifBox> known;
    std::vector<std::uint64_t> used;
    eachHeifBox(source, box.content, box.end, [&](const HeifBox& part) {
        if (part.is("ipco"))
            eachHeifBox(source, part.content, part.end, [&](const HeifBox& property) { known.push_back(property); });
        else if (part.is("ipma") && used.empty())
            used = propertiesOf(source, part, item);
    });
    for (const std::uint64_t number : used) {
        if (number > 0 && number <= known.size())
            apply(facts, source, known[static_cast<std::size_t>(number - 1)]);
    }
}

} // namespace

Result<StoredFacts> readHeifFacts(ByteSource& source)
{
    const MetaBoxes boxes = findMetaBoxes(source);
    if (boxes.properties.end == 0)
        return Error{{}, cause::kTruncated};
    StoredFacts facts;
    facts.isUpright = true;
    applyProperties(facts, source, boxes.properties, primaryItem(source, boxes.primary));
    if (const std::optional<std::uint64_t> exif = exifItem(source, boxes.items))
        facts.exif = exifBlock(source, placeOfItem(source, boxes.places, boxes.data, *exif));
    return facts;
}

} // namespace lamina
