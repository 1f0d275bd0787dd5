#include "CollageCanvasFixture.h"
#include "picker/YMSPhotoPickerTheme.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "platform/base/UIColor.h"
#include "platform/photos/PHPhotoLibrary.h"
#include "platform/view/UIImagePickerController.h"

#include <array>
#include <cstdlib>
#include <memory>

namespace lamina::test {
namespace {

class CollageGallery : public CollageCanvas {
protected:
    void SetUp() override
    {
        for (const char* const name : {"HOME", "XDG_CONFIG_HOME"})
            ::setenv(name, home.path(name).c_str(), 1); // a library that is empty
        CollageCanvas::SetUp();
        Clock::setShared(nullptr); // the library's waits are real
    }
    void TearDown() override
    {
        PHPhotoLibrary::setAuthorizer({});
        CollageCanvas::TearDown();
    }
    template <class Screen>
    std::shared_ptr<Screen> top() const
    {
        return std::dynamic_pointer_cast<Screen>(window.topViewController());
    }

    const TemporaryFolder home;
};

TEST_F(CollageGallery, AnotherPhotoTakesThePlaceOfTheCurrentSlotsInOneStep)
{
    for (const int count : {2, 3}) {
        open(count);
        for (int number = 1; number <= count; ++number) {
            const auto index = static_cast<std::size_t>(number - 1);
            editor->selectSlot(number);
            editor->nudge(9, 4);
            editor->leftBtn();
            CollageComposition work = state();
            work.effectFlags.fill(true);
            editor->setComposition(work);
            editor->chooseTool("gallery");
            settle();
            const auto picker = top<YMSPhotoPickerViewController>();
            ASSERT_TRUE(picker);
            EXPECT_EQ(picker->numberOfPhotoToSelect, 1U);
            editor->launchSpecialController(); // it is there already
            settle();
            EXPECT_EQ(window.topViewController(), picker);
            picker->delegate()->photoPickerViewController(*picker, photo(5));
            EXPECT_TRUE(slot(index).image.isIdenticalTo(work.photoSlots[index].image)) << "not before it has gone";
            settle();
            EXPECT_EQ(window.topViewController(), editor);
            for (std::size_t other = 0; other < static_cast<std::size_t>(count); ++other) {
                const UIImage& wanted = other == index ? photo(5) : work.photoSlots[other].master;
                EXPECT_TRUE(imagesMatch(slot(other).master.cgImage(), wanted.cgImage())) << number;
            }
            EXPECT_TRUE(slot(index).image.isIdenticalTo(slot(index).master));
            EXPECT_EQ(editor->slotImageView(index)->center(), work.photoSlots[index].center);
            EXPECT_EQ(state().effectFlags, (std::array<bool, 9>{}));
            editor->undo();
            EXPECT_TRUE(slot(index).image.isIdenticalTo(work.photoSlots[index].image));
            EXPECT_TRUE(slot(index).master.isIdenticalTo(work.photoSlots[index].master));
        }
    }
    const UIColor teal{40 / 255.0, 196 / 255.0, 182 / 255.0, 1};
    const YMSPhotoPickerTheme& theme = YMSPhotoPickerTheme::sharedInstance();
    EXPECT_EQ((std::array{theme.navigationBarBackgroundColor, theme.orderTintColor, theme.cameraVeilColor}),
              (std::array{teal, teal, teal}));
    EXPECT_EQ((std::array{theme.titleLabelTextColor, theme.tintColor, theme.orderLabelTextColor}),
              (std::array{UIColor::black(), UIColor::black(), UIColor::black()}));
    EXPECT_EQ(theme.cameraIconColor, UIColor::white());
    EXPECT_EQ(theme.statusBarStyle, 0);
}

TEST_F(CollageGallery, RefusedAccessIsToldAndACancelledPickerGoes)
{
    using Status = PHAuthorizationStatus;
    PHPhotoLibrary::setAuthorizer({[] { return Status::Denied; }, {}});
    editor->launchSpecialController();
    settle();
    const auto alert = top<UIAlertController>();
    ASSERT_TRUE(alert);
    EXPECT_EQ(alert->actions()[0].title + alert->actions()[1].title, "CancelSettings");
    EXPECT_EQ(alertText(), "Allow photo album access? / Need your permission to access photo albumbs");
    PHPhotoLibrary::setAuthorizer({});
    editor->launchSpecialController();
    settle();
    const auto picker = top<YMSPhotoPickerViewController>();
    ASSERT_TRUE(picker);
    picker->delegate()->photoPickerViewControllerDidReceiveCameraAccessDenied(*picker);
    settle();
    EXPECT_EQ(alertText(), "Allow camera access? / Need your permission to take a photo");
    picker->cancelPicking();
    settle();
    EXPECT_EQ(window.topViewController(), editor);
    EXPECT_FALSE(editor->canUndo());
}

TEST_F(CollageGallery, TheSystemsPickerGivesTheViewASquareAndTheMasterTheHalvedWhole)
{
    const struct {
        CGSize photo;
        CGSize master;
    } table[] = {{{80, 40}, {40, 20}}, {{31, 9}, {15, 4}}, {{1, 1}, {1, 1}}};
    editor->selectSlot(2);
    for (const auto& c : table) {
        const auto picker = std::make_shared<UIImagePickerController>();
        picker->setDelegate(editor);
        editor->present(picker, false);
        settle();
        // Red on the left, and on the right a blue of which half is seen through.
        const auto color = [&c](int x, int) {
            return 2 * x < c.photo.width ? Rgba{255, 0, 0, 255} : Rgba{0, 0, 255, 128};
        };
        const UIImage photo(
            makePicture(static_cast<int>(c.photo.width), static_cast<int>(c.photo.height), color, true));
        editor->imagePickerController(*picker, {photo, "photo"});
        settle();
        EXPECT_EQ(window.topViewController(), editor);
        EXPECT_EQ(slot(1).master.size(), c.master);
        EXPECT_EQ(slot(1).image.size(), (CGSize{600, 600}));
        EXPECT_EQ(pixelAt(slot(1).master.cgImage(), 0, 0), (Rgba{255, 0, 0, 255}));
        editor->undo();
        EXPECT_FALSE(editor->canUndo());
    }
}

} // namespace
} // namespace lamina::test
