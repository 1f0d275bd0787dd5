#include "platform/view/UILabel.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/view/LabelLayer_p.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace lamina {

// ---- the layer ----

void LabelLayer::setText(const Text& text)
{
    if (text == m_text)
        return;
    m_text = text;
    m_letters.reset();
    changed();
}

TextLayout LabelLayer::fitted() const
{
    constexpr double kSmallest = 0.01;
    TextStyle style = m_text.style;
    const double width = bounds().size.width;
    if (m_text.adjusts && style.numberOfLines == 1) {
        const double needed = layoutText(m_text.text, style).size.width;
        if (needed > width)
            style.font.size *= std::max({width / needed * 0.999, m_text.leastFactor, kSmallest});
    }
    return layoutText(m_text.text, style, width);
}

const UIBezierPath& LabelLayer::letters() const
{
    if (m_letters && m_lettersBounds == bounds())
        return *m_letters;
    const TextLayout layout = fitted();
    m_letters = layout.outlines;
    m_letters->applyTransform(
        CGAffineTransform::translation(bounds().minX(), bounds().midY() - layout.size.height / 2));
    m_lettersBounds = bounds();
    return *m_letters;
}

CGRect LabelLayer::drawnBounds() const
{
    return m_text.color.alpha > 0 ? letters().controlBounds() : CGRect();
}

void LabelLayer::drawInContext(CGContext& context) const
{
    context.setFillColor(m_text.color);
    context.fillPath(letters());
}

// ---- the view ----

namespace {

/// Changes one value of the label's text.
template <class Change>
void change(LabelLayer& label, Change apply)
{
    LabelLayer::Text text = label.text();
    apply(text);
    label.setText(text);
}

} // namespace

UILabel::UILabel(const CGRect& frame)
    : UILabel(std::make_shared<LabelLayer>())
{
    setFrame(frame);
}

UILabel::UILabel(std::shared_ptr<LabelLayer> layer)
    : UIView({}, layer)
    , m_label(*layer)
{
    setOpaque(false);
    setUserInteractionEnabled(false);
}

const std::string& UILabel::text() const
{
    return m_label.text().text;
}

void UILabel::setText(const std::string& text)
{
    change(m_label, [&](LabelLayer::Text& label) { label.text = text; });
}

const UIFont& UILabel::font() const
{
    return m_label.text().style.font;
}

void UILabel::setFont(const UIFont& font)
{
    change(m_label, [&](LabelLayer::Text& label) { label.style.font = font; });
}

UIColor UILabel::textColor() const
{
    return m_label.text().color;
}

void UILabel::setTextColor(const UIColor& color)
{
    change(m_label, [&](LabelLayer::Text& label) { label.color = color; });
}

NSTextAlignment UILabel::textAlignment() const
{
    return m_label.text().style.alignment;
}

void UILabel::setTextAlignment(NSTextAlignment alignment)
{
    change(m_label, [&](LabelLayer::Text& label) { label.style.alignment = alignment; });
}

NSLineBreakMode UILabel::lineBreakMode() const
{
    return m_label.text().style.lineBreakMode;
}

void UILabel::setLineBreakMode(NSLineBreakMode mode)
{
    change(m_label, [&](LabelLayer::Text& label) { label.style.lineBreakMode = mode; });
}

int UILabel::numberOfLines() const
{
    return m_label.text().style.numberOfLines;
}

void UILabel::setNumberOfLines(int lines)
{
    change(m_label, [&](LabelLayer::Text& label) { label.style.numberOfLines = std::max(0, lines); });
}

bool UILabel::adjustsFontSizeToFitWidth() const
{
    return m_label.text().adjusts;
}

void UILabel::setAdjustsFontSizeToFitWidth(bool adjusts)
{
    change(m_label, [&](LabelLayer::Text& label) { label.adjusts = adjusts; });
}

double UILabel::minimumScaleFactor() const
{
    return m_label.text().leastFactor;
}

void UILabel::setMinimumScaleFactor(double factor)
{
    if (std::isfinite(factor))
        change(m_label, [&](LabelLayer::Text& label) { label.leastFactor = std::clamp(factor, 0.0, 1.0); });
}

CGSize UILabel::sizeThatFits(CGSize size) const
{
    const LabelLayer::Text& label = m_label.text();
    const double width = size.width > 0 ? size.width : std::numeric_limits<double>::infinity();
    return layoutText(label.text, label.style, width).size;
}

CGSize UILabel::intrinsicContentSize() const
{
    const CGSize size = sizeThatFits({});
    return {std::ceil(size.width), std::ceil(size.height)};
}

std::string UILabel::accessibilityLabel() const
{
    const std::string label = UIView::accessibilityLabel();
    return label.empty() ? text() : label;
}

UIAccessibilityTraits::Set UILabel::accessibilityTraits() const
{
    return UIView::accessibilityTraits() | UIAccessibilityTraits::StaticText;
}

void UILabel::sizeToFit()
{
    const CGPoint corner = frame().origin;
    const CGSize size = sizeThatFits({numberOfLines() == 1 ? 0 : bounds().size.width, 0});
    setBounds({bounds().origin, size});
    const CGRect moved = frame();
    setCenter({center().x + corner.x - moved.minX(), center().y + corner.y - moved.minY()});
}

} // namespace lamina
