#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureBuilder_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/RowCollector_p.h"
#include "platform/image/codecs/TIFFFacts_p.h"
#include "platform/image/codecs/TIFFFile_p.h"
#include "platform/image/codecs/decoder/BareDecoders_p.h"
#include "platform/image/codecs/decoder/TIFFGuard_p.h"
#include "platform/image/codecs/decoder/TIFFSamples_p.h"
#include "platform/image/pixels/ColorConversion.h"
#include "platform/image/pixels/PixelKernels.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <vector>

/// TIFF and BigTIFF, by libtiff: the first page. Grey, palette, RGB, CMYK and Lab pixels are converted here, in any
/// packing; they can be reduced by whole factors on the way. The other kinds (YCbCr, LogLuv) go through libtiff's own
/// conversion.
namespace lamina {

namespace {

std::span<const std::uint8_t> profileOf(const TIFFFile& file)
{
    std::uint32_t size = 0;
    const std::uint8_t* bytes = nullptr;
    if (file.library().getField(file.handle(), TIFFTAG_ICCPROFILE, &size, &bytes) != 1 || !bytes)
        return {};
    return {bytes, size};
}

UIImageOrientation orientationOf(const TIFFFile& file)
{
    return orientationFromExif(file.field<std::uint16_t>(TIFFTAG_ORIENTATION).value_or(1));
}

/// A strip or tile as libtiff hands it out.
struct BlockShape {
    bool tiled = false;
    int width = 0;
    int height = 0;
    std::uint64_t bytes = 0;
    std::uint64_t bytesPerRow = 0;
    /// What libtiff holds beside them.
    std::uint64_t libraryBytes = 0;

    /// Fails when the file's numbers don't go together.
    static Result<BlockShape> read(const TIFFFile& file, std::uint64_t libraryBytes)
    {
        const TIFFLibrary& tiff = file.library();
        BlockShape shape;
        const auto imageWidth = file.field<std::uint32_t>(TIFFTAG_IMAGEWIDTH).value_or(0);
        const auto imageHeight = file.field<std::uint32_t>(TIFFTAG_IMAGELENGTH).value_or(0);
        shape.tiled = tiff.isTiled(file.handle()) != 0;
        const std::uint32_t width = shape.tiled ? file.field<std::uint32_t>(TIFFTAG_TILEWIDTH).value_or(0) : imageWidth;
        const std::uint32_t height =
            shape.tiled ? file.field<std::uint32_t>(TIFFTAG_TILELENGTH).value_or(0)
                        : std::min(imageHeight, file.field<std::uint32_t>(TIFFTAG_ROWSPERSTRIP).value_or(imageHeight));
        const tmsize_t bytes = shape.tiled ? tiff.tileSize(file.handle()) : tiff.stripSize(file.handle());
        const tmsize_t row = shape.tiled ? tiff.tileRowSize(file.handle()) : tiff.scanlineSize(file.handle());
        const std::uint32_t blocks =
            shape.tiled ? tiff.numberOfTiles(file.handle()) : tiff.numberOfStrips(file.handle());
        if (imageWidth > INT32_MAX || imageHeight > INT32_MAX)
            return Error{{}, cause::kDamaged};
        if (width == 0 || height == 0 || width > INT32_MAX || height > INT32_MAX || bytes <= 0 || row <= 0 ||
            blocks == 0)
            return Error{{}, cause::kDamaged};
        shape.width = static_cast<int>(width);
        shape.height = static_cast<int>(height);
        shape.bytes = static_cast<std::uint64_t>(bytes);
        shape.bytesPerRow = static_cast<std::uint64_t>(row);
        shape.libraryBytes = libraryBytes;
        return shape;
    }
};

/// Pages whose samples we convert ourselves.
class PageReader {
public:
    PageReader(TIFFFile& file, const TIFFLayout& layout, const BlockShape& block, const DecodeOptions& options)
        : m_file(file)
        , m_tiff(file.library())
        , m_layout(layout)
        , m_block(block)
        , m_options(options)
        , m_byScanline(!block.tiled && !layout.separatePlanes)
    {
    }

    Result<UIImage> decode()
    {
        const int factor = reductionFactor(m_layout.width, m_layout.height, m_options.shortSide);
        const std::uint64_t held =
            collectorBytes(m_layout.width, m_layout.height, factor) + bufferBytes() + m_block.libraryBytes;
        const bool isBilevel = m_layout.bits == 1 && m_layout.samples == 1;
        if (const Outcome claim = checkClaim(m_layout.width, m_layout.height, held, m_file.fileBytes(), m_options,
                                             isBilevel ? PixelKind::Bilevel : PixelKind::Any);
            !claim)
            return claim.error();
        if (m_layout.color == TIFFLayout::Color::CMYK)
            m_inks = ColorConversion::toSRGB(profileOf(m_file), CGColorSpace::Model::CMYK);

        const bool translucent = m_layout.alpha != TIFFLayout::Alpha::None;
        RowCollector rows(m_layout.width, m_layout.height, factor, translucent, m_options);
        if (!rows)
            return Error{{}, cause::kNoMemory};
        m_file.beginPixels();
        const Outcome read = m_byScanline ? readScanlines(rows) : readBands(rows);
        if (!read)
            return read.error();
        // Inks and Lab have become sRGB by now; their profile has done its work.
        const bool profiled = m_layout.color != TIFFLayout::Color::CMYK && m_layout.color != TIFFLayout::Color::Lab;
        return std::move(rows).finish(profiled ? profileOf(m_file) : std::span<const std::uint8_t>(),
                                      orientationOf(m_file));
    }

private:
    std::size_t planeCount() const { return m_layout.separatePlanes ? m_layout.usedSamples().size() : 1; }

