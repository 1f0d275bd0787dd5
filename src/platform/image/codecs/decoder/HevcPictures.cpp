#include "platform/base/Result.h"
#include "platform/image/codecs/ByteCursor_p.h"
#include "platform/image/codecs/ByteNumbers_p.h"
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
#include <vector>

/// The sides of HEVC pictures (ITU-T H.265, 7.3.2.2; ISO/IEC 14496-15, 8.3.3 for the box).
namespace lamina {

namespace {

constexpr int kSequenceParameters = 33;
constexpr int kLastPictureKind = 31;

/// A unit begins with its kind and its layer; layers above the lowest are for others.
int kindOf(std::span<const std::uint8_t> unit)
{
    const bool isLowest = unit.size() >= 3 && (unit[0] & 1) == 0 && unit[1] >> 3 == 0;
    return isLowest ? unit[0] >> 1 & 63 : -1;
}

/// Without the bytes that keep start codes out of a unit.
std::vector<std::uint8_t> unescaped(std::span<const std::uint8_t> unit)
{
    std::vector<std::uint8_t> plain;
    int zeros = 0;
    for (const std::uint8_t byte : unit) {
        if (zeros >= 2 && byte == 3) {
            zeros = 0;
            continue;
        }
        zeros = byte == 0 ? zeros + 1 : 0;
        plain.push_back(byte);
    }
    return plain;
}

void skipProfile(BitReader& reader, std::uint32_t subLayers)
{
    constexpr std::size_t kProfile = 88;
    constexpr std::size_t kLevel = 8;
    constexpr std::uint32_t kMostSubLayers = 8;
    reader.skip(kProfile + kLevel);
    std::array<std::size_t, kMostSubLayers> sizes{};
    for (std::uint32_t i = 0; i < subLayers; ++i) {
        sizes[i] += reader.flag() ? kProfile : 0;
        sizes[i] += reader.flag() ? kLevel : 0;
    }
    if (subLayers > 0)
        reader.skip(2 * static_cast<std::size_t>(kMostSubLayers - subLayers));
    for (const std::size_t size : sizes)
        reader.skip(size);
}

/// Whether the sizes of blocks go together, with each other and with the picture's sides. libde265 refuses what doesn't
/// too, and tells the world.
bool areBlocksSound(BitReader& reader, const CodedPictures& told, std::uint32_t subLayers)
{
    constexpr std::uint32_t kLargestTransform = 5; // all sizes are powers of two
    constexpr std::uint32_t kLargestBlock = 6;
    reader.golomb();
    const bool eachLayer = reader.flag();
    for (std::uint32_t layers = eachLayer ? subLayers + 1 : 1; layers > 0; --layers) {
        for (int i = 0; i < 3; ++i)
            reader.golomb();
    }
    std::array<std::uint32_t, 6> sizes{};
    for (std::uint32_t& size : sizes) {
        size = reader.golomb();
        if (size > kLargestBlock)
            return false;
    }
    const std::uint32_t smallest = 3 + sizes[0];
    const std::uint32_t largest = smallest + sizes[1];
    const std::uint32_t smallestTransform = 2 + sizes[2];
    const std::uint32_t largestTransform = smallestTransform + sizes[3];
    const std::uint64_t rest = (std::uint64_t{1} << smallest) - 1;
    return largest <= kLargestBlock && (told.width & rest) == 0 && (told.height & rest) == 0 &&
           smallestTransform < smallest && largestTransform <= std::min(kLargestTransform, largest) &&
           sizes[4] <= largest - smallestTransform && sizes[5] <= largest - smallestTransform;
}

/// Of a unit of sequence parameters, as much of it as is needed.
std::optional<CodedPictures> sidesOf(std::span<const std::uint8_t> unit)
{
    const std::vector<std::uint8_t> plain = unescaped(unit);
    BitReader reader(plain);
    reader.skip(16 + 4);
    const std::uint32_t subLayers = reader.bits(3);
    reader.skip(1);
    skipProfile(reader, subLayers);
    reader.golomb();
    const std::uint32_t chroma = reader.golomb();
    if (chroma > 3)
        return std::nullopt;
    reader.skip(chroma == 3 ? 1 : 0);
    CodedPictures told;
    told.width = told.shownWidth = reader.golomb();
    told.height = told.shownHeight = reader.golomb();
    if (reader.flag()) {
        std::array<std::uint64_t, 4> margins{};
        for (std::uint64_t& margin : margins)
            margin = reader.golomb();
        told.shownWidth -= std::min(told.width, (margins[0] + margins[1]) * (chroma == 1 || chroma == 2 ? 2 : 1));
        told.shownHeight -= std::min(told.height, (margins[2] + margins[3]) * (chroma == 1 ? 2 : 1));
    }
    constexpr std::uint32_t kDeepest = 8; // beyond the first eight bits
    const std::uint32_t deeper = std::max(reader.golomb(), reader.golomb());
    told.bytesOfFourPixels = bytesOfFourPixels(chroma, deeper > 0);
    if (deeper > kDeepest || !areBlocksSound(reader, told, subLayers) || reader.overran() || told.width == 0 ||
        told.height == 0)
        return std::nullopt;
    return told;
}

class HevcReader {
public:
    bool readConfiguration(std::span<const std::uint8_t> configuration)
    {
        ByteCursor cursor(configuration);
        cursor.skip(21);
        const bool sizesOfFour = (cursor.number(1) & 3) == 3; // the one size that libheif reads
        for (std::uint64_t arrays = cursor.number(1); arrays > 0 && !cursor.overran(); --arrays) {
            cursor.skip(1);
            for (std::uint64_t count = cursor.number(2); count > 0 && !cursor.overran(); --count) {
                if (!take(cursor.bytes(static_cast<std::size_t>(cursor.number(2)))))
                    return false;
            }
        }
        return sizesOfFour && !cursor.overran();
    }

    bool readData(ByteSource& data)
    {
        std::array<std::uint8_t, 4 + 256> head{}; // a unit's length and, of parameters, as much as tells the sides
        std::uint64_t at = 0;
        for (int units = 0; at < data.size(); ++units) {
            const std::size_t known = data.read(at, head);
            if (known < 4 || units == kMostCodedUnits)
                return false;
            const std::uint64_t size = numberOf(std::span(head).first(4));
            if (size > data.size() - at - 4)
                return false;
            if (!take(std::span(head).subspan(4, std::min<std::uint64_t>(size, known - 4))))
                return false;
            at += 4 + size;
        }
        return true;
    }

    const CodedPictures& pictures() const { return m_pictures; }

private:
    bool take(std::span<const std::uint8_t> unit)
    {
        const int kind = kindOf(unit);
        if (kind == kSequenceParameters) {
            const std::optional<CodedPictures> told = sidesOf(unit);
            if (told)
                m_pictures.include(*told);
            return told.has_value();
        }
        constexpr std::uint8_t kFirstSlice = 128;
        if (kind >= 0 && kind <= kLastPictureKind && (unit[2] & kFirstSlice) != 0)
            ++m_pictures.count;
        return true;
    }

    CodedPictures m_pictures;
};

} // namespace

Result<CodedPictures> readHevcPictures(std::span<const std::uint8_t> configuration, ByteSource& data)
{
    HevcReader reader;
    if (!reader.readConfiguration(configuration) || !reader.readData(data) || reader.pictures().width == 0)
        return Error{{}, cause::kDamaged};
    return reader.pictures();
}

} // namespace lamina
