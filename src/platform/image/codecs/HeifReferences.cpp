#include "platform/image/codecs/HeifReferences_p.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <optional>
#include <span>
#include <vector>

namespace lamina {

namespace {

constexpr std::uint64_t kLargestReferences = 4u << 20; // bytes of an iref box
constexpr int kMostBoxes = 1000;
// A picture of 400 megapixels in tiles of 512 x 512, with alpha, has about 3000.
constexpr std::uint64_t kMostItemsDecoded = 10'000;

std::uint64_t bigEndian(const std::uint8_t* bytes, int count)
{
    std::uint64_t value = 0;
    for (int i = 0; i < count; ++i)
        value = value << 8 | bytes[i];
    return value;
}

struct Box {
    std::uint64_t content = 0;
    std::uint64_t end = 0;
    std::array<char, 4> type{};

    bool is(const char* name) const { return std::memcmp(type.data(), name, type.size()) == 0; }
};

/// The box that begins at `offset` and ends at `limit` at the latest.
std::optional<Box> readBox(ByteSource& source, std::uint64_t offset, std::uint64_t limit)
{
    std::array<std::uint8_t, 16> head{};
    if (offset >= limit || limit - offset < 8)
        return std::nullopt;
    const std::size_t count = source.read(offset, head);
    std::uint64_t size = bigEndian(head.data(), 4);
    std::uint64_t headSize = 8;
    if (size == 1 && count == head.size()) {
        size = bigEndian(head.data() + 8, 8);
        headSize = 16;
    } else if (size == 0) {
        size = limit - offset;
    }
    if (count < 8 || size < headSize)
        return std::nullopt;
    Box box{offset + headSize, offset + std::min(size, limit - offset), {}};
    std::memcpy(box.type.data(), head.data() + 4, box.type.size());
    return box;
}

template <class Body>
void eachBox(ByteSource& source, std::uint64_t offset, std::uint64_t limit, const Body& body)
{
    for (int i = 0; i < kMostBoxes; ++i) {
        const std::optional<Box> box = readBox(source, offset, limit);
        if (!box)
            return;
        body(*box);
        offset = box->end;
    }
}

/// Which items are decoded along with each item.
class Dependencies {
public:
    /// Takes the references of an iref box in, one after another as libheif reads them: it trusts their counts and not
    /// the sizes of their boxes.
    void add(std::span<const std::uint8_t> content)
    {
        if (content.size() < 4)
            return;
        const int idSize = content[0] == 0 ? 2 : 4;
        std::size_t at = 4;
        const auto number = [&](int size) {
            at += static_cast<std::size_t>(size);
            return at <= content.size() ? bigEndian(content.data() + at - size, size) : 0;
        };
        while (at + 12 <= content.size()) {
            const std::uint8_t* type = content.data() + at + 4;
            at += bigEndian(content.data() + at, 4) == 1 ? 16 : 8;
            const std::uint64_t from = number(idSize);
            for (std::uint64_t count = number(2); count > 0 && at < content.size(); --count) {
                const std::uint64_t to = number(idSize);
                if (std::memcmp(type, "dimg", 4) == 0)
                    m_needs[from].push_back(to);
                else if (std::memcmp(type, "auxl", 4) == 0)
                    m_needs[to].push_back(from);
            }
        }
    }

    bool areSound()
    {
        return std::ranges::all_of(
            m_needs, [this](const auto& item) { return itemsDecoded(item.first, 0) <= kMostItemsDecoded; });
    }

private:
    /// How often a decoder runs for an item, itself included; more than the most when it comes back to itself. Deep
    /// chains count as that too, so that this walk has an end.
    std::uint64_t itemsDecoded(std::uint64_t item, int depth)
    {
        constexpr int kDeepest = 64;
        if (depth > kDeepest)
            return kMostItemsDecoded + 1;
        if (const auto known = m_decoded.find(item); known != m_decoded.end())
            return known->second;
        m_decoded[item] = kMostItemsDecoded + 1; // until it is known: met again, it is its own part
        std::uint64_t sum = 1;
        if (const auto needs = m_needs.find(item); needs != m_needs.end()) {
            for (const std::uint64_t other : needs->second)
                sum = std::min(sum + itemsDecoded(other, depth + 1), kMostItemsDecoded + 1);
        }
        return m_decoded[item] = sum;
    }

    std::map<std::uint64_t, std::vector<std::uint64_t>> m_needs;
    std::map<std::uint64_t, std::uint64_t> m_decoded;
};

} // namespace

bool areHeifReferencesSound(ByteSource& source)
{
    Dependencies dependencies;
    eachBox(source, 0, source.size(), [&](const Box& top) {
        if (!top.is("meta"))
            return;
        constexpr std::uint64_t kVersionAndFlags = 4;
        eachBox(source, top.content + kVersionAndFlags, top.end, [&](const Box& box) {
            if (!box.is("iref") || box.end - box.content > kLargestReferences)
                return;
            std::vector<std::uint8_t> content(static_cast<std::size_t>(box.end - box.content));
            content.resize(source.read(box.content, content));
            dependencies.add(content);
        });
    });
    return dependencies.areSound();
}

} // namespace lamina
