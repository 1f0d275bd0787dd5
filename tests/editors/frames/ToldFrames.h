#pragma once

#include "TestPaths.h"
#include "platform/base/CGGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

// The frames as they were drawn up (tests/data/frames.table), and what is to be seen of them.

namespace lamina::test {

/// The sizes of the three slots' frames, then of the screen.
using Sizes = std::array<CGSize, 4>;

/// "3A.w/4+20", "A.u-20" or a plain number.
inline double toldLength(const std::string& text, const Sizes& sizes)
{
    char* at = nullptr;
    double result = std::strtod(text.c_str(), &at);
    if (*at >= 'A') {
        const CGSize& size = sizes[*at == 'P' ? 3 : static_cast<std::size_t>(*at - 'A')];
        const double third = size.width / 3;
        const std::array lengths{size.height, third, third + third, size.width};
        result = (at == text.c_str() ? 1 : result) * lengths[std::string("huvw").find(at[2])];
        at += 3;
    }
    if (*at == '/')
        result /= std::strtod(at + 1, &at);
    return result + std::strtod(at, nullptr);
}

/// A masked slot, by the table's columns.
struct ToldMask {
    int frame = 0;
    char slot = 0;
    char boundsOf = 0;
    std::string color;
    double offset = 0;
    double radius = 0;
    std::vector<std::string> corners;

    std::vector<CGPoint> cornersIn(const Sizes& sizes) const
    {
        std::vector<CGPoint> points;
        for (const std::string& corner : corners)
            points.push_back({toldLength(corner.substr(0, corner.find(',')), sizes),
                              toldLength(corner.substr(corner.find(',') + 1), sizes)});
        return points;
    }
};

/// One frame of the table.
struct ToldFrame {
    int number;
    std::string order;
    std::vector<ToldMask> masks;

    /// Whether a line goes by the screen's height.
    bool goesByHeight() const { return number == 2003 || number == 2004 || number == 2007 || number == 3009; }
};

inline std::vector<ToldFrame> toldFrames()
{
    std::vector<ToldFrame> frames;
    std::ifstream file(testData("frames.table"));
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        ToldMask mask;
        std::string word;
        if (!(words >> mask.frame >> word))
            continue;
        if (word == "order") {
            words >> word;
            frames.push_back({mask.frame, word, {}});
            continue;
        }
        mask.slot = word[0];
        words >> mask.boundsOf >> mask.color >> mask.offset >> mask.radius;
        while (words >> word)
            mask.corners.push_back(word);
        frames.back().masks.push_back(mask);
    }
    return frames;
}

/// What is seen of a frame on a canvas of `side` points.
class ToldCanvas {
public:
    ToldCanvas(const ToldFrame& frame, double side, double screenHeight)
        : square(screenHeight == 480 ? CGRect(50, 50, side - 100, side - 100) : CGRect(0, 0, side, side))
    {
        for (const char letter : frame.order)
            m_pieces.insert(m_pieces.begin(), {letter - 'A', {}, 0});
        const Sizes sizes{square.size, square.size, square.size, {side, screenHeight}};
        for (const ToldMask& mask : frame.masks) {
            Piece& piece = *std::find_if(m_pieces.begin(), m_pieces.end(),
                                         [&](const Piece& each) { return each.slot == mask.slot - 'A'; });
            if (mask.color == "round")
                piece.radius = toldLength(mask.corners[0], sizes) / 2;
            else
                piece.corners = mask.cornersIn(sizes);
        }
    }

    /// In which all slots stand.
    const CGRect square;

    /// The slot that is seen at a point of the square, by the even-odd rule; -1: none.
    int slotAt(CGPoint p) const
    {
        for (const Piece& piece : m_pieces)
            if (piece.contains({p.x - square.minX(), p.y - square.minY()}, square.size.width / 2))
                return piece.slot;
        return -1;
    }

    /// Whether another slot, or none, is seen so far off in one of sixteen directions within the square.
    bool changesWithin(double reach, CGPoint p) const
    {
        const int slot = slotAt(p);
        for (double angle = 0; angle < 6.28; angle += 0.39269908) {
            const CGPoint q{p.x + reach * std::cos(angle), p.y + reach * std::sin(angle)};
            if (square.contains(q) && slotAt(q) != slot)
                return true;
        }
        return false;
    }

private:
    struct Piece {
        int slot;
        std::vector<CGPoint> corners; ///< none: a circle of some radius, or the whole square
        double radius;

        bool contains(CGPoint p, double centre) const
        {
            if (radius > 0)
                return std::hypot(p.x - centre, p.y - centre) < radius;
            bool inside = corners.empty();
            for (std::size_t i = 0; i < corners.size(); ++i) {
                const CGPoint a = corners[i];
                const CGPoint b = corners[(i + 1) % corners.size()];
                if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (p.y - a.y) / (b.y - a.y) * (b.x - a.x))
                    inside = !inside;
            }
            return inside;
        }
    };
    std::vector<Piece> m_pieces; ///< the topmost first
};

} // namespace lamina::test