    std::uint64_t bufferBytes() const
    {
        const auto width = static_cast<std::uint64_t>(std::max(m_layout.width, m_block.width));
        const std::uint64_t values = 2 * width * static_cast<std::uint64_t>(m_layout.samples);
        if (m_byScanline)
            return values + m_block.bytesPerRow;
        return values + m_block.bytes * planeCount() + 4 * width * static_cast<std::uint64_t>(bandHeight());
    }
    int bandHeight() const { return std::min(m_block.height, m_layout.height); }

    Outcome readScanlines(RowCollector& rows)
    {
        std::vector<std::uint8_t> stored(static_cast<std::size_t>(m_block.bytesPerRow));
        TIFFRowConverter converter(m_layout, m_layout.width, m_inks);
        for (int y = 0; y < m_layout.height; ++y) {
            if (isCancelled(m_options))
                return Error{{}, cause::kCancelled};
            if (m_tiff.readScanline(m_file.handle(), stored.data(), static_cast<std::uint32_t>(y), 0) != 1 ||
                m_file.complained())
                return m_file.failure();
            converter.convert({stored.data()}, m_layout.width, rows.row());
            rows.advance();
        }
        return success();
    }

    /// Rows of tiles, or strips whose planes lie apart: read as a band over the whole width.
    Outcome readBands(RowCollector& rows)
    {
        std::vector<std::vector<std::uint8_t>> planes(planeCount());
        for (auto& plane : planes)
            plane.resize(static_cast<std::size_t>(m_block.bytes));
        TIFFRowConverter converter(m_layout, m_block.width, m_inks);
        const std::size_t bandStride = 4 * static_cast<std::size_t>(m_layout.width);
        std::vector<std::uint8_t> band(bandStride * static_cast<std::size_t>(bandHeight()));
        std::vector<const std::uint8_t*> starts(planes.size());

        for (int top = 0; top < m_layout.height; top += m_block.height) {
            const int height = std::min(m_block.height, m_layout.height - top);
            for (int left = 0; left < m_layout.width; left += m_block.width) {
                if (isCancelled(m_options))
                    return Error{{}, cause::kCancelled};
                const int width = std::min(m_block.width, m_layout.width - left);
                if (!readBlock(planes, left, top, height))
                    return m_file.failure();
                for (int y = 0; y < height; ++y) {
                    for (std::size_t i = 0; i < planes.size(); ++i)
                        starts[i] = planes[i].data() + static_cast<std::size_t>(y) * m_block.bytesPerRow;
                    converter.convert(starts, width,
                                      band.data() + static_cast<std::size_t>(y) * bandStride +
                                          4 * static_cast<std::size_t>(left));
                }
            }
            for (int y = 0; y < height; ++y) {
                std::memcpy(rows.row(), band.data() + static_cast<std::size_t>(y) * bandStride, bandStride);
                rows.advance();
            }
        }
        return success();
    }

    bool readBlock(std::vector<std::vector<std::uint8_t>>& planes, int left, int top, int height)
    {
        const std::vector<int> samples = m_layout.separatePlanes ? m_layout.usedSamples() : std::vector<int>{0};
        for (std::size_t i = 0; i < planes.size(); ++i) {
            const auto x = static_cast<std::uint32_t>(left);
            const auto y = static_cast<std::uint32_t>(top);
            const auto sample = static_cast<std::uint16_t>(samples[i]);
            auto wanted = static_cast<tmsize_t>(m_block.bytes);
            tmsize_t got = 0;
            if (m_block.tiled) {
                const std::uint32_t tile = m_tiff.computeTile(m_file.handle(), x, y, 0, sample);
                got = m_tiff.readEncodedTile(m_file.handle(), tile, planes[i].data(), wanted);
            } else {
                wanted = static_cast<tmsize_t>(m_block.bytesPerRow) * height;
                const std::uint32_t strip = m_tiff.computeStrip(m_file.handle(), y, sample);
                got = m_tiff.readEncodedStrip(m_file.handle(), strip, planes[i].data(), wanted);
            }
            if (got != wanted || m_file.complained())
                return false;
        }
        return true;
    }

