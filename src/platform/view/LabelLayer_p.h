#pragma once

#include "platform/view/CALayer.h"

#include "platform/text/TextLayout.h"

#include <optional>
#include <string>

namespace lamina {

/// A layer that paints a text in its bounds. What it was set in is kept until text, style or bounds change.
class LabelLayer : public CALayer {
public:
    struct Text {
        std::string text;
        TextStyle style;
        UIColor color = UIColor::black();
        bool adjusts = false;
        double leastFactor = 0;
        friend bool operator==(const Text&, const Text&) = default;
    };

    const Text& text() const { return m_text; }
    void setText(const Text& text);

protected:
    void drawInContext(CGContext& context) const override;
    CGRect drawnBounds() const override;

private:
    /// The letters in the layer's coordinates.
    const UIBezierPath& letters() const;
    TextLayout fitted() const;

    Text m_text;
    mutable std::optional<UIBezierPath> m_letters;
    mutable CGRect m_lettersBounds; ///< that they were set for
};

} // namespace lamina
