#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/view/AnimatedProperty.h"
#include "platform/view/HeadlessHost.h"
#include "platform/view/UIView.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <optional>
#include <string>
#include <utility>

namespace lamina::test {
namespace {

class MovingHost : public HeadlessHost {
    bool showsMotion() const override { return true; }
};

/// Writes down completions: the animation's name, and "+" where it has finished, "-" where not.
class Animations : public testing::Test {
protected:
    Animations() { Clock::setShared(clock); }
    ~Animations() override
    {
        PresentationHost::setCurrent(nullptr);
        Clock::setShared(nullptr);
    }
    void start(const std::string& name, double seconds, const std::function<void()>& animations)
    {
        animate(seconds, 0.25, {}, animations, [this, name](bool over) { log += name + (over ? "+ " : "- "); });
    }
    /// What has been told once `seconds` have passed.
    std::string heardAfter(double seconds)
    {
        clock->advance(seconds);
        DispatchQueue::main().drain();
        return std::exchange(log, {});
    }

    const std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::string log;
    std::optional<Animated<double>> strip{-250};
};

TEST_F(Animations, EndInTimeOrWhereSomethingElseTakesOver)
{
    UIView parent({0, 0, 100, 100});
    const auto child = std::make_shared<UIView>(CGRect{10, 10, 50, 50});
    parent.addSubview(child);
    child->setAutoresizingMask(UIViewAutoresizing::FlexibleWidth);
    const CGRect wide{0, 0, 200, 100};
    // "a" changes strip, alpha and bounds within a second; then comes this, and is heard of at once | before the second
    // is over | when it is.
    const std::pair<std::function<void()>, const char*> cases[] = {
        {[] {}, "| | a+ "},
        {[&] { start("b", 0.75, [&] { *strip = 0; }); }, "a- | | b+ "}, // where it is already
        {[&] { start("b", 0, [&] { child->setAlpha(1); }); }, "a- | b+ | "},
        {[&] { start("b", 0.75, [&] { child->setCenter({}); }); }, "| | a+ b+ "},
        {[&] { child->setAlpha(0); }, "| | a+ "},
        {[&] { *strip = 1; }, "a- | | "},
        {[&] { parent.setBounds(wide); }, "a- | | "}, // and the child's with it
        {[&] { strip.reset(); }, "a- | | "},
        {[&] { start("b", 0.75, [&] { start("c", 0, [&] { strip.reset(); }); }); }, "a- | c+ | b+ "},
        {[&] { PresentationHost::setCurrent(nullptr); }, "a+ | | "},
    };
    for (const auto& [then, heard] : cases) {
        PresentationHost::setCurrent(std::make_shared<MovingHost>());
        strip.emplace();
        start("a", 0.75, [&] {
            *strip = 0;
            child->setAlpha(0);
            child->setBounds({0, 0, 60, 50});
        });
        then();
        const std::string atOnce = heardAfter(0);
        const std::string before = heardAfter(0.999);
        EXPECT_EQ(atOnce + "| " + before + "| " + heardAfter(0.002), heard);
    }
}

TEST_F(Animations, TakeNoTimeWhereNobodyLooks)
{
    start("a", 1000, [this] { *strip = 1; });
    start("b", 1000, [this] { *strip = 2; });
    start("c", 1000, {});
    EXPECT_EQ(strip->duration(), 0);
    EXPECT_EQ(log, "");
    EXPECT_EQ(heardAfter(0), "a- b+ c+ ");
}

TEST_F(Animations, SpringsSwingIntoTheirEnd)
{
    PresentationHost::setCurrent(std::make_shared<MovingHost>());
    const auto at = [this](UIViewSpring spring, double progress) {
        animate(1, 0, {.spring = spring}, [this] { *strip = 1; });
        return strip->easing().valueForProgress(progress);
    };
    // The highest point of a swing from rest is 1 + e^(-πζ / √(1 - ζ²)); it has come when ωt = π / √(1 - ζ²).
    EXPECT_NEAR(at({0.5, 0}, std::numbers::pi / std::sqrt(0.75) / 13.82), 1.163, 0.01);
    EXPECT_NEAR(at({1, 6}, 0.01), 0.06, 0.01);
}

} // namespace
} // namespace lamina::test
