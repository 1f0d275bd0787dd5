#pragma once

#include "platform/files/FileReading.h"

#include <memory>
#include <string>

namespace lamina {

/// A folder that stands open: what is done in it by its descriptor is done there, whatever becomes of its path.
using OpenFolder = std::shared_ptr<const FileDescriptor>;

/// Opens the folder that a file's path names (all before the last slash, links followed) into `folder`; who writes into
/// a folder at the same time shares one descriptor. What an end without warning has left there is swept with the first
/// time. The error's number, or 0. Usable from any thread.
int openFolderOf(const std::string& path, OpenFolder& folder);

/// A file's name within its folder: all behind the last slash.
std::string nameInFolder(const std::string& path);

} // namespace lamina
