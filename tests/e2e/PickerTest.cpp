// The photo picker in the window: by fingers, keys and mouse, while the library changes under it.
#include "WindowTest.h"

#include "SamplePhotos.h"
#include "StandInCamera.h"
#include "TestPictures.h"
#include "app/ViewController.h"
#include "picker/YMSAlbumPickerViewController.h"
#include "picker/YMSPhotoCell.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "picker/YMSSinglePhotoViewController.h"
#include "platform/base/UIDevice.h"
#include "platform/photos/LibraryEngine_p.h"
#include "platform/photos/PictureFolders.h"

#include <QAccessible>
#include <QDateTime>
#include <QFile>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>

#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// Keeps what the picker was finished with, by the names of the files.
class Recorder : public YMSPhotoPickerViewControllerDelegate {
public:
    using YMSPhotoPickerViewControllerDelegate::photoPickerViewController;

    bool respondsTo(Call call) const override { return call == Call::DidFinishPickingImages; }
    void photoPickerViewController(YMSPhotoPickerViewController& picker, const std::vector<PHAsset>& photos) override
    {
        names.emplace();
        for (const PHAsset& photo : photos)
            names->push_back(std::filesystem::path(photo.path).filename().string());
        picker.dismiss(true);
    }

    std::optional<std::vector<std::string>> names;
};

/// Sixty photos: twenty in each of the albums "Garden" and "Night walks", newest first, and twenty beside them.
class PickerWindow : public WindowTest {
protected:
    static constexpr int kEach = 20;

    void SetUp() override
    {
        WindowTest::SetUp();
        removeAll();
        add("Garden", 0);
        add("Night walks", kEach);
        add(".", 2 * kEach);
    }
    static void removeAll() { QDir(QString::fromStdString(picturesFolder())).removeRecursively(); }
    static void add(const std::string& album, int minutesOld)
    {
        addSamplePhotos(picturesFolder() + '/' + album, kEach, minutesOld);
    }
    void openPicker(QSize size = {}, int photos = 3 * kEach)
    {
        LaunchOptions options;
        options.size = size;
        open(options);
        showPicker(photos);
    }
    void showPicker(int photos)
    {
        driver->top<ViewController>()->threePhotoCollage();
        ASSERT_TRUE(driver->waitFor<YMSPhotoPickerViewController>());
        picker()->setDelegate(recorder);
        waitForPhotos(photos);
    }
    void waitForPhotos(int photos)
    {
        ASSERT_TRUE(WindowDriver::waitUntil([&] { return picker()->photosModel()->rowCount() == photos + 1; }));
        driver->settle();
    }
    std::shared_ptr<YMSPhotoPickerViewController> picker() { return driver->top<YMSPhotoPickerViewController>(); }

    /// What the screen reader is told of it.
    std::string told(int item)
    {
        QQuickItem* const found = tile(item);
        QAccessibleInterface* const interface = found ? QAccessible::queryAccessibleInterface(found) : nullptr;
        return interface ? interface->text(QAccessible::Name).toStdString() : std::string();
    }
    /// The tiles in sight have the cells of their items, and these the photos.
    void expectOwnPhotos()
    {
        for (int item = 1; item < picker()->photosModel()->rowCount(); ++item) {
            const QQuickItem* const found = tile(item);
            const auto* const cell = found ? found->property("cell").value<YMSPhotoCell*>() : nullptr;
            if (!found)
                continue;
            ASSERT_NE(cell, nullptr) << item;
            EXPECT_EQ(cell->item(), item);
            EXPECT_EQ(cell->representedAssetIdentifier(), identifierOf(found)) << item;
        }
    }
    static std::string identifierOf(const QQuickItem* tile)
    {
        return tile ? tile->property("identifier").toString().toStdString() : std::string();
    }
    void turnWheelOver(int steps)
    {
        const QPointF middle(driver->view().width() / 2.0, driver->view().height() / 2.0);
        QWheelEvent turn(middle, driver->view().mapToGlobal(middle), {}, {0, 120 * steps}, Qt::NoButton, Qt::NoModifier,
                         Qt::NoScrollPhase, false);
        turn.setTimestamp(m_wheelClock += 20);
        QGuiApplication::sendEvent(&driver->view(), &turn);
        driver->settle();
    }

    std::shared_ptr<Recorder> recorder = std::make_shared<Recorder>();

private:
    quint64 m_wheelClock = 1000; ///< milliseconds
};

