#pragma once

#include "platform/image/pixels/UIImage.h"
#include "platform/photos/AssetPicture.h"
#include "platform/photos/thumbnails/FileStamp.h"

#include <string>

namespace lamina {

/// The folder in which the programs of a desktop keep thumbnails for each other (Thumbnail Managing Standard of
/// freedesktop.org): "thumbnails" in the user's folder for caches. Empty when the user has none.
std::string desktopThumbnailFolder();

/// The thumbnail in that folder for the request's file, which has the stamp: the smallest one that is large enough for
/// the request and was made of the file as it is now. Empty when there is none. Nothing is ever written there. Usable
/// from any thread.
UIImage loadDesktopThumbnail(const std::string& folder, const FileStamp& file, const AssetPictureRequest& request);

} // namespace lamina
