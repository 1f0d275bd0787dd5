#pragma once

#include "platform/view/UIView.h"

namespace lamina {

/// How an `MBBackgroundView` fills itself.
enum class MBProgressHUDBackgroundStyle {
    SolidColor = 0,
    Blur = 1, ///< drawn as the solid colour: nothing here blurs what lies behind
};

/// The panel of a progress HUD, or the backdrop behind it: a plain area in one colour, clipped to its bounds.
/// Main thread.
class MBBackgroundView : public UIView {
public:
    explicit MBBackgroundView(const CGRect& frame = {});

    /// Default Blur.
    MBProgressHUDBackgroundStyle style() const { return m_style; }
    void setStyle(MBProgressHUDBackgroundStyle style);
    /// The platform's number of a blur, kept for those who ask; default 1, light.
    int blurEffectStyle() const { return m_blurEffectStyle; }
    void setBlurEffectStyle(int style) { m_blurEffectStyle = style; }
    /// Default a grey of 0.8 with alpha 0.6.
    UIColor color() const { return m_color; }
    void setColor(const UIColor& color);

    /// Nothing by itself.
    CGSize intrinsicContentSize() const override { return {}; }

private:
    MBProgressHUDBackgroundStyle m_style = MBProgressHUDBackgroundStyle::Blur;
    int m_blurEffectStyle = 1;
    UIColor m_color = UIColor::fromWhite(0.8, 0.6);
};

} // namespace lamina
