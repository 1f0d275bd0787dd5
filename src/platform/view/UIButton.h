#pragma once

#include "platform/view/UIControl.h"

#include <string>
#include <utility>

namespace lamina {

/// A control to press. It knows what it stands for, the window or a subclass draws it.
class UIButton : public UIControl {
public:
    using UIControl::UIControl;

    /// Default empty.
    const std::string& title() const { return m_title; }
    virtual void setTitle(std::string title) { m_title = std::move(title); }
    /// Name of the picture shown; default empty: none.
    const std::string& imageName() const { return m_imageName; }
    void setImageName(std::string name) { m_imageName = std::move(name); }

    /// What was set, else the title.
    std::string accessibilityLabel() const override
    {
        const std::string label = UIControl::accessibilityLabel();
        return label.empty() ? m_title : label;
    }
    UIAccessibilityTraits::Set accessibilityTraits() const override
    {
        return UIControl::accessibilityTraits() | UIAccessibilityTraits::Button;
    }

private:
    std::string m_title;
    std::string m_imageName;
};

} // namespace lamina
