#pragma once

#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/view/TouchDispatcher.h"
#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UIView.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {

/// A view of 400 by 400 with fingers on it, and a log of what its recognisers say. Time moves by a sixtieth of a second
/// an event; timers go by a clock of their own.
class TouchBench : public testing::Test {
protected:
    TouchBench() { Clock::setShared(clock); }
    ~TouchBench() override
    {
        fingers.cancelAllTouches(time);
        DispatchQueue::main().drain();
        Clock::setShared(nullptr);
    }

    double tick() { return time += 1.0 / 60; }
    void down(int finger, double x, double y) { fingers.touchBegan(finger, {x, y}, tick()); }
    void move(int finger, double x, double y) { fingers.touchMoved(finger, {x, y}, tick()); }
    void up(int finger, double x, double y) { fingers.touchEnded(finger, {x, y}, tick()); }
    void moveBoth(CGPoint first, CGPoint second)
    {
        const TouchDispatcher::Position positions[] = {{1, first}, {2, second}};
        fingers.touchesMoved(positions, tick());
    }
    void tap(double x, double y)
    {
        down(1, x, y);
        up(1, x, y);
    }
    void wait(double seconds)
    {
        time += seconds;
        clock->advance(seconds);
        DispatchQueue::main().drain();
    }

    /// A recogniser on `view` that logs "name:state " at each call of its action.
    template <class Kind>
    std::shared_ptr<Kind> attach(UIView& view, std::string name)
    {
        auto recognizer = std::make_shared<Kind>();
        recognizer->addAction([this, name](UIGestureRecognizer& r) { log += name + ':' + stateName(r.state()) + ' '; });
        view.addGestureRecognizer(recognizer);
        return recognizer;
    }
    template <class View = UIView>
    std::shared_ptr<View> addView(UIView& parent, const CGRect& frame)
    {
        auto view = std::make_shared<View>(frame);
        parent.addSubview(view);
        return view;
    }
    /// What was logged since the last call.
    std::string heard() { return std::exchange(log, {}); }

    static const char* stateName(UIGestureRecognizer::State state)
    {
        static constexpr const char* kNames[] = {"possible", "began", "changed", "ended", "cancelled", "failed"};
        return kNames[static_cast<int>(state)];
    }

    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>(100);
    double time = 0;
    std::string log;
    std::shared_ptr<UIView> root = std::make_shared<UIView>(CGRect{0, 0, 400, 400});
    TouchDispatcher fingers{root};
};

/// Two recognisers may go together, and other answers that a test sets.
class Rules : public UIGestureRecognizerDelegate {
public:
    bool gestureRecognizerShouldBegin(UIGestureRecognizer&) override { return mayBegin; }
    bool gestureRecognizerShouldReceiveTouch(UIGestureRecognizer&, const UITouch&) override { return mayReceive; }
    bool gestureRecognizer(UIGestureRecognizer&, UIGestureRecognizer&) override { return together; }

    bool mayBegin = true;
    bool mayReceive = true;
    bool together = false;
};

} // namespace lamina::test
