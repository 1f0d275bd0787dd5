#pragma once

#include "platform/view/UIView.h"

#include "platform/text/TextLayout.h"
#include "platform/text/UIFont.h"

#include <memory>
#include <string>

namespace lamina {

class LabelLayer;

/// Text on the canvas, centred between the upper and the lower side. Its letters are outlines: smooth at every scale
/// and turn, and measured alike at all of them. Not opaque, and takes no touches until told to.
class UILabel : public UIView {
public:
    explicit UILabel(const CGRect& frame = {});

    /// UTF-8; default empty. Only what a new line stands before is seen while there is one line.
    const std::string& text() const;
    void setText(const std::string& text);
    /// Default the system's own, 17 points.
    const UIFont& font() const;
    void setFont(const UIFont& font);
    /// Default black.
    UIColor textColor() const;
    void setTextColor(const UIColor& color);
    /// Default Natural.
    NSTextAlignment textAlignment() const;
    void setTextAlignment(NSTextAlignment alignment);
    /// Default TruncatingTail.
    NSLineBreakMode lineBreakMode() const;
    void setLineBreakMode(NSLineBreakMode mode);
    /// At most; default 1, 0: as many as the text takes. A negative number counts as 0.
    int numberOfLines() const;
    void setNumberOfLines(int lines);

    /// Whether one line that is too wide is set smaller before it is cut short; default false.
    bool adjustsFontSizeToFitWidth() const;
    void setAdjustsFontSizeToFitWidth(bool adjusts);
    /// By how much at most, in (0, 1]; default 0: as small as it takes, down to a hundredth.
    double minimumScaleFactor() const;
    void setMinimumScaleFactor(double factor);

    /// What the text takes in lines no wider than `size` (a width that is not above 0 sets no bound), in points; never
    /// more than the font asks for, and empty without text. Its height is not looked at.
    CGSize sizeThatFits(CGSize size) const;
    /// What the whole text takes, rounded up to whole points; a text of several lines that it is free to break is as
    /// wide as its longest paragraph.
    CGSize intrinsicContentSize() const override;
    /// Sets the bounds' size to what the text takes in one width: the present one where there are several lines, else
    /// as wide as it needs. The frame's top left stays.
    void sizeToFit();

    /// What was set, else the text.
    std::string accessibilityLabel() const override;
    UIAccessibilityTraits::Set accessibilityTraits() const override;

private:
    explicit UILabel(std::shared_ptr<LabelLayer> layer);

    LabelLayer& m_label;
};

} // namespace lamina
