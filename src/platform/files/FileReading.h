#pragma once

#include "platform/base/Result.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace lamina {

/// Closes a file descriptor at its end; movable.
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    FileDescriptor(FileDescriptor&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1))
    {
    }
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~FileDescriptor()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    int get() const { return m_descriptor; }

private:
    int m_descriptor;
};

/// A file that stands open, and how large it was then.
struct OpenedFile {
    FileDescriptor descriptor;
    std::uint64_t size = 0; ///< bytes
};

/// Opens a regular file for reading; a pipe or device is refused, and never waited for. The error's subject is the
/// path. Usable from any thread.
Result<OpenedFile> openFileForReading(const std::string& path);

/// The contents of a regular file of at most `limit` bytes; a larger one is an error. Usable from any thread.
Result<std::vector<std::uint8_t>> readSmallFile(const std::string& path, std::size_t limit);

/// How long a pipe is waited for, in seconds.
struct PipePatience {
    double writer = 5; ///< for somebody who opens it
    double whole = 60; ///< for all of it
};

/// The same for what the user names: a pipe is read to its end, and waited for, within `patience`; a terminal for as
/// long as somebody types. Other devices are refused.
Result<std::vector<std::uint8_t>> readSmallInput(const std::string& path, std::size_t limit,
                                                 const PipePatience& patience = {});

} // namespace lamina
