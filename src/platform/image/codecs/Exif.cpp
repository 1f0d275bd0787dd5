#include "platform/image/codecs/Exif_p.h"

#include "platform/image/codecs/ExifDate_p.h"
#include "platform/image/codecs/TIFFTags_p.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace lamina {

namespace {

constexpr std::string_view kMark("Exif\0\0", 6);

enum Tag : std::uint16_t {
    kOrientation = 0x0112,
    kThumbnailOffset = 0x0201,
    kThumbnailLength = 0x0202,
    kExifDirectory = 0x8769,
};

/// Where a time and its offset from UTC stand, the best first.
struct TimeTags {
    std::uint16_t time;
    std::uint16_t offset;
};
constexpr std::array<TimeTags, 3> kTimeTags{{
    {0x9003, 0x9011}, // the original's
    {0x9004, 0x9012}, // digitized
    {0x0132, 0x9010}, // changed
}};

std::optional<TIFFTags> openTags(ByteSource& source, ByteRange block)
{
    if (block.length >= kMark.size() && standsAt(source, block.offset, kMark))
        block = {block.offset + kMark.size(), block.length - kMark.size()};
    return TIFFTags::open(source, block);
}

/// Gathers the texts of times from the directories that hold them.
class Times {
public:
    void take(const TIFFTags& tags, const TIFFTags::Field& field)
    {
        for (std::size_t i = 0; i < kTimeTags.size(); ++i) {
            if (field.tag == kTimeTags[i].time)
                m_times[i] = tags.text(field);
            else if (field.tag == kTimeTags[i].offset)
                m_offsets[i] = tags.text(field);
        }
    }

    std::optional<double> best() const
    {
        for (std::size_t i = 0; i < kTimeTags.size(); ++i) {
            if (const std::optional<double> date = exifDate(m_times[i], m_offsets[i]))
                return date;
        }
        return std::nullopt;
    }

private:
    std::array<std::string, kTimeTags.size()> m_times;
    std::array<std::string, kTimeTags.size()> m_offsets;
};

} // namespace

ExifFacts readExif(ByteSource& source, ByteRange block)
{
    ExifFacts facts;
    const std::optional<TIFFTags> tags = openTags(source, block);
    if (!tags)
        return facts;
    Times times;
    std::uint64_t exifDirectory = 0;
    tags->eachField(tags->firstDirectory(), [&](const TIFFTags::Field& field) {
        if (field.tag == kOrientation) // some editors write it with four bytes
            facts.orientationTag = static_cast<int>(tags->number(field).value_or(0) & 0xFF);
        else if (field.tag == kExifDirectory)
            exifDirectory = tags->number(field).value_or(0);
        else
            times.take(*tags, field);
    });
    if (exifDirectory != 0)
        tags->eachField(exifDirectory, [&](const TIFFTags::Field& field) { times.take(*tags, field); });
    facts.orientation = orientationFromExif(facts.orientationTag.value_or(0));
    facts.date = times.best();
    return facts;
}

ByteRange findExifThumbnail(ByteSource& source, ByteRange block)
{
    const std::optional<TIFFTags> tags = openTags(source, block);
    if (!tags)
        return {};
    const std::uint64_t second = tags->eachField(tags->firstDirectory(), [](const TIFFTags::Field&) {});
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
    if (second != 0) {
        tags->eachField(second, [&](const TIFFTags::Field& field) {
            if (field.tag == kThumbnailOffset)
                offset = tags->number(field).value_or(0);
            else if (field.tag == kThumbnailLength)
                length = tags->number(field).value_or(0);
        });
    }
    return tags->rangeInSource(offset, length);
}

UIImageOrientation exifOrientation(std::span<const std::uint8_t> block)
{
    return readExif(*memorySource(block), {0, block.size()}).orientation;
}

std::optional<int> exifOrientationTag(std::span<const std::uint8_t> block)
{
    return readExif(*memorySource(block), {0, block.size()}).orientationTag;
}

} // namespace lamina
