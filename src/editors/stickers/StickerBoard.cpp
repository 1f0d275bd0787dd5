#include "editors/stickers/StickerBoard.h"

#include "platform/base/CGGeometry.h"
#include "editors/stickers/StickerPicture.h"

#include <cstddef>
#include <algorithm>
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

} // namespace

/// The border belongs to the content, which comes last: one that joins a tree later would have none.
IQStickerView& StickerBoard::addView(UIView& parent, int tag, std::string_view name) const
{
    const auto sticker = std::make_shared<IQStickerView>(CGRect{0, 0, kNewSide, kNewSide});
    parent.addSubview(sticker);
    sticker->setTag(tag);
    sticker->setContentView(std::make_shared<StickerPicture>(std::string(name)));
    return *sticker;
}

IQStickerView& StickerBoard::add(UIView& parent, std::string_view name, StickerPlace place)
{
    const int tag = m_stickerHandleTag;
    list(tag);
    IQStickerView& sticker = addView(parent, tag, name);
    const CGSize canvas = parent.frame().size;
    if (place == StickerPlace::Middle)
        sticker.setCenter({canvas.width / 2, canvas.height / 2});
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
    // All are made before one shows its handles: a new sticker makes none the active one.
    std::vector<IQStickerView*> made;
    for (const Sticker& sticker : stickers) {
        list(sticker.tag);
        made.push_back(&restore(parent, sticker));
    }
    const auto showHandles = [&](bool active) {
        for (std::size_t i = 0; i < made.size(); ++i) {
            if (!stickers[i].handles || stickers[i].active != active)
                continue;
            made[i]->showEditingHandles();
            if (!active)
                leave(parent);
        }
    };
    showHandles(false);
    showHandles(true);
    for (IQStickerView* const sticker : made)
        sticker->setObserver(m_observer);
}

IQStickerView& StickerBoard::restore(UIView& parent, const Sticker& value) const
{
    IQStickerView& sticker = addView(parent, value.tag, value.name);
    sticker.setBounds({{}, value.size});
    sticker.setCenter(value.center);
    sticker.setTransform(value.transform);
    sticker.setShowsBorder(value.border);
    return sticker;
}

} // namespace lamina
