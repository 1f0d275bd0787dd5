#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PhotoSource.h"

#include <atomic>
#include <vector>

namespace lamina {

/// How large photos have to be for an editor.
struct PickedPhotoSize {
    /// Pixels that a photo covers to the last one, enlarged where it must be, but not beyond `shortSide`. Nothing of it
    /// is cut.
    CGSize covered;
    /// Pixels that its shorter side keeps in any case, if it has as many.
    double shortSide = 0;
};

/// How large they are for an editor on this main screen, opened from a screen of `own` points.
PickedPhotoSize pickedPhotoSizeFor(CGSize own);
/// The pixels with which a photo of `own` pixels is read.
CGSize pickedPhotoSize(CGSize own, const PickedPhotoSize& size);

/// Photos that were picked, as pictures.
struct PickedPhotos {
    std::vector<UIImage> images; ///< those that could be read, in the order of choice, upright
    std::vector<Error> failures; ///< of the others; the subject is the file's name as it is shown
    std::vector<Error> damages;  ///< of pictures that are damaged and shown as far as they go
};

/// The files of the assets.
std::vector<PhotoSource> photoSources(const std::vector<PHAsset>& assets);

/// Reads them side by side, and returns when all are read; where they take much memory, one waits for another. Set
/// `cancelled` from any thread to stop: what comes then is worth nothing. Any thread but the main one.
PickedPhotos loadPickedPhotos(const std::vector<PhotoSource>& photos, const PickedPhotoSize& size,
                              const std::atomic<bool>& cancelled);

} // namespace lamina
