#include "ToldFrames.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace lamina::test {

namespace {

const std::string kZigzag = "P.w/2,0 P.w/2+60,A.w/4 P.w/2,A.w/2 P.w/2+60,3A.w/4 P.w/2,A.w ";
const std::string kWaves = "0,P.w/2 A.w/4,P.w/2+60 A.w/2,P.w/2 3A.w/4,P.w/2+60 A.w,P.w/2 ";
const std::string kCorner = "0,A.h/2+20 A.w/2+30,P.h/2-80 A.w/2,A.h 0,A.h 0,A.h/2+20";
const std::string kLeftOfB = "B.u-20,0 B.u+20,B.h/4 B.u-20,B.h/2 B.u+20,3B.h/4 B.u-20,B.h ";
const std::string kRightOfB = "B.v+20,B.h B.v-20,3B.h/4 B.v+20,B.h/2 B.v-20,B.h/4 B.v+20,0 ";
const std::string kTopOfB = "0,B.u-20 B.h/4,B.u+20 B.h/2,B.u-20 3B.h/4,B.u+20 B.h,B.u-20 ";
const std::string kFootOfB = "B.h,B.v+20 3B.h/4,B.v-20 B.h/2,B.v+20 B.h/4,B.v-20 0,B.v+20 ";

const std::vector<ToldMask> kMasks{
    {2000, 'A', 'A', "S12", "0,A.h 0,0 A.w,A.h 0,A.h"},
    {2000, 'B', 'B', "G12", "B.w,0 0,0 B.w,B.w B.w,0"},
    {2001, 'B', 'A', "Y9", kZigzag + "A.w,A.h A.w,0"},
    {2001, 'A', 'A', "G2", kZigzag + "0,A.h 0,0"},
    {2002, 'B', 'A', "Y9", kWaves + "A.h,A.w 0,A.w"},
    {2002, 'A', 'A', "G2", kWaves + "A.h,0 0,0"},
    {2003, 'A', 'A', "G2", "P.w/2,0 A.w/2,P.h 0,A.h 0,0 P.w/2,0"},
    {2003, 'B', 'A', "G2", "P.w/2,0 A.w/2,P.h B.w,B.h B.w,0 0,0"},
    {2004, 'A', 'A', "G2", "0,0 0,P.h/2 A.w,A.h/2 A.w,0 0,0"},
    {2004, 'B', 'A', "G2", "0,B.h/2 0,P.h B.w,B.h B.w,B.h/2 0,B.h/2"},
    {2006, 'B', 'B', "Y9", "0,B.h/2 B.w/2,B.h B.w,B.h/2 B.w/2,0 0,B.h/2"},
    {2007, 'B', 'A', "G2", kCorner},
    {3000, 'A', 'A', "Y2", "0,0 A.u,0 A.u,A.h 0,A.h 0,0"},
    {3000, 'B', 'B', "g12", "B.u,0 B.v,0 B.v,B.h B.u,B.h B.u,0"},
    {3000, 'C', 'B', "g12", "C.v,0 C.v,C.h C.w,C.h C.w,0 B.v,0"},
    {3001, 'A', 'A', "Y2", "0,0 0,A.h/3 A.w,A.h/3 A.w,0 0,0"},
    {3001, 'B', 'B', "g12", "0,B.w/3 0,2B.h/3 B.w,2B.h/3 B.w,B.h/3 0,B.w/3"},
    {3001, 'C', 'B', "g12", "0,2C.w/3 0,C.h C.w,C.h C.w,2C.h/3 0,2C.w/3"},
    {3002, 'A', 'A', "Y2", "0,0 A.w/2,A.h/2 0,A.h 0,0"},
    {3002, 'B', 'B', "g12", "0,B.h B.w/2,B.h/2 B.w,B.h 0,B.h"},
    {3002, 'C', 'B', "g12", "0,0 C.w,C.h C.w,0 0,0"},
    {3003, 'A', 'A', "Y2", "0,0 A.w/2,A.h 0,A.h 0,0"},
    {3003, 'B', 'B', "g12", "0,0 B.w/2,B.h B.w,0 0,0"},
    {3003, 'C', 'B', "g12", "C.w,C.h C.w/2,C.h C.w,0 C.w,C.h"},
    {3004, 'A', 'A', "Y2", "0,0 0,A.h/2 A.w,A.h/2 A.w,0 0,0"},
    {3004, 'B', 'B', "g12", "0,B.h/2 B.w/2,B.h/2 B.w/2,B.h 0,B.h 0,B.h/2"},
    {3004, 'C', 'B', "g12", "C.w,C.h/2 C.w/2,C.h/2 C.w/2,C.h C.w,C.h C.w,C.h"},
    {3005, 'A', 'A', "Y2", "0,0 A.w/2,0 A.w/2,A.h 0,A.h 0,0"},
    {3005, 'B', 'B', "g12", "B.w,0 B.w/2,0 B.w/2,B.h/2 B.w,B.h/2 B.w,0 B.w/2,0"},
    {3005, 'C', 'B', "g12", "C.w,C.h/2 C.w/2,C.h/2 C.w/2,C.h C.w,C.h C.w,C.h/2"},
    {3006, 'A', 'A', "Y2", "A.u-20,0 A.u+20,A.h/4 A.u-20,A.h/2 A.u+20,3A.h/4 A.u-20,A.h 0,A.h 0,0 A.u-20,0"},
    {3006, 'B', 'B', "g12", kLeftOfB + kRightOfB + "B.u-20,0"},
    {3006, 'C', 'B', "g12", "C.w,C.h " + kRightOfB + "C.w,0 C.w,C.h C.w,C.h"},
    {3007, 'A', 'A', "Y2", "0,A.u-20 A.h/4,A.u+20 A.h/2,A.u-20 3A.h/4,A.u+20 A.h,A.u-20 A.h,0 0,0 0,A.u-20"},
    {3007, 'B', 'B', "g12", kTopOfB + kFootOfB + "0,B.u-20"},
    {3007, 'C', 'B', "g12", "C.w,C.h " + kFootOfB + "0,C.w C.w,C.h"},
    {3009, 'B', 'A', "G2", kCorner},
    {3009, 'C', 'A', "Y9", kZigzag + "A.w,A.h A.w,0"},
};

const std::vector<ToldRound> kRounds{
    {2005, 'A', 1}, {2005, 'B', 1 / 2.0}, {3008, 'A', 1}, {3008, 'B', 2 / 3.0}, {3008, 'C', 1 / 3.0}};

/// "3A.w/4+20", "A.u-20" or a plain number.
double value(const char* text, const Sizes& sizes)
{
    char* end = nullptr;
    double result = std::strtod(text, &end);
    const bool counted = end != text;
    if (*end >= 'A') {
        const CGSize& size = sizes[*end == 'P' ? 3 : static_cast<std::size_t>(*end - 'A')];
        const double third = size.width / 3;
        const char side = end[2];
        const double length = side == 'w'   ? size.width
                              : side == 'h' ? size.height
                              : side == 'u' ? third
                                            : third + third;
        result = (counted ? result : 1) * length;
        end += 3;
    }
    if (*end == '/')
        result /= std::strtod(end + 1, &end);
    return result + std::strtod(end, nullptr);
}

} // namespace

