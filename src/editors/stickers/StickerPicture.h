#pragma once

#include "editors/stickers/IQStickerView.h"
#include "platform/view/UIAccessibility.h"
#include "platform/view/UIImageView.h"

#include <string>

namespace lamina {

/// The content of an editor's sticker: a drawing of the catalogue, aspect fit. It is drawn anew for each size that
/// stays, at the main screen's scale, so that it is sharp; up to a side of 2048 pixels, beyond which it is stretched.
/// An unknown name shows nothing. Those who can't see it hear its word, and press it as one taps it. Main thread.
class StickerPicture : public UIImageView, public IQStickerContent {
public:
    explicit StickerPicture(std::string name);

    /// Of the drawing.
    const std::string& name() const { return m_name; }
    void sizeDidSettle() override;

    /// Selected while the sticker shows its handles.
    UIAccessibilityTraits::Set accessibilityTraits() const override;
    bool accessibilityActivate() override;

private:
    IQStickerView* sticker() const;

    std::string m_name;
};

} // namespace lamina
