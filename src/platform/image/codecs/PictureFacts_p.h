#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/CGImageSource.h"
#include "platform/image/codecs/PictureFacts.h"
#include "platform/image/pixels/UIImage.h"

namespace lamina {

/// The same of a file that is open already, or in memory; errors have no subject.
Result<PictureFacts> readPictureFacts(ByteSource& source);
Result<UIImage> loadEmbeddedThumbnail(ByteSource& source);
/// The same facts as they are stored. Of the first part of a file they may lack the orientation.
Result<CGImageProperties> readImageProperties(ByteSource& source);

} // namespace lamina
