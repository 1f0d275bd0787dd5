// The road from the home screen to a saved blend, by fingers, by mouse and by keys.
#include "WindowTest.h"

#include "app/ViewController.h"
#include "editors/blend/BlendComposition.h"
#include "editors/blend/PickedImages.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"

#include <QMimeData>
#include <QTest>

#include <gmock/gmock.h>

namespace lamina::test {
namespace {

class BlendRoad : public WindowTest {
protected:
    const CGAffineTransform& secondTransform()
    {
        return driver->top<BlendPhotoViewController>()->composition().photos[1].transform;
    }
};

TEST_F(BlendRoad, ByFingers)
{
    open();
    ASSERT_TRUE(driver->tap(QStringLiteral("Blend")));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    EXPECT_EQ(driver->top<ImagePIckingViewController>()->selectImage(), QStringLiteral("SCREENbg"));

    // The crop follows two fingers and one.
    pick(sample("sea-sunset.jpg"));
    ASSERT_TRUE(driver->waitFor<PinchZoomViewController>());
    driver->pinchCanvas(60, 150);
    auto crop = driver->top<PinchZoomViewController>();
    EXPECT_NEAR(crop->zoomScale(), 2.5, 0.1);
    const CGPoint before = crop->scrollView().contentOffset();
    driver->dragCanvas({-40, -20});
    const CGPoint after = crop->scrollView().contentOffset();
    EXPECT_NEAR(after.x - before.x, 40, 1);
    EXPECT_NEAR(after.y - before.y, 20, 1);
    crop.reset();
    ASSERT_TRUE(driver->tap(QStringLiteral("Use photo")));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    EXPECT_EQ(driver->top<ImagePIckingViewController>()->selectImage(), QStringLiteral("SCREEN2bg"));
    EXPECT_EQ(firstPickedImage.cgImage().width(), kWidth);

    // Back on the second crop gives both photos up.
    pick(sample("city-rain.jpg"));
    ASSERT_TRUE(driver->waitFor<PinchZoomViewController>());
    ASSERT_TRUE(driver->tap(QStringLiteral("Back")));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    EXPECT_FALSE(firstPickedImage);
    EXPECT_FALSE(secondPickedImage);
    EXPECT_EQ(driver->top<ImagePIckingViewController>()->selectImage(), QStringLiteral("SCREENbg"));

    pickAndUse(sample("sea-sunset.jpg"));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    pickAndUse(sample("city-rain.jpg"));
    ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());

    // A drag moves the second photo by the finger's way; after a pinch a drag is as much further as the photo is
    // larger.
    driver->dragCanvas({30, -24});
    EXPECT_NEAR(secondTransform().tx, 30, 1);
    EXPECT_NEAR(secondTransform().ty, -24, 1);
    driver->pinchCanvas(60, 120);
    const double scale = secondTransform().a;
    EXPECT_NEAR(scale, 2, 0.1);
    const double tx = secondTransform().tx;
    driver->dragCanvas({10, 0});
    EXPECT_NEAR(secondTransform().tx - tx, 10 * scale, 2);

    ASSERT_TRUE(driver->tap(QStringLiteral("Photo 1")));
    EXPECT_EQ(alertText(), "⚠️|Photo 1 is not movable.");
    ASSERT_TRUE(driver->tap(QStringLiteral("OK")));
    ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());

    ASSERT_TRUE(driver->tap(QStringLiteral("Reset")));
    EXPECT_EQ(secondTransform(), CGAffineTransform());
}

TEST_F(BlendRoad, ByMouseAndWheel)
{
    open();
    ASSERT_TRUE(driver->click(QStringLiteral("Blend")));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    for (const char* const name : {"dunes.jpg", "meadow.jpg"}) {
        portal.setChoice({QUrl::fromLocalFile(QString::fromStdString(sample(name))).toString()});
        ASSERT_TRUE(driver->click(QStringLiteral("Photo library")));
        ASSERT_TRUE(driver->waitFor<PinchZoomViewController>());
        driver->turnWheel(4);
        EXPECT_NEAR(driver->top<PinchZoomViewController>()->zoomScale(), 1.4641, 0.001); // 1.1 to the fourth
        ASSERT_TRUE(driver->click(QStringLiteral("Use photo")));
    }
    ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());
    driver->dragCanvasWithMouse({-25, 12});
    EXPECT_NEAR(secondTransform().tx, -25, 1);
    EXPECT_NEAR(secondTransform().ty, 12, 1);
    driver->turnWheel(-1);
    EXPECT_NEAR(secondTransform().a, 1 / 1.1, 0.001);
    driver->pinchTouchpad(1.21);
    EXPECT_NEAR(secondTransform().a, 1.1, 0.001);

    while (secondTransform().a != 1) // one step or, on a slow machine, two
        ASSERT_TRUE(driver->click(QStringLiteral("Undo")));
    EXPECT_NEAR(secondTransform().tx, -25, 1);
    ASSERT_TRUE(driver->click(QStringLiteral("Undo")));
    EXPECT_EQ(secondTransform(), CGAffineTransform());
    EXPECT_FALSE(driver->click(QStringLiteral("Undo"))) << "there is nothing left to undo";
    ASSERT_TRUE(driver->click(QStringLiteral("Redo")));
    EXPECT_NEAR(secondTransform().tx, -25, 1);
}

