#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/CGImage.h"

#include <string>

namespace lamina {

/// The folder into which the application puts finished pictures: "Lamina" inside the user's folder for pictures. It
/// is not made until something is written. Usable from any thread.
std::string photoLibraryFolder();

/// Saves the picture as a PNG file of a new name in that folder, and gives its path. The name tells the local time,
/// "Lamina 2026-11-21 12.14.10.png", with " 2", " 3" and so on before the extension where that is taken. No existing
/// file is ever replaced, also when several programs save at once, and a file appears whole or not at all. The error's
/// subject is the path or folder concerned. Encoding takes its time; usable from any thread.
Result<std::string> savePNGToPhotoLibrary(const CGImage& image);

} // namespace lamina
