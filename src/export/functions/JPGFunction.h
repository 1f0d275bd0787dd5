#pragma once

#include "export/functions/ExportWork.h"
#include "platform/base/Result.h"

namespace lamina {

/// The work behind the type JPG: the picture is encoded at the chosen quality, on white where it is translucent, read
/// again, and brought to its new size, so that the loss of the quality is that of the picture as it was. That is what
/// the result carries, with a file of it: the very bytes of the first encoding where the size has stayed, else the new
/// picture's at the same quality. Only in a place that was chosen is a file written, "default.jpg".
Result<ExportedFile> exportJPG(const ExportSource& source, const ExportOptions& options, const ExportPlace& place,
                               const ExportWatch& watch);

} // namespace lamina
