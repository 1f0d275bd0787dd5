#include "hud/SVProgressHUD.h"
#include "HudBench.h"
#include "hud/ProgressOverlay.h"

#include <string>
#include <thread>

namespace lamina::test {
namespace {

class OneCallPanel : public HudBench {
protected:
    OneCallPanel()
    {
        SVProgressHUD::setDefaultStyle(0);
        SVProgressHUD::setDefaultAnimationType(0);
        SVProgressHUD::setDefaultMaskType(4);
    }
    ~OneCallPanel() override { SVProgressHUD::dismiss(); }

    /// What is seen of the panel: its words and buttons; "-": it waits or leaves, empty: there is none.
    std::string seen() const
    {
        const MBProgressHUD* const hud = overlay.hud();
        if (!hud)
            return "";
        if (overlay.text().isEmpty())
            return "-";
        return overlay.text().toStdString() + '|' + hud->choiceButton().title() + '|' + hud->button().title();
    }

    ProgressOverlay& overlay = ProgressOverlay::shared();
    std::string log;
};

TEST_F(OneCallPanel, WhatIsSoonOverIsNotSeen)
{
    SVProgressHUD::showWithStatus("Please Wait...");
    EXPECT_TRUE(overlay.isBlocking());
    pass(0.14);
    EXPECT_EQ(seen(), "-");
    SVProgressHUD::dismiss();
    EXPECT_EQ(seen(), "");
    pass(1);
    EXPECT_EQ(seen(), "");

    SVProgressHUD::showWithStatus("Please Wait...");
    pass(0.16);
    EXPECT_EQ(seen(), "Please Wait...||");
    SVProgressHUD::showWithStatus("Still at it"); // at once, since there is a panel already
    EXPECT_EQ(seen(), "Still at it||");
    SVProgressHUD::dismiss();
    EXPECT_FALSE(overlay.isBlocking());
    EXPECT_EQ(seen(), "-");
    pass(0.35);
    EXPECT_EQ(seen(), "");
    EXPECT_TRUE(overlay.view().subviews().empty());

    PresentationHost::setCurrent(nullptr); // nobody looks, nothing waits
    SVProgressHUD::showWithStatus("Please Wait...");
    EXPECT_TRUE(DispatchQueue::main().runUntilIdle(1));
}

TEST_F(OneCallPanel, CallsOfAllThreadsActInTheirOrder)
{
    std::thread([] {
        SVProgressHUD::setProgress(0.2); // there is no panel yet
        SVProgressHUD::showWithStatus("First");
        SVProgressHUD::setProgress(0.5);
    }).join();
    EXPECT_EQ(seen(), "") << "nothing acts on another thread";
    SVProgressHUD::setProgress(0.75);
    ASSERT_TRUE(overlay.hud());
    EXPECT_EQ(overlay.hud()->mode(), MBProgressHUDMode::AnnularDeterminate);
    EXPECT_EQ(overlay.hud()->progress(), 0.75F);
    SVProgressHUD::showWithStatus("Second");
    EXPECT_EQ(overlay.hud()->mode(), MBProgressHUDMode::Indeterminate);
}

TEST_F(OneCallPanel, WorkIsCancelledOnceAndAFailureClosed)
{
    SVProgressHUD::setDefaultMaskType(0);
    SVProgressHUD::showWithStatus("Please Wait...");
    overlay.giveUp(); // there is nothing to give up
    EXPECT_FALSE(overlay.isBlocking());
    SVProgressHUD::setCancelAction([this] { log += "cancel "; });
    pass(0.2);
    EXPECT_EQ(seen(), "Please Wait...||Cancel");
    EXPECT_TRUE(overlay.isBlocking()) << "a button is to be reached";
    overlay.hud()->button().sendActions(UIControlEvents::TouchUpInside);
    overlay.giveUp();
    EXPECT_EQ(seen(), "Please Wait...||");

    const auto fail = [this] {
        SVProgressHUD::showFailure(
            {"sea.pdf", "no space left"}, [this] { log += "closed "; }, "Elsewhere", [this] { log += "elsewhere "; });
    };
    for (const bool elsewhere : {false, true}) {
        fail();
        EXPECT_EQ(seen(), "sea.pdf: no space left.|Elsewhere|Close");
        SVProgressHUD::setProgress(0.5);
        SVProgressHUD::setCancelAction({});
        EXPECT_EQ(seen(), "sea.pdf: no space left.|Elsewhere|Close");
        pass(10);
        MBProgressHUD& hud = *overlay.hud();
        (elsewhere ? hud.choiceButton() : hud.button()).sendActions(UIControlEvents::TouchUpInside);
        EXPECT_EQ(seen(), "-");
    }
    EXPECT_EQ(log, "cancel closed elsewhere ");
}

} // namespace
} // namespace lamina::test
