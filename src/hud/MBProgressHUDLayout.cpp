// Where the parts of a progress HUD stand. Of what can't all be had the first in this order wins: margins within the
// panel; margins around it; the indicator's size; the panel's place, least size and squareness; the size of texts and
// buttons.
#include "hud/MBProgressHUD.h"

#include "platform/base/CGGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace lamina {

namespace {

/// Between two parts that are seen.
constexpr double kPadding = 4;

/// What the view takes in lines no wider than `width`.
CGSize sizeWithin(const UIView& view, double width)
{
    const auto* const label = dynamic_cast<const UILabel*>(&view);
    CGSize size = label && label->numberOfLines() != 1 ? label->sizeThatFits({width, 0}) : view.intrinsicContentSize();
    if (size.width < 0)
        size.width = view.bounds().size.width;
    if (size.height < 0)
        size.height = view.bounds().size.height;
    return {std::min(std::ceil(size.width), width), std::ceil(size.height)};
}

double roomBetween(double length, double margin)
{
    return std::max(0.0, length - 2 * margin);
}

/// Clear of both ends by `margin` where there is room, else in the middle.
double keptWithin(double center, double side, double length, double margin)
{
    const double nearest = margin + side / 2;
    return nearest <= length - nearest ? std::clamp(center, nearest, length - nearest) : length / 2;
}

} // namespace

/// The parts one below the other.
struct MBProgressHUD::Column {
    struct Part {
        UIView* view;
        CGSize size;
        double gap; ///< above it
    };
    std::vector<Part> parts;

    CGSize size() const
    {
        CGSize whole;
        for (const Part& part : parts) {
            whole.width = std::max(whole.width, part.size.width);
            whole.height += part.gap + part.size.height;
        }
        return whole;
    }

    /// Takes what doesn't fit into `height` from the parts, the first of `order` first.
    void squeeze(double height, std::initializer_list<const UIView*> order)
    {
        double excess = size().height - height;
        for (const UIView* const view : order) {
            const auto part = std::ranges::find(parts, view, &Part::view);
            if (part == parts.end() || excess <= 0)
                continue;
            const double taken = std::min(excess, part->size.height);
            part->size.height -= taken;
            excess -= taken;
        }
    }
};

MBProgressHUD::Column MBProgressHUD::column(double width) const
{
    Column column;
    bool seenAbove = false;
    const std::array<UIView*, 5> views{m_indicator.get(), m_label.get(), m_detailsLabel.get(), m_choiceButton.get(),
                                       m_button.get()};
    for (UIView* const view : views) {
        if (!view)
            continue;
        const CGSize size = sizeWithin(*view, width);
        const bool isSeen = !view->isHidden() && size != CGSize();
        column.parts.push_back({view, size, isSeen && seenAbove ? kPadding : 0});
        seenAbove = seenAbove || isSeen;
    }
    return column;
}

/// Around `content`, within `room` but for the margins inside.
CGSize MBProgressHUD::panelSize(CGSize content, CGSize room) const
{
    const CGSize least{2 * m_margin, 2 * m_margin};
    CGSize panel{std::max(content.width + least.width, m_minSize.width),
                 std::max(content.height + least.height, m_minSize.height)};
    if (m_square) {
        const double side = std::min({std::max(panel.width, panel.height), room.width, room.height});
        const CGSize indicator = m_indicator ? sizeWithin(*m_indicator, content.width) : CGSize();
        panel = {std::max(side, indicator.width + least.width), std::max(side, indicator.height + least.height)};
    }
    return {std::max(std::min(panel.width, room.width), least.width),
            std::max(std::min(panel.height, room.height), least.height)};
}

CGPoint MBProgressHUD::panelCenter(CGSize panel) const
{
    const CGSize all = bounds().size;
    const double x = keptWithin(all.width / 2 + m_offset.x, panel.width, all.width, m_margin);
    const double y = keptWithin(all.height / 2 + m_offset.y, panel.height, all.height, m_margin);
    // The corner on a whole point: edges and texts are sharp then.
    return {bounds().minX() + std::round(x - panel.width / 2) + panel.width / 2,
            bounds().minY() + std::round(y - panel.height / 2) + panel.height / 2};
}

void MBProgressHUD::layoutNow()
{
    const CGSize room{roomBetween(bounds().size.width, m_margin), roomBetween(bounds().size.height, m_margin)};
    const CGSize planned = panelSize(column(roomBetween(room.width, m_margin)).size(), room);
    // A panel that had to become narrower has its texts broken anew.
    Column parts = column(planned.width - 2 * m_margin);
    const CGSize panel = panelSize(parts.size(), room);
    parts.squeeze(panel.height - 2 * m_margin,
                  {m_detailsLabel.get(), m_label.get(), m_choiceButton.get(), m_button.get(), m_indicator.get()});
    m_bezelView->setBounds({{}, panel});
    m_bezelView->setCenter(panelCenter(panel));
    double y = (panel.height - parts.size().height) / 2;
    for (const Column::Part& part : parts.parts) {
        part.view->setBounds({part.view->bounds().origin, part.size});
        part.view->setCenter({panel.width / 2, y + part.gap + part.size.height / 2});
        y += part.gap + part.size.height;
    }
}

void MBProgressHUD::setNeedsLayout()
{
    if (m_layoutDue || m_layingOut)
        return;
    m_layoutDue = true;
    m_layoutTimer = DispatchTimer(DispatchQueue::main(), 0, [this] { layoutIfNeeded(); });
}

void MBProgressHUD::layoutIfNeeded()
{
    if (!m_layoutDue || m_layingOut)
        return;
    m_layoutTimer.cancel();
    m_layingOut = true;
    layoutNow();
    m_layingOut = false;
    m_layoutDue = false;
}

void MBProgressHUD::setFrame(const CGRect& frame)
{
    UIView::setFrame(frame);
    setNeedsLayout();
}

void MBProgressHUD::setBounds(const CGRect& bounds)
{
    UIView::setBounds(bounds);
    setNeedsLayout();
}

} // namespace lamina
