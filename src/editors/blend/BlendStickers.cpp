// The blend editor's stickers: their strip, making them, and what the finish does to them.

#include "editors/blend/BlendPanels.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/common/PanelAnimation.h"
#include "editors/stickers/StickerStrip.h"

#include <cstddef>
#include <optional>

namespace lamina {

void BlendPhotoViewController::stickerBtn()
{
    act([this] {
        currentImageView().removeAllGestureRecognizers();
        m_stickerSelected = !m_stickerSelected;
        if (m_stickerSelected) {
            enterToolMode(BlendMode::AddStickers);
            editedComposition().toolBool = false;
            openStickerStrip();
        } else {
            animatePanels([this, screen = view().frame().size] {
                m_panels.stickerScrollView = blendpanel::hiddenStickers(screen);
            });
            editedToolBar().clearBackgrounds();
        }
    });
}

void BlendPhotoViewController::openStickerStrip()
{
    closeEffects();
    const CGSize screen = view().frame().size;
    m_panels.stickerScrollView = blendpanel::hiddenStickers(screen);
    stickerEditing().openStrip(kBlendStickerStrip);
    animatePanels([this, &screen] {
        m_panels.toolSubViewTopConst = blendpanel::kHiddenToolStrip;
        m_panels.stickerScrollView = blendpanel::shownStickers(screen);
    });
}

void BlendPhotoViewController::stickerImgGesture(int tag)
{
    const std::optional<std::size_t> index = StickerStrip::stickerIndex(tag);
    if (!index)
        return;
    act([&] { stickerEditing().add(*index, StickerPlace::Middle); });
}

/// Nothing is seen of stickers but their pictures, in the order in which they were made. What was recorded last follows
/// by itself: a gesture may have changed the views since.
void BlendPhotoViewController::finishStickers(BlendComposition& recorded)
{
    stickerEditing().hideHandlesAndBorders();
    stickerEditing().bringToFront();
    readViews();
    StickerEditing::finish(recorded.stickers);
    StickerEditing::sortByTag(recorded.stickers);
}

} // namespace lamina
