#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace lamina {

/// Uniform type identifiers of the formats that can be written.
inline constexpr std::string_view kUTTypePNG = "public.png";
inline constexpr std::string_view kUTTypeJPEG = "public.jpeg";
inline constexpr std::string_view kUTTypeGIF = "com.compuserve.gif";
inline constexpr std::string_view kUTTypeBMP = "com.microsoft.bmp";
inline constexpr std::string_view kUTTypeTIFF = "public.tiff";

struct PictureDecoder;
struct PictureEncoder;

/// One format of still pictures: what its files are called, and what reads and writes it.
struct PictureFormat {
    std::string_view name; ///< "JPEG"
    std::string_view uti;  ///< uniform type identifier: "public.jpeg"
    /// The file name extension that the type declares first, without the full stop.
    std::string_view preferredExtension;
    /// The usual extensions, the commonest first; then those that names of such files end in as well. Lower case,
    /// without the full stop.
    std::span<const std::string_view> extensions;
    std::span<const std::string_view> otherExtensions;
    /// MIME types, the registered one first.
    std::span<const std::string_view> mimeTypes;
    /// Taken over the clipboard: other programs that offer it lose nothing of the picture, or hold it as such a file.
    bool isExchanged;

    const PictureDecoder* decoder; ///< null where it can't be read
    const PictureEncoder* encoder; ///< null where it can't be written
};

/// The one table of formats, the best for a picture of unknown contents first. All that follows looks into it; it lives
/// as long as the process and is usable from any thread.
std::span<const PictureFormat> pictureFormats();

/// The format of a uniform type identifier; null when it is none of a picture.
const PictureFormat* pictureFormatForUTI(std::string_view uti);

/// The format that a file's name or path tells by its extension, in capitals or not; null when it tells none. Only the
/// contents tell for sure; this is for lists and for what is about to be written.
const PictureFormat* pictureFormatForFileName(std::string_view name);

/// The format of a file by its first bytes (up to 64, fewer when the file is shorter); null when it is none that can be
/// read.
const PictureFormat* pictureFormatForHead(std::span<const std::uint8_t> head);

} // namespace lamina
