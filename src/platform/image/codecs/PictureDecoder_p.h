#pragma once

#include "platform/base/Cancelling.h"
#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/CGImageSource.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace lamina {

/// What a file says of its picture before the pixels.
struct StoredFacts {
    /// Sides as stored, before the EXIF block's turn; above 0.
    std::uint64_t width = 0;
    std::uint64_t height = 0;
    /// Where the EXIF block stands; of length 0 when there is none.
    ByteRange exif;
    /// The file turns its picture by other means, which the sides have gone through: the block's orientation is
    /// nothing.
    bool isUpright = false;
};

/// What reads one format, a file each: `XDecoder.cpp`. A failure inside names no subject, since a decoder doesn't know
/// what its bytes are called; `loadPicture` and `decodePicture` set it. No exception but that of missing memory.
struct PictureDecoder {
    /// By the first bytes of the file (up to `kHeadSize`, fewer when the file is shorter).
    bool (*recognizes)(std::span<const std::uint8_t> head);
    /// The picture as `loadPicture` promises it; an empty one means that memory was short.
    Result<UIImage> (*decode)(ByteSource& source, const DecodeOptions& options);
    /// What stands before the pixels, with as few reads as it takes. The sides need not be believable.
    Result<StoredFacts> (*facts)(ByteSource& source);
    /// The small picture inside the file, as it is stored; null for formats that hold none.
    Result<UIImage> (*thumbnail)(ByteSource& source, const StoredFacts& facts);
    /// What decodes a file while it arrives; null for formats that are decoded once they are whole.
    std::unique_ptr<CGImageSource> (*incremental)(const DecodeOptions& options) = nullptr;
};

extern const PictureDecoder kPNGDecoder;
extern const PictureDecoder kJPEGDecoder;
extern const PictureDecoder kWebPDecoder;
extern const PictureDecoder kBMPDecoder;
extern const PictureDecoder kGIFDecoder;
/// These two stand on libraries that may do anything with a damaged file: they work in a confined program
/// (`lamina-decoder`), and this process only asks it. The decoders themselves are in `decoder`, a module of its own.
extern const PictureDecoder kWalledHEICDecoder;
extern const PictureDecoder kWalledTIFFDecoder;

/// As many of a file's first bytes as tell its format.
inline constexpr std::size_t kHeadSize = 64;

/// The decoder that a file's first bytes choose.
Result<const PictureDecoder*> decoderFor(ByteSource& source);

/// The JPEG picture inside the EXIF block, for any format that has such blocks.
Result<UIImage> loadExifThumbnail(ByteSource& source, const StoredFacts& facts);

/// The causes that several decoders give.
namespace cause {
inline constexpr const char* kDamaged = "the picture is damaged";
inline constexpr const char* kNoThumbnail = "the file holds no thumbnail";
inline constexpr const char* kTooLarge = "the picture is too large";
} // namespace cause

inline bool isCancelled(const DecodeOptions& options)
{
    return isCancelled(options.cancelled);
}

enum class PixelKind {
    Any,
    Bilevel, ///< one bit a pixel; plans and scans that are all but white
};

/// Good when a header's claim of `width` × `height` pixels may be believed. `heldBytes` is all that decoding will hold
/// for pixels, after reduction and with the codec's own frame buffers; `fileBytes` is the compressed size. Up to some
/// size any file may claim what it likes; more memory, or pixels that take more than a second to go through, are given
/// by the bytes that it brings (a bomb claims far more than its data can carry).
Outcome checkClaim(std::int64_t width, std::int64_t height, std::uint64_t heldBytes, std::uint64_t fileBytes,
                   const DecodeOptions& options, PixelKind kind = PixelKind::Any);

} // namespace lamina