std::span<const ToldMask> toldMasks()
{
    return kMasks;
}

std::span<const ToldRound> toldRounds()
{
    return kRounds;
}

std::vector<CGPoint> toldCorners(const ToldMask& mask, const Sizes& sizes)
{
    std::vector<CGPoint> corners;
    std::istringstream words(mask.corners);
    for (std::string word; words >> word;) {
        const std::size_t comma = word.find(',');
        corners.push_back({value(word.substr(0, comma).c_str(), sizes), value(word.c_str() + comma + 1, sizes)});
    }
    return corners;
}

std::string toldOrder(int frame)
{
    if (frame < 3000)
        return frame >= 2005 ? "AB" : "BA";
    return frame == 3000 ? "BAC" : frame >= 3008 ? "ABC" : "CBA";
}

std::vector<int> toldFrames()
{
    return {2000, 2001, 2002, 2003, 2004, 2005, 2006, 2007, 3000, 3001, 3002, 3003, 3004, 3005, 3006, 3007, 3008, 3009};
}

bool goesByHeight(int frame)
{
    return std::any_of(kMasks.begin(), kMasks.end(), [frame](const ToldMask& mask) {
        return mask.frame == frame && mask.corners.find("P.h") != std::string::npos;
    });
}

ToldCanvas::ToldCanvas(int frame, double side, double screenHeight)
    : m_square(screenHeight == 480 ? CGRect(50, 50, side - 100, side - 100) : CGRect(0, 0, side, side))
{
    const CGSize size = m_square.size;
    for (const char letter : toldOrder(frame)) {
        Piece piece{letter - 'A', {}, 0};
        for (const ToldMask& mask : kMasks)
            if (mask.frame == frame && mask.slot == letter)
                piece.corners = toldCorners(mask, {size, size, size, {side, screenHeight}});
        for (CGPoint& corner : piece.corners)
            corner = {corner.x + m_square.minX(), corner.y + m_square.minY()};
        for (const ToldRound& round : kRounds)
            if (round.frame == frame && round.slot == letter)
                piece.radius = size.width * round.part / 2;
        m_pieces.insert(m_pieces.begin(), piece);
    }
}

