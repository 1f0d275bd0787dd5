#pragma once

#include "platform/base/UIColor.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <span>
#include <string_view>

/// Frames as small pictures, drawn from their outlines for the screen that they are for. All square, at the main
/// screen's scale; empty for a number that is no frame's, an edge that is not positive and finite, or when memory is
/// short. From any thread.
namespace lamina {

/// What a frame's thumbnail is drawn in.
struct FrameColors {
    UIColor first; ///< the first slot
    UIColor rest;  ///< the others
    UIColor cut;   ///< lines between slots, and what no slot covers

    /// Two greys with dark cuts.
    static FrameColors plain();
    /// The accent's tones, for the frame in force.
    static FrameColors active();
};

/// A tile of `edge` points that shows how the frame divides a canvas of `side` points on a screen of `screenHeight`.
UIImage frameThumbnail(int frame, double side, double screenHeight, double edge, const FrameColors& colors);

/// The frame with one slot (from 0) lit, to stand beside that slot's number: in the accent for the slot that is
/// selected, else in grey. Cuts and what no slot covers are clear. Empty for a slot that the frame lacks.
UIImage frameSlotIcon(int frame, std::size_t slot, double side, double screenHeight, double edge, bool selected);

/// A collage of named pictures, one a slot, each as large as the canvas. Cuts and what no slot covers are clear, so
/// that the paper beneath is seen there.
UIImage framePrint(int frame, double side, double screenHeight, double edge,
                   std::span<const std::string_view> pictures);

} // namespace lamina
