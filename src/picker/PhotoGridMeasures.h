#pragma once

#include "platform/base/CGGeometry.h"

namespace lamina {

/// What a layout has for the photo grid, in points.
struct PhotoGridPlace {
    CGSize view;
    double spacing = 0; ///< between the tiles of a row
    double left = 0;    ///< free before the first tile of a row,
    double right = 0;   ///< and after the last one

    friend bool operator==(const PhotoGridPlace&, const PhotoGridPlace&) = default;
};

/// The tiles of a row: squares.
struct PhotoGridMeasures {
    double cellSide = 0; ///< points, whole ones; at least 1
    int columns = 0;     ///< at least 1
};

/// Of a view's shorter side no more than this counts, points: on a large window there are more tiles, not larger ones.
inline constexpr double kGridSideLimit = 640;

/// The tiles on an upright phone: three in a row.
PhotoGridMeasures portraitMeasures(const PhotoGridPlace& place);
/// Lying, or on a wide window: as many in a row as it has room for at that size, the rest shared among them. The right
/// margin is counted as room for the number of columns.
PhotoGridMeasures landscapeMeasures(const PhotoGridPlace& place);
/// Whether the first of the two is for this place.
bool isPortraitGrid(const PhotoGridPlace& place);

} // namespace lamina
