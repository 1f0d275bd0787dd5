#pragma once

#include "cli/common/ExitCode.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/files/FileBatch.h"
#include "platform/image/pixels/UIImage.h"

#include <string>

namespace lamina {

/// The extensions that name a format, for help and messages.
std::string outputExtensions();

/// Why nothing could be written to `path` by its name alone, before any work is done: an extension that is not known.
/// Success for "-" and for names that end in a known one, in any case of letters.
Outcome checkOutputName(const std::string& path);

/// Why nothing could be written to `path`, told before work that can't be done again: it makes a file there, if it may,
/// and takes it away. Success for pipes and devices, which are not touched, and for "-" unless that is a terminal.
Outcome checkOutputPlace(const std::string& path);

/// Writes the picture to `path` in the format of its name, whole or not at all, or as PNG to standard output for "-".
/// Formats without alpha get a white ground.
Outcome writePicture(const UIImage& picture, const std::string& path);

/// The same into a file that `files` writes.
Outcome writePicture(const UIImage& picture, const std::string& path, FileBatch& files);

/// "1125 x 844 pixels".
std::string sizeInPixels(IntSize size);

/// Writes the picture and notes its size unless `quiet`: the end of every command that makes one.
ExitCode deliverPicture(const UIImage& picture, const std::string& path, bool quiet);

} // namespace lamina
