#include "LayerScene.h"
#include "platform/view/CanvasRenderer.h"
#include "platform/view/UILabel.h"

#include <cmath>

namespace lamina::test {
namespace {

std::shared_ptr<UILabel> label(const std::string& text, const CGRect& frame = {10, 10, 120, 40})
{
    auto label = std::make_shared<UILabel>(frame);
    label->setText(text);
    label->setFont({"DejaVu Sans", 20});
    return label;
}

double areaOf(const UIView& root, double scale)
{
    return coveredArea(rendered(root.layer(), scale)) / (scale * scale);
}

TEST(Label, IsMeasuredAndFittedAlikeAtEveryScaleAndTurn)
{
    const auto root = std::make_shared<UIView>(CGRect(0, 0, 140, 140));
    const auto text = label("Blend", {40, 50, 70, 40});
    root->addSubview(text);
    const double area = areaOf(*root, 1);
    EXPECT_GT(area, 150);
    EXPECT_NEAR(areaOf(*root, 3), area, 0.01 * area);
    text->setTransform(CGAffineTransform::rotation(0.7));
    EXPECT_NEAR(areaOf(*root, 1.7), area, 0.01 * area);
    text->setTransform({});
    text->setTextColor({1, 0, 0, 0.5});
    EXPECT_NEAR(areaOf(*root, 1), area / 2, 0.01 * area);

    const CGSize size = text->sizeThatFits({0, 0});
    text->sizeToFit();
    EXPECT_EQ(text->frame().origin, CGPoint(40, 50));
    EXPECT_EQ(text->bounds().size, size);
    EXPECT_NEAR(areaOf(*root, 1), area / 2, 0.01 * area); // nothing is cut short
    text->setText("");
    EXPECT_EQ(areaOf(*root, 1), 0);
    EXPECT_EQ(text->sizeThatFits({0, 0}), CGSize());
}

TEST(Label, SeveralLinesAndSmallerLettersFitWhereOneLineDoesNot)
{
    const std::string words = "One photo shines through";
    const auto inkOf = [](const UILabel& view) { return view.layer().paintedBounds(); };
    const auto text = label(words);
    const double line = text->sizeThatFits({0, 0}).height;
    text->setNumberOfLines(0);
    EXPECT_NEAR(text->sizeThatFits({120, 0}).height, 3 * line, 0.1);
    EXPECT_LE(text->sizeThatFits({120, 0}).width, 120);
    EXPECT_NEAR(inkOf(*text).midY(), 20, line / 4); // in the middle, beyond the bounds too

    text->setNumberOfLines(1);
    const double cut = inkOf(*text).size.height;
    text->setAdjustsFontSizeToFitWidth(true);
    EXPECT_NEAR(inkOf(*text).size.height / cut, 120 / text->sizeThatFits({0, 0}).width, 0.1);
    EXPECT_GT(inkOf(*text).maxX(), 116);
    text->setMinimumScaleFactor(0.9);
    EXPECT_NEAR(inkOf(*text).size.height / cut, 0.9, 0.02);
    EXPECT_LE(inkOf(*text).maxX(), 121);
}

TEST(Label, WhatChangesIsPaintedAgain)
{
    const auto root = std::make_shared<UIView>(CGRect(0, 0, 140, 60));
    const auto text = label("75 %");
    root->addSubview(text);
    CanvasRenderer canvas(root, 2);
    canvas.render();
    const auto follows = [&](auto change) {
        change();
        EXPECT_FALSE(canvas.render().isEmpty());
        EXPECT_TRUE(imagesMatch(canvas.image(), rendered(root->layer(), 2)));
    };
    follows([&] { text->setText("100 %"); });
    follows([&] { text->setTextAlignment(NSTextAlignment::Right); });
    follows([&] { text->setBounds({0, 0, 30, 40}); });
    follows([&] { text->setLineBreakMode(NSLineBreakMode::TruncatingHead); });
    follows([&] { text->setFont({"DejaVu Sans", 9}); });
    text->setText("100 %");
    EXPECT_FALSE(canvas.needsRender());
}

} // namespace
} // namespace lamina::test
