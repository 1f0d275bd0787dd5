#include "editors/collage/CollageFilterRow.h"

#include "editors/collage/CollageFilters.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Localization.h"
#include "platform/base/UIScreen.h"
#include "platform/image/drawing/Resampling.h"
#include "platform/image/drawing/SquareCrop.h"

#include <cmath>
#include <utility>
#include <vector>

namespace lamina {

namespace {

// Points.
constexpr double kFirst = 5;
constexpr double kStep = 90;
constexpr double kTop = 2;
constexpr double kSide = 80;
constexpr double kSmallEdge = 66;

/// As the square of a thumbnail shows the whole of it.
UIImage squeezed(const UIImage& picture)
{
    const double scale = UIScreen::main().scale;
    const int side = static_cast<int>(std::lround(kSide * scale));
    return UIImage(resampled(picture.upright().cgImage(), {side, side}), scale);
}

} // namespace

/// Held by the row alone: what comes after the row, or after a later fill, finds it gone.
struct CollageFilterRow::Fill {
    CollageFilterRow* row;
    std::function<void()> failed;

    void take(std::size_t index, const UIImage& picture)
    {
        if (!picture)
            row->m_base = {}; // so that the next fill tries again
        if (!picture && failed)
            std::exchange(failed, {})();
        row->m_thumbnails.edit(index, [&](CollageFilterThumbnail& thumbnail) { thumbnail.picture = picture; });
    }
};

CollageFilterRow::CollageFilterRow(std::size_t count)
    : m_count(count)
    , m_thumbnails{{"tag", &CollageFilterThumbnail::tag},
                   {"name", &CollageFilterThumbnail::name},
                   {"picture", &CollageFilterThumbnail::picture}}
{
}

CGRect CollageFilterRow::frame(std::size_t index)
{
    return {kFirst + kStep * static_cast<double>(index), kTop, kSide, kSide};
}

CGSize CollageFilterRow::contentSize()
{
    return {kStep * static_cast<double>(kCollageFilterCount), 0};
}

UIImage CollageFilterRow::smallImage(const UIImage& base)
{
    return squareImageFromImage(base, kSmallEdge);
}

/// Hands a picture to the present fill, from any thread.
std::function<void(const UIImage&)> CollageFilterRow::taker(std::size_t index) const
{
    return [weak = std::weak_ptr(m_fill), index, expected = DispatchQueue::main().expectWork()](const UIImage& made) {
        DispatchQueue::main().async([weak, index, made] {
            if (const auto fill = weak.lock())
                fill->take(index, made);
        });
    };
}

/// Thumbnails of before stay until those that follow are there: nothing flickers.
void CollageFilterRow::fill(const UIImage& base, std::function<void()> failed)
{
    if (m_isClosed || (m_thumbnails.count() > 0 && base.isIdenticalTo(m_base)))
        return;
    m_base = base;
    m_fill = std::make_shared<Fill>(Fill{this, std::move(failed)});
    const auto small = std::make_shared<UIImage>(); // the steps'
    std::vector<FilterSteps::Step> steps;
    for (std::size_t index = 0; index < m_count; ++index) {
        const CollageFilter& filter = collageFilters()[index];
        if (m_thumbnails.rows().size() <= index)
            m_thumbnails.append({filter.tag, localizedString(filter.name), {}});
        steps.emplace_back([base, small, &filter, tell = taker(index)] {
            if (!*small)
                *small = smallImage(base);
            tell(filter.make ? filter.applied(*small) : squeezed(base));
        });
    }
    m_steps = FilterSteps(std::move(steps));
}

} // namespace lamina
