#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureDecoding.h"

#include <cstdint>
#include <memory>

namespace lamina {

/// A TIFF file whose first page may be given to libtiff.
struct GuardedTIFF {
    /// The file, but for its first directory, which has been cut down to the tags that pixels are read by, each once;
    /// no other directory follows. So the library neither holds what is nothing to a picture (an editor's layers can
    /// be larger than the picture) nor sees a tag whose values have not been weighed.
    std::unique_ptr<ByteSource> source;
    /// What the library holds beside its pixels, in bytes: its table of strips or tiles and the largest of them as it
    /// is stored.
    std::uint64_t heldBytes = 0;
};

/// Weighs the first directory of a file, which must outlive the result. The library takes a file's word for how much
/// there is to do, so that a page is refused here
///
///   - whose compression is none that is known to end in bounded time and memory;
///   - whose sides, samples, tables of strips or tiles and values of any tag are beyond what a picture has or the file
///     holds;
///   - that would keep the library busy for long though neither its pixels nor its bytes are many: strips or tiles
///     larger than the page, that share their bytes, or that are tiny.
Result<GuardedTIFF> guardTIFF(ByteSource& file, const DecodeOptions& options);

} // namespace lamina
