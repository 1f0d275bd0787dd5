#include "picker/PhotoGridMeasures.h"

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

constexpr int kPortraitColumns = 3;

} // namespace

PhotoGridMeasures portraitMeasures(const PhotoGridPlace& place)
{
    const double side = std::min({place.view.width, place.view.height, kGridSideLimit});
    const double gaps = place.right + ((kPortraitColumns - 1) * place.spacing + place.left);
    return {std::max(std::floor((side - gaps) / kPortraitColumns), 1.0), kPortraitColumns};
}

PhotoGridMeasures landscapeMeasures(const PhotoGridPlace& place)
{
    const double portraitSide = portraitMeasures(place).cellSide;
    const double fitting = (place.right + (place.view.width - place.left)) / portraitSide;
    const int columns = std::max(static_cast<int>(fitting), 1);
    const double gaps = place.right + (place.left + place.spacing * (columns - 1));
    return {std::max(std::floor((place.view.width - gaps) / columns), 1.0), columns};
}

bool isPortraitGrid(const PhotoGridPlace& place)
{
    return place.view.width <= place.view.height && place.view.width <= kGridSideLimit;
}

} // namespace lamina
