#include "platform/image/codecs/HeifFacts_p.h"

#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/HeifItems_p.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace lamina {

namespace {

/// The block in the item of type "Exif", which begins with the distance to its TIFF header.
ByteRange exifBlock(ByteSource& source, const HeifItems& items)
{
    const auto exif = std::ranges::find_if(items.items, [](const auto& entry) { return entry.second.is("Exif"); });
    if (exif == items.items.end() || exif->second.pieces.empty())
        return {};
    const ByteRange item = exif->second.pieces.front();
    const std::uint64_t skipped = 4 + numberAt(source, item.offset, 4).value_or(0);
    return item.length > skipped ? ByteRange{item.offset + skipped, item.length - skipped} : ByteRange{};
}

} // namespace

bool recognizesHEIC(std::span<const std::uint8_t> head)
{
    if (head.size() < 16 || std::memcmp(head.data() + 4, "ftyp", 4) != 0)
        return false;
    const std::uint32_t size = static_cast<std::uint32_t>(head[0]) << 24 | head[1] << 16 | head[2] << 8 | head[3];
    if (size < 16 || size > 4096 || size % 4 != 0)
        return false;
    constexpr std::array<const char*, 7> brands{"heic", "heix", "heim", "heis", "mif1", "avif", "mif2"};
    // The major brand, its version, then the compatible brands.
    for (std::size_t at = 8; at + 4 <= std::min<std::size_t>(head.size(), size); at += 4) {
        for (const char* brand : brands) {
            if (at != 12 && std::memcmp(head.data() + at, brand, 4) == 0)
                return true;
        }
    }
    return false;
}

Result<StoredFacts> readHeifFacts(ByteSource& source)
{
    const Result<HeifItems> items = readHeifItems(source);
    if (!items)
        return items.error();
    StoredFacts facts;
    facts.isUpright = true;
    if (const HeifItem* primary = items->find(items->primary)) {
        const HeifSides sides = shownHeifSides(source, *primary);
        facts.width = sides.width;
        facts.height = sides.height;
    }
    facts.exif = exifBlock(source, *items);
    return facts;
}

} // namespace lamina
