#pragma once

#include "CommandRunner.h"

#include <cstddef>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>

namespace lamina::test {

/// Sets the time of a file's last change and leaves that of its last reading alone.
inline void setModified(const std::string& path, const timespec& time)
{
    const timespec times[] = {{0, UTIME_OMIT}, time};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

/// Other contents in the same file, of which nothing tells but the contents: same size and same time.
inline void disguise(const std::string& path, std::string content)
{
    struct stat before {};
    ASSERT_EQ(::stat(path.c_str(), &before), 0);
    ASSERT_LE(content.size(), static_cast<std::size_t>(before.st_size));
    content.resize(static_cast<std::size_t>(before.st_size));
    writeFile(path, content);
    setModified(path, before.st_mtim);
}

} // namespace lamina::test
