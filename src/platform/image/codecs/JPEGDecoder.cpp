#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/Exif_p.h"
#include "platform/image/codecs/IncrementalDecoders_p.h"
#include "platform/image/codecs/JPEGInput_p.h"
#include "platform/image/codecs/JPEGOutput_p.h"
#include "platform/image/codecs/PictureBuilder_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// JPEG, by libjpeg-turbo: baseline and progressive, 8 bits, Huffman coded; grey, YCbCr, RGB, CMYK and YCCK. Can be
/// reduced to eighths on the way, which costs nothing: the inverse transform gives fewer samples a block.
namespace lamina {

namespace {

bool recognizesJPEG(std::span<const std::uint8_t> head)
{
    return head.size() >= 3 && head[0] == 0xFF && head[1] == 0xD8 && head[2] == 0xFF;
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

Result<UIImage> decodeJPEG(ByteSource& source, const DecodeOptions& options)
{
    JPEGInput input(source, options);
    jpeg_decompress_struct& info = input.info();
    if (input.failed() || !input.attempt([&] { jpeg_read_header(&info, TRUE); }))
        return input.error();
    if (const Outcome done = prepareOutput(input, source.size(), options); !done)
        return done.error();
    const JPEGColors colors(input);
    PictureBuilder builder(static_cast<int>(info.output_width), static_cast<int>(info.output_height), options);
    if (!builder)
        return Error{{}, cause::kNoMemory};
    if (!(jpeg_has_multiple_scans(&info) ? readScans : readOneScan)(input, builder))
        return input.error();
    if (!input.sawAllComponents() && !input.isDamaged())
        return Error{{}, cause::kDamaged};

    colors.convertRows({builder.row(0), builder.width(), builder.height(), builder.bytesPerRow()}, options.cancelled);
    Result<UIImage> picture = std::move(builder).finishOpaque({}, exifOrientation(input.exif()));
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

const PictureDecoder kJPEGDecoder{recognizesJPEG, decodeJPEG, factsOfJPEG, loadExifThumbnail, makeIncrementalJPEG};

} // namespace lamina
