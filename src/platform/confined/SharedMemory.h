#pragma once

#include "platform/base/Result.h"
#include "platform/files/FileReading.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <utility>

namespace lamina {

/// Memory without a name that two processes share by a descriptor. Its size is fixed for good, so that nobody who holds
/// it can take pages away from somebody who reads; pages that nobody has written take no room. A failure's cause is
/// `cause::kNoMemory`, that of full tables of descriptors, or of the limit for files, which counts here too. Usable
/// from any thread.
class SharedMemory {
public:
    /// Room for `size` bytes of 0, for others to write.
    static Result<SharedMemory> make(std::size_t size);
    /// `size` bytes that `fill` writes, piece after piece from the beginning, and that nobody can change afterwards.
    /// `fill` gets the offset and where the bytes go, and returns how many there were: fewer than wanted end the work
    /// early, and what follows is 0.
    static Result<SharedMemory>
    filled(std::size_t size,
           const std::function<std::size_t(std::uint64_t offset, std::span<std::uint8_t> target)>& fill);

    /// Stays this object's.
    int descriptor() const { return m_descriptor.get(); }
    std::size_t size() const { return m_size; }

    /// The first `used` bytes, which nobody can change from now on. Null where somebody still may (a process that has
    /// it mapped for writing), where `used` is 0 or beyond the size, or memory is short. The bytes live as long as the
    /// pointer, whatever becomes of this object.
    std::shared_ptr<const std::uint8_t> freeze(std::size_t used);

private:
    SharedMemory(FileDescriptor descriptor, std::size_t size)
        : m_descriptor(std::move(descriptor))
        , m_size(size)
    {
    }
    FileDescriptor m_descriptor;
    std::size_t m_size;
};

/// The first `size` bytes of shared memory that another process sent, for reading and writing; null where they can't be
/// had. The caller unmaps them.
std::uint8_t* mapForWriting(int descriptor, std::size_t size);
/// Lets go of them, which whoever sent the memory waits for.
void unmap(std::uint8_t* bytes, std::size_t size);

} // namespace lamina
