#pragma once

#include "hud/MBProgressIndicator.h"
#include "platform/view/UIView.h"

#include <memory>

namespace lamina {

class CGContext;
class DrawnLayer;

/// The share that is done as a bar with round ends in an outline. Not opaque. Main thread.
class MBBarProgressView : public UIView, public MBProgressIndicator {
public:
    MBBarProgressView();

    /// Default 0.
    float progress() const { return m_progress; }
    void setProgress(float progress) override;
    /// Of the outline; default white.
    UIColor lineColor() const { return m_lineColor; }
    void setLineColor(const UIColor& color);
    /// Of the inside where the bar hasn't come; default clear.
    UIColor progressRemainingColor() const { return m_progressRemainingColor; }
    void setProgressRemainingColor(const UIColor& color);
    /// Default white.
    UIColor progressColor() const { return m_progressColor; }
    void setProgressColor(const UIColor& color);

    /// 120 x 10.
    CGSize intrinsicContentSize() const override;

private:
    explicit MBBarProgressView(std::shared_ptr<DrawnLayer> layer);
    void draw(CGContext& context, const CGRect& bounds) const;

    DrawnLayer& m_drawn;
    float m_progress = 0;
    UIColor m_lineColor = UIColor::white();
    UIColor m_progressRemainingColor = UIColor::clear();
    UIColor m_progressColor = UIColor::white();
};

} // namespace lamina
