#pragma once

#include "platform/base/Result.h"
#include "platform/files/FileReading.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace lamina {

/// Bytes that a decoder reads by position: a file or memory. A read may give fewer bytes than wanted only at the end
/// (or when the file shrinks or its device fails meanwhile, which a decoder sees as an early end).
class ByteSource {
public:
    virtual ~ByteSource() = default;
    virtual std::uint64_t size() const = 0;
    /// Bytes from `offset` on into `target`; returns how many there were.
    virtual std::size_t read(std::uint64_t offset, std::span<std::uint8_t> target) = 0;
    /// The open file whose bytes these are from its beginning on; -1 for any other source. It stays the source's.
    virtual int descriptor() const { return -1; }
};

/// Opens a regular file (links followed). The error's cause says plainly what is wrong: missing, a folder, no
/// permission, not a regular file.
Result<std::unique_ptr<ByteSource>> openFileSource(const std::string& path);

/// Reads the first `size` bytes of an open file.
std::unique_ptr<ByteSource> fileSource(OpenedFile file);

/// Reads from memory that must outlive the source.
std::unique_ptr<ByteSource> memorySource(std::span<const std::uint8_t> bytes);

} // namespace lamina
