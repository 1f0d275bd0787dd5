#include "platform/media/ffmpeg/ContainerEnd_p.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <optional>
#include <unistd.h>

namespace lamina {

namespace {

/// A day of pieces of a second; more are not looked at.
constexpr int kMostPieces = 200'000;

/// Numbers out of a file, the most significant byte first.
class Bytes {
public:
    Bytes(int descriptor, std::int64_t size)
        : m_descriptor(descriptor)
        , m_size(size)
    {
    }

    std::int64_t size() const { return m_size; }
    /// Of one to eight bytes; nothing where the file has not that many there.
    std::optional<std::uint64_t> number(std::int64_t at, int count) const
    {
        std::array<std::uint8_t, 8> bytes{};
        if (at < 0 || at > m_size - count ||
            ::pread(m_descriptor, bytes.data(), static_cast<std::size_t>(count), at) != count)
            return std::nullopt;
        std::uint64_t value = 0;
        for (int i = 0; i < count; ++i)
            value = value << 8 | bytes[static_cast<std::size_t>(i)];
        return value;
    }

private:
    int m_descriptor;
    std::int64_t m_size;
};

constexpr std::uint64_t kind(const char (&name)[5])
{
    std::uint64_t value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8 | static_cast<std::uint8_t>(name[i]);
    return value;
}

/// ISO/IEC 14496-12: boxes, each with its length before its name. What stands behind the movie may be anything, so only
/// boxes that a movie is made of count.
bool endsWithinBox(const Bytes& file)
{
    constexpr std::array kOfMovie{kind("mdat"), kind("moof"), kind("moov"), kind("mfra")};
    std::int64_t at = 0;
    for (int i = 0; i < kMostPieces; ++i) {
        const std::optional<std::uint64_t> head = file.number(at, 8);
        if (!head)
            return false;
        std::uint64_t length = *head >> 32;
        if (length == 1)
            length = file.number(at + 8, 8).value_or(0);
        if (length < 8)
            return false;
        if (length > static_cast<std::uint64_t>(file.size() - at))
            return std::ranges::find(kOfMovie, *head & 0xFFFFFFFF) != kOfMovie.end();
        at += static_cast<std::int64_t>(length);
    }
    return false;
}

/// RFC 8794: an element's name and length, whose first bytes tell by their leading zeros how long they are.
struct Element {
    std::uint64_t name = 0;
    std::uint64_t length = 0;
    bool isOpenEnded = false; ///< it goes on for as long as there is something
    std::int64_t content = 0; ///< where that begins
};

std::optional<Element> elementAt(const Bytes& file, std::int64_t at)
{
    const auto width = [&](std::int64_t place) {
        return 1 + std::countl_zero(static_cast<std::uint8_t>(file.number(place, 1).value_or(0)));
    };
    const int nameWidth = width(at);
    const std::optional<std::uint64_t> name = nameWidth <= 4 ? file.number(at, nameWidth) : std::nullopt;
    const int lengthWidth = width(at + nameWidth);
    const std::optional<std::uint64_t> length =
        name && lengthWidth <= 8 ? file.number(at + nameWidth, lengthWidth) : std::nullopt;
    if (!length)
        return std::nullopt;
    const std::uint64_t bits = (std::uint64_t{1} << 7 * lengthWidth) - 1;
    return Element{*name, *length & bits, (*length & bits) == bits, at + nameWidth + lengthWidth};
}

bool endsWithinElement(const Bytes& file)
{
    constexpr std::uint64_t kSegment = 0x18538067;
    std::int64_t at = 0;
    for (int i = 0; i < kMostPieces; ++i) {
        const std::optional<Element> element = elementAt(file, at);
        if (!element)
            return false;
        const bool isSegment = element->name == kSegment;
        if (element->isOpenEnded && !isSegment)
            return false;
        if (!element->isOpenEnded && element->length > static_cast<std::uint64_t>(file.size() - element->content))
            return true;
        if (isSegment && !element->isOpenEnded)
            return false; // what stands behind may be anything
        at = element->content + (element->isOpenEnded ? 0 : static_cast<std::int64_t>(element->length));
    }
    return false;
}

/// ISO/IEC 13818-1: packets of 188 bytes that begin with a mark, perhaps with a time before or sums behind.
bool endsWithinPacket(const Bytes& file)
{
    constexpr std::uint64_t kMark = 0x47;
    constexpr std::array<std::array<int, 2>, 3> kForms{{{188, 0}, {192, 4}, {204, 0}}}; // bytes, and where the mark is
    constexpr int kLooks = 3;
    for (const auto [bytes, mark] : kForms) {
        int marks = 0;
        while (marks < kLooks && file.number(std::int64_t{marks} * bytes + mark, 1) == kMark)
            ++marks;
        if (marks == kLooks)
            return file.size() % bytes != 0;
    }
    return false;
}

} // namespace

bool endsWithinPiece(int descriptor, std::int64_t size, std::string_view container)
{
    const Bytes file(descriptor, size);
    if (container.find("mp4") != std::string_view::npos)
        return endsWithinBox(file);
    if (container.find("matroska") != std::string_view::npos)
        return endsWithinElement(file);
    return container == "mpegts" && endsWithinPacket(file);
}

} // namespace lamina