TEST_F(PickerWindow, FingersChooseThreeInTwoAlbums)
{
    openPicker();
    tapTile(2);
    tapTile(4);
    ASSERT_TRUE(driver->tap(QStringLiteral("All Photos")));
    ASSERT_TRUE(driver->waitFor<YMSAlbumPickerViewController>());
    EXPECT_TRUE(driver->tap(QStringLiteral("Night walks, 20 photos")));
    ASSERT_TRUE(driver->waitFor<YMSPhotoPickerViewController>());
    waitForPhotos(kEach);
    tapTile(1);
    EXPECT_THAT(told(1), HasSubstr("number 3"));
    tapTile(5);
    EXPECT_THAT(told(5), Not(HasSubstr("chosen"))) << "there is room for three";

    ASSERT_TRUE(driver->tap(QStringLiteral("Night walks")));
    ASSERT_TRUE(driver->waitFor<YMSAlbumPickerViewController>());
    EXPECT_TRUE(driver->tap(QStringLiteral("All Photos, 60 photos")));
    ASSERT_TRUE(driver->waitFor<YMSPhotoPickerViewController>());
    waitForPhotos(3 * kEach);
    EXPECT_THAT(told(4), HasSubstr("number 2"));
    tapTile(2);
    EXPECT_THAT(told(4), HasSubstr("number 1")) << "the numbers close up";
    EXPECT_NE(driver->item(QStringLiteral("2 of 3")), nullptr);
    tapTile(1);
    ASSERT_TRUE(driver->tap(QStringLiteral("Done")));
    EXPECT_TRUE(driver->waitFor<ViewController>());
    EXPECT_THAT(recorder->names.value(), ElementsAre("04-dunes.jpg", "01-aurora-lake.jpg", "01-aurora-lake.jpg"));
}

TEST_F(PickerWindow, KeysGoEverywhereAndFinish)
{
    openPicker();
    driver->press(Qt::Key_Right);
    EXPECT_EQ(driver->ringedName().toStdString(), told(1));
    driver->press(Qt::Key_X);
    driver->press(Qt::Key_Down);
    driver->press(Qt::Key_Insert);
    EXPECT_THAT(told(4), HasSubstr("number 2"));
    driver->press(Qt::Key_Space);
    ASSERT_TRUE(driver->waitFor<YMSSinglePhotoViewController>());
    driver->press(Qt::Key_Escape);
    ASSERT_TRUE(driver->waitFor<YMSPhotoPickerViewController>());
    EXPECT_EQ(driver->ringedName().toStdString(), told(4)) << "back where one was";
    driver->press(Qt::Key_PageDown);
    EXPECT_EQ(picker()->barAlpha(), 0) << "the bar has made way";
    driver->press(Qt::Key_End);
    EXPECT_EQ(identifierOf(driver->view().activeFocusItem()), identifierOf(tile(3 * kEach))) << "in sight";
    expectOwnPhotos();
    driver->press(Qt::Key_Tab);
    EXPECT_NE(driver->ringedName(), QString()) << "it comes back for who goes there";
    pressUntil("All Photos");
    while (driver->view().activeFocusItem() && !driver->view().activeFocusItem()->property("isCamera").isValid())
        driver->press(Qt::Key_Tab);
    driver->press(Qt::Key_Home);
    EXPECT_EQ(picker()->barAlpha(), 1);
    driver->press(Qt::Key_Return);
    EXPECT_TRUE(driver->waitFor<ViewController>());
    EXPECT_THAT(recorder->names.value(), ElementsAre("01-aurora-lake.jpg", "04-dunes.jpg"));
}

TEST_F(PickerWindow, AMouseScrollsAndLooksCloser)
{
    openPicker({1280, 800});
    EXPECT_EQ(picker()->columns(), 6);
    EXPECT_EQ(tile(5)->mapToScene({}).y(), tile(0)->mapToScene({}).y());
    EXPECT_GT(tile(6)->mapToScene({}).y(), tile(0)->mapToScene({}).y());
    QTest::mouseClick(&driver->view(), Qt::LeftButton, Qt::NoModifier, WindowDriver::middleOf(*tile(3)).toPoint());
    EXPECT_THAT(told(3), HasSubstr("number 1"));
    for (int i = 0; i < 3; ++i)
        turnWheelOver(-1);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return picker()->barAlpha() == 0; }));
    for (int i = 0; i < 10; ++i)
        turnWheelOver(1);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return picker()->barAlpha() == 1 && tile(0) != nullptr; }));
    QTest::mouseClick(&driver->view(), Qt::RightButton, Qt::NoModifier, WindowDriver::middleOf(*tile(4)).toPoint());
    EXPECT_TRUE(driver->waitFor<YMSSinglePhotoViewController>());
}

