#pragma once

#include "platform/base/UIColor.h"

namespace lamina {

/// What a view may be besides, to serve as the indicator of a progress HUD; a custom view too.
class MBProgressIndicator {
public:
    virtual ~MBProgressIndicator() = default;
    /// The share that is done, drawn within [0, 1].
    virtual void setProgress(float progress) = 0;
};

/// The same for a view that has one colour to draw in.
class MBTintedIndicator {
public:
    virtual ~MBTintedIndicator() = default;
    /// Takes effect with the next drawing.
    virtual void setTintColor(const UIColor& color) = 0;
};

} // namespace lamina
