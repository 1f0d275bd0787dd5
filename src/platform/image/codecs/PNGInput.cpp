#include "platform/image/codecs/PNGInput_p.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/image/pixels/CGColorSpace.h"
#include "platform/image/pixels/ColorConversion.h"

#include <cmath>
#include <cstring>
#include <string_view>

namespace lamina {

namespace {

bool isNear(const Chromaticities& x, const Chromaticities& y)
{
    constexpr double kTolerance = 0.005;
    const auto near = [](CGPoint a, CGPoint b) {
        return std::abs(a.x - b.x) < kTolerance && std::abs(a.y - b.y) < kTolerance;
    };
    return near(x.white, y.white) && near(x.red, y.red) && near(x.green, y.green) && near(x.blue, y.blue);
}

} // namespace

PNGInput::PNGInput(ByteSource& source, const DecodeOptions& options)
    : PNGInput(options)
{
    m_reader.emplace(source);
}

PNGInput::PNGInput(const DecodeOptions& options)
    : m_options(options)
    , m_cause(cause::kNoMemory)
    , m_png(png_create_read_struct(PNG_LIBPNG_VER_STRING, this, failed, [](png_structp, png_const_charp) {}))
    , m_info(m_png ? png_create_info_struct(m_png) : nullptr)
{
}

PNGInput::~PNGInput()
{
    png_destroy_read_struct(&m_png, &m_info, nullptr);
}

void PNGInput::giveUp(const char* cause)
{
    m_cause = cause;
    std::longjmp(m_jump, 1);
}

void PNGInput::stopIfCancelled()
{
    if (isCancelled(m_options))
        giveUp(cause::kCancelled);
}

void PNGInput::failed(png_structp png, png_const_charp text)
{
    auto& self = *static_cast<PNGInput*>(png_get_error_ptr(png));
    self.giveUp(std::string_view(text).find("memory") == std::string_view::npos ? cause::kDamaged : cause::kNoMemory);
}

void PNGInput::read(png_structp png, png_bytep target, std::size_t count)
{
    auto& self = *static_cast<PNGInput*>(png_get_io_ptr(png));
    self.stopIfCancelled(); // chunks that are passed over can be long
    if (self.m_reader->read({target, count}) < count)
        self.giveUp(cause::kTruncated);
}

void PNGInput::readHeader()
{
    png_set_read_fn(m_png, this, read);
    limitChunks();
    png_read_info(m_png, m_info);
}

void PNGInput::setCallbacks(void* target, png_progressive_info_ptr haveInfo, png_progressive_row_ptr haveRow,
                            png_progressive_end_ptr haveEnd)
{
    png_set_progressive_read_fn(m_png, target, haveInfo, haveRow, haveEnd);
    limitChunks();
}

void PNGInput::receive(std::span<const std::uint8_t> data)
{
    stopIfCancelled();
    png_process_data(m_png, m_info, const_cast<png_bytep>(data.data()), data.size()); // which it only reads
}

void PNGInput::limitChunks()
{
    constexpr int kLargestSide = 0x7FFFFFFF;          // the claim is weighed elsewhere
    constexpr std::uint32_t kLargestChunk = 4u << 20; // of a chunk outside the pixels, unpacked
    constexpr std::uint32_t kMostChunks = 8;          // that are kept as they are; a picture has one
    static constexpr png_byte kExif[] = "eXIf";
    static constexpr png_byte kUnused[] = "tEXt\0zTXt\0iTXt\0hIST\0sPLT\0pCAL\0sCAL\0tIME\0oFFs\0pHYs\0bKGD\0sBIT";

    png_set_user_limits(m_png, kLargestSide, kLargestSide);
    png_set_chunk_malloc_max(m_png, kLargestChunk);
    png_set_chunk_cache_max(m_png, kMostChunks);
    png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_NEVER, kUnused, static_cast<int>(sizeof kUnused / 5));
    // The library's own reader of this chunk allocates whatever length it claims; the one for unknown chunks keeps the
    // limit.
    png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_ALWAYS, kExif, 1);
    png_set_crc_action(m_png, PNG_CRC_ERROR_QUIT, PNG_CRC_WARN_DISCARD);
    png_set_benign_errors(m_png, 1);
}

