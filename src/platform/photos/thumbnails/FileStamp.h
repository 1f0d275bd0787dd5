#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>

namespace lamina {

/// Which contents a file has, as far as its folder tells: another file under the same name, or the same one written
/// anew, has another stamp.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t modified = 0; ///< nanoseconds since the beginning of 1970
    std::int64_t bytes = 0;
    std::string path; ///< by which it was found

    friend auto operator<=>(const FileStamp&, const FileStamp&) = default;
};

/// The stamp of the regular file that the path leads to now; nothing when there is none. Usable from any thread.
std::optional<FileStamp> stampOfFile(const std::string& path);

} // namespace lamina
