#include "platform/media/capture/RawFrameConversion_p.h"

#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelKernels.h"
#include "platform/image/pixels/YCbCrKernels.h"
#include "platform/media/PixelBufferImage.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

namespace lamina {

namespace {

/// How many bytes a row of a plane has, and how many rows there are.
struct PlaneShape {
    std::size_t bytesPerPixel = 0;
    std::size_t bytesPerPair = 0; ///< of columns; the last of an odd number too
    bool hasHalfTheRows = false;
};

std::size_t pairsOf(std::size_t pixels)
{
    return (pixels + 1) / 2;
}

/// A row of Y and one of chroma, where they lie or in rooms of ours.
struct YCbCrRow {
    const std::uint8_t* luma = nullptr;
    const std::uint8_t* chroma = nullptr;
};

/// Rooms for a row of each.
struct RowRoom {
    std::uint8_t* luma = nullptr;
    std::uint8_t* chroma = nullptr;
};

const std::uint8_t* rowOf(const RawFrame& frame, std::size_t plane, std::size_t y)
{
    return frame.planes[plane].bytes + y * frame.planes[plane].bytesPerRow;
}

std::size_t widthOf(const RawFrame& frame)
{
    return static_cast<std::size_t>(frame.size.width);
}

YCbCrRow readNV12(const RawFrame& frame, std::size_t y, const RowRoom&)
{
    return {rowOf(frame, 0, y), rowOf(frame, 1, y / 2)};
}

/// Rows come in their order: the chroma of an odd one still stands there.
YCbCrRow readI420(const RawFrame& frame, std::size_t y, const RowRoom& room)
{
    if (y % 2 == 0)
        kernels::interleave(rowOf(frame, 1, y / 2), rowOf(frame, 2, y / 2), pairsOf(widthOf(frame)), room.chroma);
    return {rowOf(frame, 0, y), room.chroma};
}

template <bool chromaFirst>
YCbCrRow readPairs(const RawFrame& frame, std::size_t y, const RowRoom& room)
{
    kernels::splitPairs(rowOf(frame, 0, y), widthOf(frame), chromaFirst, room.luma, room.chroma);
    return {room.luma, room.chroma};
}

YCbCrRow readGray(const RawFrame& frame, std::size_t y, const RowRoom& room)
{
    if (y == 0)
        std::memset(room.chroma, 128, 2 * pairsOf(widthOf(frame)));
    return {rowOf(frame, 0, y), room.chroma};
}

template <bool swaps>
void readTriples(const std::uint8_t* in, std::size_t pixels, std::uint8_t* out)
{
    kernels::pixelsOfTriples(in, pixels, swaps, out);
}

template <bool swaps>
void readPixels(const std::uint8_t* in, std::size_t pixels, std::uint8_t* out)
{
    const std::array<std::uint8_t, 4> opaque{0, 0, 0, 255};
    std::uint32_t filled = 0;
    std::memcpy(&filled, opaque.data(), sizeof filled);
    const kernels::ByteOrder order = swaps ? kernels::ByteOrder{2, 1, 0, 3} : kernels::ByteOrder{0, 1, 2, 3};
    kernels::reorder(in, pixels, order, filled, out);
}

/// How frames of an encoding lie, and how their rows are read: as Y and chroma, or as pixels B G R A.
struct Reading {
    std::array<PlaneShape, 3> planes = {};
    YCbCrRow (*yCbCr)(const RawFrame& frame, std::size_t y, const RowRoom& room) = nullptr;
    bool hasChromaInEveryRow = false;
    void (*pixels)(const std::uint8_t* in, std::size_t pixels, std::uint8_t* out) = nullptr;
};

/// In the order of RawEncoding; neither way for files.
constexpr std::array<Reading, kRawEncodingNames.size()> kReadings{{
    {{{{1, 0, false}, {0, 2, true}}}, readNV12},
    {{{{1, 0, false}, {0, 1, true}, {0, 1, true}}}, readI420},
    {{{{0, 4, false}}}, readPairs<false>, true},
    {{{{0, 4, false}}}, readPairs<true>, true},
    {{{{4, 0, false}}}, nullptr, false, readPixels<false>},
    {{{{4, 0, false}}}, nullptr, false, readPixels<false>},
    {{{{4, 0, false}}}, nullptr, false, readPixels<true>},
    {{{{4, 0, false}}}, nullptr, false, readPixels<true>},
    {{{{3, 0, false}}}, nullptr, false, readTriples<false>},
    {{{{3, 0, false}}}, nullptr, false, readTriples<true>},
    {{{{1, 0, false}}}, readGray},
    {},
}};

const Reading& readingOf(const RawFrame& frame)
{
    return kReadings[static_cast<std::size_t>(frame.encoding)];
}

/// Whether every plane has its rows; fills in what rows without padding take.
bool hasItsRows(RawFrame& frame)
{
    const Reading& reading = readingOf(frame);
    for (std::size_t i = 0; i < reading.planes.size(); ++i) {
        const PlaneShape& shape = reading.planes[i];
        const std::size_t rowBytes =
            shape.bytesPerPixel * widthOf(frame) + shape.bytesPerPair * pairsOf(widthOf(frame));
        if (rowBytes == 0)
            continue;
        RawFrame::Plane& plane = frame.planes[i];
        if (plane.bytesPerRow == 0)
            plane.bytesPerRow = rowBytes;
        const auto height = static_cast<std::size_t>(frame.size.height);
        const std::size_t rows = shape.hasHalfTheRows ? pairsOf(height) : height;
        if (!plane.bytes || plane.bytesPerRow < rowBytes || plane.size < rowBytes ||
            (plane.size - rowBytes) / plane.bytesPerRow < rows - 1)
            return false;
    }
    return true;
}

std::uint8_t* rowOf(const CVPixelBuffer& frame, std::size_t plane, std::size_t y)
{
    return frame.planes()[plane].bytes + y * frame.planes()[plane].bytesPerRow;
}

/// How Y and chroma go from one range to the other.
struct RangeChange {
    bool isNone = true;
    LevelChange luma;
    LevelChange chroma;

