#include "editors/frames/Frames.h"

#include "editors/frames/FrameTable_p.h"
#include "editors/frames/FrameTerms_p.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace lamina {

namespace {

/// The screen's height that has room for less, and what a slot's sides lose on it.
constexpr double kShortScreen = 480;
constexpr double kShortScreenLoss = 100;

CGRect centredSquare(const CGRect& around, double side)
{
    return {around.midX() - side / 2, around.midY() - side / 2, side, side};
}

FrameShape wholeSlots(const FrameRow& row, const CGRect& slot)
{
    const std::size_t photos = photosOf(row);
    FrameShape shape{slot, std::vector(photos, UIBezierPath::withRect(slot)), {}};
    std::copy_if(kFirstOnTop.begin(), kFirstOnTop.end(), std::back_inserter(shape.order),
                 [photos](std::size_t i) { return i < photos; });
    for (const std::size_t i : row.raised) {
        std::erase(shape.order, i);
        shape.order.push_back(i);
    }
    return shape;
}

} // namespace

bool isFrame(int frame)
{
    return findFrame(frame) != nullptr;
}

std::size_t photosOf(int frame)
{
    const FrameRow* const row = findFrame(frame);
    return row ? photosOf(*row) : 0;
}

const char* frameName(int frame)
{
    const FrameRow* const row = findFrame(frame);
    return row ? row->name : "";
}

CGRect frameSlot(double side, double screenHeight)
{
    return centredSquare({0, 0, side, side}, screenHeight == kShortScreen ? side - kShortScreenLoss : side);
}

FrameShape frameShape(int frame, double side, double screenHeight)
{
    const CGRect slot = frameSlot(side, screenHeight);
    const FrameRow* const row = findFrame(frame);
    if (!row)
        return {slot, {}, {}};
    FrameShape shape = wholeSlots(*row, slot);
    const FrameSizes sizes{{slot.size, slot.size, slot.size, {side, screenHeight}}};
    for (const FrameMask& mask : row->masks) {
        UIBezierPath outline = maskPath(mask, sizes);
        outline.applyTransform(CGAffineTransform::translation(slot.minX(), slot.minY()));
        shape.outlines[mask.slot] = std::move(outline);
    }
    for (const FrameRound& round : row->rounds)
        shape.outlines[round.slot] = UIBezierPath::withOvalIn(centredSquare(slot, roundDiameter(round, sizes)));
    return shape;
}

} // namespace lamina
