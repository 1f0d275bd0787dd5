#include "editors/frames/FrameTable_p.h"

#include "platform/base/UIColor.h"

#include <QtGlobal>

#include <algorithm>

namespace lamina {

namespace {

using Corner = FrameCorner;

constexpr std::size_t A = 0;
constexpr std::size_t B = 1;
constexpr std::size_t C = 2;

constexpr FrameTerm aw(A, false);
constexpr FrameTerm ah(A, true);
constexpr FrameTerm bw(B, false);
constexpr FrameTerm bh(B, true);
constexpr FrameTerm cw(C, false);
constexpr FrameTerm ch(C, true);
constexpr FrameTerm pw(FrameSizes::kScreen, false);
constexpr FrameTerm ph(FrameSizes::kScreen, true);

constexpr UIColor kYellow{1, 1, 0, 1};
constexpr UIColor kGreen{0, 1, 0, 1};

// Values that masks carry and never draw.
constexpr CALayer::Shadow shadow(const UIColor& color, double offset, double radius)
{
    return {color, 1.7, {offset, offset}, radius};
}
constexpr CALayer::Shadow S12 = shadow(kYellow, 12, 4);
constexpr CALayer::Shadow Y2 = shadow(kYellow, 2, 6);
constexpr CALayer::Shadow Y9 = shadow(kYellow, 9, 6);
constexpr CALayer::Shadow G2 = shadow(kGreen, 2, 4);
constexpr CALayer::Shadow G12OfTwo = shadow(kGreen, 12, 4);
constexpr CALayer::Shadow G12OfThree = shadow(kGreen, 12, 10);

// Polygons of two frames.
constexpr Corner kRightOfZigzag[] = {
    {pw / 2, 0}, {pw / 2 + 60, aw / 4}, {pw / 2, aw / 2}, {pw / 2 + 60, 3 * aw / 4}, {pw / 2, aw}, {aw, ah}, {aw, 0}};
constexpr Corner kWedge[] = {{0, ah / 2 + 20}, {aw / 2 + 30, ph / 2 - 80}, {aw / 2, ah}, {0, ah}, {0, ah / 2 + 20}};

// 2000
constexpr Corner kBelowDiagonal[] = {{0, ah}, {0, 0}, {aw, ah}, {0, ah}};
constexpr Corner kAboveDiagonal[] = {{bw, 0}, {0, 0}, {bw, bw}, {bw, 0}};
constexpr FrameMask kDiagonal[] = {{A, kBelowDiagonal, A, S12}, {B, kAboveDiagonal, B, G12OfTwo}};

// 2001
constexpr Corner kLeftOfZigzag[] = {
    {pw / 2, 0}, {pw / 2 + 60, aw / 4}, {pw / 2, aw / 2}, {pw / 2 + 60, 3 * aw / 4}, {pw / 2, aw}, {0, ah}, {0, 0}};
constexpr FrameMask kUprightZigzag[] = {{B, kRightOfZigzag, A, Y9}, {A, kLeftOfZigzag, A, G2}};

// 2002
constexpr Corner kBelowZigzag[] = {
    {0, pw / 2}, {aw / 4, pw / 2 + 60}, {aw / 2, pw / 2}, {3 * aw / 4, pw / 2 + 60}, {aw, pw / 2}, {ah, aw}, {0, aw}};
constexpr Corner kAboveZigzag[] = {
    {0, pw / 2}, {aw / 4, pw / 2 + 60}, {aw / 2, pw / 2}, {3 * aw / 4, pw / 2 + 60}, {aw, pw / 2}, {ah, 0}, {0, 0}};
constexpr FrameMask kLyingZigzag[] = {{B, kBelowZigzag, A, Y9}, {A, kAboveZigzag, A, G2}};

// 2003: the line ends at the screen's foot.
constexpr Corner kLeftHalf[] = {{pw / 2, 0}, {aw / 2, ph}, {0, ah}, {0, 0}, {pw / 2, 0}};
constexpr Corner kRightHalf[] = {{pw / 2, 0}, {aw / 2, ph}, {bw, bh}, {bw, 0}, {0, 0}};
constexpr FrameMask kSideBySide[] = {{A, kLeftHalf, A, G2}, {B, kRightHalf, A, G2}};

// 2004: the line slants where the screen isn't square.
constexpr Corner kUpperPart[] = {{0, 0}, {0, ph / 2}, {aw, ah / 2}, {aw, 0}, {0, 0}};
constexpr Corner kLowerPart[] = {{0, bh / 2}, {0, ph}, {bw, bh}, {bw, bh / 2}, {0, bh / 2}};
constexpr FrameMask kAboveEachOther[] = {{A, kUpperPart, A, G2}, {B, kLowerPart, A, G2}};

// 2005
constexpr FrameRound kCircleInCircle[] = {{A, aw}, {B, bw / 2}};

// 2006
constexpr Corner kDiamond[] = {{0, bh / 2}, {bw / 2, bh}, {bw, bh / 2}, {bw / 2, 0}, {0, bh / 2}};
constexpr FrameMask kDiamondOver[] = {{B, kDiamond, B, Y9}};

// 2007
constexpr FrameMask kWedgeOver[] = {{B, kWedge, A, G2}};

// 3000
constexpr Corner kLeftColumn[] = {{0, 0}, {aw / 3, 0}, {aw / 3, ah}, {0, ah}, {0, 0}};
constexpr Corner kMiddleColumn[] = {{bw / 3, 0}, {2 * bw / 3, 0}, {2 * bw / 3, bh}, {bw / 3, bh}, {bw / 3, 0}};
constexpr Corner kRightColumn[] = {{2 * cw / 3, 0}, {2 * cw / 3, ch}, {cw, ch}, {cw, 0}, {2 * bw / 3, 0}};
constexpr FrameMask kColumns[] = {
    {A, kLeftColumn, A, Y2}, {B, kMiddleColumn, B, G12OfThree}, {C, kRightColumn, B, G12OfThree}};

// 3001
constexpr Corner kUpperRow[] = {{0, 0}, {0, ah / 3}, {aw, ah / 3}, {aw, 0}, {0, 0}};
constexpr Corner kMiddleRow[] = {{0, bw / 3}, {0, 2 * bh / 3}, {bw, 2 * bh / 3}, {bw, bh / 3}, {0, bw / 3}};
constexpr Corner kLowerRow[] = {{0, 2 * cw / 3}, {0, ch}, {cw, ch}, {cw, 2 * ch / 3}, {0, 2 * cw / 3}};
constexpr FrameMask kRows[] = {{A, kUpperRow, A, Y2}, {B, kMiddleRow, B, G12OfThree}, {C, kLowerRow, B, G12OfThree}};

// 3002
constexpr Corner kLeftOfCentre[] = {{0, 0}, {aw / 2, ah / 2}, {0, ah}, {0, 0}};
constexpr Corner kBelowCentre[] = {{0, bh}, {bw / 2, bh / 2}, {bw, bh}, {0, bh}};
constexpr Corner kAboveCentre[] = {{0, 0}, {cw, ch}, {cw, 0}, {0, 0}};
constexpr FrameMask kAboutCentre[] = {
    {A, kLeftOfCentre, A, Y2}, {B, kBelowCentre, B, G12OfThree}, {C, kAboveCentre, B, G12OfThree}};

// 3003
constexpr Corner kFromTopLeft[] = {{0, 0}, {aw / 2, ah}, {0, ah}, {0, 0}};
constexpr Corner kFromTopEdge[] = {{0, 0}, {bw / 2, bh}, {bw, 0}, {0, 0}};
constexpr Corner kFromTopRight[] = {{cw, ch}, {cw / 2, ch}, {cw, 0}, {cw, ch}};
constexpr FrameMask kFromTop[] = {
    {A, kFromTopLeft, A, Y2}, {B, kFromTopEdge, B, G12OfThree}, {C, kFromTopRight, B, G12OfThree}};

// 3004
constexpr Corner kUpperHalf[] = {{0, 0}, {0, ah / 2}, {aw, ah / 2}, {aw, 0}, {0, 0}};
constexpr Corner kLowerLeft[] = {{0, bh / 2}, {bw / 2, bh / 2}, {bw / 2, bh}, {0, bh}, {0, bh / 2}};
constexpr Corner kLowerRight[] = {{cw, ch / 2}, {cw / 2, ch / 2}, {cw / 2, ch}, {cw, ch}, {cw, ch}};
constexpr FrameMask kHalfAboveQuarters[] = {
    {A, kUpperHalf, A, Y2}, {B, kLowerLeft, B, G12OfThree}, {C, kLowerRight, B, G12OfThree}};

// 3005
constexpr Corner kLeftHalfOfThree[] = {{0, 0}, {aw / 2, 0}, {aw / 2, ah}, {0, ah}, {0, 0}};
constexpr Corner kUpperRight[] = {{bw, 0}, {bw / 2, 0}, {bw / 2, bh / 2}, {bw, bh / 2}, {bw, 0}, {bw / 2, 0}};
constexpr Corner kLowerRightClosed[] = {{cw, ch / 2}, {cw / 2, ch / 2}, {cw / 2, ch}, {cw, ch}, {cw, ch / 2}};
constexpr FrameMask kHalfBesideQuarters[] = {
    {A, kLeftHalfOfThree, A, Y2}, {B, kUpperRight, B, G12OfThree}, {C, kLowerRightClosed, B, G12OfThree}};

// 3006
constexpr Corner kLeftZigzagColumn[] = {{aw / 3 - 20, 0},
                                        {aw / 3 + 20, ah / 4},
                                        {aw / 3 - 20, ah / 2},
                                        {aw / 3 + 20, 3 * ah / 4},
                                        {aw / 3 - 20, ah},
                                        {0, ah},
                                        {0, 0},
                                        {aw / 3 - 20, 0}};
constexpr Corner kMiddleZigzagColumn[] = {{bw / 3 - 20, 0},
                                          {bw / 3 + 20, bh / 4},
                                          {bw / 3 - 20, bh / 2},
                                          {bw / 3 + 20, 3 * bh / 4},
                                          {bw / 3 - 20, bh},
                                          {2 * bw / 3 + 20, bh},
                                          {2 * bw / 3 - 20, 3 * bh / 4},
                                          {2 * bw / 3 + 20, bh / 2},
                                          {2 * bw / 3 - 20, bh / 4},
                                          {2 * bw / 3 + 20, 0},
                                          {bw / 3 - 20, 0}};
constexpr Corner kRightZigzagColumn[] = {{cw, ch},
                                         {2 * bw / 3 + 20, bh},
                                         {2 * bw / 3 - 20, 3 * bh / 4},
                                         {2 * bw / 3 + 20, bh / 2},
                                         {2 * bw / 3 - 20, bh / 4},
                                         {2 * bw / 3 + 20, 0},
                                         {cw, 0},
                                         {cw, ch},
                                         {cw, ch}};
constexpr FrameMask kZigzagColumns[] = {
    {A, kLeftZigzagColumn, A, Y2}, {B, kMiddleZigzagColumn, B, G12OfThree}, {C, kRightZigzagColumn, B, G12OfThree}};

// 3007
constexpr Corner kUpperZigzagRow[] = {{0, aw / 3 - 20},
                                      {ah / 4, aw / 3 + 20},
                                      {ah / 2, aw / 3 - 20},
                                      {3 * ah / 4, aw / 3 + 20},
                                      {ah, aw / 3 - 20},
                                      {ah, 0},
                                      {0, 0},
                                      {0, aw / 3 - 20}};
constexpr Corner kMiddleZigzagRow[] = {{0, bw / 3 - 20},
                                       {bh / 4, bw / 3 + 20},
                                       {bh / 2, bw / 3 - 20},
                                       {3 * bh / 4, bw / 3 + 20},
                                       {bh, bw / 3 - 20},
                                       {bh, 2 * bw / 3 + 20},
                                       {3 * bh / 4, 2 * bw / 3 - 20},
                                       {bh / 2, 2 * bw / 3 + 20},
                                       {bh / 4, 2 * bw / 3 - 20},
                                       {0, 2 * bw / 3 + 20},
                                       {0, bw / 3 - 20}};
constexpr Corner kLowerZigzagRow[] = {{cw, ch},
                                      {bh, 2 * bw / 3 + 20},
                                      {3 * bh / 4, 2 * bw / 3 - 20},
                                      {bh / 2, 2 * bw / 3 + 20},
                                      {bh / 4, 2 * bw / 3 - 20},
                                      {0, 2 * bw / 3 + 20},
                                      {0, cw},
                                      {cw, ch}};
constexpr FrameMask kZigzagRows[] = {
    {A, kUpperZigzagRow, A, Y2}, {B, kMiddleZigzagRow, B, G12OfThree}, {C, kLowerZigzagRow, B, G12OfThree}};

// 3008
constexpr FrameRound kThreeCircles[] = {{A, aw}, {B, 2 * bw / 3}, {C, cw / 3}};

// 3009
constexpr FrameMask kWedgeAndZigzag[] = {{B, kWedge, A, G2}, {C, kRightOfZigzag, A, Y9}};

constexpr std::size_t kRaisesA[] = {A};
constexpr std::size_t kRaisesB[] = {B};
constexpr std::size_t kRaisesBAC[] = {B, A, C};
constexpr std::size_t kRaisesABC[] = {A, B, C};

constexpr std::array<FrameRow, 18> kFrames{{
    {2000, QT_TRANSLATE_NOOP("Lamina", "Diagonal"), kDiagonal, {}, {}},
    {2001, QT_TRANSLATE_NOOP("Lamina", "Zigzag, upright"), kUprightZigzag, {}, kRaisesA},
    {2002, QT_TRANSLATE_NOOP("Lamina", "Zigzag, across"), kLyingZigzag, {}, {}},
    {2003, QT_TRANSLATE_NOOP("Lamina", "Side by side"), kSideBySide, {}, kRaisesA},
    {2004, QT_TRANSLATE_NOOP("Lamina", "One above the other"), kAboveEachOther, {}, kRaisesA},
    {2005, QT_TRANSLATE_NOOP("Lamina", "Circle in a circle"), {}, kCircleInCircle, kRaisesB},
    {2006, QT_TRANSLATE_NOOP("Lamina", "Diamond"), kDiamondOver, {}, kRaisesB},
    {2007, QT_TRANSLATE_NOOP("Lamina", "Wedge in the corner"), kWedgeOver, {}, kRaisesB},
    {3000, QT_TRANSLATE_NOOP("Lamina", "Three columns"), kColumns, {}, kRaisesBAC},
    {3001, QT_TRANSLATE_NOOP("Lamina", "Three rows"), kRows, {}, {}},
    {3002, QT_TRANSLATE_NOOP("Lamina", "Triangles round the middle"), kAboutCentre, {}, {}},
    {3003, QT_TRANSLATE_NOOP("Lamina", "Triangles from the top"), kFromTop, {}, {}},
    {3004, QT_TRANSLATE_NOOP("Lamina", "One above two"), kHalfAboveQuarters, {}, {}},
    {3005, QT_TRANSLATE_NOOP("Lamina", "One beside two"), kHalfBesideQuarters, {}, {}},
    {3006, QT_TRANSLATE_NOOP("Lamina", "Zigzag columns"), kZigzagColumns, {}, {}},
    {3007, QT_TRANSLATE_NOOP("Lamina", "Zigzag rows"), kZigzagRows, {}, {}},
    {3008, QT_TRANSLATE_NOOP("Lamina", "Three circles"), {}, kThreeCircles, kRaisesABC},
    {3009, QT_TRANSLATE_NOOP("Lamina", "Wedge and zigzag"), kWedgeAndZigzag, {}, kRaisesABC},
}};

} // namespace

std::span<const FrameRow> frameTable()
{
    return kFrames;
}

const FrameRow* findFrame(int number)
{
    const auto* const row =
        std::find_if(kFrames.begin(), kFrames.end(), [number](const FrameRow& r) { return r.number == number; });
    return row == kFrames.end() ? nullptr : row;
}

UIBezierPath maskPath(const FrameMask& mask, const FrameSizes& sizes)
{
    UIBezierPath path;
    for (const FrameCorner& corner : mask.corners)
        path.addLineToPoint({corner.x.in(sizes), corner.y.in(sizes)});
    return path;
}

float roundDiameter(const FrameRound& round, const FrameSizes& sizes)
{
    return static_cast<float>(round.diameter.in(sizes));
}

} // namespace lamina
