#pragma once

#include "platform/view/UIControl.h"

#include "platform/base/CGGeometry.h"
#include "platform/view/UITouch.h"

#include <memory>

namespace lamina {

class CGContext;
class DrawnLayer;

/// A swatch that is pressed like a button; its background is the colour. It wears a frame while a finger is inside of
/// it. Main thread.
class InfSourceColorView : public UIControl {
public:
    explicit InfSourceColorView(const CGRect& frame = {});

    /// Whether the finger that is followed lies in the bounds.
    bool trackingInside() const { return m_trackingInside; }
    void setTrackingInside(bool inside);

    bool beginTracking(const UITouch& touch) override;
    bool continueTracking(const UITouch& touch) override;
    void endTracking(const UITouch& touch) override;
    void cancelTracking() override;

private:
    InfSourceColorView(const CGRect& frame, std::shared_ptr<DrawnLayer> layer);
    void draw(CGContext& context, const CGRect& bounds) const;

    DrawnLayer& m_drawn;
    bool m_trackingInside = false;
};

} // namespace lamina
