#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureBuilder_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/SequentialReader_p.h"
#include "platform/image/pixels/UIImage.h"

#include <gif_lib.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

/// GIF, by giflib: the first frame on its logical screen, which is clear where the frame isn't. What a frame holds
/// outside the screen is cut off, an index beyond the palette is black.
namespace lamina {

namespace {

bool recognizesGIF(std::span<const std::uint8_t> head)
{
    return head.size() >= 6 &&
           (std::memcmp(head.data(), "GIF87a", 6) == 0 || std::memcmp(head.data(), "GIF89a", 6) == 0);
}

int readForGiflib(GifFileType* file, GifByteType* target, int size)
{
    auto& reader = *static_cast<SequentialReader*>(file->UserData);
    return static_cast<int>(reader.read({target, static_cast<std::size_t>(std::max(0, size))}));
}

struct CloseGif {
    void operator()(GifFileType* file) const { DGifCloseFile(file, nullptr); }
};

class GIFReader {
public:
    GIFReader(ByteSource& source, const DecodeOptions& options)
        : m_reader(source)
        , m_options(options)
        , m_fileBytes(source.size())
    {
    }

    Result<UIImage> decode()
    {
        const Result<IntSize> screen = readToFirstFrame();
        if (!screen)
            return screen.error();
        const GifImageDesc& frame = m_file->Image;
        const auto [width, height] = *screen;
        const std::uint64_t held = 4 * static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) +
                                   static_cast<std::uint64_t>(frame.Width);
        for (const IntSize size : {IntSize{width, height}, IntSize{frame.Width, frame.Height}}) {
            if (const Outcome claim = checkClaim(size.width, size.height, held, m_fileBytes, m_options); !claim)
                return claim.error();
        }
        PictureBuilder builder(width, height, m_options);
        if (!builder)
            return Error{{}, cause::kNoMemory};
        if (const Outcome cleared = builder.fill({}); !cleared)
            return cleared.error();
        if (const Outcome done = fill(builder); !done)
            return done.error();
        return std::move(builder).finish(true, {}, UIImageOrientation::Up);
    }

    /// The size of the logical screen.
    Result<IntSize> readToFirstFrame()
    {
        int error = D_GIF_SUCCEEDED;
        m_file.reset(DGifOpen(&m_reader, readForGiflib, &error));
        if (!m_file)
            return failure(error);
        if (const Outcome done = seekFirstFrame(); !done)
            return done.error();
        const GifImageDesc& frame = m_file->Image;
        if (frame.Width <= 0 || frame.Height <= 0)
            return Error{{}, cause::kDamaged};
        // Some programs leave the screen's size unset; then it is as large as it must be.
        return IntSize{m_file->SWidth > 0 ? m_file->SWidth : frame.Left + frame.Width,
                       m_file->SHeight > 0 ? m_file->SHeight : frame.Top + frame.Height};
    }

private:
    Error failure(int error) const
    {
        if (isCancelled(m_options))
            return {{}, cause::kCancelled};
        if (error == D_GIF_ERR_NOT_ENOUGH_MEM)
            return {{}, cause::kNoMemory};
        return {{}, m_reader.endReached() ? cause::kTruncated : cause::kDamaged};
    }
    Error failure() const { return failure(m_file->Error); }

    Outcome seekFirstFrame()
    {
        for (;;) {
            if (isCancelled(m_options))
                return Error{{}, cause::kCancelled};
            GifRecordType record = UNDEFINED_RECORD_TYPE;
            if (DGifGetRecordType(m_file.get(), &record) == GIF_ERROR)
                return failure();
            if (record == IMAGE_DESC_RECORD_TYPE) {
                if (DGifGetImageDesc(m_file.get()) == GIF_ERROR)
                    return failure();
                return success();
            }
            if (record == TERMINATE_RECORD_TYPE)
                return Error{{}, "the file holds no picture"};
            if (record == EXTENSION_RECORD_TYPE && !readExtension())
                return failure();
        }
    }

