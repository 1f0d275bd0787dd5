#pragma once

#include "platform/base/Causes.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureDecoding.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>

namespace lamina {

/// What a decoder gives: the picture, or the cause of failure in one short phrase without subject.
using Decoded = std::variant<UIImage, std::string>;

/// One still-picture format; one file each below `codecs/`.
struct PictureFormat {
    const char* name;
    /// By the first bytes of the file (up to 64, fewer when the file is shorter).
    bool (*recognizes)(std::span<const std::uint8_t> head);
    Decoded (*decode)(ByteSource& source, const DecodeOptions& options);
};

extern const PictureFormat kJPEGFormat;
extern const PictureFormat kPNGFormat;
extern const PictureFormat kWebPFormat;
extern const PictureFormat kHEICFormat;
extern const PictureFormat kTIFFFormat;
extern const PictureFormat kGIFFormat;
extern const PictureFormat kBMPFormat;

/// The causes that several decoders give.
namespace cause {
inline constexpr const char* kTruncated = "the file ends too early";
inline constexpr const char* kDamaged = "the picture is damaged";
inline constexpr const char* kTooLarge = "the picture is too large";
} // namespace cause

inline bool isCancelled(const DecodeOptions& options)
{
    return options.cancelled != nullptr && options.cancelled->load(std::memory_order_relaxed);
}

/// Nothing when a header's claim of `width` × `height` pixels may be believed; else the cause of refusal. `heldBytes`
/// is all that decoding will hold for pixels, after reduction and with the codec's own frame buffers; `fileBytes` is
/// the compressed size, against which a very large claim is weighed (a bomb claims far more than its data can carry).
std::optional<std::string> refusal(std::int64_t width, std::int64_t height, std::uint64_t heldBytes,
                                   std::uint64_t fileBytes, const DecodeOptions& options);

/// Rows of RGBA with straight alpha being filled by a decoder, in any order.
class PictureBuilder {
public:
    /// Empty (false) when memory is short. Sides in pixels, already accepted by `refusal`.
    PictureBuilder(int width, int height);
    explicit operator bool() const { return static_cast<bool>(m_buffer); }

    int width() const { return m_width; }
    int height() const { return m_height; }
    std::size_t bytesPerRow() const { return 4 * static_cast<std::size_t>(m_width); }
    std::uint8_t* row(int y) { return m_buffer.data() + static_cast<std::size_t>(y) * bytesPerRow(); }

    /// Ends the work. `translucent`: whether alpha bytes were written (otherwise they are set to 255 here; with it, a
    /// picture whose alpha is 255 throughout still becomes `NoneSkipLast`). `iccProfile`: an RGB or grey profile that
    /// the rows are in, empty for sRGB; one that can't be used is ignored.
    UIImage finish(bool translucent, std::span<const std::uint8_t> iccProfile, UIImageOrientation orientation) &&;
    /// The same for rows whose alpha bytes were written as 255, which saves a walk over the pixels.
    UIImage finishOpaque(std::span<const std::uint8_t> iccProfile, UIImageOrientation orientation) &&;

private:
    UIImage finishWith(CGImageAlphaInfo alpha, std::span<const std::uint8_t> iccProfile,
                       UIImageOrientation orientation) &&;

    int m_width;
    int m_height;
    PixelBuffer m_buffer;
};

} // namespace lamina
