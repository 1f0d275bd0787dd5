#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PHAsset.h"

#include <atomic>
#include <vector>

namespace lamina {

/// How large photos have to be for an editor.
struct PickedPhotoSize {
    /// Pixels that a photo covers to the last one, enlarged where it must be, but not beyond `shortSide`.
    CGSize covered;
    /// Pixels that its shorter side keeps in any case, if it has as many.
    double shortSide = 0;
};

/// The pixels with which a photo of `own` pixels is read.
CGSize pickedPhotoSize(CGSize own, const PickedPhotoSize& size);

/// Photos that were picked, as pictures.
struct PickedPhotos {
    std::vector<UIImage> images; ///< those that could be read, in the order of choice, upright
    std::vector<Error> failures; ///< of the others; the subject is the file's name
};

/// Reads them one after another on the calling thread. Set `cancelled` from any thread to stop: what comes then is
/// worth nothing.
PickedPhotos loadPickedPhotos(const std::vector<PHAsset>& assets, const PickedPhotoSize& size,
                              const std::atomic<bool>& cancelled);

} // namespace lamina
