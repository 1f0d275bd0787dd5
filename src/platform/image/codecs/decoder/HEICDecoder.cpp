#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/HeifFacts_p.h"
#include "platform/image/codecs/HeifItems_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/RowCollector_p.h"
#include "platform/image/codecs/decoder/BareDecoders_p.h"
#include "platform/image/codecs/decoder/HeifExtract_p.h"
#include "platform/image/codecs/decoder/HeifLibrary_p.h"
#include "platform/image/codecs/decoder/HeifWeight_p.h"
#include "platform/image/pixels/PixelArithmetic.h"
#include "platform/image/pixels/PixelKernels.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

/// HEIC and AVIF, by libheif: the primary picture, turned and cropped by its own boxes, so that it comes upright; its
/// EXIF tag says the same once more and is left alone. Reduced by whole factors while it is copied out of the codec.
/// libheif is given boxes of our own, which hold that picture alone, after it was weighed.
namespace lamina {

namespace {

constexpr std::size_t kLargestProfile = 4u << 20;

/// Lets libheif read from a source.
class Reader {
public:
    explicit Reader(ByteSource& source)
        : m_source(source)
        , m_size(source.size())
    {
    }

    bool endReached() const { return m_endReached; }

    static const heif_reader* callbacks()
    {
        static const heif_reader table{
            1,
            [](void* self) { return static_cast<std::int64_t>(static_cast<Reader*>(self)->m_position); },
            [](void* target, std::size_t size, void* self) { return static_cast<Reader*>(self)->read(target, size); },
            [](std::int64_t position, void* self) {
                static_cast<Reader*>(self)->m_position = static_cast<std::uint64_t>(position);
                return position < 0 ? 1 : 0;
            },
            [](std::int64_t wanted, void* self) { return static_cast<Reader*>(self)->waitFor(wanted); },
        };
        return &table;
    }

private:
    int read(void* target, std::size_t size)
    {
        const std::size_t count = m_source.read(m_position, {static_cast<std::uint8_t*>(target), size});
        m_position += count;
        m_endReached = m_endReached || count < size;
        return count == size ? 0 : 1;
    }
    heif_reader_grow_status waitFor(std::int64_t wanted)
    {
        if (wanted >= 0 && static_cast<std::uint64_t>(wanted) <= m_size)
            return heif_reader_grow_status_size_reached;
        m_endReached = true;
        return heif_reader_grow_status_size_beyond_eof;
    }

    ByteSource& m_source;
    std::uint64_t m_size;
    std::uint64_t m_position = 0;
    bool m_endReached = false;
};

template <class Object>
using Owned = std::unique_ptr<Object, void (*)(Object*)>;

struct Layout {
    int width = 0;
    int height = 0;
    bool alpha = false;
    bool deep = false; ///< more than 8 bits a component

    int components() const { return alpha ? 4 : 3; }
    heif_chroma chroma() const
    {
        if (deep)
            return alpha ? heif_chroma_interleaved_RRGGBBAA_LE : heif_chroma_interleaved_RRGGBB_LE;
        return alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB;
    }
    /// The most that is held at once: what decoding takes, then its planes beside the interleaved picture, then that
    /// one beside ours.
    std::uint64_t heldBytes(const HeifWeight& weight, std::uint64_t ours) const
    {
        const std::uint64_t pixels = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
        const std::uint64_t interleaved = pixels * (deep ? 2 : 1) * static_cast<std::uint64_t>(components());
        return std::max(weight.peak, interleaved + std::max(weight.planes, ours));
    }
};

class HEICReader {
public:
    HEICReader(const HeifLibrary& heif, HeifExtract& extract, const HeifWeight& weight, const DecodeOptions& options)
        : m_heif(heif)
        , m_reader(extract)
        , m_options(options)
        , m_weight(weight)
        , m_fileBytes(extract.size())
        , m_context(heif.contextAlloc(), heif.contextFree)
        , m_handle(nullptr, [](heif_image_handle* handle) { HeifLibrary::shared()->handleRelease(handle); })
        , m_image(nullptr, [](heif_image* image) { HeifLibrary::shared()->imageRelease(image); })
    {
    }