TEST_F(BlendRoad, APhotoThatWasLostIsCaughtAndThePointerTells)
{
    open();
    goToBlend();
    const auto blend = driver->top<BlendPhotoViewController>();
    const QPointF corner = driver->canvas()->mapToScene({4, 4});
    EXPECT_FALSE(driver->application().bridge().mouseAtHand());
    Qt::CursorShape dragging = Qt::ArrowCursor;
    QObject::connect(blend.get(), &BlendPhotoViewController::changed, driver->canvas(),
                     [&] { dragging = driver->pointer(); });
    blend->nudge(2 * kWidth, 0);
    driver->dragCanvasWithMouse({-25, 0}); // beside the photo
    EXPECT_NEAR(secondTransform().tx, 2 * kWidth - 25, 1);
    EXPECT_EQ(dragging, Qt::ClosedHandCursor);
    EXPECT_TRUE(driver->application().bridge().mouseAtHand());
    EXPECT_EQ(driver->pointerAt(corner), Qt::OpenHandCursor);
    QTest::mouseDClick(&driver->view(), Qt::LeftButton, Qt::NoModifier, corner.toPoint());
    EXPECT_EQ(secondTransform(), CGAffineTransform());
    driver->press(Qt::Key_Z, Qt::ControlModifier);
    driver->press(Qt::Key_Home);
    EXPECT_EQ(secondTransform(), CGAffineTransform());
    EXPECT_EQ(driver->pointer(), Qt::OpenHandCursor);
    EXPECT_EQ(driver->pointerAt(WindowDriver::middleOf(*driver->item(QStringLiteral("Photo 1")))), Qt::ArrowCursor);
}

TEST_F(BlendRoad, ByKeysAlone)
{
    open();
    pressUntil("Blend");
    driver->press(Qt::Key_Return);
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    portal.setChoice({QUrl::fromLocalFile(QString::fromStdString(sample("dunes.jpg"))).toString()});
    driver->press(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(driver->waitFor<PinchZoomViewController>());
    driver->press(Qt::Key_Plus);
    EXPECT_NEAR(driver->top<PinchZoomViewController>()->zoomScale(), 1.1, 1e-6);
    const double x = driver->top<PinchZoomViewController>()->scrollView().contentOffset().x;
    driver->press(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_NEAR(driver->top<PinchZoomViewController>()->scrollView().contentOffset().x - x, 10, 1e-6);
    driver->press(Qt::Key_Return);
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    driver->press(Qt::Key_Return); // the library has the first focus
    ASSERT_TRUE(driver->waitFor<PinchZoomViewController>());
    driver->press(Qt::Key_Return);
    ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());
    driver->pressOnly(Qt::Key_Right); // one series, however slow the machine is
    driver->press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(secondTransform(), CGAffineTransform::translation(1, 10));
    driver->press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(secondTransform(), CGAffineTransform());

    // Esc asks; under the question nothing is reached by Tab, and its safe answer has the focus.
    driver->press(Qt::Key_Escape);
    EXPECT_EQ(alertText(), "⚠️|Discard Editing");
    for (int i = 0; i < 6; ++i) {
        driver->press(Qt::Key_Tab);
        const QString reached = driver->focusedName();
        EXPECT_TRUE(reached == QStringLiteral("YES") || reached == QStringLiteral("NO")) << reached.toStdString();
    }
    pressUntil("YES");
    driver->press(Qt::Key_Space);
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    EXPECT_EQ(driver->top<ImagePIckingViewController>()->selectImage(), QStringLiteral("SCREENbg"));
    driver->press(Qt::Key_Escape);
    EXPECT_TRUE(driver->waitFor<ViewController>());
}

TEST_F(BlendRoad, TheMenuOfAPhotoOpensByEveryHand)
{
    open();
    goToBlend();
    const auto blend = driver->top<BlendPhotoViewController>();
    const QPoint first = WindowDriver::middleOf(*driver->item(QStringLiteral("Photo 1"))).toPoint();
    QTest::mouseClick(&driver->view(), Qt::RightButton, Qt::NoModifier, first);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return blend->menuPhoto() == 1; }));
    driver->press(Qt::Key_Escape);
    EXPECT_EQ(blend->menuPhoto(), 0);
    EXPECT_EQ(alertText(), "");
    QTest::mousePress(&driver->view(), Qt::LeftButton, Qt::NoModifier, first);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return blend->menuPhoto() == 1; }));
    QTest::mouseRelease(&driver->view(), Qt::LeftButton, Qt::NoModifier, first);
    driver->settle();
    EXPECT_EQ(alertText(), "") << "a long press is no press";
    ASSERT_TRUE(driver->tap(QStringLiteral("Menu of photo 1")));
    EXPECT_EQ(blend->menuPhoto(), 0);
    ASSERT_TRUE(driver->tap(QStringLiteral("Menu of photo 2")));
    ASSERT_TRUE(driver->tap(QStringLiteral("Swap")));
    EXPECT_EQ(blend->composition().photos[0].source.name, "city-rain.jpg");

    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile(QString::fromStdString(sample("meadow.jpg")))});
    EXPECT_EQ(driver->drop(dropped), Qt::CopyAction);
    ASSERT_TRUE(driver->waitFor<PinchZoomViewController>());
    driver->press(Qt::Key_Escape);
    ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());
    driver->press(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(driver->waitFor<PinchZoomViewController>()) << "of the portal's last choice";
}

TEST_F(BlendRoad, AWindowThatIsClosedLeavesNoHalfFile)
{
    open();
    goToBlend();
    goToPNG();
    documents().removeRecursively();
    driver->tapOnly(*driver->item(QStringLiteral("Save PNG")));
    driver.reset(); // at once
    for (const QFileInfo& file : documents().entryInfoList(QDir::Files | QDir::Hidden)) {
        EXPECT_EQ(file.fileName(), QStringLiteral("default.png"));
        EXPECT_FALSE(QImage(file.filePath()).isNull());
    }
}

} // namespace
} // namespace lamina::test
