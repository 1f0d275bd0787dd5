#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <string>
#include <vector>

namespace lamina {

/// The picture at `path` ("-": standard input), turned upright, in sRGB. `shortSide` as in `DecodeOptions`; 0 is full
/// size. The error's subject is the path, or "standard input". Any thread.
Result<UIImage> readPicture(const std::string& path, int shortSide = 0);

/// Whether several pictures are decoded one after another or at once.
enum class ReadingOrder {
    OneByOne,
    AtOnce, ///< each on a thread of its own: memory for decoding all of them at a time
};

/// What `readPicture` gives for each path, or the first one's error.
Result<std::vector<UIImage>> readPictures(const std::vector<std::string>& paths, int shortSide = 0,
                                          ReadingOrder order = ReadingOrder::OneByOne);

} // namespace lamina
