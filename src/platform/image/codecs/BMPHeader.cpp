#include "platform/image/codecs/BMPHeader_p.h"

#include "platform/base/Causes.h"
#include "platform/image/codecs/PictureDecoder_p.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <limits>
#include <optional>
#include <span>

namespace lamina {

namespace {

constexpr std::uint32_t kFileHeaderSize = 14;
constexpr std::uint32_t kCoreHeaderSize = 12;
constexpr std::uint32_t kInfoHeaderSize = 40;
constexpr std::uint32_t kLargestHeaderSize = 124;
constexpr std::uint32_t kEmbeddedProfile = 0x4D424544; // 'MBED'

enum Compression : std::uint32_t {
    kPlain = 0,
    kRunLength8 = 1,
    kRunLength4 = 2,
    kBitFields = 3,
    kAlphaBitFields = 6,
};

/// The two headers and the masks behind the second; fields beyond the end read as zero, as the shorter versions mean
/// them.
struct Fields {
    std::array<std::uint8_t, kFileHeaderSize + kLargestHeaderSize + 16> bytes{};
    std::size_t count = 0;

    std::uint32_t u16(std::size_t at) const
    {
        return at + 2 <= count ? bytes[at] | static_cast<std::uint32_t>(bytes[at + 1]) << 8 : 0;
    }
    std::uint32_t u32(std::size_t at) const { return u16(at) | u16(at + 2) << 16; }
};

bool isOneRun(std::uint32_t mask)
{
    if (mask == 0)
        return true;
    const std::uint64_t moved = mask >> std::countr_zero(mask);
    return (moved & (moved + 1)) == 0;
}

/// Masks of the pixels, and how many bytes of them stand behind the second header.
std::optional<std::uint32_t> readMasks(BMPHeader& header, const Fields& fields, std::uint32_t headerSize,
                                       std::uint32_t compression)
{
    if (header.bitsPerPixel != 16 && header.bitsPerPixel != 32)
        return compression == kBitFields || compression == kAlphaBitFields ? std::nullopt : std::optional(0u);
    if (compression == kPlain) {
        header.masks = header.bitsPerPixel == 16 ? std::array<std::uint32_t, 4>{0x7C00, 0x03E0, 0x001F, 0}
                                                 : std::array<std::uint32_t, 4>{0xFF0000, 0xFF00, 0xFF, 0};
        return 0;
    }
    const bool fourMasks = headerSize >= 56 || (headerSize == kInfoHeaderSize && compression == kAlphaBitFields);
    for (std::size_t i = 0; i < (fourMasks ? 4u : 3u); ++i)
        header.masks[i] = fields.u32(kFileHeaderSize + kInfoHeaderSize + 4 * i);
    std::uint32_t all = 0;
    for (const std::uint32_t mask : header.masks) {
        if (!isOneRun(mask) || (all & mask) != 0 || (header.bitsPerPixel == 16 && mask > 0xFFFF))
            return std::nullopt;
        all |= mask;
    }
    if (headerSize != kInfoHeaderSize)
        return 0;
    return fourMasks ? 16 : 12;
}

void readPalette(BMPHeader& header, ByteSource& source, std::uint64_t offset, std::uint32_t claimed, bool threeBytes)
{
    const std::uint32_t possible = 1u << header.bitsPerPixel;
    std::uint64_t entries = claimed == 0 ? possible : std::min(claimed, possible);
    const std::uint64_t entrySize = threeBytes ? 3 : 4;
    // Some writers give fewer entries than they announce; the pixels begin where the offset says.
    if (header.pixelOffset > offset)
        entries = std::min(entries, (header.pixelOffset - offset) / entrySize);
    std::array<std::uint8_t, 1024> bytes{};
    const std::size_t wanted = static_cast<std::size_t>(entries * entrySize);
    entries = source.read(offset, std::span(bytes).first(wanted)) / entrySize;
    for (std::size_t i = 0; i < entries; ++i) {
        const std::uint8_t* bgr = bytes.data() + i * entrySize;
        header.palette[i] = {bgr[2], bgr[1], bgr[0]};
    }
}

bool isPossibleDepth(std::uint32_t bits, std::uint32_t compression)
{
    switch (compression) {
    case kPlain:
        return bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
    case kRunLength8:
        return bits == 8;
    case kRunLength4:
        return bits == 4;
    default:
        return bits == 16 || bits == 32;
    }
}

bool readSides(BMPHeader& header, const Fields& fields, bool core)
{
    if (core) {
        header.width = static_cast<int>(fields.u16(18));
        header.height = static_cast<int>(fields.u16(20));
    } else {
        header.width = static_cast<int>(fields.u32(18));
        const auto height = static_cast<std::int32_t>(fields.u32(22));
        if (height == std::numeric_limits<std::int32_t>::min())
            return false;
        header.topDown = height < 0;
        header.height = header.topDown ? -height : height;
    }
    return header.width > 0 && header.height > 0;
}

} // namespace

bool isBMPHeaderSize(std::uint32_t size)
{
    constexpr std::array<std::uint32_t, 8> known{12, 16, 40, 52, 56, 64, 108, 124};
    return std::find(known.begin(), known.end(), size) != known.end();
}

Result<BMPHeader> readBMPHeader(ByteSource& source)
{
    Fields fields;
    fields.count = source.read(0, fields.bytes);
    const std::uint32_t size = fields.u32(kFileHeaderSize);
    if (!isBMPHeaderSize(size))
        return Error{{}, cause::kDamaged};
    if (fields.count < kFileHeaderSize + size)
        return Error{{}, cause::kTruncated};

    const bool core = size == kCoreHeaderSize;
    const std::uint32_t bits = fields.u16(core ? 24 : 28);
    const std::uint32_t compression = size >= kInfoHeaderSize ? fields.u32(30) : std::uint32_t{kPlain};
    BMPHeader header;
    if (!readSides(header, fields, core))
        return Error{{}, cause::kDamaged};
    // The long header of OS/2 means other things by 3 and 4.
    const bool known = compression <= kBitFields || compression == kAlphaBitFields;
    if (!known || (size == 64 && compression >= kBitFields))
        return Error{{}, "this kind of BMP compression can't be read"};
    if (!isPossibleDepth(bits, compression))
        return Error{{}, cause::kDamaged};
    header.bitsPerPixel = static_cast<int>(bits);
    if (compression == kRunLength8 || compression == kRunLength4) {
        if (header.topDown)
            return Error{{}, cause::kDamaged};
        header.packing = compression == kRunLength8 ? BMPHeader::Packing::RunLength8 : BMPHeader::Packing::RunLength4;
    }

    const std::optional<std::uint32_t> maskBytes = readMasks(header, fields, size, compression);
    header.pixelOffset = fields.u32(10);
    const std::uint64_t headersEnd = kFileHeaderSize + size + maskBytes.value_or(0);
    if (!maskBytes || header.pixelOffset < headersEnd)
        return Error{{}, cause::kDamaged};
    if (bits <= 8)
        readPalette(header, source, headersEnd, size >= kInfoHeaderSize ? fields.u32(46) : 0, core);
    if (size == kLargestHeaderSize && fields.u32(kFileHeaderSize + 56) == kEmbeddedProfile) {
        header.profileOffset = kFileHeaderSize + std::uint64_t{fields.u32(kFileHeaderSize + 112)};
        header.profileSize = fields.u32(kFileHeaderSize + 116);
    }
    return header;
}

} // namespace lamina
