#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureFacts.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PhotoSource.h"

#include <string>

namespace lamina {

/// `readPictureFacts` of a source; the error's subject is its path, or its name where it is bytes.
Result<PictureFacts> photoFacts(const PhotoSource& source);

/// Reads the picture as its file stores it: 8-bit RGB in sRGB, alpha straight if any, scale 1, the orientation told but
/// not yet applied. For callers that make it smaller first and turn the little that is left.
///
/// The error's subject is the source's name, its cause that of `loadPicture`. Takes its time; usable from any thread.
Result<UIImage> loadAsStored(const PhotoSource& source, const DecodeOptions& options);

/// The same with its pixels turned upright. Cancelling is looked at while the file is read and while the pixels are
/// turned, which takes a while for a large photo; `cause::kCancelled` then.
Result<UIImage> loadUpright(const PhotoSource& source, const DecodeOptions& options);

/// A picture that was made from another, or, where it is empty, the error that memory was short for it under the name
/// `subject`.
Result<UIImage> madeOrNoMemory(UIImage made, const std::string& subject);

} // namespace lamina
