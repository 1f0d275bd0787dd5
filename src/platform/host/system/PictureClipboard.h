#pragma once

#include "platform/base/Result.h"
#include "platform/photos/PhotoSource.h"

#include <vector>

class QMimeData;

namespace lamina {

/// Whether `picturesOf` is likely to find something, by the offered types alone: cheap enough to be asked while
/// something is dragged about.
bool offersPictures(const QMimeData& offered);

/// The pictures in what was dropped or pasted: all files of this device, in their order; else the first of the picture
/// formats that the other side offers, named "pasted picture". Files are not opened here.
///
/// Empty when it holds nothing of that kind. An error when all it holds are links to elsewhere; its cause is
/// English. Main thread.
Result<std::vector<PhotoSource>> picturesOf(const QMimeData& offered);

} // namespace lamina
