#pragma once

#include "export/functions/ExportWork.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <span>
#include <string>

// The steps that several types of saving have in common.

namespace lamina {

/// Why an export can't begin: there is no picture, or it was cancelled before.
Outcome readyToExport(const ExportSource& source, const ExportWatch& watch);

/// The size to come, in points: the chosen one, else the picture's own.
CGSize exportedSize(const UIImage& picture, const ExportOptions& options);

/// Writes the file, whole or not at all, unless the export was cancelled before; a failure is logged behind
/// `complaint`.
Outcome writeExport(const std::string& path, std::span<const std::uint8_t> bytes, const ExportWatch& watch,
                    const std::string& complaint);

/// The error of an export that was cancelled.
inline Error cancelledExport()
{
    return {{}, cause::kCancelled};
}

} // namespace lamina
