#include "platform/image/codecs/TIFFFacts_p.h"

#include "platform/base/Causes.h"
#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/TIFFTags_p.h"

#include <cstring>
#include <optional>
#include <tiff.h>

namespace lamina {

bool recognizesTIFF(std::span<const std::uint8_t> head)
{
    if (head.size() < 8)
        return false;
    for (const char* magic : {"II*\0", "MM\0*", "II+\0", "MM\0+"}) {
        if (std::memcmp(head.data(), magic, 4) == 0)
            return true;
    }
    return false;
}

Result<StoredFacts> factsOfTIFF(ByteSource& source)
{
    const ByteRange whole{0, source.size()};
    const std::optional<TIFFTags> tags = TIFFTags::open(source, whole);
    if (!tags)
        return Error{{}, cause::kTruncated};
    // Of a field that stands twice the first counts, as when the picture is read.
    std::optional<std::uint64_t> width;
    std::optional<std::uint64_t> height;
    tags->eachField(tags->firstDirectory(), [&](const TIFFTags::Field& field) {
        if (field.tag == TIFFTAG_IMAGEWIDTH && !width)
            width = tags->number(field).value_or(0);
        else if (field.tag == TIFFTAG_IMAGELENGTH && !height)
            height = tags->number(field).value_or(0);
    });
    return StoredFacts{width.value_or(0), height.value_or(0), whole, false};
}

} // namespace lamina
