#include "platform/base/Cancelling.h"
#include "platform/image/codecs/ArrivingRows_p.h"
#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/CGImageSource.h"
#include "platform/image/codecs/Exif_p.h"
#include "platform/image/codecs/IncrementalDecoders_p.h"
#include "platform/image/codecs/PNGInput_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/ColorConversion.h"
#include "platform/image/pixels/PixelKernels.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace lamina {

namespace {

/// PNG, by libpng, which is given chunks when they have come whole, so that it never keeps parts of them, and pixels as
/// they come. Of an interlaced picture the rows are those of the file until it is whole, and pictures are copies.
class IncrementalPNG final : public CGImageSource {
public:
    explicit IncrementalPNG(const DecodeOptions& options)
        : m_options{.cancelled = options.cancelled, .memoryLimit = options.memoryLimit}
        , m_input(m_options)
    {
        m_hasEnded = !m_input || !m_input.attempt([this] { m_input.setCallbacks(this, haveInfo, haveRow, haveEnd); });
    }

    void updateData(std::span<const std::uint8_t> data, bool isFinal) override;
    std::optional<CGImageProperties> propertiesAtIndex() const override { return m_properties; }
    CGImage imageAtIndex() override;

private:
    // Between two pieces colours are converted.
    static constexpr std::uint64_t kPiece = 65'536;

    static IncrementalPNG& self(png_structp png) { return *static_cast<IncrementalPNG*>(png_get_progressive_ptr(png)); }
    static void haveInfo(png_structp png, png_infop) { self(png).m_input.prepareRows(); }
    static void haveRow(png_structp png, png_bytep row, png_uint_32 y, int pass);
    static void haveEnd(png_structp png, png_infop) { self(png).m_isWhole = true; }

    std::uint64_t nextPiece(std::span<const std::uint8_t> data);
    bool start(std::uint64_t size);
    void readProperties();
    void finishRows();
    void convert(ArrivingRows& rows, int first, int last);
    CGImage copyInColors();

