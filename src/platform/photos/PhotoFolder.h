#pragma once

#include "platform/base/Result.h"
#include "platform/files/FileWriting.h"
#include "platform/image/pixels/CGImage.h"

#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace lamina {

/// The folder into which the application puts finished pictures: "Lamina" inside the user's folder for pictures. It
/// is not made until something is written. Usable from any thread.
std::string photoLibraryFolder();

// What saves gives the new file's path. Its name tells the local time, "Lamina 2026-11-21 12.14.10.png", with " 2",
// " 3" and so on before the extension where that is taken. No existing file is ever replaced, also when several
// programs save at once, and a file appears whole or not at all. The error's subject is the path or folder concerned.
// All of it takes its time and is usable from any thread.

/// A file that is to come.
struct NewPhoto {
    std::string extension; ///< begins with its full stop
    /// What it holds, or who writes that.
    std::variant<std::vector<std::uint8_t>, FileFiller> content;
};

/// A copy of a picture's or a clip's file that is to come, under the same extension. The file stays open until then.
Result<NewPhoto> copyOf(const std::string& path);

/// Saves a file in a folder that is there.
Result<std::string> saveInFolder(const std::string& folder, const NewPhoto& photo);

/// Saves the picture as a PNG file.
Result<std::string> savePNGToPhotoLibrary(const CGImage& image);

/// Saves a picture file's bytes as they are; `extension` begins with its full stop.
Result<std::string> saveToPhotoLibrary(std::span<const std::uint8_t> bytes, const std::string& extension);

/// Saves a copy of a picture's or a clip's file, byte for byte, under the same extension.
Result<std::string> copyToPhotoLibrary(const std::string& path);

} // namespace lamina
