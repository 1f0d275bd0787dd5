#include "platform/image/codecs/decoder/HeifExtract_p.h"

#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/HeifBoxes_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

namespace lamina {

namespace {

/// Boxes, one after the other or inside each other.
class BoxWriter {
public:
    void number(std::uint64_t value, int size)
    {
        for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
            m_bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
    void text(std::string_view characters)
    {
        for (const char character : characters)
            m_bytes.push_back(static_cast<std::uint8_t>(character));
    }
    void bytes(std::span<const std::uint8_t> more) { m_bytes.insert(m_bytes.end(), more.begin(), more.end()); }

    template <class Content>
    void box(std::string_view type, const Content& content)
    {
        const std::size_t start = m_bytes.size();
        number(0, 4);
        text(type);
        content();
        const std::size_t size = m_bytes.size() - start;
        for (std::size_t i = 0; i < 4; ++i)
            m_bytes[start + i] = static_cast<std::uint8_t>(size >> (8 * (3 - i)));
    }
    template <class Content>
    void versionedBox(std::string_view type, int version, int flags, const Content& content)
    {
        box(type, [&] {
            number(static_cast<std::uint64_t>(version), 1);
            number(static_cast<std::uint64_t>(flags), 3);
            content();
        });
    }

    std::size_t size() const { return m_bytes.size(); }
    std::vector<std::uint8_t> take() && { return std::move(m_bytes); }

private:
    std::vector<std::uint8_t> m_bytes;
};

constexpr std::string_view kPropertiesKept[]{"hvcC", "av1C", "ispe", "pixi", "colr", "auxC", "irot", "imir", "clap"};

bool isKept(const HeifBox& property)
{
    constexpr std::uint64_t kLargestProfile = 4u << 20; // pictures without theirs are better than none
    if (property.is("colr") && property.size() > kLargestProfile)
        return false;
    return std::ranges::find(kPropertiesKept, std::string_view(property.type.data(), property.type.size())) !=
           std::end(kPropertiesKept);
}

class ExtractWriter {
public:
    ExtractWriter(ByteSource& source, const HeifItems& items, std::uint64_t id)
        : m_source(source)
        , m_items(items)
    {
        keep(id);
    }

    Result<std::vector<std::uint8_t>> head()
    {
        constexpr std::size_t kMostItems = 10'000; // a picture of 400 megapixels in small tiles has about 3000
        if (m_kept.size() > kMostItems)
            return Error{{}, cause::kDamaged};
        if (const Outcome done = readProperties(); !done)
            return done.error();
        const std::size_t size = write(0).size(); // places are of one length wherever they point to
        return write(size);
    }

private:
    struct Kept {
        const HeifItem* item = nullptr;
        std::uint64_t number = 0;
        std::optional<std::uint64_t> alpha;
    };

    /// An item and what it is made of, numbered from 1 in the order in which they are met.
    void keep(std::uint64_t id)
    {
        const auto [entry, isNew] = m_kept.try_emplace(id);
        if (!isNew)
            return;
        m_order.push_back(id);
        Kept& kept = entry->second;
        kept = {m_items.find(id), m_order.size(), alphaOfHeifItem(m_source, m_items, *m_items.find(id))};
        for (const std::uint64_t part : kept.item->parts)
            keep(part);
        if (kept.alpha)
            keep(*kept.alpha);
    }

    Outcome readProperties()
    {
        std::uint64_t left = 8u << 20; // far more than the tiles of a large picture bring with its profile
        for (const std::uint64_t id : m_order) {
            for (const HeifBox& property : m_kept[id].item->properties) {
                if (!isKept(property) || m_properties.contains(property.content))
                    continue;
                Result<std::vector<std::uint8_t>> content = readHeifContent(m_source, property, left);
                if (!content)
                    return content.error();
                left -= property.size();
                m_properties.emplace(property.content, m_contents.size() + 1);
                m_contents.emplace_back(property, *std::move(content));
            }
        }
        return success();
    }

    std::vector<std::uint8_t> write(std::uint64_t headSize)
    {
        BoxWriter out;
        out.box("ftyp", [&] { out.text({"mif1\0\0\0\0mif1heicavifmiaf", 24}); });
        out.versionedBox("meta", 0, 0, [&] {
            out.versionedBox("hdlr", 0, 0, [&] { out.text({"\0\0\0\0pict\0\0\0\0\0\0\0\0\0\0\0\0\0", 21}); });
            out.versionedBox("pitm", 0, 0, [&] { out.number(1, 2); });
            writeKinds(out);
            writePlaces(out, headSize);
            writeReferences(out);
            out.box("iprp", [&] { writeProperties(out); });
        });
        // What follows is data, also where it looks like boxes.
        out.number(1, 4);
        out.text("mdat");
        out.number(16 + m_source.size(), 8);
        return std::move(out).take();
    }

