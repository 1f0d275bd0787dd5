#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/view/TouchDispatcher.h"
#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UILongPressGestureRecognizer.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UIPinchGestureRecognizer.h"
#include "platform/view/UIRotationGestureRecognizer.h"
#include "platform/view/UITapGestureRecognizer.h"
#include "platform/view/UIView.h"

#include <cmath>
#include <cstddef>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {

/// To three places, as scripts write numbers.
inline std::string number(double value)
{
    return (std::ostringstream() << std::round(value * 1000) / 1000 + 0.0).str();
}

inline std::string text(CGPoint point)
{
    return number(point.x) + ',' + number(point.y);
}

/// A view that hands what is left over to one that a test sets.
struct CatchingView : UIView {
    using UIView::UIView;
    UIView* gestureFallback() const override { return fallback; }
    UIView* fallback = nullptr;
};

/// A view of 400 by 400 with fingers on it, a child in its middle, and a log of what its recognisers say. Time moves by
/// a sixtieth of a second an event; timers go by a clock of their own.
class TouchBench : public testing::Test {
protected:
    TouchBench() { Clock::setShared(clock); }
    ~TouchBench() override
    {
        fingers.cancelAllTouches(time);
        DispatchQueue::main().drain();
        Clock::setShared(nullptr);
    }

    /// Plays steps divided by blanks and gives what was logged: "1+50,60" finger 1 comes down there, "1>70,60" moves,
    /// "1-70,60" is lifted, "1x" is lost, "1>9,9&2>30,9" two move in one event, "w0.4" time passes, "t50,60" is a tap
    /// of finger 1, "d50,60>90,60" a drag of it.
    std::string play(const std::string& script)
    {
        std::istringstream steps(script);
        for (std::string step; steps >> step;)
            playStep(step);
        return std::exchange(log, {});
    }

    /// A recogniser on the root, or on the child where the name begins with "child/": a pan, again (a pan that restarts
    /// with another finger), pinch, rotation, tap, twice (a double tap), press or hold (a press that begins at once).
    /// It logs "NAME+ " as it begins, "~" as it changes, "." as it ends and "x" as it is cancelled, with how far it has
    /// come behind the sign.
    std::shared_ptr<UIGestureRecognizer> attach(const std::string& name)
    {
        const bool onChild = name.starts_with("child/");
        const auto recognizer = makeRecognizer(onChild ? name.substr(6) : name);
        recognizer->addAction([this, name](UIGestureRecognizer& r) {
            log += name + "?+~.x!"[static_cast<int>(r.state())] + progress(r) + ' ';
        });
        (onChild ? child : root)->addGestureRecognizer(recognizer);
        return recognizer;
    }
    template <class Kind>
    std::shared_ptr<Kind> attachAs(const std::string& name)
    {
        return std::dynamic_pointer_cast<Kind>(attach(name));
    }
    template <class View = UIView>
    std::shared_ptr<View> addView(const CGRect& frame)
    {
        auto view = std::make_shared<View>(frame);
        root->addSubview(view);
        return view;
    }

    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>(100);
    double time = 0;
    std::string log;
    std::shared_ptr<CatchingView> root = std::make_shared<CatchingView>(CGRect{0, 0, 400, 400});
    std::shared_ptr<UIView> child = addView({100, 100, 200, 200});
    TouchDispatcher fingers{root};

private:
    static std::shared_ptr<UIGestureRecognizer> makeRecognizer(const std::string& kind)
    {
        if (kind == "pan" || kind == "again") {
            auto pan = std::make_shared<UIPanGestureRecognizer>();
            pan->setRestartsWithAnotherTouch(kind == "again");
            return pan;
        }
        if (kind == "pinch")
            return std::make_shared<UIPinchGestureRecognizer>();
        if (kind == "rotation")
            return std::make_shared<UIRotationGestureRecognizer>();
        if (kind == "tap" || kind == "twice") {
            auto tap = std::make_shared<UITapGestureRecognizer>();
            tap->setNumberOfTapsRequired(kind == "tap" ? 1 : 2);
            return tap;
        }
        auto press = std::make_shared<UILongPressGestureRecognizer>();
        press->setMinimumPressDuration(kind == "hold" ? 0 : 0.5);
        return press;
    }
    static std::string progress(const UIGestureRecognizer& recognizer)
    {
        if (const auto* pan = dynamic_cast<const UIPanGestureRecognizer*>(&recognizer))
            return text(pan->translationInView(nullptr));
        if (const auto* pinch = dynamic_cast<const UIPinchGestureRecognizer*>(&recognizer))
            return number(pinch->scale());
        if (const auto* rotation = dynamic_cast<const UIRotationGestureRecognizer*>(&recognizer))
            return number(rotation->rotation());
        return {};
    }

    void playStep(const std::string& step)
    {
        if (step[0] == 'w')
            return wait(std::stod(step.substr(1)));
        if (step[0] == 't')
            return playStep("1+" + step.substr(1)), playStep("1-" + step.substr(1));
        if (step[0] == 'd') {
            const std::size_t to = step.find('>');
            playStep("1+" + step.substr(1, to - 1));
            playStep('1' + step.substr(to));
            return playStep("1-" + step.substr(to + 1));
        }
        playTouches(step);
    }
    void playTouches(const std::string& step)
    {
        std::vector<TouchDispatcher::Position> moved;
        std::istringstream touches(step);
        const double now = time += 1.0 / 60;
        for (std::string touch; std::getline(touches, touch, '&');) {
            std::istringstream in(touch);
            int finger = 0;
            char what = 0;
            char comma = 0;
            CGPoint at;
            in >> finger >> what >> at.x >> comma >> at.y;
            if (what == '>')
                moved.push_back({finger, at});
            else if (what == '+')
                fingers.touchBegan(finger, at, now);
            else if (what == '-')
                fingers.touchEnded(finger, at, now);
            else
                fingers.touchCancelled(finger, now);
        }
        fingers.touchesMoved(moved, now);
    }
    void wait(double seconds)
    {
        time += seconds;
        clock->advance(seconds);
        DispatchQueue::main().drain();
    }
};

} // namespace lamina::test
