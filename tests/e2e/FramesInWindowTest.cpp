// A graph's frames in a window: each is seen, and those that nobody can see cost nothing.
#include "EventPump.h"
#include "FrameSource.h"
#include "TestPictures.h"
#include "gpu/endpoints/GPUImageView.h"
#include "platform/base/CMTime.h"
#include "platform/host/CanvasItem.h"
#include "platform/view/CALayer.h"
#include "platform/view/UIViewController.h"

#include <QColor>
#include <QQuickWindow>

#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <utility>

namespace lamina::test {
namespace {

struct Screen : UIViewController {
    std::shared_ptr<UIView> canvasView() override { return shown; }
    const std::shared_ptr<GPUImageView> shown = GPUImageView::make({0, 0, 8, 8});
};

class FramesInWindowTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_window.resize(8, 8);
        m_item = new CanvasItem(m_window.contentItem()); // which owns it
        m_item->setSize({8, 8});
        m_item->setController(&m_screen);
        QObject::connect(&m_window, &QQuickWindow::frameSwapped, &m_window, [this] { ++m_swaps; });
        m_window.show();
        ASSERT_TRUE(runUntil([&] { return m_swaps > 0; }));
        rest();
        m_source->addTarget(m_screen.shown);
        m_observer = m_screen.shown->layer().observeChanges([this] { ++m_changes; });
    }
    /// Until the window has nothing more to draw.
    void rest()
    {
        for (int before = -1; std::exchange(before, m_swaps) != m_swaps;)
            runFor(100);
    }
    /// In a thread of its own, as a camera does; the number is red.
    void push(int first, int last)
    {
        std::thread([&] {
            for (int i = first; i <= last; ++i)
                m_source->push({4, 4}, {std::uint8_t(i), 0, 0, 255}, second(i));
        }).join();
    }
    int seen() const { return m_item->shownImage().isNull() ? -1 : m_item->shownImage().pixelColor(4, 4).red(); }
    bool comesToSee(int number)
    {
        return runUntil([&] { return seen() == number; });
    }

    Screen m_screen;
    const std::shared_ptr<FrameSource> m_source = std::make_shared<FrameSource>();
    QQuickWindow m_window;
    CanvasItem* m_item = nullptr;
    CALayer::ChangeObserver m_observer;
    int m_swaps = 0;
    int m_changes = 0;
};

TEST_F(FramesInWindowTest, EachIsPaintedOnceAndThenTheWindowRests)
{
    const int before = m_swaps;
    for (int i = 1; i <= 30; ++i) {
        push(i, i);
        ASSERT_TRUE(comesToSee(i));
    }
    rest();
    EXPECT_EQ(m_changes, 30);
    EXPECT_LT(m_swaps - before, 45) << "about one each";
    const int atRest = m_swaps;
    runFor(200);
    EXPECT_EQ(m_swaps, atRest);
    EXPECT_EQ(m_screen.shown->sizeInPixels().width, 8 * m_window.effectiveDevicePixelRatio());
}

TEST_F(FramesInWindowTest, WhatNobodySeesIsNotDrawnAndTheLastComesWhenTheyLook)
{
    const std::pair<std::function<void()>, std::function<void()>> ways[]{
        {[&] { m_window.hide(); }, [&] { m_window.show(); }},
        {[&] { m_item->setVisible(false); }, [&] { m_item->setVisible(true); }},
        {[&] { m_screen.shown->setHidden(true); }, [&] { m_screen.shown->setHidden(false); }},
    };
    int number = 0;
    for (const auto& [hide, show] : ways) {
        push(number + 1, number + 1);
        ASSERT_TRUE(comesToSee(number + 1));
        hide();
        rest();
        const int swaps = m_swaps;
        m_changes = 0;
        for (int i = 0; i < 20; ++i) {
            push(number + 2, number + 9);
            runFor(2);
        }
        EXPECT_LE(m_changes, 1) << "one may be on its way";
        EXPECT_LE(m_swaps - swaps, 1);
        number += 9;
        show();
        EXPECT_TRUE(comesToSee(number));
    }
}

} // namespace
} // namespace lamina::test
