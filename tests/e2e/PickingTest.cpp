// The ways of a photo into the window, and what can go wrong on them.
#include "TestPaths.h"
#include "WindowTest.h"
#include "editors/collage/CreateCollageViewController.h"
#include "platform/base/CGGeometry.h"

#include "CommandRunner.h"

#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>

#include <gmock/gmock.h>

namespace lamina::test {
namespace {

class Picking : public WindowTest {
protected:
    void openChooser(LaunchOptions options = {})
    {
        options.screen = "blend";
        open(options);
        ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    }
};

TEST_F(Picking, AnUnreadablePhotoIsNamedOverAnUnchangedScreen)
{
    openChooser();
    TemporaryFolder folder;
    writeFile(folder.path("holiday.jpg"), "this is no photo");
    pick(folder.path("holiday.jpg"));
    ASSERT_TRUE(driver->waitFor<UIAlertController>());
    EXPECT_THAT(alertText(),
                testing::AllOf(testing::HasSubstr("holiday.jpg"), testing::Not(testing::HasSubstr("/tmp"))));
    driver->press(Qt::Key_Escape);
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    EXPECT_EQ(driver->top<ImagePIckingViewController>()->step(), 1);
    pick(sample("dunes.jpg"));
    EXPECT_TRUE(driver->waitFor<PinchZoomViewController>()) << "the next photo opens";
}

TEST_F(Picking, ACancelledChooserLeavesEverything)
{
    openChooser();
    portal.setAnswer(1, {});
    ASSERT_TRUE(driver->tap(QStringLiteral("Photo library")));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    EXPECT_EQ(portal.questions().size(), 1u);
}

TEST_F(Picking, WithoutAPortalTheWindowListsTheFolderItself)
{
    portal.vanish();
    TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("inside"));
    std::filesystem::copy_file(sample("dunes.jpg"), folder.path("inside/dunes.jpg"));
    LaunchOptions options;
    options.photosFolders = {folder.path()};
    openChooser(options);
    ASSERT_TRUE(driver->tap(QStringLiteral("Photo library")));
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return driver->item(QStringLiteral("inside")) != nullptr; }));
    ASSERT_TRUE(driver->tap(QStringLiteral("inside")));
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return driver->item(QStringLiteral("dunes.jpg")) != nullptr; }));
    ASSERT_TRUE(driver->tap(QStringLiteral("dunes.jpg")));
    EXPECT_TRUE(driver->waitFor<PinchZoomViewController>());
}

TEST_F(Picking, TheCameraIsOfferedWhereThereIsOne)
{
    openChooser();
    const auto chooser = driver->top<ImagePIckingViewController>();
    EXPECT_EQ(driver->item(QStringLiteral("Camera")), nullptr);
    UIImagePickerController::setCameraAvailability([] { return true; });
    chooser->viewWillAppear(false);
    EXPECT_NE(driver->item(QStringLiteral("Camera")), nullptr);
    UIImagePickerController::setCameraAvailability({});
    chooser->galleryButton();
    driver->settle();
    EXPECT_EQ(alertText(), "Camera Unavailable|Unable to find a camera on your device.");
}

TEST_F(Picking, TheCircleOpensTheLibraryAndItsCornersDoNot)
{
    openChooser();
    portal.setChoice({QUrl::fromLocalFile(QString::fromStdString(sample("dunes.jpg"))).toString()});
    QQuickItem* const circle = driver->called(QStringLiteral("circle"));
    ASSERT_NE(circle, nullptr);
    EXPECT_FALSE(circle->contains({4, 4}));
    driver->tapOnly(*circle);
    EXPECT_TRUE(driver->waitFor<PinchZoomViewController>());
}

TEST_F(Picking, ADroppedFileIsCropped)
{
    openChooser();
    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile(QString::fromStdString(sample("meadow.jpg")))});
    EXPECT_EQ(driver->drop(dropped, Qt::MoveAction | Qt::CopyAction | Qt::LinkAction), Qt::CopyAction);
    EXPECT_TRUE(driver->waitFor<PinchZoomViewController>());
    driver->press(Qt::Key_Escape);
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    EXPECT_EQ(driver->drop(dropped, Qt::MoveAction), Qt::IgnoreAction) << "its source would delete it";
    QMimeData text;
    text.setText(QStringLiteral("only words"));
    EXPECT_EQ(driver->drop(text), Qt::IgnoreAction);
}

TEST_F(Picking, APastedPictureIsCropped)
{
    openChooser();
    const std::string bytes = readFile(testData("pictures/png-rgb8.png"));
    auto* const copied = new QMimeData;
    copied->setData(QStringLiteral("image/png"), QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
    QGuiApplication::clipboard()->setMimeData(copied);
    driver->press(Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(driver->waitFor<PinchZoomViewController>());
    EXPECT_EQ(driver->top<PinchZoomViewController>()->pickedImage.size(), (CGSize{64, 48}));
}

TEST_F(Picking, PhotosOfTheCommandLineBeginABlend)
{
    LaunchOptions options;
    options.files = {sample("dunes.jpg"), sample("meadow.jpg")};
    open(options);
    ASSERT_TRUE(driver->waitFor<PinchZoomViewController>());
    ASSERT_TRUE(driver->tap(QStringLiteral("Use photo")));
    ASSERT_TRUE(WindowDriver::waitUntil([&] {
        const auto crop = driver->top<PinchZoomViewController>();
        return crop && crop->step() == 2;
    })) << "the second photo follows by itself";
    driver->settle();
    ASSERT_TRUE(driver->tap(QStringLiteral("Use photo")));
    EXPECT_TRUE(driver->waitFor<BlendPhotoViewController>());
}

TEST_F(Picking, MoreThanTwoPhotosOfTheCommandLineBeginACollage)
{
    LaunchOptions options;
    options.files = {sample("dunes.jpg"), sample("meadow.jpg"), sample("aurora-lake.jpg"), sample("sea-sunset.jpg")};
    open(options);
    EXPECT_EQ(alertText(), "Too many photos|The collage has no place for one of the photos.");
    ASSERT_TRUE(driver->tap(QStringLiteral("OK")));
    ASSERT_TRUE(driver->waitFor<CreateCollageViewController>());
    EXPECT_EQ(driver->top<CreateCollageViewController>()->photoCount(), 3);
}

TEST_F(Picking, ALargePhotoCanBeGivenUpWhileItIsRead)
{
    openChooser();
    TemporaryFolder folder;
    QImage large(9000, 6000, QImage::Format_RGB32); // 54 megapixels
    large.fill(Qt::darkCyan);
    ASSERT_TRUE(large.save(QString::fromStdString(folder.path("large.png"))));
    large = {};
    portal.setChoice({QUrl::fromLocalFile(QString::fromStdString(folder.path("large.png"))).toString()});
    QQuickItem* const library = driver->item(QStringLiteral("Photo library"));
    ASSERT_NE(library, nullptr);
    driver->tapOnly(*library);
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return driver->item(QStringLiteral("Cancel")) != nullptr; }))
        << "no way to give it up was offered";
    driver->tapOnly(*driver->item(QStringLiteral("Cancel")));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    EXPECT_FALSE(driver->top<ImagePIckingViewController>()->presentedViewController());

    portal.setChoice({QUrl::fromLocalFile(QString::fromStdString(folder.path("large.png"))).toString()});
    ASSERT_TRUE(driver->tap(QStringLiteral("Photo library")));
    EXPECT_TRUE(driver->waitFor<PinchZoomViewController>()) << "read to the end, it opens";
}

} // namespace
} // namespace lamina::test
