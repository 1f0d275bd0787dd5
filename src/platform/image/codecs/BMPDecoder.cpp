#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/BMPHeader_p.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureBuilder_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/RowCollector_p.h"
#include "platform/image/codecs/SequentialReader_p.h"
#include "platform/image/pixels/PixelArithmetic.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// BMP. An index beyond the palette, and what run-length data leave out, is black (the first index for the latter).
/// Alpha counts where the header has a mask for it; a picture whose alpha is 0 throughout was written by a program that
/// left the field unset, and is taken as opaque. Plain pixels can be reduced on the way.
namespace lamina {

namespace {

constexpr std::uint64_t kLargestProfile = 4u << 20;

bool recognizesBMP(std::span<const std::uint8_t> head)
{
    if (head.size() < 18 || head[0] != 'B' || head[1] != 'M')
        return false;
    return isBMPHeaderSize(head[14] | head[15] << 8 | head[16] << 16 | static_cast<std::uint32_t>(head[17]) << 24);
}

/// Takes one component out of a pixel.
class Component {
public:
    explicit Component(std::uint32_t mask)
        : m_shift(mask == 0 ? 0 : std::countr_zero(mask))
        , m_largest(mask >> m_shift)
    {
        // More than 16 bits would not fit the conversion, and their low ones can't be seen.
        if (const int excess = std::bit_width(m_largest) - 16; excess > 0) {
            m_shift += excess;
            m_largest >>= excess;
        }
    }
    std::uint8_t operator()(std::uint32_t pixel) const
    {
        return m_largest == 0 ? std::uint8_t{0} : to8Bits(pixel >> m_shift & m_largest, m_largest);
    }

private:
    int m_shift;
    std::uint32_t m_largest;
};

/// Turns stored rows into RGBA.
class StoredRowConverter {
public:
    explicit StoredRowConverter(const BMPHeader& header)
        : m_header(header)
        , m_red(header.masks[0])
        , m_green(header.masks[1])
        , m_blue(header.masks[2])
        , m_alpha(header.masks[3])
    {
    }

    bool hasAlpha() const { return m_header.masks[3] != 0; }

    void convert(const std::uint8_t* in, std::uint8_t* out) const
    {
        switch (m_header.bitsPerPixel) {
        case 16:
            return masked<2>(in, out);
        case 24:
            return bgr(in, out);
        case 32:
            return masked<4>(in, out);
        default:
            return indexed(in, out);
        }
    }

private:
    void indexed(const std::uint8_t* in, std::uint8_t* out) const
    {
        const int bits = m_header.bitsPerPixel;
        const int mask = (1 << bits) - 1;
        for (int x = 0; x < m_header.width; ++x, out += 4) {
            const int bit = x * bits;
            const auto& color = m_header.palette[static_cast<std::size_t>(in[bit / 8] >> (8 - bits - bit % 8) & mask)];
            std::copy(color.begin(), color.end(), out);
            out[3] = 255;
        }
    }
    void bgr(const std::uint8_t* in, std::uint8_t* out) const
    {
        for (int x = 0; x < m_header.width; ++x, in += 3, out += 4) {
            out[0] = in[2];
            out[1] = in[1];
            out[2] = in[0];
            out[3] = 255;
        }
    }
    template <int Bytes>
    void masked(const std::uint8_t* in, std::uint8_t* out) const
    {
        for (int x = 0; x < m_header.width; ++x, in += Bytes, out += 4) {
            std::uint32_t pixel = 0;
            for (int i = 0; i < Bytes; ++i)
                pixel |= static_cast<std::uint32_t>(in[i]) << 8 * i;
            out[0] = m_red(pixel);
            out[1] = m_green(pixel);
            out[2] = m_blue(pixel);
            out[3] = hasAlpha() ? m_alpha(pixel) : 255;
        }
    }

