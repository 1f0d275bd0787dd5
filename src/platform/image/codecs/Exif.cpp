#include "platform/image/codecs/Exif_p.h"

#include <algorithm>
#include <cstring>
#include <libexif/exif-data.h>
#include <memory>
#include <vector>

namespace lamina {

namespace {

constexpr char kMark[] = {'E', 'x', 'i', 'f', '\0', '\0'};

// Blocks in JPEG files are shorter than this, and the orientation stands at the front in any other.
constexpr std::size_t kLongestBlock = 65536;

struct Unref {
    void operator()(ExifData* data) const { exif_data_unref(data); }
};

} // namespace

UIImageOrientation exifOrientation(std::span<const std::uint8_t> block)
{
    if (block.size() < 8)
        return UIImageOrientation::Up;
    if (std::memcmp(block.data(), kMark, sizeof kMark) == 0)
        block = block.subspan(sizeof kMark);
    block = block.first(std::min(block.size(), kLongestBlock));
    // The library wants the mark that only JPEG files put in front.
    std::vector<std::uint8_t> marked(std::begin(kMark), std::end(kMark));
    marked.insert(marked.end(), block.begin(), block.end());

    const std::unique_ptr<ExifData, Unref> data(exif_data_new());
    if (!data)
        return UIImageOrientation::Up;
    exif_data_unset_option(data.get(), EXIF_DATA_OPTION_FOLLOW_SPECIFICATION); // it would invent tags that are missing
    exif_data_load_data(data.get(), marked.data(), static_cast<unsigned>(marked.size()));
    const ExifEntry* entry = exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION);
    if (!entry || !entry->data)
        return UIImageOrientation::Up;
    const ExifByteOrder order = exif_data_get_byte_order(data.get());
    if (entry->format == EXIF_FORMAT_SHORT && entry->size >= 2)
        return orientationFromExif(exif_get_short(entry->data, order));
    if (entry->format == EXIF_FORMAT_LONG && entry->size >= 4) // some editors write it so
        return orientationFromExif(static_cast<int>(exif_get_long(entry->data, order) & 0xFF));
    return UIImageOrientation::Up;
}

} // namespace lamina