PNGHeader PNGInput::header() const
{
    PNGHeader header;
    header.width = png_get_image_width(m_png, m_info);
    header.height = png_get_image_height(m_png, m_info);
    header.kind = png_get_bit_depth(m_png, m_info) == 1 ? PixelKind::Bilevel : PixelKind::Any;
    header.interlaced = png_get_interlace_type(m_png, m_info) != PNG_INTERLACE_NONE;
    const int colorType = png_get_color_type(m_png, m_info);
    header.grey = (colorType & PNG_COLOR_MASK_COLOR) == 0;
    header.translucent = (colorType & PNG_COLOR_MASK_ALPHA) != 0 || png_get_valid(m_png, m_info, PNG_INFO_tRNS) != 0;
    return header;
}

Outcome PNGInput::weigh(std::uint64_t pictureBytes, std::uint64_t fileBytes) const
{
    constexpr std::uint64_t kWorkingBytesPerColumn = 24; // the codec's rows, before and after its conversions
    const PNGHeader claimed = header();
    const std::uint64_t held = pictureBytes + kWorkingBytesPerColumn * claimed.width;
    return checkClaim(claimed.width, claimed.height, held, fileBytes, m_options, claimed.kind);
}

void PNGInput::prepareRows()
{
    png_set_expand(m_png);
    png_set_scale_16(m_png);
    png_set_gray_to_rgb(m_png);
    png_set_add_alpha(m_png, 0xFF, PNG_FILLER_AFTER);
    if (png_get_interlace_type(m_png, m_info) != PNG_INTERLACE_NONE)
        png_set_interlace_handling(m_png);
    png_read_update_info(m_png, m_info);
}

std::span<const std::uint8_t> PNGInput::exif() const
{
    png_unknown_chunkp chunks = nullptr;
    const int count = png_get_unknown_chunks(m_png, m_info, &chunks);
    for (const png_unknown_chunk& chunk : std::span(chunks, static_cast<std::size_t>(count))) {
        if (std::memcmp(chunk.name, "eXIf", 4) == 0)
            return {chunk.data, chunk.size};
    }
    return {};
}

/// What the file says of its colours by numbers. An exponent of about 1/2.2 with the primaries of sRGB is how older
/// programs write sRGB and is taken as that.
std::vector<std::uint8_t> PNGInput::statedColors() const
{
    double encoding = 0;
    if (png_get_valid(m_png, m_info, PNG_INFO_sRGB) || !png_get_gAMA(m_png, m_info, &encoding) || !(encoding > 0))
        return {};
    Chromaticities c;
    png_get_cHRM(m_png, m_info, &c.white.x, &c.white.y, &c.red.x, &c.red.y, &c.green.x, &c.green.y, &c.blue.x,
                 &c.blue.y);
    constexpr double kUsual = 1 / 2.2;
    if (isNear(c, Chromaticities()) && std::abs(encoding - kUsual) < 0.01)
        return {};
    return makeProfile(c, 1 / encoding);
}

std::vector<std::uint8_t> PNGInput::profile() const
{
    png_charp name = nullptr;
    int method = 0;
    png_bytep bytes = nullptr;
    png_uint_32 size = 0;
    if (!png_get_iCCP(m_png, m_info, &name, &method, &bytes, &size))
        return statedColors();
    const std::span<const std::uint8_t> icc(bytes, size);
    const auto model = header().grey ? CGColorSpace::Model::Gray : CGColorSpace::Model::RGB;
    if (profileModel(icc) != model)
        return {};
    return {icc.begin(), icc.end()};
}

} // namespace lamina
