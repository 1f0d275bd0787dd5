#pragma once

#include <array>
#include <string>
#include <string_view>

namespace lamina {

/// What our decoders read, for choosers and clipboards; the first ones are the commonest.
inline constexpr std::array kPictureMimeTypes = {
    "image/jpeg", "image/png",  "image/webp", "image/heif", "image/heic",
    "image/avif", "image/tiff", "image/gif",  "image/bmp",
};

/// Whether a file of this name looks like a picture that our decoders read, by its extension, in capitals or not. Only the
/// contents tell for sure. Usable from any thread.
bool hasPictureExtension(std::string_view name);

/// The person's folder of pictures, as the desktop has it. Usable from any thread.
std::string picturesFolder();
/// The sample photos that come with Lamina: `LAMINA_SAMPLES`, else the installed ones; empty when there are none.
std::string samplesFolder();
/// Where choosing a photo starts: empty, so where the desktop likes, or the samples while the person's own folder holds no
/// picture. Looks no further than a few hundred entries. Reads the disk: for a background thread.
std::string firstFolder();

} // namespace lamina
