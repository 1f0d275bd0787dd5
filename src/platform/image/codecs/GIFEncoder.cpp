#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/ColorQuantizer_p.h"
#include "platform/image/codecs/EncodedRows_p.h"
#include "platform/image/codecs/PictureEncoder_p.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/pixels/CGImage.h"

#include <gif_lib.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <vector>

/// GIF, by giflib.
namespace lamina {

namespace {

constexpr int kBandRows = 64;
constexpr int kLongestSide = 65535;

/// What giflib writes. Its callback is called by C code, which no exception may cross.
struct GifBytes {
    std::vector<std::uint8_t> bytes;

    static int append(GifFileType* file, const GifByteType* source, int size)
    {
        auto& bytes = static_cast<GifBytes*>(file->UserData)->bytes;
        try {
            bytes.insert(bytes.end(), source, source + size);
        } catch (const std::bad_alloc&) {
            return 0;
        }
        return size;
    }
};

struct CloseGif {
    void operator()(GifFileType* file) const { EGifCloseFile(file, nullptr); }
};
struct FreeMap {
    void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};
using ColorMap = std::unique_ptr<ColorMapObject, FreeMap>;

/// Reads all rows in bands, and passes each row on.
template <class Use>
bool forEachRow(const FlattenedRows& rows, Use use)
{
    const std::size_t rowBytes = 4 * static_cast<std::size_t>(rows.width());
    std::vector<std::uint8_t> band(rowBytes * static_cast<std::size_t>(std::min(kBandRows, rows.height())));
    for (int first = 0; first < rows.height(); first += kBandRows) {
        const int count = std::min(kBandRows, rows.height() - first);
        rows.readBand(first, count, band.data());
        for (int i = 0; i < count; ++i)
            if (!use(std::span<const std::uint8_t>(band.data() + static_cast<std::size_t>(i) * rowBytes, rowBytes)))
                return false;
    }
    return true;
}

/// The palette filled up to a power of two, as the format has it; the place after the colours is the clear one, if any.
ColorMap makeColorMap(const ColorQuantizer& colors)
{
    const auto& palette = colors.palette();
    const std::size_t used = palette.size() + (colors.sawClear() ? 1 : 0);
    int size = 2;
    while (static_cast<std::size_t>(size) < used)
        size *= 2;
    ColorMap map(GifMakeMapObject(size, nullptr));
    if (!map)
        return map;
    for (int i = 0; i < size; ++i) {
        const auto place = static_cast<std::size_t>(i);
        const ColorQuantizer::Color color = place < palette.size() ? palette[place] : ColorQuantizer::Color{};
        map->Colors[i] = {color[0], color[1], color[2]};
    }
    return map;
}

bool writeHeader(GifFileType* file, const FlattenedRows& rows, const ColorMap& map, std::optional<int> clearIndex)
{
    constexpr int kBitsPerColor = 8;
    EGifSetGifVersion(file, clearIndex.has_value());
    if (EGifPutScreenDesc(file, rows.width(), rows.height(), kBitsPerColor, 0, map.get()) == GIF_ERROR)
        return false;
    if (clearIndex) {
        const GraphicsControlBlock control{DISPOSAL_UNSPECIFIED, false, 0, *clearIndex};
        GifByteType extension[4];
        const std::size_t size = EGifGCBToExtension(&control, extension);
        if (EGifPutExtension(file, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(size), extension) == GIF_ERROR)
            return false;
    }
    return EGifPutImageDesc(file, 0, 0, rows.width(), rows.height(), false, nullptr) != GIF_ERROR;
}

bool writePixels(GifFileType* file, const FlattenedRows& rows, const ColorQuantizer& colors)
{
    const auto clear = static_cast<GifPixelType>(colors.palette().size());
    std::vector<GifPixelType> line(static_cast<std::size_t>(rows.width()));
    return forEachRow(rows, [&](std::span<const std::uint8_t> rgba) {
        for (std::size_t x = 0; x < line.size(); ++x) {
            const std::uint8_t* pixel = rgba.data() + 4 * x;
            line[x] = ColorQuantizer::isClear(pixel[3]) ? clear : colors.indexOf(pixel);
        }
        return EGifPutLine(file, line.data(), rows.width()) != GIF_ERROR;
    });
}

Result<std::vector<std::uint8_t>> encodeGIF(CGImage image, const EncodeOptions& options)
{
    if (std::max(image.width(), image.height()) > kLongestSide)
        return Error{{}, "a GIF picture can't be longer than 65535 pixels"};
    const FlattenedRows rows(image, options.background);
    ColorQuantizer colors;
    forEachRow(rows, [&](std::span<const std::uint8_t> rgba) {
        colors.add(rgba);
        return true;
    });
    constexpr std::size_t kPlaces = 256;
    colors.choose(colors.sawClear() ? kPlaces - 1 : kPlaces);

    const ColorMap map = makeColorMap(colors);
    std::optional<int> clearIndex;
    if (colors.sawClear())
        clearIndex = static_cast<int>(colors.palette().size());
    GifBytes result;
    std::unique_ptr<GifFileType, CloseGif> file(EGifOpen(&result, GifBytes::append, nullptr));
    if (!map || !file || !writeHeader(file.get(), rows, map, clearIndex) || !writePixels(file.get(), rows, colors))
        return Error{{}, cause::kNoMemory};
    if (EGifCloseFile(file.release(), nullptr) == GIF_ERROR)
        return Error{{}, cause::kNoMemory};
    return std::move(result.bytes);
}

} // namespace

const PictureEncoder kGIFEncoder{encodeGIF};

} // namespace lamina
