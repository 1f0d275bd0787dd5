#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace lamina {

/// What a view is to those who can't see it; sets of them are sums.
struct UIAccessibilityTraits {
    using Set = std::uint32_t;
    static constexpr Set None = 0;
    static constexpr Set Button = 1u << 0;
    static constexpr Set Image = 1u << 2;
    static constexpr Set Selected = 1u << 3;
    static constexpr Set StaticText = 1u << 6;
    static constexpr Set NotEnabled = 1u << 8;
    /// Can be stepped up and down.
    static constexpr Set Adjustable = 1u << 12;
};

/// A value as a number between two others, in a unit of the view's own.
struct UIAccessibilityRange {
    double value = 0;
    double minimum = 0;
    double maximum = 1;
    friend bool operator==(const UIAccessibilityRange&, const UIAccessibilityRange&) = default;
};

/// What assistive technology is told of a view, and what it may do to it. Texts are shown as they are, so in the user's
/// language. Whoever shows the tree reads all of it anew when the tree is painted anew. Main thread.
class UIAccessibility {
public:
    virtual ~UIAccessibility() = default;

    /// Whether the view is told of at all, as one thing: what stands in it is then not told. Default false, true for
    /// controls.
    bool isAccessibilityElement() const { return m_isElement; }
    void setAccessibilityElement(bool element) { m_isElement = element; }
    /// What it is called, in a word or two. Default empty.
    virtual std::string accessibilityLabel() const { return m_label; }
    void setAccessibilityLabel(std::string label) { m_label = std::move(label); }
    /// What it is set to, in words. Default empty.
    virtual std::string accessibilityValue() const { return m_value; }
    void setAccessibilityValue(std::string value) { m_value = std::move(value); }
    /// What comes of using it. Default empty.
    virtual std::string accessibilityHint() const { return m_hint; }
    void setAccessibilityHint(std::string hint) { m_hint = std::move(hint); }
    /// Default none; a subclass adds its own to those that were set.
    virtual UIAccessibilityTraits::Set accessibilityTraits() const { return m_traits; }
    void setAccessibilityTraits(UIAccessibilityTraits::Set traits) { m_traits = traits; }
    /// The value as a number, for those that have one. Default none.
    virtual std::optional<UIAccessibilityRange> accessibilityRange() const { return std::nullopt; }

    /// A step up of what is adjustable, and
    virtual void accessibilityIncrement() {}
    /// a step down.
    virtual void accessibilityDecrement() {}
    /// A press. False when there is nothing to press.
    virtual bool accessibilityActivate() { return false; }

private:
    std::string m_label;
    std::string m_value;
    std::string m_hint;
    UIAccessibilityTraits::Set m_traits = UIAccessibilityTraits::None;
    bool m_isElement = false;
};

} // namespace lamina