bool ToldCanvas::contains(const Piece& piece, CGPoint p) const
{
    if (piece.radius > 0)
        return std::hypot(p.x - m_square.midX(), p.y - m_square.midY()) < piece.radius;
    bool inside = piece.corners.empty();
    for (std::size_t i = 0; i < piece.corners.size(); ++i) {
        const CGPoint a = piece.corners[i];
        const CGPoint b = piece.corners[(i + 1) % piece.corners.size()];
        if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (p.y - a.y) / (b.y - a.y) * (b.x - a.x))
            inside = !inside;
    }
    return inside;
}

double ToldCanvas::distance(const Piece& piece, CGPoint p) const
{
    if (piece.radius > 0)
        return std::abs(std::hypot(p.x - m_square.midX(), p.y - m_square.midY()) - piece.radius);
    double least = 1e9;
    for (std::size_t i = 0; i < piece.corners.size(); ++i)
        least = std::min(least, distanceFromLine(piece.corners[i], piece.corners[(i + 1) % piece.corners.size()], p));
    return least;
}

int ToldCanvas::slotAt(CGPoint p) const
{
    const auto piece = std::find_if(m_pieces.begin(), m_pieces.end(),
                                    [&](const Piece& each) { return m_square.contains(p) && contains(each, p); });
    return piece == m_pieces.end() ? -1 : piece->slot;
}

bool ToldCanvas::changesWithin(double reach, CGPoint p) const
{
    const int slot = slotAt(p);
    for (int i = 0; i < 8; ++i) {
        const double angle = i * 0.78539816;
        if (slotAt({p.x + reach * std::cos(angle), p.y + reach * std::sin(angle)}) != slot)
            return true;
    }
    return false;
}

bool ToldCanvas::hasLineWithin(double reach, CGPoint p) const
{
    const CGRect inner = m_square.insetBy(reach, reach);
    const CGRect outer = m_square.insetBy(-reach, -reach);
    return (outer.contains(p) && !inner.contains(p)) ||
           std::any_of(m_pieces.begin(), m_pieces.end(),
                       [&](const Piece& piece) { return distance(piece, p) < reach; });
}

double distanceFromLine(CGPoint from, CGPoint to, CGPoint p)
{
    const double x = to.x - from.x;
    const double y = to.y - from.y;
    const double square = x * x + y * y;
    const double t = square > 0 ? std::clamp(((p.x - from.x) * x + (p.y - from.y) * y) / square, 0.0, 1.0) : 0;
    return std::hypot(p.x - from.x - t * x, p.y - from.y - t * y);
}

} // namespace lamina::test
