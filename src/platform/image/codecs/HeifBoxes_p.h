#pragma once

#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/ByteSource_p.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>

namespace lamina {

/// The boxes that a HEIF file is made of.
struct HeifBox {
    std::uint64_t content = 0;
    std::uint64_t end = 0;
    std::array<char, 4> type{};
    bool isCut = false; ///< it claims to go on behind the end of what holds it

    bool is(const char* name) const { return std::memcmp(type.data(), name, type.size()) == 0; }
    std::uint64_t size() const { return end - content; }
};

/// The box that begins at `offset` and ends at `limit` at the latest.
inline std::optional<HeifBox> readHeifBox(ByteSource& source, std::uint64_t offset, std::uint64_t limit)
{
    std::array<std::uint8_t, 16> head{};
    if (offset >= limit || limit - offset < 8)
        return std::nullopt;
    const std::size_t count = source.read(offset, head);
    std::uint64_t size = numberOf(std::span(head).first(4));
    std::uint64_t headSize = 8;
    if (size == 1 && count == head.size()) {
        size = numberOf(std::span(head).last(8));
        headSize = 16;
    } else if (size == 0) {
        size = limit - offset;
    }
    if (count < 8 || size < headSize || limit - offset < headSize)
        return std::nullopt;
    HeifBox box{offset + headSize, offset + std::min(size, limit - offset), {}, size > limit - offset};
    std::memcpy(box.type.data(), head.data() + 4, box.type.size());
    return box;
}

/// Gives the boxes from `offset` up to `limit` to `body`; one that is none ends that. False when there are more than
/// any picture needs: what comes behind them was not looked at.
template <class Body>
bool eachHeifBox(ByteSource& source, std::uint64_t offset, std::uint64_t limit, const Body& body)
{
    constexpr int kMostBoxes = 20'000;
    for (int i = 0; i < kMostBoxes; ++i) {
        const std::optional<HeifBox> box = readHeifBox(source, offset, limit);
        if (!box)
            return true;
        body(*box);
        offset = box->end;
    }
    return false;
}

} // namespace lamina
