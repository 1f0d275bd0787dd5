#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/Exif_p.h"
#include "platform/image/codecs/JPEGCoefficients_p.h"
#include "platform/image/codecs/JPEGInput_p.h"
#include "platform/image/codecs/PictureBuilder_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/ColorConversion.h"
#include "platform/image/pixels/UIImage.h"

#include "platform/base/WorkerPool.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

/// JPEG, by libjpeg-turbo: baseline and progressive, 8 bits, Huffman coded; grey, YCbCr, RGB, CMYK and YCCK. Can be
/// reduced to eighths on the way, which costs nothing: the inverse transform gives fewer samples a block.
namespace lamina {

namespace {

constexpr int kEighths = 8;

bool recognizesJPEG(std::span<const std::uint8_t> head)
{
    return head.size() >= 3 && head[0] == 0xFF && head[1] == 0xD8 && head[2] == 0xFF;
}

constexpr std::uint64_t divideUp(std::uint64_t value, std::uint64_t divisor)
{
    return (value + divisor - 1) / divisor;
}

/// The smallest number of eighths that leaves `shortSide` pixels on the shorter side. Where that is more than half, the
/// whole is read instead if it is of moderate size: the library has vector code for the whole and the half, and none
/// for what lies between (12 megapixels: 45 ms whole, 70 ms at seven eighths).
unsigned reducedEighths(unsigned width, unsigned height, int shortSide)
{
    constexpr std::uint64_t kModerateBytes = 64u << 20;
    if (shortSide <= 0)
        return kEighths;
    const std::uint64_t shorter = std::min(width, height);
    const bool wholeIsModerate = std::uint64_t{4} * width * height <= kModerateBytes;
    const unsigned most = wholeIsModerate ? kEighths / 2 : kEighths - 1;
    for (unsigned eighths = 1; eighths <= most; ++eighths)
        if (divideUp(shorter * eighths, kEighths) >= static_cast<std::uint64_t>(shortSide))
            return eighths;
    return kEighths;
}

/// All blocks of coefficients, filled up to whole units of the sampling as the library keeps them.
std::uint64_t blockCount(const jpeg_decompress_struct& info)
{
    std::uint64_t blocks = 0;
    for (int i = 0; i < info.num_components; ++i) {
        const jpeg_component_info& component = info.comp_info[i];
        const auto along = [](unsigned side, int sampling, int most) {
            const auto unit = 8 * static_cast<std::uint64_t>(most);
            return divideUp(side, unit) * static_cast<std::uint64_t>(sampling);
        };
        blocks += along(info.image_width, component.h_samp_factor, info.max_h_samp_factor) *
                  along(info.image_height, component.v_samp_factor, info.max_v_samp_factor);
    }
    return blocks;
}

/// Whether the picture's claim may be believed. Where the coefficients of several scans are too much to be held as they
/// are, they are packed.
Outcome weigh(JPEGInput& input, std::uint64_t blocks, std::uint64_t fileBytes, const DecodeOptions& options)
{
    constexpr std::uint64_t kWorkingBytesPerColumn = 64; // the codec's rows while it upsamples and converts
    jpeg_decompress_struct& info = input.info();
    const auto accepted = [&](std::uint64_t held) {
        return checkClaim(info.image_width, info.image_height, held, fileBytes, options);
    };
    const std::uint64_t held =
        std::uint64_t{4} * info.output_width * info.output_height + kWorkingBytesPerColumn * info.image_width;
    if (!jpeg_has_multiple_scans(&info) || accepted(held + blocks * sizeof(JBLOCK)))
        return accepted(held);
    const Outcome packed = accepted(held + blocks * PackedCoefficients::kLeastBytesPerBlock);
    if (packed)
        input.packCoefficients(options.memoryLimit - held);
    return packed;
}

/// Chooses size and colours of the output. Fails where the picture may not be taken.
Outcome prepare(JPEGInput& input, std::uint64_t fileBytes, const DecodeOptions& options)
{
    jpeg_decompress_struct& info = input.info();
    if (info.arith_code)
        return Error{{}, "JPEG pictures with arithmetic coding are not supported"};
    switch (info.jpeg_color_space) {
    case JCS_GRAYSCALE:
    case JCS_YCbCr:
    case JCS_RGB:
        info.out_color_space = JCS_EXT_RGBA;
        break;
    case JCS_CMYK:
    case JCS_YCCK:
        info.out_color_space = JCS_CMYK;
        break;
    default:
        return Error{{}, "this kind of JPEG is not supported"};
    }
    info.scale_num = reducedEighths(info.image_width, info.image_height, options.shortSide);
    info.scale_denom = kEighths;
    info.dct_method = JDCT_ISLOW;
    // It would guess at what scans left out; such files are refused or whole.
    info.do_block_smoothing = FALSE;
    if (!input.attempt([&] { jpeg_calc_output_dimensions(&info); }))
        return input.error();

    const std::uint64_t blocks = blockCount(info);
    input.limitWork(blocks, fileBytes);
    return weigh(input, blocks, fileBytes, options);
}

/// Reads all rows, straight into the picture.
void takeRows(jpeg_decompress_struct& info, PictureBuilder& builder)
{
    while (info.output_scanline < info.output_height) {
        std::uint8_t* row = builder.row(static_cast<int>(info.output_scanline));
        jpeg_read_scanlines(&info, &row, 1);
    }
}

/// The rows of a file that holds them one after the other, and on to the end marker.
bool readOneScan(JPEGInput& input, PictureBuilder& builder)
{
    jpeg_decompress_struct& info = input.info();
    const bool taken = input.attempt([&] {
        jpeg_start_decompress(&info);
        takeRows(info, builder);
    });
    return taken && (input.attempt([&] { jpeg_finish_decompress(&info); }) || input.passesOver());
}

/// The rows of a file of several scans. Where one of them can't be read, the picture is what has come until then.
bool readScans(JPEGInput& input, PictureBuilder& builder)
{
    jpeg_decompress_struct& info = input.info();
    if (!input.attempt([&] { input.takeScansIn(); })) {
        bool hasEnded = false;
        if (!input.passesOver() || !input.attempt([&] { hasEnded = input.endScans(); }) || !hasEnded)
            return false;
    }
    return input.attempt([&] {
        jpeg_start_output(&info, info.input_scan_number);
        takeRows(info, builder);
    });
}

void invert(const PixelRows& rows)
{
    parallelRows(0, rows.height, static_cast<std::size_t>(rows.width), [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            std::uint8_t* row = rows.first + static_cast<std::size_t>(y) * rows.bytesPerRow;
            for (std::size_t i = 0; i < 4 * static_cast<std::size_t>(rows.width); ++i)
                row[i] = static_cast<std::uint8_t>(255 - row[i]);
        }
    });
}

void convertInks(JPEGInput& input, PictureBuilder& builder, std::span<const std::uint8_t> profile,
                 const std::atomic<bool>* cancelled)
{
    const PixelRows rows{builder.row(0), builder.width(), builder.height(), builder.bytesPerRow()};
    if (input.info().saw_Adobe_marker) // its programs store 255 for no ink
        invert(rows);
    if (const auto conversion = ColorConversion::toSRGB(profile, CGColorSpace::Model::CMYK))
        conversion->convertRows(rows, cancelled);
    else
        convertDeviceCMYK(rows);
}

/// The picture of the rows that have been read, in its colours.
Result<UIImage> finish(JPEGInput& input, PictureBuilder builder, const std::atomic<bool>* cancelled)
{
    const jpeg_decompress_struct& info = input.info();
    const std::vector<std::uint8_t> profile = input.profile();
    const UIImageOrientation orientation = exifOrientation(input.exif());
    if (info.out_color_space == JCS_CMYK) {
        convertInks(input, builder, profile, cancelled);
        return std::move(builder).finishOpaque({}, orientation);
    }
    const CGColorSpace::Model model =
        info.jpeg_color_space == JCS_GRAYSCALE ? CGColorSpace::Model::Gray : CGColorSpace::Model::RGB;
    const bool fits = profileModel(profile) == model;
    return std::move(builder).finishOpaque(fits ? profile : std::vector<std::uint8_t>(), orientation);
}

Result<UIImage> decodeJPEG(ByteSource& source, const DecodeOptions& options)
{
    JPEGInput input(source, options);
    jpeg_decompress_struct& info = input.info();
    if (input.failed() || !input.attempt([&] { jpeg_read_header(&info, TRUE); }))
        return input.error();
    if (const Outcome done = prepare(input, source.size(), options); !done)
        return done.error();
    PictureBuilder builder(static_cast<int>(info.output_width), static_cast<int>(info.output_height), options);
    if (!builder)
        return Error{{}, cause::kNoMemory};
    if (!(jpeg_has_multiple_scans(&info) ? readScans : readOneScan)(input, builder))
        return input.error();
    if (!input.sawAllComponents() && !input.isDamaged())
        return Error{{}, cause::kDamaged};

    Result<UIImage> picture = finish(input, std::move(builder), options.cancelled);
    if (picture && *picture && input.isDamaged())
        *options.warning = cause::kShownAsFarAsItGoes;
    return picture;
}

/// The next marker from `at` on, which moves behind it; bytes between segments are passed over as the library does.
std::optional<std::uint8_t> nextMarker(ByteSource& source, std::uint64_t& at)
{
    bool begun = false;
    while (const std::optional<std::uint64_t> byte = numberAt(source, at, 1)) {
        ++at;
        if (begun && *byte != 0 && *byte != 0xFF)
            return static_cast<std::uint8_t>(*byte);
        begun = *byte == 0xFF;
    }
    return std::nullopt;
}

bool beginsFrame(std::uint8_t marker)
{
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool standsAlone(std::uint8_t marker)
{
    return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
}

/// Takes what the content of a segment says.
void takeSegment(StoredFacts& facts, ByteSource& source, std::uint8_t marker, ByteRange segment)
{
    constexpr std::uint8_t kApplication1 = 0xE1;
    if (beginsFrame(marker)) {
        facts.height = numberAt(source, segment.offset + 1, 2).value_or(0);
        facts.width = numberAt(source, segment.offset + 3, 2).value_or(0);
    } else if (marker == kApplication1 && facts.exif.length == 0 &&
               standsAt(source, segment.offset, std::string_view("Exif\0\0", 6))) {
        facts.exif = segment;
    }
}

/// Leaps from segment to segment. The block usually stands before the frame, and must stand before the scan.
Result<StoredFacts> factsOfJPEG(ByteSource& source)
{
    constexpr std::uint8_t kEnd = 0xD9;
    constexpr std::uint8_t kScan = 0xDA;
    StoredFacts facts;
    std::uint64_t at = 2;
    while (facts.width == 0 || facts.exif.length == 0) {
        const std::optional<std::uint8_t> marker = nextMarker(source, at);
        if (marker && standsAlone(*marker))
            continue;
        const std::optional<std::uint64_t> length = numberAt(source, at, 2);
        if (!marker || !length || *marker == kEnd || *marker == kScan) {
            if (facts.width != 0)
                break;
            return Error{{}, marker && length ? cause::kDamaged : cause::kTruncated};
        }
        const std::uint64_t content = std::max<std::uint64_t>(*length, 2) - 2; // libjpeg too takes less for nothing
        takeSegment(facts, source, *marker, {at + 2, content});
        at += 2 + content;
    }
    return facts;
}

} // namespace

const PictureDecoder kJPEGDecoder{recognizesJPEG, decodeJPEG, factsOfJPEG, loadExifThumbnail};

} // namespace lamina
