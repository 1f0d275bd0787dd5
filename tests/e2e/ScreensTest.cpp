// What every screen has to be, whatever the window's shape: complete, named, and reachable.
#include "WindowTest.h"

#include "editors/blend/BlendComposition.h"
#include "platform/base/CGGeometry.h"

#include <QAccessible>
#include <QQuickItem>

#include <gmock/gmock.h>

#include <ostream>
#include <set>

namespace lamina::test {
namespace {

struct Shape {
    const char* name;
    QSize size;

    friend void PrintTo(const Shape& shape, std::ostream* out) { *out << shape.name; }
};

class Screens : public WindowTest, public testing::WithParamInterface<Shape> {
protected:
    /// Every visible control: its name as the accessible tree tells it. Checks each on the way.
    std::set<std::string> controls()
    {
        std::set<std::string> names;
        visit(QAccessible::queryAccessibleInterface(&driver->view()), names);
        return names;
    }

private:
    void visit(QAccessibleInterface* node, std::set<std::string>& names)
    {
        if (!node || node->state().invisible)
            return;
        for (int i = 0; i < node->childCount(); ++i)
            visit(node->child(i), names);
        auto* const item = qobject_cast<QQuickItem*>(node->object());
        if (!item || !item->isVisible() || item->width() <= 0)
            return;
        const bool control = node->role() == QAccessible::Button || node->role() == QAccessible::CheckBox ||
                             node->role() == QAccessible::Slider || node->role() == QAccessible::Graphic;
        if (!control)
            return;
        const std::string name = node->text(QAccessible::Name).toStdString();
        EXPECT_NE(name, "") << "a control without a name";
        names.insert(name);
    }
};

TEST_P(Screens, HaveAllTheirControlsAndTheyAreNamed)
{
    LaunchOptions options;
    options.size = GetParam().size;
    open(options);
    EXPECT_THAT(controls(), testing::IsSupersetOf({"Two photos", "Three photos", "Blend"}));

    ASSERT_TRUE(driver->tap(QStringLiteral("Blend")));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    EXPECT_THAT(controls(), testing::IsSupersetOf({"Back", "Photo library"}));

    pick(sample("sea-sunset.jpg"));
    ASSERT_TRUE(driver->waitFor<PinchZoomViewController>());
    EXPECT_THAT(controls(), testing::IsSupersetOf({"Back", "Zoom in", "Zoom out", "Use photo"}));
    ASSERT_TRUE(driver->tap(QStringLiteral("Zoom in")));
    EXPECT_GT(driver->top<PinchZoomViewController>()->zoomScale(), 1.05);

    ASSERT_TRUE(driver->tap(QStringLiteral("Use photo")));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    pickAndUse(sample("city-rain.jpg"));
    ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());
    EXPECT_THAT(controls(), testing::IsSupersetOf({"Back", "Undo", "Redo", "Save", "Photo 1", "Photo 2", "Reset",
                                                   "Move", "Tools", "Effects", "Sticker"}));
    const auto blend = driver->top<BlendPhotoViewController>();
    blend->toolBtn();
    EXPECT_THAT(controls(), testing::IsSupersetOf({"Left", "Right", "Color"}));
    blend->FxBtn();
    EXPECT_THAT(controls(), testing::IsSupersetOf({"Contrast", "Brightness", "Opacity"}));
    blend->stickerBtn();
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return driver->item(QStringLiteral("Sun")) != nullptr; }));
    EXPECT_THAT(controls(), testing::Not(testing::Contains("Color"))) << "what is hidden is not told of";
}

INSTANTIATE_TEST_SUITE_P(Shapes, Screens,
                         testing::Values(Shape{"Slim", {320, 320}}, Shape{"Small", {500, 400}},
                                         Shape{"Phone", {360, 720}}, Shape{"LyingPhone", {720, 360}},
                                         Shape{"Tablet", {834, 1112}}, Shape{"Desktop", {1280, 800}}),
                         [](const auto& shape) { return std::string(shape.param.name); });

TEST_F(WindowTest, AWindowThatIsTurnedKeepsTheWorkAndItsWidth)
{
    open();
    goToBlend();
    driver->dragCanvas({20, 10});
    const auto blend = driver->top<BlendPhotoViewController>();
    const BlendComposition before = blend->composition();
    driver->view().resize(kHeight, kWidth);
    driver->settle();
    EXPECT_EQ(blend->baseView().bounds().size, (CGSize{kWidth, kWidth}));
    EXPECT_EQ(blend->composition().photos[1].transform, before.photos[1].transform);
    // Fingers still see the tree's own points, though it is drawn at another size.
    const double shown = driver->canvas()->width();
    ASSERT_NE(shown, kWidth);
    driver->dragCanvas({30, 0});
    EXPECT_NEAR(blend->composition().photos[1].transform.tx - before.photos[1].transform.tx, 30 * kWidth / shown, 1.5);
}

} // namespace
} // namespace lamina::test
