#include "editors/stickers/StickerEditing.h"

#include "editors/stickers/StickerCatalogue.h"

#include <algorithm>
#include <utility>

namespace lamina {

/// Makes steps of what happens to stickers.
class StickerEditing::Observer : public IQStickerObserver {
public:
    explicit Observer(StickerSteps steps)
        : m_steps(std::move(steps))
    {
    }

    void stickerDidChange(IQStickerView&) override { m_steps.changed(); }
    void stickerDidEnd(IQStickerView&, EditSeries series) override { m_steps.ended(series); }
    void stickerWasTapped(IQStickerView&) override { m_steps.ended(EditSeries::None); }
    void stickerWasDeleted(IQStickerView&) override { m_steps.ended(EditSeries::None); }

private:
    StickerSteps m_steps;
};

StickerEditing::StickerEditing(int firstTag, StickerSteps steps)
    : m_board(firstTag)
    , m_observer(std::make_shared<Observer>(std::move(steps)))
{
    m_board.setObserver(m_observer);
}

StickerEditing::~StickerEditing()
{
    leave();
}

void StickerEditing::show(std::shared_ptr<UIView> parent, const Stickers& stickers)
{
    leave();
    m_parent = std::move(parent);
    m_board.show(*m_parent, stickers);
}

void StickerEditing::leave()
{
    if (m_parent)
        StickerBoard::leave(*m_parent);
}

Stickers StickerEditing::stickers() const
{
    return m_parent ? StickerBoard::stickers(*m_parent) : Stickers();
}

void StickerEditing::openStrip(const StickerStripLayout& layout)
{
    m_strip = std::make_unique<StickerStrip>(layout);
}

void StickerEditing::add(std::size_t index, StickerPlace place)
{
    if (m_parent)
        m_board.add(*m_parent, stickerCatalogue()[index].name, place);
}

IQStickerView* StickerEditing::selected() const
{
    return m_parent ? m_board.selected(*m_parent) : nullptr;
}

void StickerEditing::move(UIView& sticker, CGPoint by)
{
    if (auto* const moved = dynamic_cast<IQStickerView*>(&sticker))
        moved->moveBy(by.x, by.y);
}

void StickerEditing::deleteSelected()
{
    if (IQStickerView* const sticker = selected())
        sticker->close();
}

void StickerEditing::hideHandles()
{
    if (m_parent)
        m_board.hideHandles(*m_parent);
}

void StickerEditing::hideHandlesAndBorders()
{
    if (m_parent)
        m_board.hideHandlesAndBorders(*m_parent);
}

void StickerEditing::bringToFront()
{
    if (m_parent)
        m_board.bringToFront(*m_parent);
}

std::function<void()> StickerEditing::hideForPrint() const
{
    std::vector<std::shared_ptr<UIView>> hidden;
    std::vector<IQStickerView*> bordered;
    const auto listed = m_parent ? m_board.listed(*m_parent) : std::vector<IQStickerView*>();
    for (IQStickerView* const sticker : listed) {
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

void StickerEditing::finish(Stickers& stickers)
{
    for (Sticker& sticker : stickers)
        sticker.border = sticker.handles = sticker.active = false;
}

void StickerEditing::sortByTag(Stickers& stickers)
{
    std::stable_sort(stickers.begin(), stickers.end(),
                     [](const Sticker& one, const Sticker& other) { return one.tag < other.tag; });
}

} // namespace lamina
