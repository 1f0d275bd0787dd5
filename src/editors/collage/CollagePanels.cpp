#include "editors/collage/CollagePanels.h"

#include <utility>

namespace lamina {

namespace collagepanel {

namespace {

constexpr double kToolStep = 60.0;
constexpr double kLayoutStep = 85.0;
constexpr double kLayoutSide = 75.0;
constexpr double kStripHeight = 50.0;

constexpr double kTallScreen = 812.0;

/// In a row that begins 5 points from its strip's edge.
double inRow(std::size_t index, double step)
{
    return 5.0 + static_cast<double>(index) * step;
}

} // namespace

CGRect toolIcon(std::size_t index)
{
    return {inRow(index, kToolStep), 10.0, 40.0, 40.0};
}

CGRect toolLabel(std::size_t index)
{
    return {inRow(index, kToolStep), 55.0, 44.0, 10.0};
}

CGSize toolBarContentSize(std::size_t tools)
{
    return {kToolStep * static_cast<double>(tools), 40.0};
}

CGRect hiddenStrip(CGSize screen)
{
    return {0, screen.height, screen.width, kStripHeight};
}

CGRect shownTools(CGSize screen)
{
    return {0, screen.height - 145.0, screen.width, kStripHeight};
}

CGRect shownStrip(CGSize screen)
{
    return {0, screen.height - 200.0, screen.width, 80.0};
}

CGRect layoutThumbnail(std::size_t index)
{
    return {inRow(index, kLayoutStep), 0, kLayoutSide, kLayoutSide};
}

CGSize layoutsContentSize(std::size_t layouts)
{
    return {kLayoutStep * static_cast<double>(layouts), kLayoutSide};
}

CGRect createdEffects(CGSize screen)
{
    return {0, screen.height - 170.0, screen.width, 170.0};
}

CGRect shownEffects(CGSize screen)
{
    return {0, screen.height - 204.0, screen.width, 170.0};
}

CGRect hiddenEffects(CGSize screen)
{
    return {0, screen.height, screen.width, 200.0};
}

CGRect hiddenFrame(CGSize screen, CGSize slot)
{
    return {0, screen.height, slot.width, slot.height};
}

CGRect shownFrame(CGSize screen)
{
    const double rise = screen.height >= kTallScreen ? 196.0 : 162.0;
    return {0, screen.height - rise, screen.width, 100.0};
}

} // namespace collagepanel

namespace {

bool isSeen(const CollagePanel& panel, CGSize screen)
{
    return panel.isInView && panel.frame.value().origin.y < screen.height;
}

bool isSeen(const std::shared_ptr<CollagePanel>& panel, CGSize screen)
{
    return panel && isSeen(*panel, screen);
}

void raise(CollagePanel& panel, const CGRect& frame)
{
    panel.frame = frame;
    panel.isInView = true;
}

} // namespace

void CollagePanels::layOut(CGSize screen)
{
    raise(toolSubView, collagepanel::shownTools(screen));
    raise(fxView, collagepanel::createdEffects(screen));
    fxView.frame = collagepanel::hiddenEffects(screen);
}

void CollagePanels::close(CGSize screen, CGSize slot)
{
    frameView.isInView = false;
    frameView.frame = collagepanel::hiddenFrame(screen, slot);
    toolSubView.frame = collagepanel::hiddenStrip(screen);
    toolSubView.background = UIColor::clear();
    toolSubView.isInView = false;
    filterViewHidden = true;
    subScrollView.reset();
    stickerScrollView.reset();
}

std::shared_ptr<CollagePanel> CollagePanels::makeStrip(CGSize screen)
{
    auto strip = std::make_shared<CollagePanel>();
    strip->frame = collagepanel::hiddenStrip(screen);
    return strip;
}

void CollagePanels::openLayouts(CGSize screen)
{
    raise(*subScrollView, collagepanel::shownStrip(screen));
}

void CollagePanels::openTools(CGSize screen)
{
    raise(toolSubView, collagepanel::shownTools(screen));
}

void CollagePanels::openFilters()
{
    filterViewHidden = false;
    filterViewBottomConstraint = collagepanel::kOpenFilters;
}

void CollagePanels::openEffects(CGSize screen)
{
    raise(fxView, collagepanel::shownEffects(screen));
    toolBarScrollViewHidden = true;
}

void CollagePanels::openStickers(CGSize screen)
{
    raise(*stickerScrollView, collagepanel::shownStrip(screen));
}

void CollagePanels::openFrame(CGSize screen)
{
    raise(frameView, collagepanel::shownFrame(screen));
    frameView.background = UIColor::black();
}

void CollagePanels::closeEffects(CGSize screen)
{
    fxView.frame = collagepanel::hiddenEffects(screen);
}

void CollagePanels::effectsClosed(CGSize screen, bool finished)
{
    if (finished)
        fxView.isInView = false;
    toolBarScrollViewHidden = isSeen(fxView, screen);
}

const char* CollagePanels::shown(CGSize screen) const
{
    const std::pair<bool, const char*> panels[] = {
        {isSeen(fxView, screen), "effects"},       {isSeen(frameView, screen), "frame"},
        {isSeen(subScrollView, screen), "layout"}, {isSeen(stickerScrollView, screen), "stickers"},
        {isSeen(toolSubView, screen), "tools"},    {!filterViewHidden, "filter"},
    };
    for (const auto& [seen, name] : panels) {
        if (seen)
            return name;
    }
    return "";
}

} // namespace lamina
