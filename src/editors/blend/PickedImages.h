#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PhotoSource.h"

namespace lamina {

/// Where a photo stood in the crop square when it was cut out of it; enough to cut it again from a larger original.
struct PhotoCrop {
    CGSize photoSize;      ///< points, as shown upright
    double squareSide = 0; ///< points
    double zoomScale = 1;
    CGPoint contentOffset; ///< points after the zoom, from the photo's top left

    friend bool operator==(const PhotoCrop&, const PhotoCrop&) = default;
};

/// The two slots through which the crop screen hands its photos to the blend editor. An empty `firstPickedImage` means
/// that the first photo is still wanted. Process-wide; main thread only.
extern UIImage firstPickedImage;
extern UIImage secondPickedImage;

/// How the photo in the slot of the same number was cropped.
extern PhotoCrop firstPickedCrop;
extern PhotoCrop secondPickedCrop;

/// What it was cropped from, to be cropped again; neither path nor bytes: that is not known.
extern PhotoSource firstPickedSource;
extern PhotoSource secondPickedSource;

/// Empties both slots: the next photo taken is the first one again. Nothing is set aside any more.
void clearPickedImages();

/// The same, but a first photo that was taken is set aside with its crop, to be taken again; without one, what was set
/// aside before stays.
void givePickedImagesUp();
/// Whether a photo is set aside, and wanted: the first slot is empty.
bool isFirstImageSetAside();
/// Puts the photo that is set aside back into the first slot. Nothing when there is none.
void takeFirstImageAgain();
/// Forgets the photo that is set aside.
void forgetImageSetAside();

} // namespace lamina
