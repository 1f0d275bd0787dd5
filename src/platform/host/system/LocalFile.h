#pragma once

#include "platform/base/Result.h"

#include <QUrl>

#include <string>

namespace lamina {

/// The path of a file on this device that a "file:" URI names, byte for byte: file names need not be valid text. The
/// host may be missing or "localhost".
///
/// Anything else is an error: its subject is what the user knows the file by (the URI's last part), its cause a phrase
/// to show to them. Usable from any thread.
Result<std::string> localFilePath(const QUrl& uri);

} // namespace lamina
