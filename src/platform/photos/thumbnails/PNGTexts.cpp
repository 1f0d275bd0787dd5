#include "platform/photos/thumbnails/PNGTexts.h"

#include "platform/base/Result.h"
#include "platform/files/FileReading.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unistd.h>

namespace lamina {

namespace {

constexpr int kMostChunks = 256;
constexpr std::uint32_t kLongestText = 8192; // a path may have 4096 bytes
constexpr std::uint32_t kHeaderBytes = 13;

/// Reads a file from one place after another; false from the first bytes on that are missing.
class Bytes {
public:
    explicit Bytes(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    bool read(char* target, std::size_t count)
    {
        const ssize_t got = ::pread(m_descriptor, target, count, static_cast<off_t>(m_place));
        m_place += static_cast<std::int64_t>(count);
        return got == static_cast<ssize_t>(count);
    }
    std::optional<std::uint32_t> number()
    {
        std::array<char, 4> bytes{};
        if (!read(bytes.data(), bytes.size()))
            return std::nullopt;
        std::uint32_t value = 0;
        for (const char byte : bytes)
            value = value << 8 | static_cast<std::uint8_t>(byte);
        return value;
    }
    std::string text(std::size_t count)
    {
        std::string text(count, '\0');
        return read(text.data(), count) ? text : std::string();
    }
    std::int64_t place() const { return m_place; }
    void moveTo(std::int64_t place) { m_place = place; }

private:
    int m_descriptor;
    std::int64_t m_place = 0;
};

void addText(PNGTexts& found, std::string_view chunk)
{
    const std::size_t zero = chunk.find('\0');
    if (zero != std::string_view::npos)
        found.texts.emplace(chunk.substr(0, zero), chunk.substr(zero + 1));
}

std::optional<IntSize> readSize(Bytes& bytes)
{
    constexpr std::uint32_t kLargestSide = 0x7FFFFFFF;
    const auto width = bytes.number();
    const auto height = bytes.number();
    if (!width || !height || std::max(*width, *height) > kLargestSide)
        return std::nullopt;
    return IntSize{static_cast<int>(*width), static_cast<int>(*height)};
}

} // namespace

std::optional<PNGTexts> readPNGTexts(const std::string& path)
{
    using namespace std::string_view_literals;
    const Result<OpenedFile> file = openFileForReading(path);
    if (!file)
        return std::nullopt;
    Bytes bytes(file->descriptor.get());
    if (bytes.text(8) != "\x89PNG\r\n\x1A\n"sv)
        return std::nullopt;
    PNGTexts found;
    for (int chunk = 0; chunk < kMostChunks; ++chunk) {
        const std::optional<std::uint32_t> length = bytes.number();
        const std::string kind = bytes.text(4);
        if (!length || kind.empty() || kind == "IEND")
            break;
        const std::int64_t next = bytes.place() + *length + 4; // behind the checksum
        if (kind == "tEXt" && *length <= kLongestText)
            addText(found, bytes.text(*length));
        if (const bool isHeader = kind == "IHDR" && *length == kHeaderBytes; isHeader)
            found.size = readSize(bytes).value_or(IntSize());
        bytes.moveTo(next);
    }
    return found;
}

} // namespace lamina
