#include "platform/base/Result.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/codecs/EncodedRows_p.h"
#include "platform/image/codecs/PictureEncoder_p.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/pixels/CGImage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

/// BMP with a header of version 4, the oldest that says which colours are meant.
namespace lamina {

namespace {

constexpr std::size_t kFileHeader = 14;
constexpr std::size_t kPictureHeader = 108;
constexpr std::size_t kPixels = kFileHeader + kPictureHeader;

/// Little numbers first, as the format has them.
class Header {
public:
    explicit Header(std::vector<std::uint8_t>& file)
        : m_file(file)
    {
    }
    Header& add16(std::uint32_t value)
    {
        m_file[m_at++] = static_cast<std::uint8_t>(value);
        m_file[m_at++] = static_cast<std::uint8_t>(value >> 8);
        return *this;
    }
    Header& add32(std::uint32_t value) { return add16(value & 0xFFFF).add16(value >> 16); }
    Header& add32(std::size_t value) { return add32(static_cast<std::uint32_t>(value)); }
    Header& skip(std::size_t bytes)
    {
        m_at += bytes;
        return *this;
    }

private:
    std::vector<std::uint8_t>& m_file;
    std::size_t m_at = 0;
};

void writeHeader(std::vector<std::uint8_t>& file, int width, int height)
{
    constexpr std::uint32_t kMagic = 'B' | 'M' << 8;
    constexpr std::uint32_t kPixelsPerMetre = 2835; // 72 an inch
    constexpr std::uint32_t kStandardRGB = 0x73524742;
    constexpr std::size_t kMasks = 16;
    Header header(file);
    header.add16(kMagic).add32(file.size()).add32(std::uint32_t{0}).add32(kPixels);
    header.add32(kPictureHeader).add32(static_cast<std::uint32_t>(width)).add32(static_cast<std::uint32_t>(height));
    header.add16(1).add16(24).add32(std::uint32_t{0}).add32(file.size() - kPixels);
    header.add32(kPixelsPerMetre).add32(kPixelsPerMetre).skip(8 + kMasks).add32(kStandardRGB);
}

Result<std::vector<std::uint8_t>> encodeBMP(CGImage image, const EncodeOptions& options)
{
    const FlattenedRows rows(image, options.background);
    const auto width = static_cast<std::size_t>(rows.width());
    const auto height = static_cast<std::size_t>(rows.height());
    const std::size_t rowBytes = (3 * width + 3) / 4 * 4;
    constexpr std::size_t kMost = std::numeric_limits<std::int32_t>::max(); // some readers take sizes as signed
    if (rowBytes > (kMost - kPixels) / height)
        return Error{{}, "a BMP picture can't be larger than 2 GB"};
    std::vector<std::uint8_t> file(kPixels + rowBytes * height);
    writeHeader(file, rows.width(), rows.height());
    parallelRows(0, rows.height(), 2 * width, [&](int first, int last) {
        std::vector<std::uint8_t> rgba(4 * width);
        for (int y = first; y < last; ++y) {
            rows.read(y, rgba.data());
            std::uint8_t* out = file.data() + kPixels + (height - 1 - static_cast<std::size_t>(y)) * rowBytes;
            for (std::size_t x = 0; x < width; ++x) {
                out[3 * x] = rgba[4 * x + 2];
                out[3 * x + 1] = rgba[4 * x + 1];
                out[3 * x + 2] = rgba[4 * x];
            }
        }
    });
    return file;
}

} // namespace

const PictureEncoder kBMPEncoder{encodeBMP};

} // namespace lamina
