#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/codecs/EncodedRows_p.h"
#include "platform/image/codecs/PNGFilters.h"
#include "platform/image/codecs/PictureEncoder_p.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/ColorConversion.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/PixelConversion.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <libdeflate.h>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace lamina {

namespace {

// Photos are noise to a compressor: the next level takes half as long again for 5 % less.
constexpr int kLevel = 1;

struct FreeCompressor {
    void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};
using Compressor = std::unique_ptr<libdeflate_compressor, FreeCompressor>;

void appendNumber(std::vector<std::uint8_t>& file, std::uint32_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        file.push_back(static_cast<std::uint8_t>(value >> shift));
}

void appendChunk(std::vector<std::uint8_t>& file, std::string_view type, std::span<const std::uint8_t> data)
{
    appendNumber(file, static_cast<std::uint32_t>(data.size()));
    const std::size_t checked = file.size();
    file.insert(file.end(), type.begin(), type.end());
    file.insert(file.end(), data.begin(), data.end());
    appendNumber(file, libdeflate_crc32(0, file.data() + checked, file.size() - checked));
}

/// A zlib stream in memory that is touched only as far as it is filled. Empty when memory is short.
struct Compressed {
    PixelBuffer buffer;
    std::size_t size = 0;
};

Compressed compress(std::span<const std::uint8_t> bytes, int level)
{
    const Compressor compressor(libdeflate_alloc_compressor(level));
    if (!compressor)
        return {};
    const std::size_t bound = libdeflate_zlib_compress_bound(compressor.get(), bytes.size());
    Compressed result{PixelBuffer::allocate(bound)};
    if (result.buffer)
        result.size =
            libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), result.buffer.data(), bound);
    return result;
}

/// The colour chunk of files in sRGB: a profile for RGB, which print programs want to see, the plain statement for
/// grey.
void appendColors(std::vector<std::uint8_t>& file, bool grey)
{
    constexpr std::uint8_t kRelativeColorimetric[] = {1};
    const Compressed profile = grey ? Compressed() : compress(sRGBProfile(), 9);
    if (profile.size == 0) {
        appendChunk(file, "sRGB", kRelativeColorimetric);
        return;
    }
    constexpr std::string_view kName("sRGB\0\0", 6); // the second zero: compressed by zlib
    std::vector<std::uint8_t> data(kName.begin(), kName.end());
    data.insert(data.end(), profile.buffer.data(), profile.buffer.data() + profile.size);
    appendChunk(file, "iCCP", data);
}

/// A picture as the format keeps it, before compression.
struct Filtered {
    PixelBuffer rows; ///< null when memory is short
    StoredColors type;
};

/// All rows as filtered bytes. A piece of them begins with the row above it, so that the bytes don't depend on the
/// split.
PixelBuffer filteredRows(const CGImage& image, const RowConverter& rows, StoredColors type)
{
    const auto width = static_cast<std::size_t>(image.width());
    const std::size_t rowBytes = width * storedBytes(type);
    PixelBuffer buffer = PixelBuffer::allocate((rowBytes + 1) * static_cast<std::size_t>(image.height()));
    if (!buffer)
        return buffer;
    constexpr std::size_t kCost = 8;
    parallelRows(0, image.height(), kCost * width, [&](int first, int last) {
        PNGFilters filters(rowBytes, storedBytes(type));
        std::vector<std::uint8_t> rgba(4 * width);
        for (int y = std::max(0, first - 1); y < last; ++y) {
            rows.convert(0, y, image.width(), rgba.data());
            packRow(rgba.data(), width, type, filters.next());
            if (y >= first)
                filters.filter(buffer.data() + static_cast<std::size_t>(y) * (rowBytes + 1));
        }
    });
    return buffer;
}

/// The picture is let go of.
Filtered filterPicture(CGImage image)
{
    const RowConverter rows(image, AlphaForm::Straight);
    const StoredColors type = chooseStoredColors(image, rows);
    return {filteredRows(image, rows, type), type};
}

Result<std::vector<std::uint8_t>> encodePNG(CGImage image, const EncodeOptions&)
{
    const IntSize size = image.size();
    Compressed pixels;
    StoredColors type{};
    {
        const Filtered filtered = filterPicture(std::move(image));
        if (!filtered.rows)
            return Error{{}, cause::kNoMemory};
        type = filtered.type;
        pixels = compress({filtered.rows.data(), filtered.rows.size()}, kLevel);
    }
    if (pixels.size == 0)
        return Error{{}, cause::kNoMemory};

    constexpr std::array<std::uint8_t, 8> kSignature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    std::vector<std::uint8_t> file(kSignature.begin(), kSignature.end());
    file.reserve(pixels.size + 4096);
    std::vector<std::uint8_t> header;
    appendNumber(header, static_cast<std::uint32_t>(size.width));
    appendNumber(header, static_cast<std::uint32_t>(size.height));
    constexpr std::uint8_t kBits = 8;
    header.insert(header.end(), {kBits, static_cast<std::uint8_t>(type), 0, 0, 0});
    appendChunk(file, "IHDR", header);
    appendColors(file, type == StoredColors::Gray || type == StoredColors::GrayAlpha);
    constexpr std::size_t kLongestChunk = std::size_t{1} << 30; // the format ends at 2^31 - 1
    for (std::size_t done = 0; done < pixels.size; done += kLongestChunk)
        appendChunk(file, "IDAT", {pixels.buffer.data() + done, std::min(kLongestChunk, pixels.size - done)});
    appendChunk(file, "IEND", {});
    return file;
}

} // namespace

const PictureEncoder kPNGEncoder{encodePNG};

} // namespace lamina
