#pragma once

#include <QStringList>

#include <string_view>

namespace lamina {

/// The MIME types of the picture files that can be read.
const QStringList& pictureMimeTypes();

/// Whether a file's name ends as that of a picture which can be read, in capitals or not. Only the contents tell for
/// sure; this is for lists, where opening each file would take too long. Usable from any thread.
bool hasPictureExtension(std::string_view name);

} // namespace lamina
