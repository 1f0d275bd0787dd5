#pragma once

#include "platform/base/UIColor.h"
#include "platform/view/UIView.h"

#include <memory>
#include <optional>

namespace lamina {

class CGContext;
class DrawnLayer;

/// The mark of a value on a range of colours: a disc in the value's colour with a light rim and a dark edge, so that it
/// is seen on all of them. It takes no touches. Main thread.
class InfColorIndicatorView : public UIView {
public:
    explicit InfColorIndicatorView(const CGRect& frame = {});

    /// Default none: the rim alone.
    const std::optional<UIColor>& color() const { return m_color; }
    void setColor(const UIColor& color);

private:
    InfColorIndicatorView(const CGRect& frame, std::shared_ptr<DrawnLayer> layer);
    void draw(CGContext& context, const CGRect& bounds) const;

    DrawnLayer& m_drawn;
    std::optional<UIColor> m_color;
};

} // namespace lamina
