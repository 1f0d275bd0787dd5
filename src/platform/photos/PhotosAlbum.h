#pragma once

#include "platform/image/pixels/UIImage.h"

namespace lamina {

/// Puts the picture, upright, into the photo library as a file of its own (see savePNGToPhotoLibrary). It returns at
/// once, and always true: the work goes on behind it, one picture after the other, and what becomes of it is told by
/// the log alone. The main queue counts as busy until then, so that a command doesn't end before its picture is there.
/// Usable from any thread.
bool saveToPhotosAlbum(const UIImage& image);

} // namespace lamina
