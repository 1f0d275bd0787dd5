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
#include "platform/image/codecs/SequentialReader_p.h"
#include "platform/image/pixels/ColorConversion.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <cmath>
#include <csetjmp>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <optional>
#include <png.h>
#include <span>
#include <string_view>
#include <vector>

/// PNG, by libpng: every colour type, bit depth and interlacing, as 8-bit RGBA. Pictures that aren't interlaced can be
/// reduced by whole numbers on the way. A checksum that fails is an error in the chunks that make up the picture;
/// elsewhere the chunk is passed over.
namespace lamina {

namespace {

constexpr std::uint8_t kSignature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

bool recognizesPNG(std::span<const std::uint8_t> head)
{
    return head.size() >= sizeof kSignature && std::memcmp(head.data(), kSignature, sizeof kSignature) == 0;
}

/// The library's reader with its error jumps kept in. Every call into the library goes through `attempt`.
class PNGInput {
public:
    PNGInput(ByteSource& source, const DecodeOptions& options)
        : m_reader(source)
        , m_options(options)
        , m_png(png_create_read_struct(PNG_LIBPNG_VER_STRING, this, failed, [](png_structp, png_const_charp) {}))
        , m_info(m_png ? png_create_info_struct(m_png) : nullptr)
    {
    }
    ~PNGInput() { png_destroy_read_struct(&m_png, &m_info, nullptr); }
    PNGInput(const PNGInput&) = delete;
    PNGInput& operator=(const PNGInput&) = delete;

    explicit operator bool() const { return m_info != nullptr; }
    png_structp png() { return m_png; }
    png_infop info() { return m_info; }
    /// Why the library gave up.
    Error error() const { return {{}, m_cause}; }

    /// Runs `body`; false when the library gave up in it. The jump passes over `body`, which may therefore not own
    /// anything.
    template <class Body>
    bool attempt(Body body)
    {
        if (setjmp(m_jump) != 0) // NOLINT: the library's only way to report
            return false;
        body();
        return true;
    }

    [[noreturn]] void giveUp(const char* cause)
    {
        m_cause = cause;
        std::longjmp(m_jump, 1);
    }
    void stopIfCancelled()
    {
        if (isCancelled(m_options))
            giveUp(cause::kCancelled);
    }

    void readHeader();

private:
    static void failed(png_structp png, png_const_charp text)
    {
        auto& self = *static_cast<PNGInput*>(png_get_error_ptr(png));
        self.giveUp(std::string_view(text).find("memory") == std::string_view::npos ? cause::kDamaged
                                                                                    : cause::kNoMemory);
    }
    static void read(png_structp png, png_bytep target, std::size_t count)
    {
        auto& self = *static_cast<PNGInput*>(png_get_io_ptr(png));
        self.stopIfCancelled(); // chunks that are passed over can be long
        if (self.m_reader.read({target, count}) < count)
            self.giveUp(cause::kTruncated);
    }

    SequentialReader m_reader;
    const DecodeOptions& m_options;
    const char* m_cause = cause::kNoMemory;
    std::jmp_buf m_jump;
    png_structp m_png;
    png_infop m_info;
};

void PNGInput::readHeader()
{
    constexpr int kLargestSide = 0x7FFFFFFF;          // the claim is weighed elsewhere
    constexpr std::uint32_t kLargestChunk = 4u << 20; // of a chunk outside the pixels, unpacked
    constexpr std::uint32_t kMostChunks = 8;          // that are kept as they are; a picture has one
    static constexpr png_byte kExif[] = "eXIf";
    static constexpr png_byte kUnused[] = "tEXt\0zTXt\0iTXt\0hIST\0sPLT\0pCAL\0sCAL\0tIME\0oFFs\0pHYs\0bKGD\0sBIT";

    png_set_read_fn(m_png, this, read);
    png_set_user_limits(m_png, kLargestSide, kLargestSide);
    png_set_chunk_malloc_max(m_png, kLargestChunk);
    png_set_chunk_cache_max(m_png, kMostChunks);
    png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_NEVER, kUnused, static_cast<int>(sizeof kUnused / 5));
    // The library's own reader of this chunk allocates whatever length it claims; the one for unknown chunks keeps the
    // limit.
    png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_ALWAYS, kExif, 1);
    png_set_crc_action(m_png, PNG_CRC_ERROR_QUIT, PNG_CRC_WARN_DISCARD);
    png_set_benign_errors(m_png, 1);
    png_read_info(m_png, m_info);
}