TEST_F(PickerWindow, WhatIsLookedAtStaysWhileTheLibraryChanges)
{
    openPicker();
    driver->press(Qt::Key_Escape);
    ASSERT_TRUE(driver->waitFor<ViewController>());
    showPicker(3 * kEach); // nothing has changed in this one yet
    tapTile(1);
    driver->press(Qt::Key_PageDown);
    driver->press(Qt::Key_PageDown);
    QQuickItem* const focused = driver->view().activeFocusItem();
    const std::string identifier = identifierOf(focused);
    const double place = focused->mapToScene({}).y();
    ASSERT_NE(identifier, "");
    const PHAsset chosen = picker()->selectedPhotos().front();
    QFile file(QString::fromStdString(chosen.path));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime);
    file.close();
    const QString moved = QString::fromStdString(chosen.localIdentifier);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return picker()->itemOfPhoto(moved) == 3 * kEach; }));
    driver->settle();
    EXPECT_EQ(identifierOf(driver->view().activeFocusItem()), identifier) << "the list was exchanged";
    add("New", -kEach); // newer than all others
    waitForPhotos(4 * kEach);
    EXPECT_EQ(identifierOf(driver->view().activeFocusItem()), identifier);
    EXPECT_LE(std::abs(driver->view().activeFocusItem()->mapToScene({}).y() - place), 130) << "it moved out of sight";
    driver->press(Qt::Key_Home);
    EXPECT_THAT(told(1), Not(HasSubstr("chosen")));
    driver->press(Qt::Key_PageDown);
    EXPECT_EQ(picker()->selectedCount(), 1);
}

TEST_F(PickerWindow, PhotosThatComeInThePlaceOfOthersHaveTheirTiles)
{
    openPicker();
    driver->press(Qt::Key_PageDown);
    driver->press(Qt::Key_PageDown);
    EXPECT_EQ(picker()->barAlpha(), 0);
    removeAll();
    waitForPhotos(0);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return picker()->barAlpha() == 1; })) << "nothing can be scrolled";
    add("Garden", 0);
    waitForPhotos(kEach);
    expectOwnPhotos();
}

TEST_F(PickerWindow, TheSystemsWindowStaysAtHandInASandbox)
{
    removeAll();
    const LibraryRoots former = LibraryEngine::shared().roots();
    LibraryRoots hidden = former;
    hidden.sandboxMark = sample("meadow.jpg"); // any file
    LibraryEngine::shared().configure(hidden);
    openPicker({}, 0);
    {
        const QTemporaryDir elsewhere;
        for (const std::string& path : addSamplePhotos(elsewhere.path().toStdString(), 2, 0)) {
            portal.setChoice({QUrl::fromLocalFile(QString::fromStdString(path)).toString()});
            const int chosen = picker()->selectedCount();
            ASSERT_TRUE(driver->tap(QStringLiteral("Choose photos…"))) << path;
            EXPECT_TRUE(WindowDriver::waitUntil([&] { return picker() && picker()->selectedCount() > chosen; }));
        }
    }
    LibraryEngine::shared().configure(former);
    LibraryEngine::shared().rescan(); // those are gone
}

TEST_F(PickerWindow, TheCameraIsSeenInItsTileUprightAsTheDeviceIsHeld)
{
    const auto camera = std::make_shared<StandInCamera>();
    UIDevice::setOrientation(UIDeviceOrientation::LandscapeLeft);
    openPicker();
    const ServedCameras served({camera}); // in the place of the window's own
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return camera->running() == 1; }));
    // Red beside green: it is above in a device that lies on its left side.
    ASSERT_TRUE(camera->give(makePicture(20, 10, [](int x, int) {
        return x < 10 ? Rgba{0, 255, 0, 255} : Rgba{255, 0, 0, 255};
    })));
    driver->settle();
    const QImage seen = driver->grab().scaled(driver->view().size());
    const auto redAt = [&](double down) {
        const QPointF point = tile(0)->mapToScene({10, tile(0)->height() * down});
        return seen.pixelColor(point.toPoint()).red();
    };
    EXPECT_GT(redAt(0.2), redAt(0.8) + 50);
    UIDevice::setOrientation(UIDeviceOrientation::Unknown);
}

TEST_F(PickerWindow, WhatIsDroppedIsChosen)
{
    openPicker();
    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile(QString::fromStdString(sample("meadow.jpg")))});
    EXPECT_EQ(driver->drop(dropped), Qt::CopyAction);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return picker()->selectedCount() == 1; }));
}

} // namespace
} // namespace lamina::test
