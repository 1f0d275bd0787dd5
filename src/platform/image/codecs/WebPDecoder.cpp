#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/Exif_p.h"
#include "platform/image/codecs/PictureBuilder_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/RowCollector_p.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/UIImage.h"

#include <webp/decode.h>
#include <webp/demux.h>

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string_view>
#include <variant>

/// WebP, by libwebp: still pictures, and the first frame of an animation on its canvas, which is clear where the frame
/// isn't. Opaque pictures can be reduced to any size on the way; translucent ones come whole, because the codec would
/// mix the colours of clear pixels in.
namespace lamina {

namespace {

constexpr int kLossless = 2; // among the codec's formats; another is lossy

bool recognizesWebP(std::span<const std::uint8_t> head)
{
    return head.size() >= 16 && std::memcmp(head.data(), "RIFF", 4) == 0 &&
           std::memcmp(head.data() + 8, "WEBPVP8", 7) == 0;
}

struct DeleteDemuxer {
    void operator()(WebPDemuxer* demuxer) const { WebPDemuxDelete(demuxer); }
};
struct DeleteDecoder {
    void operator()(WebPIDecoder* decoder) const { WebPIDelete(decoder); }
};

class FirstFrame {
public:
    explicit FirstFrame(WebPDemuxer* demuxer)
        : m_found(WebPDemuxGetFrame(demuxer, 1, &m_iterator) != 0)
    {
    }
    ~FirstFrame() { WebPDemuxReleaseIterator(&m_iterator); }
    FirstFrame(const FirstFrame&) = delete;
    FirstFrame& operator=(const FirstFrame&) = delete;

    explicit operator bool() const { return m_found && m_iterator.complete; }
    const WebPIterator* operator->() const { return &m_iterator; }
    IntRect rect() const { return {m_iterator.x_offset, m_iterator.y_offset, m_iterator.width, m_iterator.height}; }

private:
    WebPIterator m_iterator{};
    bool m_found;
};

/// The payload of the first chunk of a kind; it lies in the file's bytes and lives as long as they do.
std::span<const std::uint8_t> chunk(WebPDemuxer* demuxer, const char* fourcc)
{
    WebPChunkIterator iterator{};
    std::span<const std::uint8_t> bytes;
    if (WebPDemuxGetChunk(demuxer, fourcc, 1, &iterator))
        bytes = {iterator.chunk.bytes, iterator.chunk.size};
    WebPDemuxReleaseChunkIterator(&iterator);
    return bytes;
}

/// What the decoder itself will hold for a frame: the whole picture when it is lossless, the whole alpha plane (with
/// its own lossless frame behind it) when a lossy one has alpha, otherwise some rows.
std::uint64_t codecBytes(const WebPBitstreamFeatures& features)
{
    const auto pixels = static_cast<std::uint64_t>(features.width) * static_cast<std::uint64_t>(features.height);
    if (features.format == kLossless)
        return 4 * pixels;
    return features.has_alpha ? 5 * pixels : 64 * static_cast<std::uint64_t>(features.width);
}

/// The size to decode to: the shorter side exactly as asked for, the other in proportion.
IntSize reducedSize(IntSize full, int shortSide)
{
    const int shorter = std::min(full.width, full.height);
    if (shortSide <= 0 || shortSide >= shorter)
        return full;
    const auto scaled = [&](int side) {
        return static_cast<int>((static_cast<std::int64_t>(side) * shortSide + shorter - 1) / shorter);
    };
    return {scaled(full.width), scaled(full.height)};
}

Error failure(VP8StatusCode status)
{
    switch (status) {
    case VP8_STATUS_OUT_OF_MEMORY:
        return {{}, cause::kNoMemory};
    case VP8_STATUS_SUSPENDED:
    case VP8_STATUS_NOT_ENOUGH_DATA:
        return {{}, cause::kTruncated};
    default:
        return {{}, cause::kDamaged};
    }
}

/// How many bytes to give the codec next: as many as it works on for some tens of milliseconds, whatever stands in
/// them.
class PieceSize {
public:
    /// Few bytes may hold many pixels; the first piece is one of some megapixels where all bytes hold as many.
    PieceSize(std::uint64_t bytes, std::uint64_t pixels)
        : m_bytes(static_cast<std::size_t>(std::clamp<std::uint64_t>(kFirstPixels * bytes / pixels, kSmallest, 4096)))
    {
    }
    std::size_t bytes() const { return m_bytes; }
    void learn(std::chrono::steady_clock::duration taken)
    {
        if (taken < kShortest)
            m_bytes *= 2;
        else if (taken > kLongest)
            m_bytes = std::max(kSmallest, m_bytes / 2);
    }

private:
    static constexpr std::chrono::milliseconds kShortest{10};
    static constexpr std::chrono::milliseconds kLongest{40};
    static constexpr std::size_t kSmallest = 64;
    static constexpr std::uint64_t kFirstPixels = 2'000'000;