struct Header {
    png_uint_32 width = 0;
    png_uint_32 height = 0;
    bool interlaced = false;
    bool grey = false;
    bool translucent = false;
    PixelKind kind = PixelKind::Any;
};

/// What the file claims to hold. Nothing is allocated for it yet.
Header claimedHeader(PNGInput& input)
{
    png_structp png = input.png();
    png_infop info = input.info();
    Header header;
    header.width = png_get_image_width(png, info);
    header.kind = png_get_bit_depth(png, info) == 1 ? PixelKind::Bilevel : PixelKind::Any;
    header.height = png_get_image_height(png, info);
    header.interlaced = png_get_interlace_type(png, info) != PNG_INTERLACE_NONE;
    const int colorType = png_get_color_type(png, info);
    header.grey = (colorType & PNG_COLOR_MASK_COLOR) == 0;
    header.translucent = (colorType & PNG_COLOR_MASK_ALPHA) != 0 || png_get_valid(png, info, PNG_INFO_tRNS) != 0;
    return header;
}

/// Sets the library to give 8-bit RGBA. It allocates its rows here, so the claim must have been accepted.
void prepareRows(PNGInput& input, const Header& header)
{
    png_structp png = input.png();
    png_set_expand(png);
    png_set_scale_16(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    if (header.interlaced)
        png_set_interlace_handling(png);
    png_read_update_info(png, input.info());
}

void readRows(PNGInput& input, RowCollector& rows, const Header& header)
{
    for (png_uint_32 y = 0; y < header.height; ++y) {
        input.stopIfCancelled();
        png_read_row(input.png(), rows.row(), nullptr);
        rows.advance();
    }
    png_read_end(input.png(), input.info());
}

void readPasses(PNGInput& input, PictureBuilder& builder, const Header& header)
{
    for (int pass = 0; pass < PNG_INTERLACE_ADAM7_PASSES; ++pass)
        for (png_uint_32 y = 0; y < header.height; ++y) {
            input.stopIfCancelled();
            png_read_row(input.png(), builder.row(static_cast<int>(y)), nullptr);
        }
    png_read_end(input.png(), input.info());
}

UIImageOrientation orientation(PNGInput& input)
{
    png_unknown_chunkp chunks = nullptr;
    const int count = png_get_unknown_chunks(input.png(), input.info(), &chunks);
    for (const png_unknown_chunk& chunk : std::span(chunks, static_cast<std::size_t>(count))) {
        if (std::memcmp(chunk.name, "eXIf", 4) == 0)
            return exifOrientation({chunk.data, chunk.size});
    }
    return UIImageOrientation::Up;
}

bool isNear(const Chromaticities& x, const Chromaticities& y)
{
    constexpr double kTolerance = 0.005;
    const auto near = [](CGPoint a, CGPoint b) {
        return std::abs(a.x - b.x) < kTolerance && std::abs(a.y - b.y) < kTolerance;
    };
    return near(x.white, y.white) && near(x.red, y.red) && near(x.green, y.green) && near(x.blue, y.blue);
}

/// What the file says of its colours by numbers. An exponent of about 1/2.2 with the primaries of sRGB is how older
/// programs write sRGB and is taken as that.
std::vector<std::uint8_t> statedColors(PNGInput& input)
{
    double encoding = 0;
    if (png_get_valid(input.png(), input.info(), PNG_INFO_sRGB) ||
        !png_get_gAMA(input.png(), input.info(), &encoding) || !(encoding > 0))
        return {};
    Chromaticities c;
    png_get_cHRM(input.png(), input.info(), &c.white.x, &c.white.y, &c.red.x, &c.red.y, &c.green.x, &c.green.y,
                 &c.blue.x, &c.blue.y);
    constexpr double kUsual = 1 / 2.2;
    if (isNear(c, Chromaticities()) && std::abs(encoding - kUsual) < 0.01)
        return {};
    return makeProfile(c, 1 / encoding);
}

/// The profile that the rows are in; empty for sRGB.
std::vector<std::uint8_t> profile(PNGInput& input, const Header& header)
{
    png_charp name = nullptr;
    int method = 0;
    png_bytep bytes = nullptr;
    png_uint_32 size = 0;
    if (!png_get_iCCP(input.png(), input.info(), &name, &method, &bytes, &size))
        return statedColors(input);
    const std::span<const std::uint8_t> icc(bytes, size);
    const auto model = header.grey ? CGColorSpace::Model::Gray : CGColorSpace::Model::RGB;
    if (profileModel(icc) != model)
        return {};
    return {icc.begin(), icc.end()};
}

Result<UIImage> decodePNG(ByteSource& source, const DecodeOptions& options)
{
    PNGInput input(source, options);
    if (!input)
        return Error{{}, cause::kNoMemory};
    if (!input.attempt([&] { input.readHeader(); }))
        return input.error();
    const Header header = claimedHeader(input);

    const int factor = header.interlaced ? 1 : reductionFactor(header.width, header.height, options.shortSide);
    constexpr std::uint64_t kWorkingBytesPerColumn = 24; // the codec's rows, before and after its conversions
    const std::uint64_t held =
        collectorBytes(header.width, header.height, factor) + kWorkingBytesPerColumn * header.width;
    if (const Outcome claim = checkClaim(header.width, header.height, held, source.size(), options, header.kind);
        !claim)
        return claim.error();
    if (!input.attempt([&] { prepareRows(input, header); }))
        return input.error();

    const int width = static_cast<int>(header.width);
    const int height = static_cast<int>(header.height);
    if (header.interlaced) {
        PictureBuilder builder(width, height, options);
        if (!builder)
            return Error{{}, cause::kNoMemory};
        if (!input.attempt([&] { readPasses(input, builder, header); }))
            return input.error();
        return std::move(builder).finish(header.translucent, profile(input, header), orientation(input));
    }
    RowCollector rows(width, height, factor, header.translucent, options);
    if (!rows)
        return Error{{}, cause::kNoMemory};
    if (!input.attempt([&] { readRows(input, rows, header); }))
        return input.error();
    return std::move(rows).finish(profile(input, header), orientation(input));
}

/// Leaps from chunk to chunk. Those of the pixels can be thousands, behind which nothing is looked for.
Result<StoredFacts> factsOfPNG(ByteSource& source)
{
    constexpr int kMostChunks = 32;
    constexpr std::uint64_t kAroundContent = 12; // length, type and checksum
    const std::optional<std::uint64_t> width = numberAt(source, 16, 4);
    const std::optional<std::uint64_t> height = numberAt(source, 20, 4);
    if (!width || !height)
        return Error{{}, cause::kTruncated};
    StoredFacts facts{*width, *height, {}, false};
    std::uint64_t at = sizeof kSignature;
    for (int i = 0; i < kMostChunks && facts.exif.length == 0; ++i) {
        const std::optional<std::uint64_t> length = numberAt(source, at, 4);
        if (!length || standsAt(source, at + 4, "IEND"))
            break;
        const ByteRange content{at + 8, *length};
        if (standsAt(source, at + 4, "eXIf")) // whatever its checksum, as when the picture is read
            facts.exif = content;
        at += *length + kAroundContent;
    }
    return facts;
}

} // namespace

const PictureDecoder kPNGDecoder{recognizesPNG, decodePNG, factsOfPNG, loadExifThumbnail};

} // namespace lamina
