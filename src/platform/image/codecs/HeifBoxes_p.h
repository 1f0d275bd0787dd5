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

    bool is(const char* name) const { return std::memcmp(type.data(), name, type.size()) == 0; }
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
    if (count < 8 || size < headSize)
        return std::nullopt;
    HeifBox box{offset + headSize, offset + std::min(size, limit - offset), {}};
    std::memcpy(box.type.data(), head.data() + 4, box.type.size());
    return box;
}

/// Gives the boxes from `offset` up to `limit` to `body`, a thousand at most.
template <class Body>
void eachHeifBox(ByteSource& source, std::uint64_t offset, std::uint64_t limit, const Body& body)
{
    constexpr int kMostBoxes = 1000;
    for (int i = 0; i < kMostBoxes; ++i) {
        const std::optional<HeifBox> box = readHeifBox(source, offset, limit);
        if (!box)
            return;
        body(*box);
        offset = box->end;
    }
}

/// Gives the boxes of the file's meta box to `body`.
template <class Body>
void eachHeifMetaBox(ByteSource& source, const Body& body)
{
    eachHeifBox(source, 0, source.size(), [&](const HeifBox& top) {
        constexpr std::uint64_t kVersionAndFlags = 4;
        if (top.is("meta"))
            eachHeifBox(source, top.content + kVersionAndFlags, top.end, body);
    });
}

} // namespace lamina
