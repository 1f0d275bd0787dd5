#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace lamina {

/// Letters of so many bytes in base64 (RFC 4648).
constexpr std::size_t base64Length(std::size_t bytes)
{
    return (bytes + 2) / 3 * 4;
}

/// Appends the bytes in base64, filled up with "=" at the end, without breaks.
void appendBase64(std::span<const std::uint8_t> bytes, std::string& text);

} // namespace lamina
