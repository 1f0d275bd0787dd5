#pragma once

#include "export/SaveModelDetails.h"
#include "platform/base/Result.h"
#include "platform/view/UIDocumentPickerViewController.h"

#include <functional>
#include <string>

namespace lamina {

/// Puts what was exported into the photo library, in the background, and gives the path that it has there, or why not.
/// JPG: the bytes that it was encoded to. PNG: the file, once it is seen to be a picture. Others: the file. The handler
/// runs on the main thread.
void storeInLibrary(const SaveModelDetails& details, std::function<void(const Result<std::string>&)> handler);

/// The same at a place of the user's choice. Takes its time; usable from any thread.
Outcome storeAtPlace(const SaveModelDetails& details, const UIDocumentPlace& place);

} // namespace lamina
