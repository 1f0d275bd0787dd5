#include "platform/image/codecs/PictureFacts.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/Exif_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureFacts_p.h"
#include "platform/image/codecs/WindowedSource_p.h"
#include "platform/image/pixels/CGImage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace lamina {

namespace {

template <class T>
Result<T> withSubject(Result<T> result, const std::string& subject)
{
    return result ? std::move(result) : Result<T>(Error{subject, result.error().cause});
}

Result<StoredFacts> storedFacts(const PictureDecoder& decoder, WindowedSource& source)
{
    Result<StoredFacts> facts = decoder.facts(source);
    if (!facts)
        return Error{{}, source.isExhausted() ? cause::kDamaged : facts.error().cause};
    constexpr auto kLargest = static_cast<std::uint64_t>(std::numeric_limits<int>::max());
    const bool sound = facts->width > 0 && facts->height > 0 && facts->width <= kLargest && facts->height <= kLargest;
    return sound ? std::move(facts) : Result<StoredFacts>(Error{{}, cause::kDamaged});
}

PictureFacts shownFacts(ByteSource& source, const StoredFacts& stored)
{
    PictureFacts facts{static_cast<int>(stored.width), static_cast<int>(stored.height), UIImageOrientation::Up, {}};
    if (stored.exif.length == 0)
        return facts;
    const ExifFacts exif = readExif(source, stored.exif);
    facts.date = exif.date;
    if (stored.isUpright)
        return facts;
    facts.orientation = exif.orientation;
    if (swapsSides(facts.orientation))
        std::swap(facts.width, facts.height);
    return facts;
}

/// Whether all pixels of some rows or columns are as good as black.
bool isBlack(const CGImage& image, IntRect part)
{
    constexpr int kBrightest = 24; // compression leaves grey specks
    for (int y = part.y; y < part.y + part.height; ++y) {
        for (int x = part.x; x < part.x + part.width; ++x) {
            const std::uint8_t* pixel = image.row(y) + 4 * static_cast<std::ptrdiff_t>(x);
            if (std::max({pixel[0], pixel[1], pixel[2]}) > kBrightest)
                return false;
        }
    }
    return true;
}

/// How far the picture's shape stays away from both ends of a thumbnail's side; 0 where that is less than a pixel.
double barWidth(double side, double filled)
{
    const double bar = (side - filled) / 2;
    return bar < 0.75 ? 0 : bar;
}

/// The thumbnail without the bars that make up for another shape; empty when what stands there is no bar.
CGImage withoutBars(const CGImage& image, IntSize picture)
{
    const IntSize whole = image.size();
    const double scale =
        std::min(static_cast<double>(whole.width) / picture.width, static_cast<double>(whole.height) / picture.height);
    const double barX = barWidth(whole.width, scale * picture.width);
    const double barY = barWidth(whole.height, scale * picture.height);
    if (barX == 0 && barY == 0)
        return image;
    const int x = static_cast<int>(barX);
    const int y = static_cast<int>(barY);
    for (const IntRect bar : {IntRect{0, 0, whole.width, y}, IntRect{0, whole.height - y, whole.width, y},
                              IntRect{0, 0, x, whole.height}, IntRect{whole.width - x, 0, x, whole.height}}) {
        if (!isBlack(image, bar))
            return {};
    }
    // A pixel that is half bar goes with it, but one or two stay of a picture that is a mere line.
    const int left = std::min(static_cast<int>(std::ceil(barX)), (whole.width - 1) / 2);
    const int top = std::min(static_cast<int>(std::ceil(barY)), (whole.height - 1) / 2);
    return image.subImage({left, top, whole.width - 2 * left, whole.height - 2 * top});
}

Result<UIImage> thumbnailOf(const PictureDecoder& decoder, ByteSource& source)
{
    WindowedSource window(source);
    const Result<StoredFacts> stored = storedFacts(decoder, window);
    if (!stored)
        return stored.error();
    if (!decoder.thumbnail)
        return Error{{}, cause::kNoThumbnail};
    const Result<UIImage> small = decoder.thumbnail(source, *stored);
    if (!small)
        return small.error();
    if (!*small)
        return Error{{}, cause::kNoMemory};
    const IntSize size{static_cast<int>(stored->width), static_cast<int>(stored->height)};
    const CGImage shaped = withoutBars(small->cgImage(), size);
    if (!shaped)
        return Error{{}, "the thumbnail shows another picture"};
    return UIImage(shaped, 1, shownFacts(window, *stored).orientation);
}

} // namespace

Result<UIImage> loadExifThumbnail(ByteSource& source, const StoredFacts& facts)
{
    constexpr std::uint64_t kLargest = std::uint64_t{1} << 20;
    constexpr std::size_t kMostMemory = std::size_t{16} << 20;
    WindowedSource window(source);
    const ByteRange place = findExifThumbnail(window, facts.exif);
    if (place.length == 0 || place.length > kLargest)
        return Error{{}, cause::kNoThumbnail};
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(place.length));
    if (source.read(place.offset, bytes) != bytes.size())
        return Error{{}, cause::kTruncated};
    if (!kJPEGDecoder.recognizes(bytes))
        return Error{{}, cause::kNoThumbnail};
    return kJPEGDecoder.decode(*memorySource(bytes), {.memoryLimit = kMostMemory});
}

Result<PictureFacts> readPictureFacts(ByteSource& source)
{
    WindowedSource window(source);
    const Result<const PictureDecoder*> decoder = decoderFor(window);
    if (!decoder)
        return decoder.error();
    const Result<StoredFacts> stored = storedFacts(**decoder, window);
    return stored ? Result<PictureFacts>(shownFacts(window, *stored)) : stored.error();
}

Result<CGImageProperties> readImageProperties(ByteSource& source)
{
    WindowedSource window(source);
    const Result<const PictureDecoder*> decoder = decoderFor(window);
    if (!decoder)
        return decoder.error();
    const Result<StoredFacts> stored = storedFacts(**decoder, window);
    if (!stored)
        return stored.error();
    CGImageProperties properties{
        static_cast<std::int32_t>(stored->width), static_cast<std::int32_t>(stored->height), {}};
    if (stored->exif.length > 0 && !stored->isUpright)
        properties.orientation = readExif(window, stored->exif).orientationTag;
    return properties;
}

Result<UIImage> loadEmbeddedThumbnail(ByteSource& source)
{
    const Result<const PictureDecoder*> decoder = decoderFor(source);
    if (!decoder)
        return decoder.error();
    try {
        return thumbnailOf(**decoder, source);
    } catch (const std::bad_alloc&) {
        return Error{{}, cause::kNoMemory};
    }
}

Result<PictureFacts> readPictureFacts(const std::string& path)
{
    const auto source = openFileSource(path);
    return source ? withSubject(readPictureFacts(**source), path) : source.error();
}

Result<PictureFacts> readPictureFacts(std::span<const std::uint8_t> bytes, const std::string& subject)
{
    return withSubject(readPictureFacts(*memorySource(bytes)), subject);
}

Result<UIImage> loadEmbeddedThumbnail(const std::string& path)
{
    const auto source = openFileSource(path);
    return source ? withSubject(loadEmbeddedThumbnail(**source), path) : source.error();
}

} // namespace lamina
