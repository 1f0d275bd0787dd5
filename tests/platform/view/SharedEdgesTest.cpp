// Layers cut by paths that meet inside a pixel.
#include "LayerScene.h"
#include "platform/view/CAShapeLayer.h"

#include <vector>

namespace lamina::test {
namespace {

/// A layer of one row, cut at both ends.
struct Strip {
    double from;
    double to;
    UIColor color;
    double opacity = 1;
};

struct Meeting {
    const char* what;
    std::vector<Strip> strips; ///< the lowest first
    Rgba pixel;                ///< the third, with nothing beneath
    Rgba onGreen;
};

std::shared_ptr<CALayer> layerOf(const Strip& strip)
{
    auto layer = makeLayer({0, 0, 5, 1}, strip.color);
    layer->setOpacity(strip.opacity);
    const auto mask = std::make_shared<CAShapeLayer>();
    mask->setPath(UIBezierPath::withRect({strip.from, -1, strip.to - strip.from, 3}));
    layer->setMask(mask);
    return layer;
}

TEST(SharedEdges, WeighLayersByWhatEachCoversOfAPixel)
{
    const Meeting meetings[] = {
        {"side by side", {{0, 2.5, kRed}, {2.5, 5, kBlue}}, {128, 0, 128, 255}, {128, 0, 128, 255}},
        {"of three", {{0, 2.25, kRed}, {2.75, 5, kGreen}, {2.25, 2.75, kBlue}}, {64, 64, 128, 255}, {64, 64, 128, 255}},
        {"of three, each a third of a step more than its byte tells",
         {{0, 2.201307, kRed}, {2.402614, 5, kGreen}, {2.201307, 2.402614, kBlue}},
         {51, 152, 51, 255},
         {51, 152, 51, 255}},
        {"one over the other", {{0, 2.75, kRed}, {2.5, 5, kBlue}}, {128, 0, 128, 255}, {128, 0, 128, 255}},
        {"with a gap", {{0, 2.25, kRed}, {2.5, 5, kBlue}}, {64, 0, 128, 191}, {64, 64, 128, 255}},
        {"the upper half seen through", {{0, 2.5, kRed}, {2.5, 5, kBlue, 0.5}}, {128, 0, 64, 191}, {128, 64, 64, 255}},
        {"the lower half seen through", {{0, 2.5, kRed, 0.5}, {2.5, 5, kBlue}}, {64, 0, 128, 191}, {64, 64, 128, 255}},
        {"the upper half seen through, over the other",
         {{0, 2.75, kRed}, {2.5, 5, kBlue, 0.5}},
         {160, 0, 64, 223},
         {160, 32, 64, 255}},
        {"the upper not seen", {{0, 2.5, kRed}, {2.5, 5, kBlue, 0}}, {128, 0, 0, 128}, {128, 127, 0, 255}},
        {"over a full one", {{0, 5, kRed}, {2.5, 5, kBlue, 0.5}}, {191, 0, 64, 255}, {191, 0, 64, 255}},
    };
    for (const Meeting& meeting : meetings) {
        SCOPED_TRACE(meeting.what);
        const auto parent = makeLayer({0, 0, 5, 1});
        parent->setSharesEdges(true);
        parent->addSublayer(makeLayer({0, 0, 5, 1}, kGreen));
        for (const Strip& strip : meeting.strips)
            parent->addSublayer(layerOf(strip));
        EXPECT_TRUE(pixelMatches(rendered(*parent), 2, 0, meeting.onGreen, 1));
        parent->sublayers().front()->setHidden(true);
        const CGImage picture = rendered(*parent);
        EXPECT_TRUE(pixelMatches(picture, 2, 0, meeting.pixel, 1));
        EXPECT_EQ(pixelAt(picture, 2, 0)[3] == 255, meeting.pixel[3] == 255);
    }
}

TEST(SharedEdges, AreThoseOfNeighboursCutByPathsAlone)
{
    const auto parent = makeLayer({0, 0, 5, 1});
    parent->setSharesEdges(true);
    parent->addSublayer(layerOf({0, 2.5, kRed}));
    parent->addSublayer(makeLayer({0, 0, 1, 1}, kGreen));
    parent->addSublayer(layerOf({2.5, 5, kBlue}));
    EXPECT_TRUE(pixelMatches(rendered(*parent), 2, 0, {64, 0, 128, 191}, 1)); // each by itself
    parent->insertSublayer(parent->sublayers()[1], 2);
    EXPECT_TRUE(pixelMatches(rendered(*parent), 2, 0, {128, 0, 128, 255}, 1));
    parent->sublayers()[0]->mask()->setOpacity(0.5);
    EXPECT_TRUE(pixelMatches(rendered(*parent), 2, 0, {32, 0, 128, 159}, 1));
}

} // namespace
} // namespace lamina::test
