#include "ToldFrames.h"

#include "TestPictures.h"
#include "editors/frames/FramePictures.h"
#include "editors/frames/Frames.h"
#include "editors/frames/ThreeFramesViewController.h"
#include "editors/frames/TwoFramesViewController.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/image/named/NamedPictures.h"
#include "platform/view/CAShapeLayer.h"
#include "platform/view/ImageRendering.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <memory>

using namespace lamina;
using namespace lamina::test;

namespace {

constexpr std::array<Rgba, 4> kPaints{{{0, 0, 0, 0}, {255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}}};

/// Slots of one colour each on a clear canvas, as an editor builds them: the second, the first, then the third.
struct Canvas {
    std::shared_ptr<UIView> parent;
    std::vector<std::shared_ptr<UIView>> layers;

    Canvas(std::size_t photos, double side, const CGRect& slot)
        : parent(std::make_shared<UIView>(CGRect(0, 0, side, side)))
    {
        parent->setOpaque(false);
        for (std::size_t i = 0; i < photos; ++i) {
            layers.push_back(std::make_shared<UIView>(slot));
            const Rgba& paint = kPaints[i + 1];
            layers[i]->setBackgroundColor(UIColor{paint[0] / 255.0, paint[1] / 255.0, paint[2] / 255.0, 1});
            layers[i]->setClipsToBounds(true);
        }
        parent->addSubview(layers[1]);
        parent->addSubview(layers[0]);
        if (photos == 3)
            parent->addSubview(layers[2]);
    }

    void apply(int frame, const CGSize& screen)
    {
        const auto lay = [&](auto& frames, auto&... views) {
            frames.view().setFrame({{}, screen});
            frames.setLayout(frame, views..., *parent);
        };
        TwoFramesViewController two;
        ThreeFramesViewController three;
        layers.size() == 2 ? lay(two, *layers[0], *layers[1]) : lay(three, *layers[0], *layers[1], *layers[2]);
    }

    std::string order() const
    {
        std::string letters;
        for (const auto& view : parent->subviews())
            letters += static_cast<char>('A' + (std::find(layers.begin(), layers.end(), view) - layers.begin()));
        return letters;
    }
};

/// The slot that a shape shows at a point; -1: none.
int slotOf(const FrameShape& shape, CGPoint p)
{
    const auto slot = std::find_if(shape.order.rbegin(), shape.order.rend(), [&](std::size_t i) {
        return shape.slot.contains(p) && shape.outlines[i].contains(p);
    });
    return slot == shape.order.rend() ? -1 : static_cast<int>(*slot);
}

} // namespace

TEST(Frames, ShowEachSlotWhereItWasDrawnUp)
{
    for (const int frame : toldFrames()) {
        ASSERT_TRUE(isFrame(frame));
        ASSERT_NE(frameName(frame)[0], '\0');
        for (const double side : {320.0, 375.0, 414.0, 430.0})
            for (const double height : {812.0, 480.0, side, side / 2}) {
                if (height <= side && !goesByHeight(frame))
                    continue;
                SCOPED_TRACE(testing::Message() << frame << " on " << side << " x " << height);
                const ToldCanvas told(frame, side, height);
                Canvas canvas(photosOf(frame), side, told.square());
                canvas.apply(frame, {side, height});
                EXPECT_EQ(canvas.order(), toldOrder(frame));
                const CGImage picture = imageByRenderingView(*canvas.parent, 1).cgImage();
                const FrameShape shape = frameShape(frame, side, height);
                for (int y = 0; y < picture.height(); y += 5)
                    for (int x = y * 3 % 7; x < picture.width(); x += 7) {
                        const CGPoint centre{x + 0.5, y + 0.5};
                        if (told.hasLineWithin(1.5, centre))
                            continue;
                        const int slot = told.slotAt(centre);
                        const Rgba& paint = kPaints[static_cast<std::size_t>(slot + 1)];
                        ASSERT_TRUE(pixelMatches(picture, x, y, paint, 2)) << x << ", " << y;
                        ASSERT_EQ(slotOf(shape, centre), slot) << x << ", " << y;
                    }
            }
    }
}

