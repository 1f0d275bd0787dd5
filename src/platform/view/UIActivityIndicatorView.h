#pragma once

#include "platform/view/CADisplayLink.h"
#include "platform/view/CAShapeLayer.h"
#include "platform/view/UIView.h"

#include <memory>

namespace lamina {

/// A ring with a part that goes round while something is under way and nobody knows how long: the large one, 37 points
/// wide. It turns in small steps, which leave the processor to the work itself, and stands still where nothing may
/// move. Not opaque, takes no touches. Main thread.
class UIActivityIndicatorView : public UIView {
public:
    UIActivityIndicatorView();

    /// Default white. The part that goes round has it, the ring a fifth of its alpha.
    UIColor color() const { return m_color; }
    void setColor(const UIColor& color);

    /// It is seen whether it turns or not.
    void startAnimating();
    /// Stays as it stands.
    void stopAnimating();
    bool isAnimating() const { return m_animating; }

    CGSize intrinsicContentSize() const override;
    void setFrame(const CGRect& frame) override;
    void setBounds(const CGRect& bounds) override;

private:
    void turn();
    void shape();

    UIColor m_color = UIColor::white();
    bool m_animating = false;
    int m_step = 0;
    std::shared_ptr<CAShapeLayer> m_ring;
    std::shared_ptr<CAShapeLayer> m_part;
    CADisplayLink m_link;
};

} // namespace lamina