    void writeKinds(BoxWriter& out)
    {
        out.versionedBox("iinf", 0, 0, [&] {
            out.number(m_order.size(), 2);
            for (const std::uint64_t id : m_order) {
                const Kept& kept = m_kept[id];
                out.versionedBox("infe", 2, kept.number == 1 ? 0 : 1, [&] { // 1: hidden
                    out.number(kept.number, 2);
                    out.number(0, 2);
                    out.text({kept.item->type.data(), kept.item->type.size()});
                    out.number(0, 1);
                });
            }
        });
    }

    void writePlaces(BoxWriter& out, std::uint64_t headSize)
    {
        out.versionedBox("iloc", 0, 0, [&] {
            out.number(0x8800, 2); // places and lengths of eight bytes
            out.number(m_order.size(), 2);
            for (const std::uint64_t id : m_order) {
                const Kept& kept = m_kept[id];
                out.number(kept.number, 2);
                out.number(0, 2);
                out.number(kept.item->pieces.size(), 2);
                for (const ByteRange& piece : kept.item->pieces) {
                    out.number(headSize + piece.offset, 8);
                    out.number(piece.length, 8);
                }
            }
        });
    }

    void writeReferences(BoxWriter& out)
    {
        const auto write = [&](std::string_view type, std::uint64_t from, const std::vector<std::uint64_t>& to) {
            if (to.empty())
                return;
            out.box(type, [&] {
                out.number(from, 2);
                out.number(to.size(), 2);
                for (const std::uint64_t id : to)
                    out.number(m_kept[id].number, 2);
            });
        };
        const std::size_t needed = m_order.size();
        if (needed == 1)
            return;
        out.versionedBox("iref", 0, 0, [&] {
            for (const std::uint64_t id : m_order) {
                const Kept& kept = m_kept[id];
                write("dimg", kept.number, kept.item->parts);
                if (!kept.alpha)
                    continue;
                write("auxl", m_kept[*kept.alpha].number, {id});
                if (std::ranges::find(kept.item->premultipliedBy, *kept.alpha) != kept.item->premultipliedBy.end())
                    write("prem", kept.number, {*kept.alpha});
            }
        });
    }

    void writeProperties(BoxWriter& out)
    {
        out.box("ipco", [&] {
            for (const auto& [property, content] : m_contents)
                out.box({property.type.data(), property.type.size()}, [&, &bytes = content] { out.bytes(bytes); });
        });
        constexpr int kWide = 1;
        out.versionedBox("ipma", 0, kWide, [&] {
            out.number(m_order.size(), 4);
            for (const std::uint64_t id : m_order) {
                const Kept& kept = m_kept[id];
                std::vector<std::uint64_t> numbers;
                for (const HeifBox& property : kept.item->properties) {
                    if (isKept(property) && numbers.size() < 255)
                        numbers.push_back(m_properties[property.content]);
                }
                out.number(kept.number, 2);
                out.number(numbers.size(), 1);
                for (const std::uint64_t number : numbers)
                    out.number(number, 2);
            }
        });
    }

    ByteSource& m_source;
    const HeifItems& m_items;
    std::vector<std::uint64_t> m_order;
    std::map<std::uint64_t, Kept> m_kept;
    std::map<std::uint64_t, std::uint64_t> m_properties; ///< their numbers, by where they stand
    std::vector<std::pair<HeifBox, std::vector<std::uint8_t>>> m_contents;
};

} // namespace

Result<HeifExtract> HeifExtract::make(ByteSource& source, const HeifItems& items, std::uint64_t id)
{
    Result<std::vector<std::uint8_t>> head = ExtractWriter(source, items, id).head();
    return head ? Result<HeifExtract>(HeifExtract(source, *std::move(head))) : head.error();
}

std::size_t HeifExtract::read(std::uint64_t offset, std::span<std::uint8_t> target)
{
    if (offset >= m_head.size())
        return m_source->read(offset - m_head.size(), target);
    const std::size_t start = static_cast<std::size_t>(offset);
    const std::size_t count = std::min(target.size(), m_head.size() - start);
    std::copy_n(m_head.begin() + static_cast<std::ptrdiff_t>(start), count, target.begin());
    return count < target.size() ? count + m_source->read(0, target.subspan(count)) : count;
}

} // namespace lamina
