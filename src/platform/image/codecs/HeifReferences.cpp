#include "platform/image/codecs/HeifReferences_p.h"

#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/HeifBoxes_p.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <span>
#include <vector>

namespace lamina {

namespace {

constexpr std::uint64_t kLargestReferences = 4u << 20; // bytes of an iref box
// A picture of 400 megapixels in tiles of 512 x 512, with alpha, has about 3000.
constexpr std::uint64_t kMostItemsDecoded = 10'000;

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
            return at <= content.size()
                       ? numberOf(content.subspan(at - static_cast<std::size_t>(size), static_cast<std::size_t>(size)))
                       : 0;
        };
        while (at + 12 <= content.size()) {
            const std::uint8_t* type = content.data() + at + 4;
            at += numberOf(content.subspan(at, 4)) == 1 ? 16 : 8;
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
    eachHeifMetaBox(source, [&](const HeifBox& box) {
        if (!box.is("iref") || box.end - box.content > kLargestReferences)
            return;
        std::vector<std::uint8_t> content(static_cast<std::size_t>(box.end - box.content));
        content.resize(source.read(box.content, content));
        dependencies.add(content);
    });
    return dependencies.areSound();
}

} // namespace lamina