    std::size_t m_bytes;
};

bool hasRows(const WebPIDecoder* decoder)
{
    int rows = 0;
    return WebPIDecGetRGB(decoder, &rows, nullptr, nullptr, nullptr) && rows > 0;
}

/// Decodes piece by piece, so that it can be stopped in between. (Not within a lossless picture of very few bytes: the
/// codec takes all pixels out of one.)
Outcome decodeInto(WebPDecoderConfig& config, std::span<const std::uint8_t> data, const DecodeOptions& options)
{
    using Steady = std::chrono::steady_clock;
    const std::unique_ptr<WebPIDecoder, DeleteDecoder> decoder(WebPIDecode(nullptr, 0, &config));
    if (!decoder)
        return Error{{}, cause::kNoMemory};
    const auto pixels =
        static_cast<std::uint64_t>(config.input.width) * static_cast<std::uint64_t>(config.input.height);
    PieceSize piece(data.size(), pixels);
    VP8StatusCode status = VP8_STATUS_SUSPENDED;
    for (std::size_t given = 0; status == VP8_STATUS_SUSPENDED && given < data.size();) {
        if (isCancelled(options))
            return Error{{}, cause::kCancelled};
        // The header of a lossless picture, which can be almost all of it, is begun anew with each piece until it is
        // whole: doubled each time, all tries together take no longer than two.
        const bool beginsAnew = config.input.format == kLossless && !hasRows(decoder.get());
        const Steady::time_point start = Steady::now();
        given += std::min(data.size() - given, beginsAnew ? std::max(given, piece.bytes()) : piece.bytes());
        status = WebPIUpdate(decoder.get(), data.data(), given);
        if (!beginsAnew)
            piece.learn(Steady::now() - start);
    }
    return status == VP8_STATUS_OK ? Outcome(std::monostate()) : failure(status);
}

Result<UIImage> decodeFrame(WebPDemuxer* demuxer, std::uint64_t fileBytes, const DecodeOptions& options)
{
    const FirstFrame frame(demuxer);
    if (!frame)
        return Error{{}, cause::kTruncated};
    WebPDecoderConfig config;
    if (!WebPInitDecoderConfig(&config))
        return Error{{}, cause::kDamaged};
    const WebPData& data = frame->fragment;
    if (const VP8StatusCode status = WebPGetFeatures(data.bytes, data.size, &config.input); status != VP8_STATUS_OK)
        return failure(status);

    const IntSize canvas{static_cast<int>(WebPDemuxGetI(demuxer, WEBP_FF_CANVAS_WIDTH)),
                         static_cast<int>(WebPDemuxGetI(demuxer, WEBP_FF_CANVAS_HEIGHT))};
    const IntRect rect = frame.rect();
    const IntRect whole{0, 0, canvas.width, canvas.height};
    if (canvas.isEmpty() || rect.isEmpty() || rect.unionWith(whole) != whole || config.input.width != rect.width ||
        config.input.height != rect.height)
        return Error{{}, cause::kDamaged};
    const bool covers = rect == whole;
    const bool translucent = !covers || config.input.has_alpha != 0;
    const IntSize size = translucent ? canvas : reducedSize(canvas, options.shortSide);

    const std::uint64_t held = collectorBytes(size.width, size.height, 1) + codecBytes(config.input) + fileBytes;
    if (const Outcome claim = checkClaim(canvas.width, canvas.height, held, fileBytes, options); !claim)
        return claim.error();
    PictureBuilder builder(size.width, size.height, options);
    if (!builder)
        return Error{{}, cause::kNoMemory};
    if (!covers) {
        if (const Outcome cleared = builder.fill({}); !cleared)
            return cleared.error();
    }

    const IntSize target = covers ? size : IntSize{rect.width, rect.height};
    config.options.use_threads = 1;
    config.options.use_scaling = size != canvas;
    config.options.scaled_width = target.width;
    config.options.scaled_height = target.height;
    config.output.colorspace = MODE_RGBA;
    config.output.is_external_memory = 1;
    config.output.u.RGBA.rgba = builder.row(rect.y) + 4 * static_cast<std::ptrdiff_t>(rect.x);
    config.output.u.RGBA.stride = static_cast<int>(builder.bytesPerRow());
    config.output.u.RGBA.size = builder.bytesPerRow() * static_cast<std::size_t>(target.height - 1) +
                                4 * static_cast<std::size_t>(target.width);
    if (const Outcome done = decodeInto(config, {data.bytes, data.size}, options); !done)
        return done.error();
    const UIImageOrientation orientation = exifOrientation(chunk(demuxer, "EXIF"));
    return std::move(builder).finish(translucent, chunk(demuxer, "ICCP"), orientation);
}

constexpr std::uint64_t kFirstChunk = 12;
constexpr std::uint64_t kShortestFile = 30;

std::uint64_t littleEndian(ByteSource& source, std::uint64_t at, std::size_t size)
{
    return numberAt(source, at, size, std::endian::little).value_or(0);
}

/// The content of the chunk of a kind that comes first from `at` on; of length 0 when there is none nearby.
ByteRange findChunk(ByteSource& source, std::uint64_t at, std::string_view kind)
{
    constexpr int kMostChunks = 64; // an animation has one a frame
    for (int i = 0; i < kMostChunks && at < source.size(); ++i) {
        const std::uint64_t length = littleEndian(source, at + 4, 4);
        if (standsAt(source, at, kind))
            return {at + 8, length};
        at += 8 + length + length % 2;
    }
    return {};
}

/// The header of the one frame, or of the canvas in the extended form, which alone tells of an EXIF block.
Result<StoredFacts> factsOfWebP(ByteSource& source)
{
    constexpr std::uint64_t kContent = kFirstChunk + 8;
    constexpr std::uint64_t kSide = 0x3FFF;
    constexpr std::uint64_t kHasExif = 8;
    StoredFacts facts;
    if (standsAt(source, kFirstChunk, "VP8X")) {
        facts.width = littleEndian(source, kContent + 4, 3) + 1;
        facts.height = littleEndian(source, kContent + 7, 3) + 1;
        if ((littleEndian(source, kContent, 1) & kHasExif) != 0)
            facts.exif = findChunk(source, kFirstChunk, "EXIF");
    } else if (standsAt(source, kFirstChunk, "VP8L")) {
        const std::uint64_t sides = littleEndian(source, kContent + 1, 4);
        facts.width = (sides & kSide) + 1;
        facts.height = (sides >> 14 & kSide) + 1;
    } else {
        facts.width = littleEndian(source, kContent + 6, 2) & kSide;
        facts.height = littleEndian(source, kContent + 8, 2) & kSide;
    }
    return source.size() < kShortestFile ? Result<StoredFacts>(Error{{}, cause::kTruncated}) : facts;
}

/// How much of the file is the picture's.
std::uint64_t lengthOf(ByteSource& source)
{
    return std::min(source.size(), std::max<std::uint64_t>(kShortestFile, 8 + littleEndian(source, 4, 4)));
}

/// Reads all of it. The codec wants it in one piece, and only where it lies.
Outcome readWhole(ByteSource& source, PixelBuffer& file, const DecodeOptions& options)
{
    constexpr std::size_t kPiece = std::size_t{4} << 20;
    for (std::size_t done = 0; done < file.size();) {
        if (isCancelled(options))
            return Error{{}, cause::kCancelled};
        const std::size_t wanted = std::min(kPiece, file.size() - done);
        if (source.read(done, {file.data() + done, wanted}) < wanted)
            return Error{{}, cause::kTruncated};
        done += wanted;
    }
    return success();
}

/// Whether there are more chunks than a picture or an animation has; the demuxer takes memory for each.
bool hasTooManyChunks(std::span<const std::uint8_t> file)
{
    constexpr int kMostChunks = 1 << 16;
    std::uint64_t at = kFirstChunk;
    int chunks = 0;
    while (at + 8 <= file.size() && ++chunks <= kMostChunks) {
        const std::uint64_t length = numberOf(file.subspan(static_cast<std::size_t>(at) + 4, 4), std::endian::little);
        at += 8 + length + length % 2;
    }
    return chunks > kMostChunks;
}

Result<UIImage> decodeWebP(ByteSource& source, const DecodeOptions& options)
{
    const Result<StoredFacts> claimed = factsOfWebP(source);
    if (!claimed)
        return claimed.error();
    const std::uint64_t length = lengthOf(source); // held as long as the picture is made
    if (const Outcome claim = checkClaim(static_cast<std::int64_t>(claimed->width),
                                         static_cast<std::int64_t>(claimed->height), length, length, options);
        !claim)
        return claim.error();
    PixelBuffer file = PixelBuffer::allocate(static_cast<std::size_t>(length));
    if (!file)
        return Error{{}, cause::kNoMemory};
    if (const Outcome read = readWhole(source, file, options); !read)
        return read.error();
    if (hasTooManyChunks({file.data(), file.size()}))
        return Error{{}, cause::kDamaged};
    const WebPData data{file.data(), file.size()};
    WebPDemuxState state = WEBP_DEMUX_PARSE_ERROR;
    const std::unique_ptr<WebPDemuxer, DeleteDemuxer> demuxer(WebPDemuxPartial(&data, &state));
    if (state == WEBP_DEMUX_PARSING_HEADER || state == WEBP_DEMUX_PARSED_HEADER)
        return Error{{}, cause::kTruncated};
    if (!demuxer || state != WEBP_DEMUX_DONE)
        return Error{{}, cause::kDamaged};
    return decodeFrame(demuxer.get(), file.size(), options);
}

} // namespace

const PictureDecoder kWebPDecoder{recognizesWebP, decodeWebP, factsOfWebP, loadExifThumbnail};

} // namespace lamina
