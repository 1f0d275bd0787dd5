#include "cli/editors/PhotoZooms.h"

#include "cli/editors/EditorSteps.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>
#include <variant>

namespace lamina {

namespace {

constexpr double kMostPixels = 1 << 20; ///< more than any photo has

/// Follows which photo is in which slot, and how far each slot is zoomed in.
struct Zooms {
    std::vector<std::size_t> photoIn;
    std::vector<double> zooms; ///< of the slots

    explicit Zooms(std::size_t photos)
        : photoIn(photos)
        , zooms(photos, 1.0)
    {
        std::iota(photoIn.begin(), photoIn.end(), std::size_t{0});
    }

    void operator()(const LayoutStep&) { std::ranges::fill(zooms, 1.0); }
    void operator()(const ZoomStep& step) { zooms[static_cast<std::size_t>(step.photo - 1)] *= step.factor; }
    void operator()(const SwapStep& step)
    {
        std::swap(photoIn[static_cast<std::size_t>(step.one - 1)], photoIn[static_cast<std::size_t>(step.other - 1)]);
    }
    template <class Step>
    void operator()(const Step&)
    {
    }
};

} // namespace

std::vector<int> neededSides(std::span<const CollageStep> steps, std::size_t photos, double side)
{
    Zooms followed(photos);
    for (const CollageStep& step : steps)
        std::visit(followed, step);
    std::vector<int> sides(photos);
    for (std::size_t slot = 0; slot < photos; ++slot) {
        // A photo that is made smaller is not read smaller: filters and effects see its details.
        const double zoom = std::max(1.0, followed.zooms[slot]);
        sides[followed.photoIn[slot]] = static_cast<int>(std::ceil(std::min(side * zoom, kMostPixels)));
    }
    return sides;
}

} // namespace lamina
