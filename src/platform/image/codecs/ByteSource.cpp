#include "platform/image/codecs/ByteSource_p.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

// Positioned reads rather than a mapping: a file that shrinks meanwhile is an early end, not a signal.
class FileSource final : public ByteSource {
public:
    explicit FileSource(OpenedFile file)
        : m_descriptor(std::move(file.descriptor))
        , m_size(file.size)
    {
    }

    std::uint64_t size() const override { return m_size; }
    int descriptor() const override { return m_descriptor.get(); }

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
    Result<OpenedFile> file = openFileForReading(path);
    if (!file)
        return file.error();
    return fileSource(std::move(*file));
}

std::unique_ptr<ByteSource> fileSource(OpenedFile file)
{
    return std::make_unique<FileSource>(std::move(file));
}

std::unique_ptr<ByteSource> memorySource(std::span<const std::uint8_t> bytes)
{
    return std::make_unique<MemorySource>(bytes);
}

} // namespace lamina
