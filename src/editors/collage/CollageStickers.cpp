// The collage editor's stickers: their strip, making them, how they lie among the slots.

#include "editors/collage/CreateCollageViewController.h"

#include "editors/stickers/IQStickerView.h"
#include "editors/stickers/StickerStrip.h"

#include <algorithm>

namespace lamina {

void CreateCollageViewController::stickerBtnClicked()
{
    stickerEditing().openStrip(kCollageStickerStrip);
}

void CreateCollageViewController::stickerImgGesture(int tag)
{
    const std::optional<std::size_t> index = StickerStrip::stickerIndex(tag);
    if (!index)
        return;
    act([&] {
        stickerEditing().add(*index, StickerPlace::TopLeft);
        showFrame();
    });
}

/// Those below the slots go there one by one, so that their order stays.
void CreateCollageViewController::showStickers()
{
    stickerEditing().show(m_saveTheImg, composition().stickers);
    const auto views = m_saveTheImg->subviews();
    std::size_t below = 0;
    for (const std::shared_ptr<UIView>& view : views) {
        if (below < composition().stickersBelow && dynamic_cast<IQStickerView*>(view.get()) != nullptr)
            m_saveTheImg->insertSubview(view, below++);
    }
}

/// In the order in which they lie.
void CreateCollageViewController::raiseStickers()
{
    for (const std::shared_ptr<UIView>& view : std::vector(m_saveTheImg->subviews())) {
        if (dynamic_cast<IQStickerView*>(view.get()) != nullptr)
            m_saveTheImg->bringSubviewToFront(*view);
    }
    editedComposition().stickersBelow = 0;
    showFrame();
}

/// A layout puts all slots above the stickers that there are, so that none comes to lie between two slots.
void CreateCollageViewController::readViews()
{
    StickerEditor::readViews();
    const auto& views = m_saveTheImg->subviews();
    const auto isSticker = [](const auto& view) { return dynamic_cast<IQStickerView*>(view.get()) != nullptr; };
    const auto firstSlot = std::find_if_not(views.begin(), views.end(), isSticker);
    editedComposition().stickersBelow = static_cast<std::size_t>(firstSlot - views.begin());
}

} // namespace lamina
