#pragma once

#include "platform/base/CGGeometry.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

// The frames as they were drawn up, in words of their own: what the code's table is compared with.

namespace lamina::test {

/// The sizes of the three slots' frames, then of the screen.
using Sizes = std::array<CGSize, 4>;

/// A masked slot: its letter, whose bounds the mask has, its shadow's style, and the corners as "x,y x,y ...", where
/// "3A.w/4+20" is three quarters of the first slot's width and 20 points, "A.u" a third and "A.v" two thirds of it.
struct ToldMask {
    int frame;
    char slot;
    char boundsOf;
    std::string style;
    std::string corners;
};
std::span<const ToldMask> toldMasks();
std::vector<CGPoint> toldCorners(const ToldMask& mask, const Sizes& sizes);

/// A round slot and its diameter as a part of its width.
struct ToldRound {
    int frame;
    char slot;
    double part;
};
std::span<const ToldRound> toldRounds();

/// The slots' letters from the lowest to the topmost.
std::string toldOrder(int frame);

/// All numbers of frames.
std::vector<int> toldFrames();

/// Whether a line of the frame goes by the screen's height.
bool goesByHeight(int frame);

/// What is seen of a frame on a canvas of `side` points.
class ToldCanvas {
public:
    ToldCanvas(int frame, double side, double screenHeight);

    /// In which all slots stand.
    CGRect square() const { return m_square; }
    /// The slot that is seen at a point, by the even-odd rule; -1: none.
    int slotAt(CGPoint p) const;
    /// Whether another slot, or none, is seen in one of eight directions.
    bool changesWithin(double reach, CGPoint p) const;
    /// Whether a line of the frame, seen or not, comes so close.
    bool hasLineWithin(double reach, CGPoint p) const;

private:
    struct Piece {
        int slot;
        std::vector<CGPoint> corners; ///< none: a circle of some radius, or the whole square
        double radius = 0;
    };
    bool contains(const Piece& piece, CGPoint p) const;
    double distance(const Piece& piece, CGPoint p) const;

    CGRect m_square;
    std::vector<Piece> m_pieces; ///< the topmost first
};

/// Of a point from a straight line between two.
double distanceFromLine(CGPoint from, CGPoint to, CGPoint p);

} // namespace lamina::test
