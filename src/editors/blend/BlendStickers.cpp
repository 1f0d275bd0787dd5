// The blend editor's stickers.

#include "editors/blend/BlendPanels.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/common/PanelAnimation.h"

namespace lamina {

void BlendPhotoViewController::stickerBtn()
{
    act([this] {
        currentImageView().removeAllGestureRecognizers();
        m_stickerSelected = !m_stickerSelected;
        if (m_stickerSelected) {
            editedComposition().toolBool = false;
            enterToolMode(BlendMode::Stickers);
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
    animatePanels([this, &screen] {
        m_panels.toolSubViewTopConst = blendpanel::kHiddenToolStrip;
        m_panels.stickerScrollView = blendpanel::shownStickers(screen);
    });
}

} // namespace lamina
