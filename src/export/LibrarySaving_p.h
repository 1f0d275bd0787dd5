#pragma once

#include "export/SaveModelDetails.h"
#include "platform/base/Result.h"
#include "platform/photos/PhotosAlbum.h"
#include "platform/view/UIDocumentPickerViewController.h"

namespace lamina {

/// Puts what was exported into the photo library, in the background. JPG: the bytes that it was encoded to. PNG: the
/// bytes of its file, once it is seen to be a picture. MP4: a copy of the file. Nothing for the other types.
void storeInLibrary(const SaveModelDetails& details, PhotoSavedHandler handler);

/// The same at a place of the user's choice. Takes its time; usable from any thread.
Outcome storeAtPlace(const SaveModelDetails& details, const UIDocumentPlace& place);

} // namespace lamina