    Result<UIImage> decode()
    {
        const Outcome opened = open();
        return opened ? decodeHandle() : opened.error();
    }

private:
    Result<UIImage> decodeHandle()
    {
        const int factor = reductionFactor(m_layout.width, m_layout.height, m_options.shortSide);
        const std::uint64_t held =
            m_layout.heldBytes(m_weight, collectorBytes(m_layout.width, m_layout.height, factor));
        if (const Outcome claim = checkClaim(m_layout.width, m_layout.height, held, m_fileBytes, m_options); !claim)
            return claim.error();
        if (isCancelled(m_options))
            return Error{{}, cause::kCancelled};
        if (const Outcome done = decodePixels(); !done)
            return done.error();

        RowCollector rows(m_layout.width, m_layout.height, factor, m_layout.alpha, m_options);
        if (!rows)
            return Error{{}, cause::kNoMemory};
        if (const Outcome done = copyRows(rows); !done)
            return done.error();
        return std::move(rows).finish(profile(), UIImageOrientation::Up);
    }

    Error failure(const heif_error& error) const
    {
        if (error.subcode == heif_suberror_Security_limit_exceeded)
            return {{}, cause::kTooLarge};
        if (error.code == heif_error_Memory_allocation_error)
            return {{}, cause::kNoMemory};
        if (m_reader.endReached() || error.subcode == heif_suberror_End_of_data)
            return {{}, cause::kTruncated};
        if (error.code == heif_error_Unsupported_feature || error.code == heif_error_Unsupported_filetype)
            return Error{{}, cause::kOtherHeif};
        return {{}, cause::kDamaged};
    }

    Outcome open()
    {
        if (!m_context)
            return Error{{}, cause::kNoMemory};
        // The library takes a side and compares the square of it with the pixels.
        m_heif.setMaximumImageSizeLimit(m_context.get(), static_cast<int>(std::sqrt(kMaximumClaimedPixels)));
        heif_error error = m_heif.readFromReader(m_context.get(), Reader::callbacks(), &m_reader, nullptr);
        if (error.code != heif_error_Ok)
            return failure(error);
        heif_image_handle* handle = nullptr;
        error = m_heif.getPrimaryImageHandle(m_context.get(), &handle);
        if (error.code != heif_error_Ok)
            return failure(error);
        m_handle.reset(handle);
        m_layout.width = m_heif.handleWidth(handle);
        m_layout.height = m_heif.handleHeight(handle);
        m_layout.alpha = m_heif.handleHasAlpha(handle) != 0;
        m_layout.deep = m_heif.handleLumaBits(handle) > 8;
        return success();
    }

    Outcome decodePixels()
    {
        const Owned<heif_decoding_options> options(m_heif.optionsAlloc(), m_heif.optionsFree);
        // Of the two decoders for AVIF this one is quiet about damaged data; the other writes to standard error. For
        // HEIC the name means nothing.
        if (options && options->version >= 4)
            options->decoder_id = "aom";
        heif_image* image = nullptr;
        const heif_error error =
            m_heif.decodeImage(m_handle.get(), &image, heif_colorspace_RGB, m_layout.chroma(), options.get());
        m_image.reset(image);
        if (error.code != heif_error_Ok)
            return failure(error);
        // What was announced decides about memory; what was decoded must be that.
        if (m_heif.imageWidth(image, heif_channel_interleaved) != m_layout.width ||
            m_heif.imageHeight(image, heif_channel_interleaved) != m_layout.height)
            return Error{{}, cause::kDamaged};
        return success();
    }

    Outcome copyRows(RowCollector& rows) const
    {
        int stride = 0;
        const std::uint8_t* plane = m_heif.imagePlane(m_image.get(), heif_channel_interleaved, &stride);
        const int bits = m_heif.imageBits(m_image.get(), heif_channel_interleaved);
        if (!plane || bits < 8 || bits > 16)
            return Error{{}, cause::kDamaged};
        const bool premultiplied = m_layout.alpha && m_heif.handleIsPremultiplied(m_handle.get()) != 0;
        for (int y = 0; y < m_layout.height; ++y) {
            if (isCancelled(m_options))
                return Error{{}, cause::kCancelled};
            const std::uint8_t* in = plane + static_cast<std::ptrdiff_t>(y) * stride;
            if (m_layout.deep)
                copyDeepRow(in, rows.row(), (1u << bits) - 1);
            else
                copyRow(in, rows.row());
            if (premultiplied)
                kernels::unpremultiply(rows.row(), static_cast<std::size_t>(m_layout.width));
            rows.advance();
        }
        return success();
    }

