#pragma once

#include "platform/photos/PHAsset.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace lamina {

/// The pictures of an album as they were at one moment, newest first. It never changes, whatever becomes of the
/// library: what it holds is a list of identifiers; what else is known of a picture is read from the index when it is
/// asked for, some rows around it together, so that going over neighbours costs a query for many of them. A picture
/// that is gone since is still told of as it was. Cheap to copy; usable from any thread.
class PHFetchResult {
public:
    /// No pictures.
    PHFetchResult();

    /// How many pictures there are.
    std::size_t count() const;
    /// Whether there are none.
    bool isEmpty() const { return count() == 0; }

    /// The picture at `index`, from 0; an asset without identifier beyond the end.
    PHAsset objectAtIndex(std::size_t index) const;
    /// The newest one.
    std::optional<PHAsset> firstObject() const;
    /// Those from `first` on, at most `count` of them.
    std::vector<PHAsset> objects(std::size_t first, std::size_t count) const;
    /// Calls `take` with each picture in turn, a page of rows in memory at a time.
    template <class Take>
    void enumerateObjects(const Take& take) const
    {
        constexpr std::size_t kRowsAtOnce = 1000;
        for (std::size_t first = 0; first < count(); first += kRowsAtOnce)
            for (const PHAsset& asset : objects(first, kRowsAtOnce))
                take(asset);
    }

    /// Where a picture stands; nothing when it is not among them.
    std::optional<std::size_t> indexOfObject(const PHAsset& asset) const;
    bool containsObject(const PHAsset& asset) const { return indexOfObject(asset).has_value(); }

    /// The same pictures in the same order, whatever else is known of them.
    friend bool operator==(const PHFetchResult& x, const PHFetchResult& y);

    struct Content; // for the implementation
    explicit PHFetchResult(std::shared_ptr<const Content> content);
    const Content& content() const { return *m_content; }

private:
    std::shared_ptr<const Content> m_content; ///< never null
};

} // namespace lamina
