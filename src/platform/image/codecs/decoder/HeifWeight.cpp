#include "platform/image/codecs/decoder/HeifWeight_p.h"

#include "platform/base/Causes.h"
#include "platform/image/codecs/ByteCursor_p.h"
#include "platform/image/codecs/HeifBoxes_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/decoder/CodedPictures_p.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <vector>

namespace lamina {

namespace {

constexpr std::uint64_t kEndless = std::uint64_t{1} << 60;
constexpr std::uint64_t kMostParts = 65'536; // a grid's at most
constexpr std::uint64_t kTilesAtOnce = 4;    // libheif's threads
// Drawing a pixel of an overlay's layer takes as long as decoding this many.
constexpr std::uint64_t kLayerWork = 8;
// And what it takes to begin with an item, however small it is.
constexpr std::uint64_t kItemWork = 10'000;

std::uint64_t sum(std::uint64_t a, std::uint64_t b)
{
    return std::min(a + b, kEndless);
}

Error damaged()
{
    return {{}, cause::kDamaged};
}

/// How an item is made of others.
struct Composition {
    std::uint64_t parts = 0;
    HeifSides sides;
    bool layered = false; ///< parts lie over each other
};

std::uint64_t pixelsOf(const HeifSides& sides)
{
    return sides.width * sides.height;
}

/// Whether each side is within what may be claimed.
bool isBelievable(const HeifSides& sides)
{
    constexpr std::uint64_t kMost = kMaximumClaimedSide;
    return sides.width > 0 && sides.height > 0 && sides.width <= kMost && sides.height <= kMost;
}

class Scales {
public:
    Scales(ByteSource& source, const HeifItems& items)
        : m_source(source)
        , m_items(items)
    {
    }

    /// An item with its alpha, as often as it is met.
    Result<HeifWeight> weigh(std::uint64_t id, int depth = 0)
    {
        constexpr int kDeepest = 8;
        if (const auto known = m_known.find(id); known != m_known.end()) {
            const bool isTooDeep = known->second && depth + known->second->depth > kDeepest;
            return isTooDeep ? damaged() : known->second;
        }
        const HeifItem* item = m_items.find(id);
        if (!item || depth > kDeepest)
            return damaged();
        m_known.emplace(id, damaged()); // until it is known: met again, it is its own part
        Result<HeifWeight> weight = weighWithAlpha(*item, depth);
        m_known.insert_or_assign(id, weight);
        return weight;
    }

private:
    Result<HeifWeight> weighWithAlpha(const HeifItem& item, int depth)
    {
        if (item.isScattered)
            return Error{{}, cause::kOtherHeif};
        if (item.isCut)
            return Error{{}, cause::kTruncated};
        Result<HeifWeight> weight = weighWithoutAlpha(item, depth);
        const std::optional<std::uint64_t> alpha = alphaOfHeifItem(m_source, m_items, item);
        if (!weight || !alpha)
            return weight;
        const Result<HeifWeight> added = weigh(*alpha, depth + 1);
        if (!added)
            return added.error();
        weight->peak = std::max(weight->peak, sum(weight->planes, added->peak));
        weight->planes = sum(weight->planes, added->planes);
        weight->work = sum(weight->work, added->work);
        weight->read = sum(weight->read, added->read);
        weight->depth = std::max(weight->depth, added->depth + 1);
        return weight;
    }

    Result<HeifWeight> weighWithoutAlpha(const HeifItem& item, int depth)
    {
        const HeifSides told = toldHeifSides(m_source, item);
        if (told.width == 0 || told.height == 0 || !hasSoundTurns(item))
            return damaged();
        if (!isBelievable(told))
            return Error{{}, cause::kTooLarge};
        if (item.is("hvc1") || item.is("av01"))
            return weighCoded(item, told);
        if (item.is("iden"))
            return weighComposed(item, {1, told, false}, depth);
        if (item.is("grid") || item.is("iovl")) {
            const Result<Composition> composition = readComposition(item);
            if (!composition)
                return composition.error();
            return composition->sides.width == told.width && composition->sides.height == told.height
                       ? weighComposed(item, *composition, depth)
                       : damaged();
        }
        return Error{{}, cause::kOtherHeif};
    }

    /// Whether what crops and turns is within reason.
    bool hasSoundTurns(const HeifItem& item) const
    {
        constexpr int kMostTurns = 8;
        int turns = 0;
        for (const HeifBox& property : item.properties) {
            if (property.is("clap") && !isSoundCrop(property))
                return false;
            turns += property.is("clap") || property.is("irot") || property.is("imir") ? 1 : 0;
        }
        return turns <= kMostTurns;
    }

    /// Four fractions: width, height and the distances of the centre.
    bool isSoundCrop(const HeifBox& crop) const
    {
        constexpr std::size_t kNumbers = 8;
        std::array<std::uint8_t, 4 * kNumbers> bytes{};
        if (crop.size() < bytes.size() || m_source.read(crop.content, bytes) < bytes.size())
            return false;
        ByteCursor cursor(bytes);
        for (std::size_t i = 0; i < kNumbers; ++i) {
            const auto number = static_cast<std::int32_t>(cursor.number(4));
            const bool isOffset = i == 4 || i == 6;
            if (!isOffset && number <= 0)
                return false;
        }
        return true;
    }