    TIFFFile& m_file;
    const TIFFLibrary& m_tiff;
    const TIFFLayout& m_layout;
    const BlockShape& m_block;
    const DecodeOptions& m_options;
    bool m_byScanline;
    std::optional<ColorConversion> m_inks;
};

/// Pages that libtiff converts to RGBA, strip by strip or one row of tiles after the other.
class ConvertedPageReader {
public:
    ConvertedPageReader(TIFFFile& file, const BlockShape& block, const DecodeOptions& options)
        : m_file(file)
        , m_tiff(file.library())
        , m_block(block)
        , m_options(options)
    {
        m_begun = m_tiff.rgbaBegin(&m_image, file.handle(), 1, m_message.data()) == 1;
    }
    ~ConvertedPageReader()
    {
        if (m_begun)
            m_tiff.rgbaEnd(&m_image);
    }
    ConvertedPageReader(const ConvertedPageReader&) = delete;
    ConvertedPageReader& operator=(const ConvertedPageReader&) = delete;

    Result<UIImage> decode()
    {
        if (!m_begun)
            return Error{{}, "this kind of TIFF can't be read"};
        const std::uint64_t ours = 4 * std::uint64_t{m_image.width} * m_image.height;
        // The library takes a block for each sample at worst.
        const std::uint64_t buffers = 4 * m_block.bytes + m_block.libraryBytes;
        if (const Outcome claim =
                checkClaim(m_image.width, m_image.height, ours + buffers, m_file.fileBytes(), m_options);
            !claim)
            return claim.error();
        PictureBuilder builder(static_cast<int>(m_image.width), static_cast<int>(m_image.height), m_options);
        if (!builder)
            return Error{{}, cause::kNoMemory};
        if (const Outcome done = readBands(builder); !done)
            return done.error();
        return std::move(builder).finish(m_image.alpha != 0, profile(), orientationOf(m_file));
    }

private:
    Outcome readBands(PictureBuilder& builder)
    {
        // The stored order of rows and columns; the orientation is the caller's business.
        m_image.req_orientation = m_image.orientation;
        m_file.beginPixels();
        std::vector<std::uint32_t> band(static_cast<std::size_t>(builder.width()) *
                                        static_cast<std::size_t>(std::min(m_block.height, builder.height())));
        for (int top = 0; top < builder.height();) {
            if (isCancelled(m_options))
                return Error{{}, cause::kCancelled};
            const int rows = std::min(m_block.height, builder.height() - top);
            m_image.row_offset = top;
            if (m_tiff.rgbaGet(&m_image, band.data(), m_image.width, static_cast<std::uint32_t>(rows)) != 1 ||
                m_file.complained())
                return m_file.failure();
            const std::uint32_t* pixel = band.data();
            for (int y = top; y < top + rows; ++y) {
                std::uint8_t* out = builder.row(y);
                for (int x = 0; x < builder.width(); ++x, ++pixel, out += 4) {
                    out[0] = static_cast<std::uint8_t>(TIFFGetR(*pixel));
                    out[1] = static_cast<std::uint8_t>(TIFFGetG(*pixel));
                    out[2] = static_cast<std::uint8_t>(TIFFGetB(*pixel));
                    out[3] = static_cast<std::uint8_t>(TIFFGetA(*pixel));
                }
                kernels::unpremultiply(builder.row(y), static_cast<std::size_t>(builder.width()));
            }
            top += rows;
        }
        return success();
    }

    /// LogLuv has become sRGB already; only YCbCr is still in the profile's space.
    std::span<const std::uint8_t> profile() const
    {
        return m_image.photometric == PHOTOMETRIC_YCBCR ? profileOf(m_file) : std::span<const std::uint8_t>();
    }

    TIFFFile& m_file;
    const TIFFLibrary& m_tiff;
    const BlockShape& m_block;
    const DecodeOptions& m_options;
    TIFFRGBAImage m_image{};
    std::array<char, 1024> m_message{};
    bool m_begun = false;
};

Result<UIImage> decodeTIFF(ByteSource& source, const DecodeOptions& options)
{
    const TIFFLibrary* library = TIFFLibrary::shared();
    if (!library)
        return Error{{}, "TIFF pictures need libtiff"};
    const Result<GuardedTIFF> guarded = guardTIFF(source, options);
    if (!guarded)
        return guarded.error();
    const Result<std::unique_ptr<TIFFFile>> opened = TIFFFile::open(*library, *guarded->source, options.memoryLimit);
    if (!opened)
        return opened.error();
    TIFFFile& file = **opened;
    const std::optional<TIFFLayout> layout = TIFFLayout::read(file);
    const Result<BlockShape> block = BlockShape::read(file, guarded->heldBytes);
    if (!block)
        return block.error();
    if (layout)
        return PageReader(file, *layout, *block, options).decode();
    return ConvertedPageReader(file, *block, options).decode();
}

} // namespace

const PictureDecoder kTIFFDecoder{recognizesTIFF, decodeTIFF, factsOfTIFF, nullptr};

} // namespace lamina
