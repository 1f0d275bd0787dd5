#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Putting finished pictures and clips into the photo library, each as a file of its own (see PhotoFolder.h). These
// return at once: the work goes on behind them, one after the other. The main queue counts as busy until then, so that
// a command doesn't end before its picture is there. Usable from any thread.

namespace lamina {

/// Hears, on the main thread and once, the path of the file that is in the library now, or why there is none.
using PhotoSavedHandler = std::function<void(const Result<std::string>& path)>;

/// The picture, upright, as a PNG file. Always true: what becomes of it is told to the handler, and a failure to the
/// log too.
bool saveToPhotosAlbum(const UIImage& image, PhotoSavedHandler handler = {});

/// A picture file's bytes as they are; `extension` begins with its full stop.
void saveToPhotosAlbum(std::vector<std::uint8_t> bytes, const std::string& extension, PhotoSavedHandler handler = {});

/// A copy of a clip's file, byte for byte.
void UISaveVideoAtPathToSavedPhotosAlbum(const std::string& path, PhotoSavedHandler handler = {});

} // namespace lamina
