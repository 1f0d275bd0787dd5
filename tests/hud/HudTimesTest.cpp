#include "HudBench.h"
#include "hud/MBProgressHUD.h"
#include "platform/base/CGGeometry.h"

#include <functional>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

using Animation = MBProgressHUDAnimation;

class HudTimes : public HudBench, public MBProgressHUDDelegate {
protected:
    void hudWasHidden(MBProgressHUD&) override { log += '!'; }

    const std::shared_ptr<UIView> parent = std::make_shared<UIView>(CGRect{0, 0, 360, 720});
    const std::shared_ptr<HudTimes> self{this, [](HudTimes*) {}};
    std::string log;
};

// What is seen in each tenth of a second: '.' nothing, '#' the panel, '>' the panel leaving; '!' the end was told.
TEST_F(HudTimes, AreGraceLeastTimeAndDelay)
{
    using Hud = MBProgressHUD;
    struct Step {
        int tenth;
        std::function<void(Hud&)> act;
    };
    const auto show = [](Hud& hud) { hud.showAnimated(true); };
    const auto hide = [](Hud& hud) { hud.hideAnimated(false); };
    const auto fade = [](Hud& hud) { hud.hideAnimated(true); };
    const auto fadeIn4 = [](Hud& hud) { hud.hideAnimated(true, 0.4); };
    const auto hideIn2 = [](Hud& hud) { hud.hideAnimated(false, 0.2); };
    const struct {
        double grace;
        double least;
        std::vector<Step> steps;
        const char* seen;
    } cases[] = {
        {0, 0, {{0, show}, {3, hide}}, "###!....."},
        {0, 0, {{0, show}, {3, fade}}, "###>>>!..."},
        {0.2, 0, {{0, show}, {1, fade}}, ".!........"},
        {0.2, 0, {{0, show}, {4, hide}}, "..##!....."},
        {0, 0.6, {{0, show}, {2, hide}}, "######!..."},
        {0, 0.6, {{0, show}, {2, hide}, {4, show}}, "##########"},
        {0, 0.2, {{0, show}, {4, hide}}, "####!....."},
        {0, 0, {{0, show}, {1, fadeIn4}}, "#####>>>!."},
        {0, 0, {{0, show}, {1, fadeIn4}, {2, hideIn2}}, "####!....."},
        {0, 0, {{0, show}, {1, fadeIn4}, {2, show}}, "##########"},
        {0, 0, {{0, show}, {2, fade}, {3, show}}, "##>!######"},
    };
    for (const auto& [grace, least, steps, seen] : cases) {
        const auto hud = std::make_shared<Hud>();
        parent->addSubview(hud);
        hud->delegate = self;
        hud->graceTime = grace;
        hud->minShowTime = least;
        log.clear();
        for (int tenth = 0; log.size() < std::string(seen).size(); ++tenth) {
            for (const Step& step : steps)
                if (step.tenth == tenth)
                    step.act(*hud);
            pass(0.05);
            log += hud->alpha() == 0 ? '.' : hud->bezelView().alpha() == 1 ? '#' : '>';
            pass(0.05);
        }
        EXPECT_EQ(log.substr(0, std::string(seen).size()), seen);
        hud->removeFromSuperview();
    }
}

TEST_F(HudTimes, TheEndIsToldOnceItHasLeft)
{
    const auto first = MBProgressHUD::showHUDAddedTo(*parent, true);
    const auto second = MBProgressHUD::showHUDAddedTo(*parent, false);
    for (const auto& hud : {first, second}) {
        hud->delegate = self;
        hud->completionBlock = [this, hud = hud.get()] { log += hud->superview() ? "still there" : "left"; };
    }
    EXPECT_EQ(MBProgressHUD::HUDForView(*parent), second);
    EXPECT_TRUE(MBProgressHUD::hideHUDForView(*parent, true));
    EXPECT_EQ(MBProgressHUD::HUDForView(*parent), first);
    EXPECT_TRUE(MBProgressHUD::hideHUDForView(*parent, false));
    EXPECT_FALSE(MBProgressHUD::hideHUDForView(*parent, false));
    EXPECT_EQ(log, "left!");
    pass(0.35);
    EXPECT_EQ(log, "left!left!");
    EXPECT_TRUE(parent->subviews().empty());
}

TEST_F(HudTimes, ThePanelIsSeenToFadeAndZoom)
{
    const struct {
        Animation type;
        double from, to;
    } cases[] = {{Animation::Fade, 1, 1},
                 {Animation::Zoom, 0.5, 0.5},
                 {Animation::ZoomOut, 1.5, 0.5},
                 {Animation::ZoomIn, 0.5, 1.5}};
    for (const auto& [type, from, to] : cases) {
        const auto hud = std::make_shared<MBProgressHUD>(*parent);
        hud->animationType = type;
        const CALayer& panel = hud->bezelView().layer();
        hud->showAnimated(true);
        EXPECT_EQ(panel.shown(), (CALayer::Presentation{0, CGAffineTransform::scaling(from, from)}));
        pass(0.1);
        EXPECT_TRUE(panel.shown().opacity > 0.1 && panel.shown().opacity < 1);
        pass(0.25);
        EXPECT_EQ(panel.shown(), CALayer::Presentation());
        hud->hideAnimated(true);
        pass(0.15);
        EXPECT_NEAR(panel.shown().transform.a, 1 + (to - 1) * (1 - panel.shown().opacity), 1e-9);
        EXPECT_TRUE(panel.shown().opacity > 0 && panel.shown().opacity < 0.9);
        pass(0.2);
        EXPECT_EQ(panel.shown(), (CALayer::Presentation{0, CGAffineTransform::scaling(to, to)}));
    }
}

TEST_F(HudTimes, AProgressObjectIsReadWhileItIsShown)
{
    const auto work = std::make_shared<NSProgress>(8);
    const auto hud = MBProgressHUD::showHUDAddedTo(*parent, true);
    hud->setMode(MBProgressHUDMode::Determinate);
    hud->setProgressObject(work);
    work->setCompletedUnitCount(2);
    pass(0.05);
    EXPECT_EQ(hud->progress(), 0.25F);
    hud->hideAnimated(true);
    pass(0.4);
    work->setCompletedUnitCount(4);
    pass(0.1);
    EXPECT_EQ(hud->progress(), 0.25F);
}

} // namespace
} // namespace lamina::test
