#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace lamina {

namespace cause {
/// The first bytes are those of no format that is read.
inline constexpr const char* kNotAPicture = "not a picture";
/// The warning of a picture that was read although some of its data could not be.
inline constexpr const char* kShownAsFarAsItGoes = "the picture is damaged; it is shown as far as it goes";
} // namespace cause

/// How a picture is read.
struct DecodeOptions {
    /// When above zero, the codec may reduce while it reads, so long as the shorter side keeps at least this many
    /// pixels; a picture that is smaller comes at its full size. Only formats that can reduce on the way do (see each
    /// decoder).
    int shortSide = 0;
    /// Set from any thread to stop: reading ends within some rows with the cause "cancelled".
    const std::atomic<bool>* cancelled = nullptr;
    /// The most memory for pixels, in bytes, after reduction; more is refused before it is taken.
    std::size_t memoryLimit = std::size_t{256} << 20;
    /// Where given, a picture whose data are damaged in their midst is read as far as they go, as viewers show it, and
    /// this says so in a sentence; it is left alone otherwise. Without it such a file is an error.
    std::string* warning = nullptr;
};

/// A header may not claim more pixels than this, whatever the reduction.
inline constexpr std::int64_t kMaximumClaimedPixels = 400'000'000;
/// Nor a longer side: nothing could be drawn of it, and many short rows cost as much as many pixels.
inline constexpr std::int64_t kMaximumClaimedSide = 262'144;

/// Reads a still picture: JPEG, PNG, WebP, HEIC, TIFF (first page), GIF (first frame) or BMP, told by its first bytes
/// and never by its name.
///
/// The result has 8 bits a component in RGB order, converted to sRGB where a profile is embedded: straight alpha
/// (`Last`) when a pixel is translucent, `NoneSkipLast` otherwise. Scale 1; the orientation is the file's tag, with the
/// pixels as they are stored. (HEIC is turned by its own boxes while it is read and comes upright.)
///
/// A file that ends too early is an error and never a part of a picture; bytes after the end don't matter, nor does a
/// damaged EXIF block. The error's subject is the path (or `subject`), its cause one short phrase. Memory is bounded by
/// the limit above plus some megabytes for the codec. Usable from any thread.
Result<UIImage> loadPicture(const std::string& path, const DecodeOptions& options = {});
/// The same of a file in memory, which is called `subject`.
Result<UIImage> decodePicture(std::span<const std::uint8_t> bytes, const std::string& subject,
                              const DecodeOptions& options = {});

/// Whether a picture was refused for the memory that it would take: reduced further it may be read.
bool isRefusedForMemory(const Error& error);

} // namespace lamina
