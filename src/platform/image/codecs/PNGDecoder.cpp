#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/Exif_p.h"
#include "platform/image/codecs/IncrementalDecoders_p.h"
#include "platform/image/codecs/PNGInput_p.h"
#include "platform/image/codecs/PictureBuilder_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/RowCollector_p.h"
#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <cstring>
#include <optional>
#include <png.h>
#include <span>
#include <utility>

/// PNG, by libpng: every colour type, bit depth and interlacing, as 8-bit RGBA. Pictures that aren't interlaced can be
/// reduced by whole numbers on the way. A checksum that fails is an error in the chunks that make up the picture;
/// elsewhere the chunk is passed over.
namespace lamina {

namespace {

bool recognizesPNG(std::span<const std::uint8_t> head)
{
    return head.size() >= sizeof kPNGSignature && std::memcmp(head.data(), kPNGSignature, sizeof kPNGSignature) == 0;
}

void readRows(PNGInput& input, RowCollector& rows, const PNGHeader& header)
{
    for (png_uint_32 y = 0; y < header.height; ++y) {
        input.stopIfCancelled();
        png_read_row(input.png(), rows.row(), nullptr);
        rows.advance();
    }
    png_read_end(input.png(), input.info());
}

void readPasses(PNGInput& input, PictureBuilder& builder, const PNGHeader& header)
{
    for (int pass = 0; pass < PNG_INTERLACE_ADAM7_PASSES; ++pass)
        for (png_uint_32 y = 0; y < header.height; ++y) {
            input.stopIfCancelled();
            png_read_row(input.png(), builder.row(static_cast<int>(y)), nullptr);
        }
    png_read_end(input.png(), input.info());
}

Result<UIImage> decodePNG(ByteSource& source, const DecodeOptions& options)
{
    PNGInput input(source, options);
    if (!input)
        return Error{{}, cause::kNoMemory};
    if (!input.attempt([&] { input.readHeader(); }))
        return input.error();
    const PNGHeader header = input.header();

    const int factor = header.interlaced ? 1 : reductionFactor(header.width, header.height, options.shortSide);
    if (const Outcome claim = input.weigh(collectorBytes(header.width, header.height, factor), source.size()); !claim)
        return claim.error();
    if (!input.attempt([&] { input.prepareRows(); }))
        return input.error();

    const int width = static_cast<int>(header.width);
    const int height = static_cast<int>(header.height);
    if (header.interlaced) {
        PictureBuilder builder(width, height, options);
        if (!builder)
            return Error{{}, cause::kNoMemory};
        if (!input.attempt([&] { readPasses(input, builder, header); }))
            return input.error();
        return std::move(builder).finish(header.translucent, input.profile(), exifOrientation(input.exif()));
    }
    RowCollector rows(width, height, factor, header.translucent, options);
    if (!rows)
        return Error{{}, cause::kNoMemory};
    if (!input.attempt([&] { readRows(input, rows, header); }))
        return input.error();
    return std::move(rows).finish(input.profile(), exifOrientation(input.exif()));
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
    std::uint64_t at = sizeof kPNGSignature;
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

const PictureDecoder kPNGDecoder{recognizesPNG, decodePNG, factsOfPNG, loadExifThumbnail, makeIncrementalPNG};

} // namespace lamina
