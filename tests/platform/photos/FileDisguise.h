#pragma once

#include "CommandRunner.h"

#include <filesystem>
#include <string>

namespace lamina::test {

/// Other contents in the same file, of which nothing tells but the contents: same size and same time.
inline void disguise(const std::string& path, std::string content)
{
    const auto time = std::filesystem::last_write_time(path);
    content.resize(std::filesystem::file_size(path));
    writeFile(path, content);
    std::filesystem::last_write_time(path, time);
}

} // namespace lamina::test
