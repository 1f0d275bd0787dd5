#include "hud/MBProgressHUDRoundedButton.h"

#include "platform/base/CGGeometry.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lamina {

namespace {

constexpr double kFontSize = 12;
constexpr double kBorderWidth = 1;
constexpr double kExtraWidth = 20;
constexpr double kLeastHeight = 44; ///< that a finger hits
constexpr double kHighlightAlpha = 0.10000000149011612;

} // namespace

MBProgressHUDRoundedButton::MBProgressHUDRoundedButton()
    : m_label(std::make_shared<UILabel>())
{
    setOpaque(false);
    layer().setBorderWidth(kBorderWidth);
    m_label->setFont(UIFont::systemFontOfSize(kFontSize, UIFontWeight::Bold));
    m_label->setTextAlignment(NSTextAlignment::Center);
    addSubview(m_label);
    setTitleColor(UIColor::white());
}

void MBProgressHUDRoundedButton::setTitle(std::string title)
{
    m_label->setText(title);
    UIButton::setTitle(std::move(title));
    accessibilityChanged();
}

void MBProgressHUDRoundedButton::setTitleColor(const UIColor& color)
{
    m_label->setTextColor(color);
    layer().setBorderColor(color);
    showHighlight();
}

void MBProgressHUDRoundedButton::setHighlighted(bool highlighted)
{
    UIButton::setHighlighted(highlighted);
    showHighlight();
}

void MBProgressHUDRoundedButton::showHighlight()
{
    setBackgroundColor(isHighlighted() ? titleColor().withAlpha(kHighlightAlpha) : UIColor::clear());
}

void MBProgressHUDRoundedButton::setFrame(const CGRect& frame)
{
    UIButton::setFrame(frame);
    layoutTitle();
}

void MBProgressHUDRoundedButton::setBounds(const CGRect& bounds)
{
    UIButton::setBounds(bounds);
    layoutTitle();
}

void MBProgressHUDRoundedButton::layoutTitle()
{
    layer().setCornerRadius(std::ceil(bounds().size.height / 2));
    m_label->setFrame(bounds());
}

CGSize MBProgressHUDRoundedButton::intrinsicContentSize() const
{
    if (title().empty())
        return {};
    const CGSize text = m_label->intrinsicContentSize();
    return {text.width + kExtraWidth, std::max(text.height, kLeastHeight)};
}

} // namespace lamina
