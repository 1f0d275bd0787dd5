#pragma once

#include "cli/operations/OperationParsing.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PhotoSource.h"

#include <cstddef>
#include <optional>
#include <span>

namespace lamina {

/// A picture of a file, of scale 1 as read or of another that was set, that a codec may have reduced on the way.
struct ReadPicture {
    UIImage picture;
    std::optional<IntSize> whole; ///< the file's own sides, upright; nothing where all of its pixels are here
};

/// `DecodeOptions::shortSide` for a picture of `whole` pixels (upright) and `pictureScale` pixels a point that `step`
/// is the first to work on: so that twice the pixels that it leaves are read. 0, full size, where the step scales
/// nothing, or hardly makes anything smaller.
int shortSideFor(const OperationStep& step, IntSize whole, double pictureScale);

/// Reads a picture upright, reduced as far as the first of the steps allows. `whole`: its sides as shown, as
/// `readPictureFacts` gives them; nothing where they could not be read, and all is read then. The rest of `options`
/// holds. Any thread.
Result<ReadPicture> readForSteps(const PhotoSource& source, std::optional<IntSize> whole,
                                 std::span<const OperationStep> steps, double pictureScale, DecodeOptions options);

/// What the scaling `step` gives of the whole picture, from as much of it as was read; empty where there can be no
/// result.
UIImage scaledBy(const OperationStep& step, const ReadPicture& read);

/// About the most memory that reading a picture of `whole` pixels, the steps and writing take together, in bytes.
std::size_t memoryForSteps(IntSize whole, std::span<const OperationStep> steps, double pictureScale);

} // namespace lamina
