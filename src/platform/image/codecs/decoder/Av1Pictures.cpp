#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/decoder/BitReader_p.h"
#include "platform/image/codecs/decoder/CodedPictures_p.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

/// The sides of AV1 pictures (AV1 Bitstream & Decoding Process, 5.3 for units, 5.5 for the sequence header).
namespace lamina {

namespace {

constexpr int kSequenceHeader = 1;
constexpr int kFrameHeader = 3;
constexpr int kFrame = 6;

/// How long decoder models' numbers are; 0 when there are none.
int skipTiming(BitReader& reader)
{
    if (!reader.flag())
        return 0;
    reader.skip(64);
    if (reader.flag())
        reader.golomb(); // coded alike
    if (!reader.flag())
        return 0;
    const int length = static_cast<int>(reader.bits(5)) + 1;
    reader.skip(32 + 5 + 5);
    return length;
}

void skipOperatingPoints(BitReader& reader)
{
    const int modelLength = skipTiming(reader);
    const bool delaysTold = reader.flag();
    for (std::uint32_t points = reader.bits(5) + 1; points > 0; --points) {
        constexpr std::uint32_t kLastLevelOfOneTier = 7;
        reader.skip(12);
        if (reader.bits(5) > kLastLevelOfOneTier)
            reader.skip(1);
        if (modelLength > 0 && reader.flag())
            reader.skip(2 * static_cast<std::size_t>(modelLength) + 1);
        if (delaysTold && reader.flag())
            reader.skip(4);
    }
}

/// Which tools moving pictures use.
void skipMotionTools(BitReader& reader)
{
    reader.skip(4);
    const bool ordered = reader.flag();
    reader.skip(ordered ? 2 : 0);
    const bool screenContent = reader.flag() || reader.flag();
    if (screenContent && !reader.flag())
        reader.skip(1);
    reader.skip(ordered ? 3 : 0);
}

std::uint64_t readColors(BitReader& reader, std::uint32_t profile)
{
    const bool deep = reader.flag();
    const bool twelveBits = profile == 2 && deep && reader.flag();
    const bool grey = profile != 1 && reader.flag();
    const bool described = reader.flag();
    constexpr std::uint32_t kPlainRgb = 1 << 16 | 13 << 8; // BT.709 primaries, sRGB curve, no matrix
    const bool isRgb = described && reader.bits(24) == kPlainRgb;
    if (grey)
        return bytesOfFourPixels(1, deep); // the codec keeps planes for colours nevertheless
    if (isRgb || profile == 1)
        return bytesOfFourPixels(3, deep);
    reader.skip(1);
    if (profile == 0 || !twelveBits)
        return bytesOfFourPixels(profile == 0 ? 1 : 2, deep);
    const bool narrow = reader.flag();
    const bool low = narrow && reader.flag();
    return bytesOfFourPixels(low ? 1 : narrow ? 2 : 3, deep);
}

std::optional<CodedPictures> sidesOf(std::span<const std::uint8_t> header)
{
    BitReader reader(header);
    const std::uint32_t profile = reader.bits(3);
    reader.skip(1);
    const bool isStill = reader.flag();
    if (isStill)
        reader.skip(5);
    else
        skipOperatingPoints(reader);
    const int widthBits = static_cast<int>(reader.bits(4)) + 1;
    const int heightBits = static_cast<int>(reader.bits(4)) + 1;
    CodedPictures told;
    told.width = told.shownWidth = reader.bits(widthBits) + 1u;
    told.height = told.shownHeight = reader.bits(heightBits) + 1u;
    if (!isStill && reader.flag())
        reader.skip(7);
    reader.skip(3);
    if (!isStill)
        skipMotionTools(reader);
    reader.skip(3);
    told.bytesOfFourPixels = readColors(reader, profile);
    return profile > 2 || reader.overran() ? std::nullopt : std::optional(told);
}

struct Unit {
    int kind = 0;
    std::uint64_t content = 0;
    std::uint64_t end = 0;
};

/// The unit at `at`, of which `head` are the first bytes.
std::optional<Unit> readUnit(std::span<const std::uint8_t> head, std::uint64_t at, std::uint64_t limit)
{
    constexpr std::uint8_t kHasExtension = 4;
    constexpr std::uint8_t kHasSize = 2;
    if (head.empty())
        return std::nullopt;
    std::size_t used = (head[0] & kHasExtension) != 0 ? 2 : 1;
    std::uint64_t size = limit - at - std::min<std::uint64_t>(used, limit - at);
    if ((head[0] & kHasSize) != 0) {
        size = 0;
        bool more = true;
        for (int shift = 0; more && shift < 56; shift += 7, ++used) {
            if (used >= head.size())
                return std::nullopt;
            size |= static_cast<std::uint64_t>(head[used] & 127) << shift;
            more = (head[used] & 128) != 0;
        }
        if (more)
            return std::nullopt;
    }
    if (used > limit - at || size > limit - at - used)
        return std::nullopt;
    return Unit{head[0] >> 3 & 15, at + used, at + used + size};
}

/// Takes the units of an item, or of its configuration, in.
bool readUnits(ByteSource& data, std::uint64_t at, CodedPictures& pictures)
{
    for (int units = 0; at < data.size(); ++units) {
        std::array<std::uint8_t, 16> head{};
        const std::optional<Unit> unit = readUnit(std::span(head).first(data.read(at, head)), at, data.size());
        if (!unit || units == kMostCodedUnits)
            return false;
        if (unit->kind == kSequenceHeader) {
            std::array<std::uint8_t, 512> header{};
            const std::size_t size = std::min<std::uint64_t>(header.size(), unit->end - unit->content);
            const std::size_t known = data.read(unit->content, std::span(header).first(size));
            const std::optional<CodedPictures> told = sidesOf(std::span(header).first(known));
            if (!told)
                return false;
            pictures.include(*told);
        }
        pictures.count += unit->kind == kFrame || unit->kind == kFrameHeader ? 1 : 0;
        at = unit->end;
    }
    return true;
}

} // namespace

Result<CodedPictures> readAv1Pictures(std::span<const std::uint8_t> configuration, ByteSource& data)
{
    constexpr std::uint64_t kFixed = 4; // bytes of the box before its units
    CodedPictures pictures;
    if (configuration.size() < kFixed || !readUnits(*memorySource(configuration), kFixed, pictures) ||
        !readUnits(data, 0, pictures) || pictures.width == 0)
        return Error{{}, cause::kDamaged};
    return pictures;
}

} // namespace lamina