    Result<HeifWeight> weighCoded(const HeifItem& item, const HeifSides& told)
    {
        const std::optional<HeifBox> box = item.property(item.is("hvc1") ? "hvcC" : "av1C");
        if (!box || item.length() == 0)
            return damaged();
        const auto configuration = readHeifContent(m_source, *box);
        if (!configuration)
            return configuration.error();
        HeifItemSource data(m_source, item);
        const Result<CodedPictures> coded =
            (item.is("hvc1") ? readHevcPictures : readAv1Pictures)(*configuration, data);
        if (!coded)
            return coded.error();
        // Sides are told for a picture; only blocks are filled up beyond them.
        constexpr std::uint64_t kBlock = 256;
        if (coded->shownWidth > told.width + kBlock || coded->shownHeight > told.height + kBlock)
            return damaged();
        const HeifSides sides{coded->width, coded->height};
        if (!isBelievable(sides))
            return Error{{}, cause::kTooLarge};
        constexpr std::uint64_t kMostKept = 16; // pictures for reference
        HeifWeight weight;
        const std::uint64_t each = pixelsOf(sides) * coded->bytesOfFourPixels / 4;
        weight.pixels = pixelsOf(sides);
        weight.planes = each;
        weight.peak = each * (std::clamp<std::uint64_t>(coded->count, 1, kMostKept) + 1);
        weight.work = std::min((weight.pixels + kItemWork) * std::max<std::uint64_t>(coded->count, 1), kEndless);
        weight.read = item.length();
        return weight;
    }

    Result<Composition> readComposition(const HeifItem& item) const
    {
        constexpr std::uint64_t kLongest = 4096 + 8 * kMostParts;
        HeifItemSource data(m_source, item);
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::min(data.size(), kLongest)));
        bytes.resize(data.read(0, bytes));
        ByteCursor cursor(bytes);
        cursor.skip(1);
        const std::size_t size = (cursor.number(1) & 1) != 0 ? 4 : 2;
        Composition composition;
        composition.layered = item.is("iovl");
        if (composition.layered) {
            cursor.skip(8); // the ground's colour
            composition.parts = item.parts.size();
        } else {
            const std::uint64_t rows = cursor.number(1) + 1;
            composition.parts = rows * (cursor.number(1) + 1);
        }
        composition.sides.width = cursor.number(size);
        composition.sides.height = cursor.number(size);
        if (composition.layered && composition.parts <= kMostParts && !areWithin(cursor, size, composition.parts))
            return Error{{}, cause::kOtherHeif};
        return cursor.overran() || composition.parts > kMostParts ? damaged() : Result<Composition>(composition);
    }

    /// Whether the places of layers lie right of and below the overlay's corner; libheif reads beside a picture where
    /// they don't.
    static bool areWithin(ByteCursor& cursor, std::size_t size, std::uint64_t layers)
    {
        const std::uint64_t most = size == 2 ? 0x7FFF : kMaximumClaimedSide;
        bool within = true;
        for (std::uint64_t i = 0; i < 2 * layers; ++i)
            within = cursor.number(size) <= most && within;
        return within;
    }

    Result<HeifWeight> weighComposed(const HeifItem& item, const Composition& composition, int depth)
    {
        if (composition.parts == 0 || composition.parts != item.parts.size())
            return damaged();
        HeifWeight weight;
        weight.pixels = pixelsOf(composition.sides);
        weight.work = weight.pixels + kItemWork;
        weight.read = item.length();
        std::uint64_t perFour = 0; // bytes that four pixels of the whole take
        std::uint64_t part = 0;    // the most that a part holds
        for (const std::uint64_t id : item.parts) {
            const Result<HeifWeight> one = weigh(id, depth + 1);
            if (!one)
                return one.error();
            weight.work = sum(weight.work, sum(one->work, composition.layered ? kLayerWork * one->pixels : 0));
            weight.read = sum(weight.read, one->read);
            weight.depth = std::max(weight.depth, one->depth + 1);
            perFour = std::max(perFour, composition.layered ? 16 : 4 * one->planes / one->pixels + 1);
            part = std::max(part, sum(one->peak, sum(one->planes, composition.layered ? 4 * one->pixels : 0)));
        }
        weight.planes = weight.pixels * perFour / 4;
        const std::uint64_t atOnce = composition.layered ? 1 : std::min<std::uint64_t>(composition.parts, kTilesAtOnce);
        weight.peak = sum(weight.planes, std::min(part, kEndless / kTilesAtOnce) * atOnce);
        return weight;
    }

    ByteSource& m_source;
    const HeifItems& m_items;
    std::map<std::uint64_t, Result<HeifWeight>> m_known;
};

} // namespace

Result<HeifWeight> weighHeifPicture(ByteSource& source, const HeifItems& items, std::uint64_t id)
{
    const Result<HeifWeight> weight = Scales(source, items).weigh(id);
    if (!weight)
        return weight;
    // A grid with alpha goes through each pixel five times, and an edited picture may show a part of a photo, however
    // small: the photo's bytes are there nonetheless.
    constexpr std::uint64_t kMostPasses = 24;
    constexpr std::uint64_t kPixelsOfAByte = 40;
    constexpr std::uint64_t kAlwaysGranted = 16'000'000;
    const std::uint64_t shown = pixelsOf(shownHeifSides(source, *items.find(id)));
    constexpr std::uint64_t kAlwaysRead = 1 << 16;
    const std::uint64_t mostRead = 2 * source.size() + kAlwaysRead;
    if (weight->work > kMostPasses * shown + kPixelsOfAByte * std::min(weight->read, mostRead) + kAlwaysGranted)
        return Error{{}, cause::kTooLarge};
    if (weight->read > mostRead)
        return damaged();
    return weight;
}

} // namespace lamina
