#include "gpu/filters/effect/CenteredFilter.h"

namespace lamina {

FilterProperty CenteredFilter::centerProperty(const std::string& name)
{
    return filterProperty(name, &CenteredFilter::setCenter, kMiddle, {0, 1}, "share of width and height",
                          "The middle of the effect");
}

} // namespace lamina