    void copyRow(const std::uint8_t* in, std::uint8_t* out) const
    {
        if (m_layout.alpha) {
            std::memcpy(out, in, 4 * static_cast<std::size_t>(m_layout.width));
            return;
        }
        for (int x = 0; x < m_layout.width; ++x, in += 3, out += 4) {
            std::copy_n(in, 3, out);
            out[3] = 255;
        }
    }

    void copyDeepRow(const std::uint8_t* in, std::uint8_t* out, std::uint32_t largest) const
    {
        const int components = m_layout.components();
        for (int x = 0; x < m_layout.width; ++x, out += 4) {
            out[3] = 255;
            for (int c = 0; c < components; ++c, in += 2)
                out[c] = to8Bits(static_cast<std::uint32_t>(in[0] | in[1] << 8), largest);
        }
    }

    std::vector<std::uint8_t> profile() const
    {
        std::vector<std::uint8_t> bytes;
        const heif_color_profile_type type = m_heif.handleProfileType(m_handle.get());
        const std::size_t size = m_heif.handleProfileSize(m_handle.get());
        if ((type != heif_color_profile_type_rICC && type != heif_color_profile_type_prof) || size > kLargestProfile)
            return bytes;
        bytes.resize(size);
        if (m_heif.handleProfile(m_handle.get(), bytes.data()).code != heif_error_Ok)
            bytes.clear();
        return bytes;
    }

    const HeifLibrary& m_heif;
    Reader m_reader;
    const DecodeOptions& m_options;
    HeifWeight m_weight;
    std::uint64_t m_fileBytes;
    Layout m_layout;
    Owned<heif_context> m_context;
    std::unique_ptr<heif_image_handle, void (*)(heif_image_handle*)> m_handle;
    std::unique_ptr<heif_image, void (*)(heif_image*)> m_image;
};

/// Decodes one picture of a file, once it was weighed.
Result<UIImage> decodeItem(ByteSource& source, const HeifItems& items, std::uint64_t id, const DecodeOptions& options)
{
    const HeifLibrary* heif = HeifLibrary::shared();
    if (!heif)
        return Error{{}, "HEIC pictures need libheif"};
    const Result<HeifWeight> weight = weighHeifPicture(source, items, id);
    if (!weight)
        return weight.error();
    const HeifSides shown = shownHeifSides(source, *items.find(id));
    if (const Outcome claim = checkClaim(static_cast<std::int64_t>(shown.width),
                                         static_cast<std::int64_t>(shown.height), weight->peak, source.size(), options);
        !claim)
        return claim.error();
    if (isCancelled(options))
        return Error{{}, cause::kCancelled};
    Result<HeifExtract> extract = HeifExtract::make(source, items, id);
    return extract ? HEICReader(*heif, *extract, *weight, options).decode() : extract.error();
}

Result<UIImage> decodeHEIC(ByteSource& source, const DecodeOptions& options)
{
    const Result<HeifItems> items = readHeifItems(source);
    return items ? decodeItem(source, *items, items->primary, options) : items.error();
}

/// The first thumbnail item of the primary picture.
Result<UIImage> loadHEICThumbnail(ByteSource& source, const StoredFacts&)
{
    const DecodeOptions options{.memoryLimit = std::size_t{16} << 20};
    const Result<HeifItems> items = readHeifItems(source);
    if (!items)
        return items.error();
    const HeifItem* primary = items->find(items->primary);
    if (!primary || primary->thumbnails.empty())
        return Error{{}, cause::kNoThumbnail};
    return decodeItem(source, *items, primary->thumbnails.front(), options);
}

} // namespace

const PictureDecoder kHEICDecoder{recognizesHEIC, decodeHEIC, readHeifFacts, loadHEICThumbnail};

} // namespace lamina