    const BMPHeader& m_header;
    Component m_red;
    Component m_green;
    Component m_blue;
    Component m_alpha;
};

std::vector<std::uint8_t> readProfile(const BMPHeader& header, ByteSource& source)
{
    std::vector<std::uint8_t> profile;
    if (header.profileSize == 0 || header.profileSize > kLargestProfile ||
        header.profileOffset + header.profileSize > source.size())
        return profile;
    profile.resize(header.profileSize);
    profile.resize(source.read(header.profileOffset, profile));
    return profile;
}

/// How many rows are read at once: a narrow picture has many.
int rowsPerRead(const BMPHeader& header)
{
    constexpr std::uint64_t kBytesPerRead = std::uint64_t{256} << 10;
    return static_cast<int>(std::clamp<std::uint64_t>(kBytesPerRead / header.storedBytesPerRow(), 1,
                                                      static_cast<std::uint64_t>(header.height)));
}

/// Reads row after row, top first. `body(bytes)` gets each stored row and says whether to go on.
template <class Body>
Outcome eachStoredRow(const BMPHeader& header, ByteSource& source, const DecodeOptions& options, const Body& body)
{
    const auto stride = static_cast<std::size_t>(header.storedBytesPerRow());
    const auto used = static_cast<std::size_t>(header.usedBytesPerRow());
    std::vector<std::uint8_t> stored(stride * static_cast<std::size_t>(rowsPerRead(header)));
    for (int top = 0; top < header.height; top += rowsPerRead(header)) {
        const int count = std::min(rowsPerRead(header), header.height - top);
        const auto line = static_cast<std::uint64_t>(header.topDown ? top : header.height - top - count);
        const std::size_t wanted = stride * static_cast<std::size_t>(count - 1) + used;
        if (source.read(header.pixelOffset + line * stride, std::span(stored).first(wanted)) < wanted)
            return Error{{}, cause::kTruncated};
        for (int i = 0; i < count; ++i) {
            if (isCancelled(options))
                return Error{{}, cause::kCancelled};
            if (!body(stored.data() + stride * static_cast<std::size_t>(header.topDown ? i : count - 1 - i)))
                return success();
        }
    }
    return success();
}

/// Whether a row has a pixel that isn't clear, with the alpha mask of the header.
Result<bool> hasAlphaInUse(const BMPHeader& header, ByteSource& source, const DecodeOptions& options)
{
    if (header.masks[3] == 0)
        return false;
    const auto bytes = static_cast<std::size_t>(header.bitsPerPixel / 8);
    bool used = false;
    const Outcome read = eachStoredRow(header, source, options, [&](const std::uint8_t* row) {
        for (std::size_t x = 0; !used && x < static_cast<std::size_t>(header.width); ++x) {
            for (std::size_t i = 0; i < bytes; ++i)
                used = used || (row[x * bytes + i] & (header.masks[3] >> 8 * i & 0xFF)) != 0;
        }
        return !used;
    });
    if (!read)
        return read.error();
    return used;
}

Result<UIImage> decodePlain(BMPHeader header, ByteSource& source, const DecodeOptions& options)
{
    const std::uint64_t needed = header.pixelOffset + header.usedBytesPerRow() +
                                 static_cast<std::uint64_t>(header.height - 1) * header.storedBytesPerRow();
    const int factor = reductionFactor(header.width, header.height, options.shortSide);
    const std::uint64_t held = collectorBytes(header.width, header.height, factor) +
                               header.storedBytesPerRow() * static_cast<std::uint64_t>(rowsPerRead(header));
    if (const Outcome claim = checkClaim(header.width, header.height, held, source.size(), options); !claim)
        return claim.error();
    if (source.size() < needed)
        return Error{{}, cause::kTruncated};

    const Result<bool> alphaUsed = hasAlphaInUse(header, source, options);
    if (!alphaUsed)
        return alphaUsed.error();
    if (!*alphaUsed)
        header.masks[3] = 0;

    const StoredRowConverter converter(header);
    RowCollector rows(header.width, header.height, factor, converter.hasAlpha(), options);
    if (!rows)
        return Error{{}, cause::kNoMemory};
    const Outcome read = eachStoredRow(header, source, options, [&](const std::uint8_t* stored) {
        converter.convert(stored, rows.row());
        rows.advance();
        return true;
    });
    if (!read)
        return read.error();
    return std::move(rows).finish(readProfile(header, source), UIImageOrientation::Up);
}

/// Unpacks run-length data, which run from the bottom row up.
class RunLengthReader {
public:
    RunLengthReader(const BMPHeader& header, ByteSource& source, PictureBuilder& builder)
        : m_header(header)
        , m_reader(source, header.pixelOffset)
        , m_builder(builder)
        , m_nibbles(header.packing == BMPHeader::Packing::RunLength4)
    {
    }

