// The collage editor's stickers: the strip to choose from, making them, how they lie among the slots.

#include "editors/collage/CreateCollageViewController.h"

#include <cstddef>
#include <memory>

namespace lamina {

void CreateCollageViewController::setUpStickers() {}

/// Those below the slots go there one by one, so that their order stays.
void CreateCollageViewController::showStickers()
{
    m_stickers.show(*m_saveTheImg, composition().stickers);
    const auto views = m_saveTheImg->subviews();
    std::size_t below = 0;
    for (const std::shared_ptr<UIView>& view : views) {
        if (below < composition().stickersBelow && dynamic_cast<IQStickerView*>(view.get()) != nullptr)
            m_saveTheImg->insertSubview(view, below++);
    }
}

void CreateCollageViewController::hideStickerHandles()
{
    m_stickers.hideHandles(*m_saveTheImg);
}

void CreateCollageViewController::readViews()
{
    editedComposition().stickers = StickerBoard::stickers(*m_saveTheImg);
}

void CreateCollageViewController::stickerBtnClicked() {}

void CreateCollageViewController::stickerImgGesture(int) {}

void CreateCollageViewController::letGoOfStickers() {}

void CreateCollageViewController::deleteSticker() {}

QObject* CreateCollageViewController::stickerStrip() const
{
    return nullptr;
}

UIView* CreateCollageViewController::activeSticker() const
{
    return m_saveTheImg ? m_stickers.selected(*m_saveTheImg) : nullptr;
}

void CreateCollageViewController::moveSticker(UIView&, CGPoint) {}

} // namespace lamina
