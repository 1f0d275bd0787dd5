#include "platform/image/codecs/ByteSource_p.h"

#include "platform/files/FileCauses.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

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
    FileDescriptor& operator=(FileDescriptor&&) = delete;
    ~FileDescriptor()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    int get() const { return m_descriptor; }

private:
    int m_descriptor;
};

// Positioned reads rather than a mapping: a file that shrinks meanwhile is an early end, not a signal.
class FileSource final : public ByteSource {
public:
    FileSource(FileDescriptor descriptor, std::uint64_t size)
        : m_descriptor(std::move(descriptor))
        , m_size(size)
    {
    }

    std::uint64_t size() const override { return m_size; }

    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> target) override
    {
        if (offset >= m_size)
            return 0;
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(target.size(), m_size - offset));
        std::size_t done = 0;
        while (done < wanted) {
            const ssize_t got =
                ::pread(m_descriptor.get(), target.data() + done, wanted - done, static_cast<off_t>(offset + done));
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0)
                break;
            done += static_cast<std::size_t>(got);
        }
        return done;
    }

private:
    FileDescriptor m_descriptor;
    std::uint64_t m_size;
};

class MemorySource final : public ByteSource {
public:
    explicit MemorySource(std::span<const std::uint8_t> bytes)
        : m_bytes(bytes)
    {
    }

    std::uint64_t size() const override { return m_bytes.size(); }

    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> target) override
    {
        if (offset >= m_bytes.size() || target.empty())
            return 0;
        const auto rest = m_bytes.subspan(static_cast<std::size_t>(offset));
        const std::size_t count = std::min(rest.size(), target.size());
        std::memcpy(target.data(), rest.data(), count);
        return count;
    }

private:
    std::span<const std::uint8_t> m_bytes;
};

} // namespace

Result<std::unique_ptr<ByteSource>> openFileSource(const std::string& path)
{
    // A path with a zero byte would open another file than it shows.
    if (path.find('\0') != std::string::npos)
        return Error{path, cause::kNoSuchFile};
    // Without O_NONBLOCK a pipe that nobody writes to would hold us here for ever.
    FileDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (descriptor.get() < 0)
        return Error{path, readingFailure(errno)};
    struct stat status {};
    if (::fstat(descriptor.get(), &status) != 0)
        return Error{path, readingFailure(errno)};
    if (S_ISDIR(status.st_mode))
        return Error{path, cause::kIsFolder};
    if (!S_ISREG(status.st_mode))
        return Error{path, cause::kNotRegular};
    return std::unique_ptr<ByteSource>(
        std::make_unique<FileSource>(std::move(descriptor), static_cast<std::uint64_t>(status.st_size)));
}

std::unique_ptr<ByteSource> memorySource(std::span<const std::uint8_t> bytes)
{
    return std::make_unique<MemorySource>(bytes);
}

} // namespace lamina