    Outcome run(const DecodeOptions& options)
    {
        // The end mark may be missing when every row is there.
        while (m_y < m_header.height && !m_ended) {
            const int count = m_reader.byte();
            const int value = m_reader.byte();
            if (value < 0)
                return Error{{}, cause::kTruncated};
            if (count > 0)
                repeat(count, value);
            else if (!escape(value))
                return Error{{}, cause::kTruncated};
            if (isCancelled(options))
                return Error{{}, cause::kCancelled};
            // A last row that is full needs no end mark either.
            if (m_y == m_header.height - 1 && m_x >= m_header.width)
                m_ended = true;
        }
        return success();
    }

private:
    void put(int index)
    {
        if (m_x < m_header.width && m_y < m_header.height) {
            std::uint8_t* out = m_builder.row(m_header.height - 1 - m_y) + 4 * static_cast<std::ptrdiff_t>(m_x);
            const auto& color = m_header.palette[static_cast<std::size_t>(index)];
            std::copy(color.begin(), color.end(), out);
            ++m_x;
        }
    }
    void repeat(int count, int value)
    {
        for (int i = 0; i < count; ++i)
            put(m_nibbles ? (i % 2 == 0 ? value >> 4 : value & 15) : value);
    }
    /// False when the data end too early.
    bool escape(int code)
    {
        switch (code) {
        case 0:
            m_x = 0;
            ++m_y;
            return true;
        case 1:
            m_ended = true;
            return true;
        case 2: {
            const int right = m_reader.byte();
            const int up = m_reader.byte();
            m_x = std::min(m_x + std::max(0, right), m_header.width);
            m_y += std::max(0, up);
            return up >= 0;
        }
        default:
            return literal(code);
        }
    }
    bool literal(int count)
    {
        const int bytes = m_nibbles ? (count + 1) / 2 : count;
        for (int i = 0; i < bytes; ++i) {
            const int value = m_reader.byte();
            if (value < 0)
                return false;
            if (!m_nibbles) {
                put(value);
                continue;
            }
            put(value >> 4);
            if (2 * i + 1 < count)
                put(value & 15);
        }
        // Literal bytes are padded to an even number; the very last padding byte is nobody's loss.
        if (bytes % 2 != 0)
            m_reader.byte();
        return true;
    }

    const BMPHeader& m_header;
    SequentialReader m_reader;
    PictureBuilder& m_builder;
    bool m_nibbles;
    bool m_ended = false;
    int m_x = 0;
    int m_y = 0;
};

Result<UIImage> decodeRunLength(const BMPHeader& header, ByteSource& source, const DecodeOptions& options)
{
    const std::uint64_t held = collectorBytes(header.width, header.height, 1);
    if (const Outcome claim = checkClaim(header.width, header.height, held, source.size(), options); !claim)
        return claim.error();
    PictureBuilder builder(header.width, header.height, options);
    if (!builder)
        return Error{{}, cause::kNoMemory};
    const auto& [red, green, blue] = header.palette[0];
    if (const Outcome filled = builder.fill({red, green, blue, 255}); !filled)
        return filled.error();
    if (const Outcome run = RunLengthReader(header, source, builder).run(options); !run)
        return run.error();
    return std::move(builder).finish(false, readProfile(header, source), UIImageOrientation::Up);
}

Result<UIImage> decodeBMP(ByteSource& source, const DecodeOptions& options)
{
    const Result<BMPHeader> header = readBMPHeader(source);
    if (!header)
        return header.error();
    return header->packing == BMPHeader::Packing::Plain ? decodePlain(*header, source, options)
                                                        : decodeRunLength(*header, source, options);
}

Result<StoredFacts> factsOfBMP(ByteSource& source)
{
    const Result<BMPHeader> header = readBMPHeader(source);
    if (!header)
        return header.error();
    return StoredFacts{
        static_cast<std::uint64_t>(header->width), static_cast<std::uint64_t>(header->height), {}, false};
}

} // namespace

const PictureDecoder kBMPDecoder{recognizesBMP, decodeBMP, factsOfBMP, nullptr};

} // namespace lamina
