#pragma once

#include "platform/view/DrawnLayer.h"

#include <algorithm>
#include <cmath>

namespace lamina {

/// `progress` as it can be drawn; what is no number counts as 0.
inline float drawableProgress(float progress)
{
    return std::isfinite(progress) ? std::clamp(progress, 0.0F, 1.0F) : 0.0F;
}

} // namespace lamina
