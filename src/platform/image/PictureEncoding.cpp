#include "platform/image/PictureEncoding.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/ColorConversion.h"
#include "platform/image/PixelConversion.h"
#include "platform/image/codecs/PNGFilters.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <libdeflate.h>
#include <memory>
#include <new>
#include <optional>
#include <string_view>

namespace lamina {

namespace {

// Photos are noise to a compressor: the next level takes half as long again for 5 % less.
constexpr int kLevel = 1;

/// How the pixels are stored; the values are the format's.
enum class ColorType : std::uint8_t { Gray = 0, RGB = 2, GrayAlpha = 4, RGBA = 6 };

std::size_t pixelBytes(ColorType type)
{
    switch (type) {
    case ColorType::Gray:
        return 1;
    case ColorType::GrayAlpha:
        return 2;
    case ColorType::RGB:
        return 3;
    case ColorType::RGBA:
        break;
    }
    return 4;
}

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

/// The colour chunk of files in sRGB: a profile for RGB, which print programs want to see, the plain statement for grey.
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

bool isOpaque(const CGImage& image, const RowConverter& rows)
{
    if (!image.hasAlpha())
        return true;
    std::atomic<bool> opaque = true;
    parallelRows(0, image.height(), static_cast<std::size_t>(image.width()), [&](int first, int last) {
        std::vector<std::uint8_t> rgba(4 * static_cast<std::size_t>(image.width()));
        for (int y = first; y < last && opaque.load(std::memory_order_relaxed); ++y) {
            rows.convert(0, y, image.width(), rgba.data());
            std::uint8_t all = 255;
            for (std::size_t i = 3; i < rgba.size(); i += 4)
                all &= rgba[i];
            if (all != 255)
                opaque.store(false, std::memory_order_relaxed);
        }
    });
    return opaque;
}

void packRow(const std::uint8_t* rgba, std::size_t width, ColorType type, std::uint8_t* out)
{
    switch (type) {
    case ColorType::Gray:
        for (std::size_t x = 0; x < width; ++x)
            out[x] = rgba[4 * x];
        break;
    case ColorType::GrayAlpha:
        for (std::size_t x = 0; x < width; ++x) {
            out[2 * x] = rgba[4 * x];
            out[2 * x + 1] = rgba[4 * x + 3];
        }
        break;
    case ColorType::RGB:
        for (std::size_t x = 0; x < width; ++x) {
            out[3 * x] = rgba[4 * x];
            out[3 * x + 1] = rgba[4 * x + 1];
            out[3 * x + 2] = rgba[4 * x + 2];
        }
        break;
    case ColorType::RGBA:
        std::memcpy(out, rgba, 4 * width);
        break;
    }
}

/// All rows as filtered bytes. A piece of them begins with the row above it, so that the bytes don't depend on the split.
PixelBuffer filteredRows(const CGImage& image, const RowConverter& rows, ColorType type)
{
    const auto width = static_cast<std::size_t>(image.width());
    const std::size_t rowBytes = width * pixelBytes(type);
    PixelBuffer buffer = PixelBuffer::allocate((rowBytes + 1) * static_cast<std::size_t>(image.height()));
    if (!buffer)
        return buffer;
    constexpr std::size_t kCost = 8;
    parallelRows(0, image.height(), kCost * width, [&](int first, int last) {
        PNGFilters filters(rowBytes, pixelBytes(type));
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

ColorType chooseType(const CGImage& image, const RowConverter& rows)
{
    const bool grey = image.colorSpace().model() == CGColorSpace::Model::Gray;
    if (isOpaque(image, rows))
        return grey ? ColorType::Gray : ColorType::RGB;
    return grey ? ColorType::GrayAlpha : ColorType::RGBA;
}

/// The whole file; nothing when memory is short.
std::optional<std::vector<std::uint8_t>> encode(const CGImage& image)
{
    const RowConverter rows(image, AlphaForm::Straight);
    const ColorType type = chooseType(image, rows);
    Compressed pixels;
    {
        const PixelBuffer filtered = filteredRows(image, rows, type);
        if (!filtered)
            return std::nullopt;
        pixels = compress({filtered.data(), filtered.size()}, kLevel);
    }
    if (pixels.size == 0)
        return std::nullopt;

    constexpr std::array<std::uint8_t, 8> kSignature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    std::vector<std::uint8_t> file(kSignature.begin(), kSignature.end());
    file.reserve(pixels.size + 4096);
    std::vector<std::uint8_t> header;
    appendNumber(header, static_cast<std::uint32_t>(image.width()));
    appendNumber(header, static_cast<std::uint32_t>(image.height()));
    constexpr std::uint8_t kBits = 8;
    header.insert(header.end(), {kBits, static_cast<std::uint8_t>(type), 0, 0, 0});
    appendChunk(file, "IHDR", header);
    appendColors(file, type == ColorType::Gray || type == ColorType::GrayAlpha);
    constexpr std::size_t kLongestChunk = std::size_t{1} << 30; // the format ends at 2^31 - 1
    for (std::size_t done = 0; done < pixels.size; done += kLongestChunk)
        appendChunk(file, "IDAT", {pixels.buffer.data() + done, std::min(kLongestChunk, pixels.size - done)});
    appendChunk(file, "IEND", {});
    return file;
}

} // namespace

Result<std::vector<std::uint8_t>> encodePNG(const CGImage& image, const std::string& subject)
{
    if (!image)
        return Error{subject, "there is no picture"};
    try {
        const CGImage shown = image.mask() ? convertedToSRGB(image) : image;
        if (shown)
            if (auto file = encode(shown))
                return std::move(*file);
    } catch (const std::bad_alloc&) { // falls through to the cause it means
    }
    return Error{subject, "not enough memory"};
}

} // namespace lamina
