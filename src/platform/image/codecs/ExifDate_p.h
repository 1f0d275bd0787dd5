#pragma once

#include <optional>
#include <string_view>

namespace lamina {

/// Seconds since 1970 UTC of a date as EXIF writes it, "2026:11:14 09:30:00", and its offset from UTC, "+02:00" or "Z".
/// Other separators are taken too, since some programs write them. Without an offset (or with one that means nothing)
/// it is a time of this machine's time zone. Nothing where there is no such date, or before 1900: cameras write zeros
/// and blanks for a time that they don't know.
std::optional<double> exifDate(std::string_view date, std::string_view offset);

} // namespace lamina
