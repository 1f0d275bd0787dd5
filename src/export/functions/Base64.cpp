#include "export/functions/Base64_p.h"

#include <array>
#include <cstring>

namespace lamina {

namespace {

constexpr char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kPairs = 64 * 64;

/// The two letters of every 12 bits.
constexpr std::array<std::array<char, 2>, kPairs> kLetterPairs = [] {
    std::array<std::array<char, 2>, kPairs> pairs{};
    for (std::size_t i = 0; i < kPairs; ++i)
        pairs[i] = {kLetters[i / 64], kLetters[i % 64]};
    return pairs;
}();

} // namespace

void appendBase64(std::span<const std::uint8_t> bytes, std::string& text)
{
    const std::size_t start = text.size();
    text.resize(start + base64Length(bytes.size()), '=');
    char* out = text.data() + start;
    std::size_t i = 0;
    for (; i + 3 <= bytes.size(); i += 3, out += 4) {
        const unsigned bits = bytes[i] << 16u | bytes[i + 1] << 8u | bytes[i + 2];
        std::memcpy(out, kLetterPairs[bits >> 12].data(), 2);
        std::memcpy(out + 2, kLetterPairs[bits & (kPairs - 1)].data(), 2);
    }
    const std::size_t left = bytes.size() - i;
    if (left == 0)
        return;
    const unsigned bits = bytes[i] << 16u | (left == 2 ? bytes[i + 1] << 8u : 0u);
    std::memcpy(out, kLetterPairs[bits >> 12].data(), 2);
    if (left == 2)
        out[2] = kLetters[bits >> 6 & 63];
}

} // namespace lamina
