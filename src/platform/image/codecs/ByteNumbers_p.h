#pragma once

#include "platform/image/codecs/ByteSource_p.h"

#include <array>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>

namespace lamina {

/// A part of a source.
struct ByteRange {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

/// The whole number that up to eight bytes make.
inline std::uint64_t numberOf(std::span<const std::uint8_t> bytes, std::endian order = std::endian::big)
{
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        value = value << 8 | bytes[order == std::endian::big ? i : bytes.size() - 1 - i];
    return value;
}

/// The number of `size` bytes (1 to 8) that stands at an offset; nothing where the source ends before it does.
inline std::optional<std::uint64_t> numberAt(ByteSource& source, std::uint64_t offset, std::size_t size,
                                             std::endian order = std::endian::big)
{
    std::array<std::uint8_t, 8> bytes{};
    assert(size <= bytes.size());
    const std::span<std::uint8_t> number = std::span(bytes).first(size);
    return source.read(offset, number) == size ? std::optional(numberOf(number, order)) : std::nullopt;
}

/// Whether these bytes (16 at most) stand at an offset.
inline bool standsAt(ByteSource& source, std::uint64_t offset, std::string_view expected)
{
    std::array<std::uint8_t, 16> bytes{};
    assert(expected.size() <= bytes.size());
    const std::span<std::uint8_t> found = std::span(bytes).first(expected.size());
    return source.read(offset, found) == expected.size() &&
           std::memcmp(found.data(), expected.data(), expected.size()) == 0;
}

} // namespace lamina
