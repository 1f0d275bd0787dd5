#include "HudBench.h"
#include "hud/MBBarProgressView.h"
#include "hud/MBProgressHUD.h"
#include "hud/MBRoundProgressView.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/view/UIActivityIndicatorView.h"

#include <limits>
#include <string>
#include <typeinfo>

namespace lamina::test {
namespace {

using Mode = MBProgressHUDMode;

std::shared_ptr<MBProgressHUD> hudWith(CGSize indicator, CGSize size = {360, 720})
{
    auto hud = std::make_shared<MBProgressHUD>(CGRect{{}, size});
    hud->setMode(Mode::CustomView);
    hud->setCustomView(indicator == CGSize() ? nullptr : std::make_shared<UIView>(CGRect{{}, indicator}));
    return hud;
}

CGRect panelOf(MBProgressHUD& hud)
{
    hud.layoutIfNeeded();
    return hud.bezelView().frame();
}

TEST(HudLayout, ThePanelGivesWayToMarginsAndKeepsItsIndicator)
{
    constexpr CGSize kUpright{360, 720};
    constexpr CGSize kLying{720, 360};
    const double kNaN = std::numeric_limits<double>::quiet_NaN();
    const struct {
        CGSize size, indicator;
        CGPoint offset;
        double margin;
        CGSize minSize;
        bool square;
        CGRect panel;
    } cases[] = {
        {kUpright, {}, {}, 20, {}, false, {160, 340, 40, 40}},
        {kUpright, {100, 50}, {}, 20, {}, false, {110, 315, 140, 90}},
        {kUpright, {100, 50}, {}, 0, {}, false, {130, 335, 100, 50}},
        {kUpright, {100, 50}, {30, -50}, 20, {}, false, {140, 265, 140, 90}},
        {kUpright, {100, 50}, {1000, 1000}, 20, {}, false, {200, 610, 140, 90}},
        {kUpright, {100, 50}, {kNaN, 0}, kNaN, {kNaN, 0}, false, {110, 315, 140, 90}},
        {kUpright, {100, 50}, {}, 20, {200, 10}, false, {80, 315, 200, 90}},
        {kUpright, {100, 50}, {}, 20, {1000, 1000}, false, {20, 20, 320, 680}},
        {kUpright, {100, 50}, {}, 20, {}, true, {110, 290, 140, 140}},
        {kLying, {500, 50}, {}, 20, {}, true, {90, 20, 540, 320}},
        {kUpright, {400, 50}, {}, 20, {}, false, {20, 315, 320, 90}},
        {kUpright, {50, 900}, {}, 20, {}, false, {135, 20, 90, 680}},
        {{30, 30}, {10, 10}, {}, 20, {}, false, {-5, -5, 40, 40}},
    };
    for (const auto& [size, indicator, offset, margin, minSize, square, panel] : cases) {
        const auto hud = hudWith(indicator, size);
        hud->setOffset(offset);
        hud->setMargin(margin);
        hud->setMinSize(minSize);
        hud->setSquare(square);
        const CGRect found = panelOf(*hud);
        EXPECT_EQ(found, panel) << found.origin.x << ' ' << found.origin.y << ' ' << found.size.width << ' '
                                << found.size.height;
    }
}

/// The gaps above the parts from the second on, the part's height before each: "37 4 20 ...".
std::string columnOf(MBProgressHUD& hud)
{
    hud.layoutIfNeeded();
    std::string column;
    double end = hud.margin();
    for (const UIView* const part :
         std::initializer_list<const UIView*>{hud.indicator(), &hud.label(), &hud.detailsLabel(), &hud.button()}) {
        if (!part)
            continue;
        column += std::to_string(static_cast<int>(part->frame().minY() - end)) +
                  (part->bounds().size.height > 0 ? "+ " : " ");
        end = part->frame().maxY();
    }
    EXPECT_EQ(end + hud.margin(), hud.bezelView().bounds().size.height);
    return column;
}

TEST(HudLayout, GapsStandBetweenPartsThatShow)
{
    const auto hud = hudWith({50, 50});
    EXPECT_EQ(columnOf(*hud), "0+ 0 0 0 ");
    hud->button().setTitle("Cancel");
    EXPECT_EQ(columnOf(*hud), "0+ 0 0 4+ ");
    hud->label().setText("Please wait");
    EXPECT_EQ(columnOf(*hud), "0+ 4+ 0 4+ ");
    hud->label().setHidden(true);
    hud->setNeedsLayout();
    EXPECT_EQ(columnOf(*hud), "0+ 0+ 0 4+ ");
    hud->setMode(Mode::Text);
    hud->label().setHidden(false);
    hud->detailsLabel().setText(std::string(200, 'm'));
    EXPECT_EQ(columnOf(*hud), "0+ 4+ 4+ ");
    EXPECT_LE(hud->bezelView().bounds().size.width, 320);
    EXPECT_GT(hud->detailsLabel().bounds().size.height, 50) << "broken into lines";
    hud->setFrame({0, 0, 360, 150});
    EXPECT_EQ(panelOf(*hud).size.height, 110);
    EXPECT_EQ(hud->button().bounds().size.height, 44) << "the long text gives way first";
}

TEST_F(HudBench, AHudFollowsItsParentAndItsTexts)
{
    const auto parent = std::make_shared<UIView>(CGRect{0, 0, 360, 720});
    const auto hud = MBProgressHUD::showHUDAddedTo(*parent, false);
    const CGRect small = hud->bezelView().frame();
    EXPECT_EQ(small, CGRect(142, 322, 77, 77)); // 37 and twice the margin
    parent->setFrame({0, 0, 720, 360});
    hud->label().setText("A title that is wider");
    pass(0.01);
    EXPECT_EQ(hud->frame(), CGRect(0, 0, 720, 360));
    EXPECT_NEAR(hud->bezelView().center().x, 360, 0.5);
    EXPECT_GT(hud->bezelView().bounds().size.width, small.size.width);
}

TEST(HudIndicator, IsOneOfItsModeInTheHudsColour)
{
    MBProgressHUD hud({0, 0, 360, 720});
    const auto kind = [&]() -> const std::type_info& {
        return hud.indicator() ? typeid(*hud.indicator()) : typeid(void);
    };
    EXPECT_EQ(kind(), typeid(UIActivityIndicatorView));
    hud.setProgress(0.5F);
    hud.setContentColor({1, 0, 0, 1});
    MBProgressHUD::appearance().lineColor = UIColor{0, 1, 0, 1};

    hud.setMode(Mode::Determinate);
    auto* const round = dynamic_cast<MBRoundProgressView*>(hud.indicator());
    ASSERT_TRUE(round && !round->isAnnular());
    EXPECT_EQ(round->progress(), 0.5F);
    EXPECT_EQ(round->backgroundTintColor(), (UIColor{1, 0, 0, 0.1}));
    hud.setMode(Mode::AnnularDeterminate);
    EXPECT_TRUE(hud.indicator() == round && round->isAnnular());

    hud.setMode(Mode::DeterminateHorizontalBar);
    const auto* const bar = dynamic_cast<MBBarProgressView*>(hud.indicator());
    ASSERT_TRUE(bar);
    EXPECT_EQ(bar->progressColor(), (UIColor{1, 0, 0, 1}));
    EXPECT_EQ(bar->lineColor(), (UIColor{0, 1, 0, 1}));
    MBProgressHUD::appearance() = {};

    const auto custom = std::make_shared<UIView>();
    hud.setCustomView(custom);
    EXPECT_EQ(hud.indicator(), bar);
    hud.setMode(Mode::CustomView);
    EXPECT_EQ(hud.indicator(), custom.get());
    hud.setMode(Mode::Text);
    EXPECT_TRUE(kind() == typeid(void) && !custom->superview());
}

} // namespace
} // namespace lamina::test