TEST(Frames, MeasureEachCornerFromTheSideThatItNames)
{
    constexpr double kOpacity = 1.7;
    const UIColor yellow{1, 1, 0, 1};
    const UIColor green{0, 1, 0, 1};
    const std::map<std::string, CALayer::Shadow> styles{
        {"S12", {yellow, kOpacity, {12, 12}, 4}}, {"Y2", {yellow, kOpacity, {2, 2}, 6}},
        {"Y9", {yellow, kOpacity, {9, 9}, 6}},    {"G2", {green, kOpacity, {2, 2}, 4}},
        {"G12", {green, kOpacity, {12, 12}, 4}},  {"g12", {green, kOpacity, {12, 12}, 10}}};
    const Sizes sizes{{{301, 313}, {331, 347}, {359, 367}, {389, 811}}};
    for (const ToldMask& told : toldMasks()) {
        SCOPED_TRACE(testing::Message() << told.frame << told.slot);
        Canvas canvas(photosOf(told.frame), 400, {});
        for (std::size_t i = 0; i < canvas.layers.size(); ++i)
            canvas.layers[i]->setFrame({{}, sizes[i]});
        canvas.apply(told.frame, sizes[3]);
        const auto* const mask = dynamic_cast<const CAShapeLayer*>(
            canvas.layers[static_cast<std::size_t>(told.slot - 'A')]->layer().mask().get());
        ASSERT_TRUE(mask);
        EXPECT_EQ(mask->bounds(), CGRect({}, sizes[static_cast<std::size_t>(told.boundsOf - 'A')]));
        EXPECT_EQ(mask->transformToParent(), CGAffineTransform());
        EXPECT_EQ(mask->shadow(), styles.at(told.style));
        const std::vector<CGPoint> corners = toldCorners(told, sizes);
        const auto& elements = mask->path().elements();
        ASSERT_EQ(elements.size(), corners.size());
        for (std::size_t i = 0; i < corners.size(); ++i) {
            EXPECT_NEAR(elements[i].end.x, corners[i].x, 1e-9) << i;
            EXPECT_NEAR(elements[i].end.y, corners[i].y, 1e-9) << i;
        }
    }
}

TEST(Frames, RoundSlotsKeepTheirCentresAndPhotos)
{
    for (const ToldRound& told : toldRounds()) {
        Canvas canvas(photosOf(told.frame), 320, {10, 20, 320, 320});
        UIView& slot = *canvas.layers[static_cast<std::size_t>(told.slot - 'A')];
        const auto photo = std::make_shared<UIView>(CGRect(0, 0, 320, 320));
        slot.addSubview(photo);
        canvas.apply(told.frame, {320, 812});
        EXPECT_EQ(slot.center(), (CGPoint{170, 180}));
        EXPECT_NEAR(slot.bounds().size.width, 320 * told.part, 1e-4);
        EXPECT_EQ(slot.layer().cornerRadius(), slot.bounds().size.height / 2);
        EXPECT_EQ(photo->frame(), CGRect(0, 0, 320, 320));
        ASSERT_TRUE(slot.layer().mask());
        EXPECT_EQ(slot.layer().mask()->bounds(), slot.bounds());
        EXPECT_TRUE(slot.layer().mask()->contents());
        EXPECT_EQ(slot.layer().mask()->shadow(), CALayer::Shadow());
    }
    UIView view({0, 0, 100, 100});
    ThreeFramesViewController().setRoundedView(view, 50);
    EXPECT_FALSE(view.layer().mask()->contents()) << "the picture is there once its frame was asked for";
}

/// The mask's own edge must lie outside the corners' everywhere, or the two soften the circle twice.
TEST(Frames, ARoundSlotsEdgeIsThatOfItsCorners)
{
    Canvas canvas(2, 320, {0, 0, 320, 320});
    canvas.apply(2005, {320, 812});
    const CGImage masked = imageByRenderingView(*canvas.parent, 3).cgImage();
    for (const auto& slot : canvas.layers)
        slot->layer().setMask(nullptr);
    EXPECT_TRUE(imagesMatch(masked, imageByRenderingView(*canvas.parent, 3).cgImage(), 1));
}