    const DecodeOptions m_options;
    PNGInput m_input;
    bool m_hasEnded;
    std::uint64_t m_taken = 0;     ///< bytes that the library has got
    std::uint64_t m_pixelsEnd = 0; ///< where the chunk of pixels ends that it has got a part of
    std::optional<CGImageProperties> m_properties;
    PNGHeader m_header;
    std::optional<ColorConversion> m_conversion;
    ArrivingRows m_rows;
    int m_rowsRead = 0;
    int m_rowsFinished = 0; ///< in their colours
    bool m_isOpaque = true; ///< as far as they are finished
    bool m_isWhole = false;
    bool m_isChanged = false; ///< an interlaced picture, since it was copied
    CGImage m_copy;
};

void IncrementalPNG::updateData(std::span<const std::uint8_t> data, bool isFinal)
{
    while (!m_hasEnded) {
        const auto piece = static_cast<std::size_t>(nextPiece(data));
        if (piece == 0)
            break;
        const auto bytes = data.subspan(static_cast<std::size_t>(m_taken), piece);
        m_taken += piece;
        m_hasEnded = !m_input.attempt([&] { m_input.receive(bytes); }) || m_isWhole;
        finishRows();
    }
    if (m_isWhole)
        readProperties(); // the EXIF block may stand behind the pixels
    m_hasEnded = m_hasEnded || isFinal;
}

/// How many bytes the library may get now.
std::uint64_t IncrementalPNG::nextPiece(std::span<const std::uint8_t> data)
{
    constexpr std::uint64_t kHead = 8;           // length and type
    constexpr std::uint64_t kAroundContent = 12; // and the checksum
    const std::uint64_t left = data.size() > m_taken ? data.size() - m_taken : 0;
    if (m_taken < sizeof kPNGSignature)
        return left >= sizeof kPNGSignature ? sizeof kPNGSignature : 0;
    if (m_taken < m_pixelsEnd)
        return std::min({left, m_pixelsEnd - m_taken, kPiece});
    if (left < kHead)
        return 0;
    const auto head = data.subspan(static_cast<std::size_t>(m_taken), kHead);
    const std::uint64_t length = numberOf(head.first(4)) + kAroundContent;
    if (std::memcmp(head.data() + 4, "IDAT", 4) != 0)
        return left >= length ? length : 0;
    if (!m_rows && !start(data.size()))
        return 0;
    m_pixelsEnd = m_taken + length;
    return std::min({left, length, kPiece});
}

/// When all is known that stands before the pixels. False while the claim is not believed, or for good.
bool IncrementalPNG::start(std::uint64_t size)
{
    if (!m_properties)
        readProperties();
    m_header = m_input.header();
    if (!m_input.weigh(std::uint64_t{4} * m_header.width * m_header.height, size))
        return false;
    const std::vector<std::uint8_t> profile = m_input.profile();
    m_conversion = ColorConversion::toSRGB(profile, profileModel(profile));
    m_rows = ArrivingRows(static_cast<int>(m_header.width), static_cast<int>(m_header.height));
    m_hasEnded = !m_rows;
    return !m_hasEnded;
}

void IncrementalPNG::readProperties()
{
    const PNGHeader header = m_input.header();
    m_properties = {static_cast<std::int32_t>(header.width), static_cast<std::int32_t>(header.height),
                    exifOrientationTag(m_input.exif())};
}

/// Each of the seven passes of an interlaced picture is put in as blocks, over what later ones will fill.
void IncrementalPNG::haveRow(png_structp png, png_bytep row, png_uint_32 y, int pass)
{
    IncrementalPNG& self = IncrementalPNG::self(png);
    self.m_input.stopIfCancelled();
    if (!row || y >= self.m_header.height)
        return;
    png_progressive_combine_row(png, self.m_rows.row(static_cast<int>(y)), row);
    self.m_rowsRead = pass == 0 ? static_cast<int>(y) + 1 : self.m_rows.height();
    self.m_isChanged = true;
}

void IncrementalPNG::finishRows()
{
    if ((m_header.interlaced && !m_isWhole) || m_rowsFinished == m_rowsRead)
        return;
    convert(m_rows, m_rowsFinished, m_rowsRead);
    if (isCancelled(m_options))
        m_hasEnded = true;
    else
        m_rowsFinished = m_rowsRead;
}

void IncrementalPNG::convert(ArrivingRows& rows, int first, int last)
{
    m_isOpaque = m_isOpaque || first == 0;
    for (int y = first; y < last && m_header.translucent && m_isOpaque; ++y)
        m_isOpaque = kernels::isOpaque(rows.row(y), m_header.width);
    if (m_conversion)
        m_conversion->convertRows(rows.rows(first, last - first), m_options.cancelled);
}

CGImage IncrementalPNG::copyInColors()
{
    if (!m_isChanged)
        return m_copy;
    ArrivingRows copy(m_rows.width(), m_rows.height());
    if (!copy)
        return m_copy;
    std::memcpy(copy.row(0), m_rows.row(0), copy.bytesPerRow() * static_cast<std::size_t>(m_rowsRead));
    convert(copy, 0, m_rowsRead);
    if (isCancelled(m_options))
        return m_copy;
    m_isChanged = false;
    return m_copy = copy.picture(m_rowsRead, m_isOpaque ? CGImageAlphaInfo::NoneSkipLast : CGImageAlphaInfo::Last);
}

CGImage IncrementalPNG::imageAtIndex()
{
    if (m_header.interlaced && !m_isWhole)
        return copyInColors();
    m_copy = {};
    return m_rows.picture(m_rowsFinished, m_isOpaque ? CGImageAlphaInfo::NoneSkipLast : CGImageAlphaInfo::Last);
}

} // namespace

std::unique_ptr<CGImageSource> makeIncrementalPNG(const DecodeOptions& options)
{
    return std::make_unique<IncrementalPNG>(options);
}

} // namespace lamina
