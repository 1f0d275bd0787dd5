#pragma once

#include <string>

/// Why files can't be reached, in one wording each.
namespace lamina {

namespace cause {
inline constexpr const char* kIsFolder = "is a folder";
inline constexpr const char* kNoSuchFile = "no such file";
inline constexpr const char* kNoSuchFolder = "no such folder";
inline constexpr const char* kNoFileName = "this is not the name of a file";
inline constexpr const char* kNotRegular = "not a regular file";
inline constexpr const char* kTooLarge = "the file is too large";
} // namespace cause

/// The cause for a number of <cerrno> that opening or reading a file has given.
std::string readingFailure(int error);

/// The cause for one that making or writing a file has given: what is missing then is the folder.
std::string writingFailure(int error);

} // namespace lamina
