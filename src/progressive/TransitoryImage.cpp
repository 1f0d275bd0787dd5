#include "imageops/DrawingSurface.h"
#include "platform/base/WorkerPool.h"
#include "progressive/NYXProgressiveImageView.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>

namespace lamina {

namespace {

/// Clear, or black where the surface has no alpha.
void clearRow(DrawingSurface& surface, int y)
{
    std::uint8_t* const row = surface.row(y);
    std::memset(row, 0, surface.bytesPerRow());
    if (!surface.hasAlpha())
        for (std::size_t i = 0; i < surface.bytesPerRow(); i += 4)
            row[i] = 255;
}

} // namespace

CGImage NYXProgressiveImageView::createTransitoryImage(const CGImage& partial, IntSize final)
{
    const auto rows = DrawnRows::make(partial, {final.width, partial.height()});
    if (!rows || rows->height() > final.height)
        return {};
    std::optional<DrawingSurface> surface = DrawingSurface::make(final, rows->hasAlpha());
    if (!surface)
        return {};
    parallelRows(0, final.height, static_cast<std::size_t>(final.width), [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            if (y < rows->height())
                rows->read(y, surface->row(y));
            else
                clearRow(*surface, y);
        }
    });
    return std::move(*surface).makeImage();
}

} // namespace lamina
