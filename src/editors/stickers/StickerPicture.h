#pragma once

#include "editors/stickers/IQStickerView.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchTimer.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/UIAccessibility.h"
#include "platform/view/UIImageView.h"

#include <string>

namespace lamina {

/// The content of an editor's sticker: a drawing of the catalogue, aspect fit. It is drawn anew for each size that
/// stays, at the main screen's scale, so that it is sharp; up to a side of 2048 pixels, or of 512 once those of the
/// process take 192 MB together, beyond which it is stretched. Drawing takes from 1 to some 50 ms, so between sizes
/// that come and go the last drawing is stretched, and what another one has drawn can be taken over. An unknown name
/// shows nothing. Those who can't see it hear its word, and press it as one taps it. Main thread.
class StickerPicture : public UIImageView, public IQStickerContent {
public:
    explicit StickerPicture(std::string name);
    ~StickerPicture() override;

    /// Of the drawing.
    const std::string& name() const { return m_name; }
    /// Takes over what `other` shows, where that is the same drawing: it is drawn anew if the size is another then.
    void takeDrawing(const StickerPicture& other);

    /// Seconds without another change after which a size is one that stays.
    static constexpr double kSettlingSeconds = 0.2;
    void sizeDidSettle() override;
    void sizeDidChange() override;

    /// Selected while the sticker shows its handles.
    UIAccessibilityTraits::Set accessibilityTraits() const override;
    bool accessibilityActivate() override;

private:
    IQStickerView* sticker() const;
    UIImage drawn() const;
    void show(const UIImage& picture);

    std::string m_name;
    CGSize m_drawnSize; ///< that the picture was drawn for
    DispatchTimer m_settling;
};

} // namespace lamina
