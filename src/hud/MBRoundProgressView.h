#pragma once

#include "hud/MBProgressIndicator.h"
#include "platform/view/UIView.h"

#include <memory>

namespace lamina {

class CGContext;
class DrawnLayer;

/// The share that is done as a pie in a circle, or as an arc on a ring; it begins at the top and grows clockwise.
/// Main thread.
class MBRoundProgressView : public UIView, public MBProgressIndicator {
public:
    MBRoundProgressView();

    /// Default 0.
    float progress() const { return m_progress; }
    void setProgress(float progress) override;
    /// Default false: a pie.
    bool isAnnular() const { return m_annular; }
    void setAnnular(bool annular);
    /// Default white.
    UIColor progressTintColor() const { return m_progressTintColor; }
    void setProgressTintColor(const UIColor& color);
    /// Of the ring under the arc; default white with alpha 0.1.
    UIColor backgroundTintColor() const { return m_backgroundTintColor; }
    void setBackgroundTintColor(const UIColor& color);

    /// 37 x 37.
    CGSize intrinsicContentSize() const override;

private:
    explicit MBRoundProgressView(std::shared_ptr<DrawnLayer> layer);
    void draw(CGContext& context, const CGRect& bounds) const;
    void drawPie(CGContext& context, const CGRect& bounds) const;
    void drawRing(CGContext& context, const CGRect& bounds) const;

    DrawnLayer& m_drawn;
    float m_progress = 0;
    bool m_annular = false;
    UIColor m_progressTintColor = UIColor::white();
    UIColor m_backgroundTintColor = UIColor::fromWhite(1, 0.1);
};

} // namespace lamina
