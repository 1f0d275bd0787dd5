#pragma once

#include <QString>

#include <cstddef>
#include <string>

namespace lamina {

struct PHAsset;

// What the picker's screens say, in the user's language. Usable from any thread.

/// The day of a moment where the machine stands, without its weekday: "14 November 2026". `time` in seconds since the
/// beginning of 1970; empty when no calendar knows it.
QString dayText(double time);

/// "31 photos", "1 photo".
QString photosText(std::size_t count);

/// A text of the file system or of a library as views show it: on one line, with a sign in the place of what is no
/// UTF-8 or can't be seen.
QString shownName(const std::string& name);

/// The name of the photo's file, in the same way.
QString shownFileName(const PHAsset& photo);

} // namespace lamina
