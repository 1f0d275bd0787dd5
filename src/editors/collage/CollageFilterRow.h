#pragma once

#include "editors/collage/CollageFilters.h"
#include "editors/collage/FilterSteps.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/ListModel.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace lamina {

/// One thumbnail of the filter panel.
struct CollageFilterThumbnail {
    int tag = 0;
    std::string name; ///< in the user's language
    UIImage picture;  ///< empty until it is made, and where its filter fails
};

/// The row of the filter panel: a picture through each of the looks, made in the background, one after another. Main
/// thread.
class CollageFilterRow {
public:
    /// Of the first looks, so many.
    explicit CollageFilterRow(std::size_t count = kCollageFilterCount);

    /// The thumbnails of this picture, in the place of those before; nothing where they show it already. The first
    /// shows the whole picture, squeezed into the square, the others its middle. `failed`: the first of them that could
    /// not be made, once.
    void fill(const UIImage& base, std::function<void()> failed);
    /// Later fills do nothing.
    void close() { m_isClosed = true; }
    /// What the thumbnails show; empty when one of them failed.
    const UIImage& base() const { return m_base; }

    /// `tag`, `name`, `picture` (a `lamina::UIImage`). Empty until the first fill. Lives as long as the row.
    ListModel<CollageFilterThumbnail>& thumbnails() { return m_thumbnails; }
    const ListModel<CollageFilterThumbnail>& thumbnails() const { return m_thumbnails; }

    /// Where a thumbnail stands in the row, points.
    static CGRect frame(std::size_t index);
    /// What the row scrolls over.
    static CGSize contentSize();
    /// What a thumbnail but the first is made of: the middle of the picture.
    static UIImage smallImage(const UIImage& base);

private:
    struct Fill;

    std::function<void(const UIImage&)> taker(std::size_t index) const;

    std::size_t m_count;
    bool m_isClosed = false;
    UIImage m_base;
    ListModel<CollageFilterThumbnail> m_thumbnails;
    std::shared_ptr<Fill> m_fill; ///< the one under way; what comes of an earlier one is dropped
    FilterSteps m_steps;
};

} // namespace lamina
