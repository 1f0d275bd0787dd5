#pragma once

#include "WindowTest.h"

#include "platform/base/CGGeometry.h"

#include <QString>

#include <cstddef>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace lamina::test {

/// A composition as it is after every step of a user's, to be gone through back and forth.
template <class Editor, class Composition>
class StepsTest : public WindowTest {
protected:
    void begin()
    {
        editor = driver->top<Editor>();
        ASSERT_NE(editor, nullptr);
        states = {editor->composition()};
    }
    /// A step of the user's: what it leaves is kept.
    void step(const char* what)
    {
        EXPECT_TRUE(editor->canUndo()) << what;
        EXPECT_FALSE(looksAlike(editor->composition(), states.back())) << what;
        states.push_back(editor->composition());
    }
    void tapAsStep(const char* name)
    {
        ASSERT_TRUE(driver->tap(QString::fromUtf8(name))) << name;
        step(name);
    }
    void dragSlider(const char* name, double by)
    {
        const QQuickItem* const slider = driver->item(QString::fromLatin1(name));
        ASSERT_NE(slider, nullptr) << name;
        constexpr double kThumb = 22;
        const double way = slider->property("visualPosition").toDouble() * (slider->width() - kThumb);
        driver->drag(slider->mapToScene({kThumb / 2 + way, slider->height() / 2}), {by, 0});
        step(name);
    }
    void tapCanvas(CGPoint point) { driver->drag(inWindow(point), {}); }
    void dragCanvasFrom(CGPoint point, QPointF by, const char* what)
    {
        driver->drag(inWindow(point), by);
        step(what);
    }
    /// Every step is one of the undo button, and one of the redo button.
    void goBackAndForth()
    {
        for (std::size_t i = states.size() - 1; i > 0; --i) {
            ASSERT_TRUE(driver->tap(QStringLiteral("Undo"))) << i;
            EXPECT_TRUE(looksAlike(editor->composition(), states[i - 1])) << i;
        }
        EXPECT_FALSE(driver->tap(QStringLiteral("Undo"))) << "one step each";
        for (std::size_t i = 1; i < states.size(); ++i) {
            ASSERT_TRUE(driver->tap(QStringLiteral("Redo"))) << i;
            EXPECT_TRUE(looksAlike(editor->composition(), states[i])) << i;
        }
        EXPECT_FALSE(driver->tap(QStringLiteral("Redo")));
    }

    std::shared_ptr<Editor> editor;
    std::vector<Composition> states;
};

} // namespace lamina::test
