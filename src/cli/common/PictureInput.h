#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PhotoSource.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// The picture at `path` ("-": standard input), turned upright, in sRGB. `shortSide` and `memoryLimit` as in
/// `DecodeOptions`; 0 is full size. Of a damaged picture that can be shown as far as it goes a warning is printed. The
/// error's subject is the path, or "standard input". Any thread.
Result<UIImage> readPicture(const std::string& path, int shortSide = 0,
                            std::size_t memoryLimit = DecodeOptions().memoryLimit);

/// What a name on the command line stands for: a file, not yet opened, or the bytes of standard input ("-"), read to
/// its end.
Result<PhotoSource> pictureSource(const std::string& path);

/// The sides of the picture by the file's own words; nothing where it has none.
std::optional<IntSize> claimedSides(const PhotoSource& source);

/// What `readPicture` gives for each path, one after the other, or the first one's error.
Result<std::vector<UIImage>> readPictures(const std::vector<std::string>& paths, int shortSide = 0,
                                          std::size_t memoryLimit = DecodeOptions().memoryLimit);

/// The same of all at once, a thread for each: memory for decoding all of them at a time. `shortSides` has one for each
/// path. Warnings are printed in the order of the paths.
Result<std::vector<UIImage>> readPicturesAtOnce(const std::vector<std::string>& paths,
                                                const std::vector<int>& shortSides);

} // namespace lamina
