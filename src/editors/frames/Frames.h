#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <cstddef>
#include <vector>

/// The frames that divide a square canvas among two or three photos, as values: their numbers, names and outlines.
/// `TwoFramesViewController` and `ThreeFramesViewController` lay them on views by the same table. From any thread.
namespace lamina {

/// The number of the first frame of two photos; the others follow without a gap.
inline constexpr int kTwoFrames = 2000;
inline constexpr int kTwoFramesCount = 8;
/// The same of three photos.
inline constexpr int kThreeFrames = 3000;
inline constexpr int kThreeFramesCount = 10;

/// Whether there is a frame of that number.
bool isFrame(int frame);
/// How many photos a frame is for, 2 or 3; 0 for a number that is none's.
std::size_t photosOf(int frame);
/// What a frame is called, in English; translated where it is shown or read out. Empty for a number that is none's.
const char* frameName(int frame);

/// Where the slots of a canvas of `side` points stand: the whole of it, or on a screen of exactly 480 points' height a
/// square smaller by 100 in the canvas's middle.
CGRect frameSlot(double side, double screenHeight);

/// How a frame divides a canvas, in the canvas's points. Slots count from 0.
struct FrameShape {
    /// The square in which every slot stands, and beyond which none is seen: `frameSlot`.
    CGRect slot;
    /// Of each slot, to be filled by the non-zero rule and cut at `slot`, beyond which it may reach: polygons, circles,
    /// and the square itself for a slot that the frame leaves whole.
    std::vector<UIBezierPath> outlines;
    /// The slots from the lowest to the topmost: outlines may overlap.
    std::vector<std::size_t> order;
};

/// The frame on a canvas of `side` points and a screen of that width and of `screenHeight`, from which some of its
/// lines are measured. Without outlines for a number that is none's.
FrameShape frameShape(int frame, double side, double screenHeight);

/// The lines along which a frame cuts its photos, as far as they can be seen: without what lies on the edge of
/// `shape.slot` and without what a slot above hides; a line that two slots share is there once. To be stroked in any
/// width and cut at `shape.slot`: ends that lie on its edge are carried beyond it, so that the stroke is whole there.
/// Empty where the slot's sides are not positive and finite.
UIBezierPath frameCuts(const FrameShape& shape);

} // namespace lamina