    bool readExtension()
    {
        int code = 0;
        GifByteType* block = nullptr;
        if (DGifGetExtension(m_file.get(), &code, &block) == GIF_ERROR)
            return false;
        GraphicsControlBlock control{};
        if (code == GRAPHICS_EXT_FUNC_CODE && block && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK)
            m_transparent = control.TransparentColor;
        while (block) {
            if (--m_blocksLeft < 0 || isCancelled(m_options) || DGifGetExtensionNext(m_file.get(), &block) == GIF_ERROR)
                return false;
        }
        return true;
    }

    /// Decodes the frame's lines onto the screen.
    Outcome fill(PictureBuilder& builder)
    {
        const GifImageDesc& frame = m_file->Image;
        const ColorMapObject* palette = frame.ColorMap ? frame.ColorMap : m_file->SColorMap;
        if (!palette || !palette->Colors)
            return Error{{}, "the picture has no palette"};
        std::vector<GifPixelType> line(static_cast<std::size_t>(frame.Width));
        struct Pass {
            int first;
            int step;
        };
        const std::vector<Pass> passes =
            frame.Interlace ? std::vector<Pass>{{0, 8}, {4, 8}, {2, 4}, {1, 2}} : std::vector<Pass>{{0, 1}};
        for (const Pass pass : passes) {
            for (int y = pass.first; y < frame.Height; y += pass.step) {
                if (isCancelled(m_options))
                    return Error{{}, cause::kCancelled};
                if (DGifGetLine(m_file.get(), line.data(), frame.Width) == GIF_ERROR)
                    return failure();
                if (frame.Top + y < builder.height())
                    paint(line, *palette, builder.row(frame.Top + y), builder.width());
            }
        }
        return success();
    }

    void paint(const std::vector<GifPixelType>& line, const ColorMapObject& palette, std::uint8_t* row,
               int rowWidth) const
    {
        const GifImageDesc& frame = m_file->Image;
        const int visible = std::min(frame.Width, rowWidth - frame.Left);
        std::uint8_t* out = row + 4 * static_cast<std::ptrdiff_t>(frame.Left);
        for (int x = 0; x < visible; ++x, out += 4) {
            const int index = line[static_cast<std::size_t>(x)];
            if (index == m_transparent)
                continue;
            const GifColorType color = index < palette.ColorCount ? palette.Colors[index] : GifColorType{0, 0, 0};
            out[0] = color.Red;
            out[1] = color.Green;
            out[2] = color.Blue;
            out[3] = 255;
        }
    }

    SequentialReader m_reader;
    const DecodeOptions& m_options;
    std::uint64_t m_fileBytes;
    int m_blocksLeft = 1 << 18; ///< of comments and the like before the first frame: 64 MB
    std::unique_ptr<GifFileType, CloseGif> m_file;
    int m_transparent = NO_TRANSPARENT_COLOR;
};

Result<UIImage> decodeGIF(ByteSource& source, const DecodeOptions& options)
{
    // On the heap: the read buffer is large for the stack of a worker.
    return std::make_unique<GIFReader>(source, options)->decode();
}

Result<StoredFacts> factsOfGIF(ByteSource& source)
{
    const auto side = [&](std::uint64_t at) { return numberAt(source, at, 2, std::endian::little).value_or(0); };
    StoredFacts facts{side(6), side(8), {}, false};
    if (facts.width != 0 && facts.height != 0)
        return facts;
    const DecodeOptions options;
    const Result<IntSize> screen = std::make_unique<GIFReader>(source, options)->readToFirstFrame();
    if (!screen)
        return screen.error();
    facts.width = static_cast<std::uint64_t>(screen->width);
    facts.height = static_cast<std::uint64_t>(screen->height);
    return facts;
}

} // namespace

const PictureDecoder kGIFDecoder{recognizesGIF, decodeGIF, factsOfGIF, nullptr};

} // namespace lamina
