#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <string>
#include <vector>

namespace lamina {

/// The picture at `path` ("-": standard input), turned upright, in sRGB. `shortSide` as in `DecodeOptions`; 0 is full
/// size. The error's subject is the path, or "standard input". Any thread.
Result<UIImage> readPicture(const std::string& path, int shortSide = 0);

/// What `readPicture` gives for each path, one after the other, or the first one's error.
Result<std::vector<UIImage>> readPictures(const std::vector<std::string>& paths, int shortSide = 0);

/// The same of all at once, a thread for each: memory for decoding all of them at a time. `shortSides` has one for each
/// path.
Result<std::vector<UIImage>> readPicturesAtOnce(const std::vector<std::string>& paths,
                                                const std::vector<int>& shortSides);

} // namespace lamina
