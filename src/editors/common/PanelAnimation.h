#pragma once

#include "platform/view/UIViewAnimation.h"

#include <functional>
#include <utility>

namespace lamina {

/// Moves an editor's panels, strips and sheets in and out, all in the same time; otherwise as `animate`.
inline void animatePanels(const std::function<void()>& animations,
                          UIViewAnimationCurve curve = UIViewAnimationCurve::EaseOut,
                          std::function<void(bool finished)> completion = {})
{
    constexpr double kSeconds = 0.5;
    constexpr double kDelay = 0.1;
    animate(kSeconds, kDelay, {.curve = curve}, animations, std::move(completion));
}

} // namespace lamina
