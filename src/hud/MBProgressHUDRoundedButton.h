#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/text/UIFont.h"
#include "platform/view/CALayer.h"
#include "platform/view/UIButton.h"
#include "platform/view/UILabel.h"

#include <memory>
#include <string>

namespace lamina {

/// The button of a progress HUD: its title in a line with round ends, in one colour. Not opaque. Main thread.
class MBProgressHUDRoundedButton : public UIButton {
public:
    MBProgressHUDRoundedButton();

    void setTitle(std::string title) override;
    /// Default the system's, bold, 12 points.
    const UIFont& font() const { return m_label->font(); }
    void setFont(const UIFont& font) { m_label->setFont(font); }
    /// Of the title and the line; under a finger the inside has it too, with alpha 0.1. Default white.
    UIColor titleColor() const { return m_label->textColor(); }
    void setTitleColor(const UIColor& color);

    void setHighlighted(bool highlighted) override;
    void setFrame(const CGRect& frame) override;
    void setBounds(const CGRect& bounds) override;
    /// As large as its title, 20 points wider and high enough for a finger; nothing without a title.
    CGSize intrinsicContentSize() const override;

    /// That of what the button shows, for whoever follows its changes.
    CALayer& titleLayer() const { return m_label->layer(); }

private:
    void showHighlight();
    void layoutTitle();

    std::shared_ptr<UILabel> m_label;
};

} // namespace lamina
