#pragma once

#include "platform/base/Result.h"

#include <string>
#include <string_view>

namespace lamina {

/// The path of a file on this device that a "file:" URL names (RFC 8089), byte for byte: file names need not be valid
/// text. The host may be missing or "localhost"; query and fragment are passed over; a percent sign that no two digits
/// follow stands for itself.
///
/// Anything else is an error. Its subject is what the user knows the file by: the URL's last part, or, where there is
/// none, the URL without what may be a password. Usable from any thread.
Result<std::string> pathOfFileURL(std::string_view url);

/// The "file:" URL of an absolute path, every byte escaped that may not stand in a URL's path: the same URL as the
/// desktop's own programs make, which name files by its checksum. Usable from any thread.
std::string fileURLOfPath(std::string_view path);

} // namespace lamina
