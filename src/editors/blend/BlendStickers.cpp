// The blend editor's stickers: the strip to choose from, making them, what undo and the finish know of them.

#include "editors/blend/BlendPanels.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/common/EditHistory.h"
#include "editors/common/PanelAnimation.h"
#include "editors/stickers/Sticker.h"
#include "editors/stickers/StickerCatalogue.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lamina {

/// Makes steps of what happens to stickers.
class BlendPhotoViewController::StickerObserver : public IQStickerObserver {
public:
    explicit StickerObserver(BlendPhotoViewController& editor)
        : m_editor(editor)
    {
    }

    void stickerDidChange(IQStickerView&) override
    {
        m_editor.readViews();
        m_editor.tellGesture();
    }
    void stickerDidEnd(IQStickerView&, EditSeries series) override { endStep(series); }
    void stickerWasTapped(IQStickerView&) override { endStep(EditSeries::None); }
    void stickerWasDeleted(IQStickerView&) override { endStep(EditSeries::None); }

private:
    /// A slider under another finger is let go of: what it does from now on is none of this step.
    void endStep(EditSeries series)
    {
        m_editor.endSliding();
        m_editor.endStep(series);
    }

    BlendPhotoViewController& m_editor;
};

void BlendPhotoViewController::setUpStickers()
{
    m_stickerObserver = std::make_shared<StickerObserver>(*this);
    m_stickers = StickerBoard(kFirstStickerTag);
    m_stickers.setObserver(m_stickerObserver);
}

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
    m_stickerStrip = std::make_unique<StickerStrip>();
    animatePanels([this, &screen] {
        m_panels.toolSubViewTopConst = blendpanel::kHiddenToolStrip;
        m_panels.stickerScrollView = blendpanel::shownStickers(screen);
    });
}

QObject* BlendPhotoViewController::stickerStrip() const
{
    return m_stickerStrip ? &m_stickerStrip->thumbnails() : nullptr;
}

void BlendPhotoViewController::stickerImgGesture(int tag)
{
    const std::optional<std::size_t> index = StickerStrip::stickerIndex(tag);
    if (!index)
        return;
    act([&] { m_stickers.add(*m_mainImgView, stickerCatalogue()[*index].name, StickerPlace::Middle); });
}

void BlendPhotoViewController::readViews()
{
    editedComposition().stickers = StickerBoard::stickers(*m_mainImgView);
}

UIView* BlendPhotoViewController::activeSticker() const
{
    return m_mainImgView ? m_stickers.selected(*m_mainImgView) : nullptr;
}

void BlendPhotoViewController::moveSticker(UIView& sticker, CGPoint by)
{
    if (auto* const moved = dynamic_cast<IQStickerView*>(&sticker))
        moved->moveBy(by.x, by.y);
}

void BlendPhotoViewController::letGoOfStickers()
{
    act([this] { m_stickers.hideHandlesAndBorders(*m_mainImgView); });
}

void BlendPhotoViewController::deleteSticker()
{
    cancelGestures();
    if (IQStickerView* const sticker = m_stickers.selected(*m_mainImgView))
        sticker->close();
}

std::function<void()> BlendPhotoViewController::hideHandles() const
{
    std::vector<std::shared_ptr<UIView>> hidden;
    std::vector<IQStickerView*> bordered;
    for (IQStickerView* const sticker : m_stickers.listed(*m_mainImgView)) {
        for (const auto& part : sticker->subviews()) {
            if (part != sticker->contentView() && !part->isHidden())
                hidden.push_back(part);
        }
        if (sticker->showsBorder())
            bordered.push_back(sticker);
    }
    const auto show = [hidden, bordered](bool shown) {
        for (const auto& handle : hidden)
            handle->setHidden(!shown);
        for (IQStickerView* const sticker : bordered)
            sticker->setShowsBorder(shown);
    };
    show(false);
    return [show] { show(true); };
}

/// Nothing is seen of stickers but their pictures, in the order in which they were made. What was recorded last follows
/// by itself: a gesture may have changed the views since.
void BlendPhotoViewController::finishStickers(BlendComposition& recorded)
{
    m_stickers.hideHandlesAndBorders(*m_mainImgView);
    m_stickers.bringToFront(*m_mainImgView);
    readViews();
    for (Sticker& sticker : recorded.stickers)
        sticker.border = sticker.handles = sticker.active = false;
    std::stable_sort(recorded.stickers.begin(), recorded.stickers.end(),
                     [](const Sticker& one, const Sticker& other) { return one.tag < other.tag; });
}

} // namespace lamina
