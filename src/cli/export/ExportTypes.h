#pragma once

#include "export/functions/ExportWork.h"
#include "platform/base/Result.h"

#include <string>
#include <string_view>
#include <vector>

namespace lamina {

/// What a type of saving lets one choose, one bit each.
enum ExportChoice : unsigned {
    kChoosesSize = 1,
    kChoosesTransparency = 2,
    kChoosesQuality = 4,
    kChoosesNotes = 8,
    kChoosesCropMarks = 16,
    kChoosesProfile = 32,
    kChoosesPixelsPerInch = 64,
};

/// A type of saving as the command names it.
struct ExportType {
    SavingtypeMethod type;
    std::string_view name;
    std::vector<std::string_view> extensions; ///< of its files; the first is the usual one
    unsigned choices;                         ///< of ExportChoice
};

/// By the type's number.
const std::vector<ExportType>& exportTypes();

/// "jpg, png, ... or tiff", for help.
std::string exportTypeNames();

/// The type of that name. The error's subject is the name, and its cause suggests the nearest.
Result<const ExportType*> exportTypeNamed(const std::string& name);

/// Where an output that was named on the command line is: a folder (one that stands, or a name that ends in a slash),
/// in which the file gets the type's own name, or a file. An error where the file's extension is none of the type's,
/// and for "-".
Result<ExportPlace> exportPlaceOf(const std::string& output, const ExportType& type);

} // namespace lamina
