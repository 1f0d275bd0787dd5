#include "editors/stickers/StickerBoard.h"

#include "editors/stickers/StickerPicture.h"
#include "platform/base/CGGeometry.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace lamina {

namespace {

constexpr double kNewSide = 200;

const StickerPicture* pictureOf(const IQStickerView& sticker)
{
    return dynamic_cast<const StickerPicture*>(sticker.contentView().get());
}

Sticker valueOf(const IQStickerView& sticker, const StickerPicture& picture)
{
    return {.tag = sticker.tag(),
            .name = picture.name(),
            .size = sticker.bounds().size,
            .center = sticker.center(),
            .transform = sticker.transform(),
            .border = sticker.showsBorder(),
            .handles = sticker.isShowingEditingHandles(),
            .active = IQStickerView::activeStickerView().get() == &sticker};
}

/// Of the active one, or of the others; none hides another's.
void showHandles(const UIView& parent, const std::vector<IQStickerView*>& made, const Stickers& values, bool active)
{
    for (std::size_t i = 0; i < made.size(); ++i) {
        if (!values[i].handles || values[i].active != active)
            continue;
        IQStickerView::releaseActiveStickerView(parent);
        made[i]->showEditingHandles();
    }
}

} // namespace

/// The border belongs to the content, which comes last: one that joins a tree later would have none.
IQStickerView& StickerBoard::addView(UIView& parent, const Sticker& value)
{
    const auto sticker = std::make_shared<IQStickerView>(CGRect{{}, value.size});
    parent.addSubview(sticker);
    sticker->setTag(value.tag);
    sticker->setCenter(value.center);
    sticker->setTransform(value.transform);
    const auto picture = std::make_shared<StickerPicture>(value.name);
    if (const auto former = m_pictures.find(value.tag); former != m_pictures.end())
        picture->takeDrawing(*former->second);
    sticker->setContentView(picture);
    sticker->setShowsBorder(value.border);
    m_pictures[value.tag] = picture;
    list(value.tag);
    return *sticker;
}

IQStickerView& StickerBoard::add(UIView& parent, std::string_view name, StickerPlace place)
{
    std::erase_if(m_pictures, [](const auto& entry) { return entry.second->superview() == nullptr; });
    const CGSize canvas = parent.frame().size;
    const bool inMiddle = place == StickerPlace::Middle;
    IQStickerView& sticker = addView(parent, {.tag = m_stickerHandleTag,
                                              .name = std::string(name),
                                              .size = {kNewSide, kNewSide},
                                              .center = inMiddle ? CGPoint{canvas.width / 2, canvas.height / 2}
                                                                 : CGPoint{kNewSide / 2, kNewSide / 2},
                                              .transform = {}});
    sticker.setObserver(m_observer);
    return sticker;
}

void StickerBoard::list(int tag)
{
    const auto place = std::lower_bound(m_stickerTagMutableArr.begin(), m_stickerTagMutableArr.end(), tag);
    if (place == m_stickerTagMutableArr.end() || *place != tag)
        m_stickerTagMutableArr.insert(place, tag);
    m_stickerHandleTag = std::max(m_stickerHandleTag, tag + 1);
}

IQStickerView* StickerBoard::find(UIView& root, int tag)
{
    return dynamic_cast<IQStickerView*>(root.viewWithTag(tag));
}

std::vector<IQStickerView*> StickerBoard::listed(UIView& root) const
{
    std::vector<IQStickerView*> found;
    for (const int tag : m_stickerTagMutableArr) {
        if (IQStickerView* const sticker = find(root, tag))
            found.push_back(sticker);
    }
    return found;
}

IQStickerView* StickerBoard::selected(UIView& root) const
{
    IQStickerView* const active = IQStickerView::activeStickerView().get();
    if (active && active->isDescendantOf(root))
        return active;
    const std::vector<IQStickerView*> all = listed(root);
    const auto last = std::find_if(all.rbegin(), all.rend(),
                                   [](const IQStickerView* sticker) { return sticker->isShowingEditingHandles(); });
    return last == all.rend() ? nullptr : *last;
}

void StickerBoard::hideHandles(UIView& root) const
{
    for (IQStickerView* const sticker : listed(root))
        sticker->hideEditingHandles();
}

void StickerBoard::hideHandlesAndBorders(UIView& root) const
{
    for (IQStickerView* const sticker : listed(root)) {
        sticker->hideEditingHandles();
        sticker->setShowsBorder(false);
    }
}

void StickerBoard::bringToFront(UIView& root) const
{
    for (IQStickerView* const sticker : listed(root)) {
        if (UIView* const parent = sticker->superview())
            parent->bringSubviewToFront(*sticker);
    }
}

Stickers StickerBoard::stickers(const UIView& parent)
{
    Stickers values;
    for (const auto& view : parent.subviews()) {
        const auto* const sticker = dynamic_cast<const IQStickerView*>(view.get());
        if (const StickerPicture* const picture = sticker ? pictureOf(*sticker) : nullptr)
            values.push_back(valueOf(*sticker, *picture));
    }
    return values;
}

void StickerBoard::show(UIView& parent, const Stickers& stickers)
{
    leave(parent);
    for (const auto& view : std::vector(parent.subviews())) {
        if (dynamic_cast<const IQStickerView*>(view.get()))
            view->removeFromSuperview();
    }
    std::vector<IQStickerView*> made;
    for (const Sticker& sticker : stickers)
        made.push_back(&addView(parent, sticker));
    // All are made before one shows its handles: a new sticker makes none the active one.
    for (const bool active : {false, true}) {
        leave(parent);
        showHandles(parent, made, stickers, active);
    }
    for (IQStickerView* const sticker : made)
        sticker->setObserver(m_observer);
    std::erase_if(m_pictures, [](const auto& entry) { return entry.second->superview() == nullptr; });
}

} // namespace lamina