TEST(Frames, ChangeOnlyWhatTheyName)
{
    Canvas canvas(2, 375, {0, 0, 375, 375});
    canvas.apply(2001, {375, 812});
    const auto mask = canvas.layers[0]->layer().mask();
    for (const int unknown : {1999, 2008, 3001, 0}) {
        EXPECT_EQ(photosOf(unknown), unknown == 3001 ? 3U : 0U);
        canvas.parent->bringSubviewToFront(*canvas.layers[1]);
        const auto other = canvas.layers[1]->layer().mask();
        canvas.apply(unknown, {375, 812});
        EXPECT_EQ(canvas.order(), "AB");
        EXPECT_EQ(canvas.layers[1]->layer().mask(), other);
    }
    canvas.apply(2006, {375, 812});
    EXPECT_EQ(canvas.layers[0]->layer().mask(), mask) << "a view without a row keeps its mask";

    Canvas three(3, 375, {0, 0, 375, 375});
    three.apply(3010, {375, 812});
    EXPECT_EQ(three.order(), "CBA") << "whatever the number";
    EXPECT_FALSE(three.layers[0]->layer().mask());
    EXPECT_TRUE(frameShape(3010, 375, 812).outlines.empty());
    EXPECT_FALSE(frameThumbnail(2008, 375, 812, 75, FrameColors::plain()));
    EXPECT_FALSE(frameThumbnail(2000, 375, 812, -1, FrameColors::plain()));
    EXPECT_FALSE(frameSlotIcon(2000, 2, 375, 812, 22, true));
}

TEST(Frames, AreSeenInTheirSmallPictures)
{
    const FrameColors colors = FrameColors::plain();
    const auto bytes = [](const UIColor& c) {
        const auto byte = [](double v) { return static_cast<std::uint8_t>(v * 255 + 0.5); };
        return Rgba{byte(c.red), byte(c.green), byte(c.blue), byte(c.alpha)};
    };
    const CGImage tile = frameThumbnail(3004, 375, 812, 75, colors).cgImage();
    ASSERT_EQ(tile.width(), 225);
    EXPECT_TRUE(pixelMatches(tile, 112, 40, bytes(colors.first)));
    EXPECT_TRUE(pixelMatches(tile, 40, 180, bytes(colors.rest)));
    EXPECT_TRUE(pixelMatches(tile, 112, 180, bytes(colors.cut)));
    EXPECT_TRUE(pixelMatches(frameThumbnail(2005, 375, 812, 75, colors).cgImage(), 2, 2, bytes(colors.cut)));

    const CGImage icon = frameSlotIcon(3004, 2, 375, 812, 20, false).cgImage();
    const CGImage selected = frameSlotIcon(3004, 2, 375, 812, 20, true).cgImage();
    EXPECT_EQ(pixelAt(icon, 10, 10), pixelAt(icon, 10, 50));
    EXPECT_NE(pixelAt(icon, 50, 50), pixelAt(icon, 10, 10));
    EXPECT_NE(pixelAt(icon, 50, 50), pixelAt(selected, 50, 50));
    EXPECT_TRUE(pixelMatches(icon, 30, 45, {0, 0, 0, 0}));

    const std::array<std::string_view, 2> art{"SCREENbg", "SCREEN2bg"};
    const CGImage print = framePrint(2003, 375, 375, 100, art).cgImage();
    const CGImage first = imageNamed(art[0], {100, 100}).cgImage();
    const CGImage second = imageNamed(art[1], {100, 100}).cgImage();
    EXPECT_TRUE(pixelMatches(print, 60, 200, pixelAt(first, 60, 200), 1));
    EXPECT_TRUE(pixelMatches(print, 240, 90, pixelAt(second, 240, 90), 1));
    EXPECT_TRUE(pixelMatches(print, 150, 150, {0, 0, 0, 0}));
}