    void apply(const LevelChange& change, const std::uint8_t* in, std::size_t count, std::uint8_t* out) const
    {
        if (isNone)
            std::memcpy(out, in, count);
        else
            kernels::changeLevels(in, count, change, out);
    }
};

RangeChange rangeChange(bool fromFull, bool toFull)
{
    if (fromFull == toFull)
        return {};
    constexpr int kOne = 8192;
    const auto gain = [&](int steps) {
        return static_cast<std::int16_t>(toFull ? (kOne * 255 + steps / 2) / steps : (kOne * steps + 127) / 255);
    };
    const auto black = [](bool isFull) { return static_cast<std::int16_t>(isFull ? 0 : 16); };
    return {false, {black(fromFull), gain(219), black(toFull)}, {128, gain(224), 128}};
}

} // namespace

std::shared_ptr<CVPixelBuffer> RawFrameConverter::converted(const RawFrame& raw, CVPixelFormat format)
{
    if (raw.encoding == RawEncoding::MJPG)
        return fromFile(raw, format);
    RawFrame frame = raw;
    if (!isFrameSize(frame.size) || !hasItsRows(frame))
        return nullptr;
    if (frame.matrix == YCbCrMatrix::None)
        frame.matrix = YCbCrMatrix::ITU_R_601_4;
    return readingOf(frame).yCbCr ? fromYCbCr(frame, format) : fromColors(frame, format);
}

std::shared_ptr<CVPixelBuffer> RawFrameConverter::fromYCbCr(const RawFrame& frame, CVPixelFormat format)
{
    const auto out = m_pool.make(frame.size, format);
    if (!out)
        return nullptr;
    out->setMatrix(frame.matrix);
    const Reading& reading = readingOf(frame);
    const std::size_t width = widthOf(frame);
    const std::size_t chromaBytes = 2 * pairsOf(width);
    m_room.resize(width + 2 * chromaBytes);
    const RowRoom room{m_room.data(), m_room.data() + width};
    std::uint8_t* const lower = room.chroma + chromaBytes;
    const YCbCrWeights weights = weightsOf(frame.matrix, frame.isFullRange);
    const RangeChange change = rangeChange(frame.isFullRange, format == CVPixelFormat::BiPlanar420FullRange);
    for (std::size_t y = 0; y < static_cast<std::size_t>(frame.size.height); ++y) {
        const YCbCrRow row = reading.yCbCr(frame, y, room);
        if (format == CVPixelFormat::BGRA) {
            kernels::pixelsOfYCbCr(row.luma, row.chroma, width, weights, false, rowOf(*out, 0, y));
            continue;
        }
        change.apply(change.luma, row.luma, width, rowOf(*out, 0, y));
        std::uint8_t* const chroma = rowOf(*out, 1, y / 2);
        if (y % 2 == 0) {
            change.apply(change.chroma, row.chroma, chromaBytes, chroma);
        } else if (reading.hasChromaInEveryRow) {
            change.apply(change.chroma, row.chroma, chromaBytes, lower);
            kernels::averageInto(lower, chromaBytes, chroma);
        }
    }
    return out;
}

std::shared_ptr<CVPixelBuffer> RawFrameConverter::fromColors(const RawFrame& frame, CVPixelFormat format)
{
    const auto out = m_pool.make(frame.size, format);
    if (!out)
        return nullptr;
    const Reading& reading = readingOf(frame);
    const std::size_t width = widthOf(frame);
    const auto height = static_cast<std::size_t>(frame.size.height);
    if (format == CVPixelFormat::BGRA) {
        for (std::size_t y = 0; y < height; ++y)
            reading.pixels(rowOf(frame, 0, y), width, rowOf(*out, 0, y));
        return out;
    }
    out->setMatrix(YCbCrMatrix::ITU_R_601_4);
    const YCbCrWeights weights = weightsOf(YCbCrMatrix::ITU_R_601_4, format == CVPixelFormat::BiPlanar420FullRange);
    m_room.resize(2 * 4 * width);
    std::uint8_t* const rows[] = {m_room.data(), m_room.data() + 4 * width};
    for (std::size_t y = 0; y < height; y += 2) {
        const std::size_t count = std::min<std::size_t>(2, height - y);
        for (std::size_t i = 0; i < count; ++i) {
            reading.pixels(rowOf(frame, 0, y + i), width, rows[i]);
            kernels::lumaOfPixels(rows[i], width, weights, rowOf(*out, 0, y + i));
        }
        kernels::chromaOfPixels(rows[0], rows[count - 1], width, weights, rowOf(*out, 1, y / 2));
    }
    return out;
}

std::shared_ptr<CVPixelBuffer> RawFrameConverter::fromFile(const RawFrame& frame, CVPixelFormat format)
{
    // Other files are not what was agreed on, whatever could be made of them.
    const RawFrame::Plane& file = frame.planes[0];
    if (!file.bytes || file.size < 2 || file.bytes[0] != 0xFF || file.bytes[1] != 0xD8)
        return nullptr;
    DecodeOptions options;
    options.memoryLimit = std::size_t{4} * kMostFramePixels;
    const auto decoded = decodePicture({file.bytes, file.size}, {}, options);
    if (!decoded)
        return nullptr;
    const CGImage picture = decoded->cgImage();
    if (picture.layout().bitsPerPixel != 32)
        return nullptr;
    RawFrame pixels;
    pixels.encoding = RawEncoding::RGBx;
    pixels.size = picture.size();
    const std::size_t bytesPerRow = picture.layout().bytesPerRow;
    pixels.planes[0] = {picture.row(0), bytesPerRow * static_cast<std::size_t>(picture.height()), bytesPerRow};
    return converted(pixels, format);
}

} // namespace lamina
