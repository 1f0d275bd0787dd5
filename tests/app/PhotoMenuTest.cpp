// Photos of a blend that are replaced, cut again and swapped, and those that come from outside.
#include "ScreenTest.h"
#include "app/PinchZoomViewController.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "platform/photos/PhotoLoading.h"
#include "platform/view/UIImagePickerController.h"

#include <utility>

namespace lamina::test {
namespace {

class PhotoMenu : public ScreenTest {
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        writePng(folder.path("c.png"), rampPicture(60, 40, 90));
        window.setRootViewController(std::make_shared<UIViewController>());
        for (const char* const name : {"a.png", "b.png"}) {
            const auto crop = storyboard->instantiate<PinchZoomViewController>(scene::kCrop);
            crop->pickedImage = *loadUpright(photo(name), {});
            crop->pickedSource = photo(name);
            window.topViewController()->present(crop, true);
            settle();
            cut(2, {100, 80});
        }
        editor = top<BlendPhotoViewController>();
        ASSERT_TRUE(editor);
    }

    const BlendPhoto& shown(int number) const { return editor->composition().photos[number == 1 ? 0 : 1]; }
    /// The crop screen in front cuts the photo there.
    void cut(double zoom, CGPoint offset)
    {
        const auto crop = top<PinchZoomViewController>();
        ASSERT_TRUE(crop);
        crop->setZoomScale(zoom);
        crop->scrollView().setContentOffset(offset);
        crop->doneButton();
        settle();
    }
    void choose(int number, const char* action)
    {
        editor->openPhotoMenu(number);
        editor->choosePhotoAction(QString::fromLatin1(action));
        settle();
    }
    void pick(const std::string& name)
    {
        ASSERT_TRUE(top<UIImagePickerController>());
        top<UIImagePickerController>()->choose(photo(name));
        settle();
    }
    /// Each photo with marks of its own on it.
    void mark()
    {
        BlendComposition marked = editor->composition();
        for (const int i : {0, 1}) {
            marked.photos[i].transform = CGAffineTransform::translation(5.0 + i, 7);
            marked.photos[i].alpha = 0.25 + 0.5 * i;
            marked.photos[i].image = UIImage(rampPicture(kWidth, kWidth, 33));
        }
        marked.contrastBool = marked.brightBool = true;
        editor->setComposition(marked);
    }
    void expectShown(int number) const
    {
        const UIImageView& view = number == 1 ? editor->imgView1() : editor->imgView2();
        EXPECT_TRUE(view.image().isIdenticalTo(shown(number).image));
        EXPECT_TRUE(view.transform() == shown(number).transform && view.alpha() == shown(number).alpha);
    }
    std::string names() const { return shown(1).source.name + " " + shown(2).source.name; }

    std::shared_ptr<BlendPhotoViewController> editor;
};

TEST_F(PhotoMenu, IsOfOnePhotoAndClosesWithTheNextChange)
{
    constexpr std::pair<int, int> kTable[] = {{1, 1}, {2, 2}, {3, 2}, {-1, 2}, {1, 1}, {0, 2}}; // 0: that which moves
    for (const auto& [asked, open] : kTable) {
        editor->openPhotoMenu(asked);
        EXPECT_EQ(editor->menuPhoto(), open) << asked;
    }
    editor->nudge(1, 0);
    EXPECT_EQ(editor->menuPhoto(), 0);
    editor->choosePhotoAction(QStringLiteral("swap")); // of no photo
    choose(1, "turn");
    EXPECT_EQ(shown(1).source.name, "a.png");
    EXPECT_FALSE(window.topViewController()->presentedViewController());
}

TEST_F(PhotoMenu, AnotherPhotoTakesThePlaceOnTheCanvasInOneStep)
{
    for (const int number : {1, 2}) {
        mark();
        const BlendComposition before = editor->composition();
        choose(number, "replace");
        EXPECT_EQ(top<UIImagePickerController>()->shortSide(), 2250);
        pick("c.png");
        const auto crop = top<PinchZoomViewController>();
        ASSERT_TRUE(crop);
        EXPECT_EQ(crop->step(), number);
        EXPECT_EQ(crop->zoomScale(), 1);
        cut(3, {30, 20});
        EXPECT_EQ(shown(number).source.name, "c.png");
        EXPECT_EQ(shown(number).crop, (PhotoCrop{{60, 40}, kWidth, 3, {30, 20}}));
        EXPECT_EQ(shown(number).actualImage.pixelSize(), (IntSize{kWidth, kWidth}));
        EXPECT_TRUE(shown(number).image.isIdenticalTo(shown(number).actualImage));
        const BlendPhoto& former = before.photos[number == 1 ? 0 : 1];
        EXPECT_TRUE(shown(number).transform == former.transform && shown(number).alpha == former.alpha);
        EXPECT_FALSE(editor->composition().contrastBool || editor->composition().brightBool);
        expectShown(number);
        const UIImage& slot = number == 1 ? firstPickedImage : secondPickedImage;
        EXPECT_TRUE(slot.isIdenticalTo(shown(number).actualImage));
        editor->undo();
        EXPECT_TRUE(looksAlike(editor->composition(), before));
        EXPECT_TRUE(slot.isIdenticalTo(shown(number).actualImage));
    }
}

TEST_F(PhotoMenu, WhoTurnsBackFindsAllAsItWas)
{
    choose(1, "replace");
    top<UIImagePickerController>()->cancel();
    settle();
    choose(1, "replace");
    pick("c.png");
    top<PinchZoomViewController>()->backButton();
    settle();
    EXPECT_EQ(window.topViewController(), editor);
    EXPECT_FALSE(editor->canUndo());
    EXPECT_TRUE(firstPickedImage.isIdenticalTo(shown(1).actualImage));
}

TEST_F(PhotoMenu, APhotoIsCutAgainFromWhereItWasCut)
{
    UIScreen::setMain({{430, 900}, 3}); // the window has grown meanwhile
    choose(2, "crop");
    const auto crop = top<PinchZoomViewController>();
    ASSERT_TRUE(crop);
    EXPECT_EQ(crop->containerViewHeightConstraint(), kWidth);
    EXPECT_EQ(crop->zoomScale(), 2);
    EXPECT_EQ(crop->scrollView().contentOffset(), (CGPoint{100, 80}));
    const UIImage former = shown(2).image;
    cut(2, {100, 80});
    EXPECT_FALSE(shown(2).image.isIdenticalTo(former));
    EXPECT_EQ(bytesOf(shown(2).image.cgImage()), bytesOf(former.cgImage()));
    EXPECT_EQ(shown(1).source.name, "a.png");

    // In a square of another size the same part of the photo is seen.
    BlendComposition other = editor->composition();
    other.photos[0].crop = {{40, 30}, kWidth / 3.0, 2, {20, 30}};
    editor->setComposition(other);
    choose(1, "crop");
    EXPECT_EQ(top<PinchZoomViewController>()->scrollView().contentOffset(), (CGPoint{60, 90}));
}

TEST_F(PhotoMenu, AnOriginalThatIsGoneIsTold)
{
    BlendComposition pasted = editor->composition();
    pasted.photos[0].source = {};
    pasted.photos[1].source = photo("gone.png");
    editor->setComposition(pasted);
    choose(1, "crop");
    EXPECT_EQ(alertText(), "Can’t crop the photo / The photo: its original is no longer at hand.");
    choose(2, "crop");
    EXPECT_EQ(alertText(), "Can’t open the photo / gone.png: no such file.");
    EXPECT_EQ(window.topViewController(), editor);
    EXPECT_FALSE(editor->canUndo());
    EXPECT_TRUE(editor->wantsPhotos());
}

TEST_F(PhotoMenu, SwappedPhotosKeepAllThatWasDoneToThem)
{
    mark();
    const BlendComposition before = editor->composition();
    BlendComposition swapped = before;
    std::swap(swapped.photos[0], swapped.photos[1]);
    choose(1, "swap");
    EXPECT_TRUE(looksAlike(editor->composition(), swapped));
    EXPECT_EQ(names(), "b.png a.png");
    EXPECT_TRUE(shown(1).actualImage.isIdenticalTo(swapped.photos[0].actualImage));
    expectShown(1);
    expectShown(2);
    EXPECT_FALSE(editor->composition().contrastBool);
    choose(2, "swap");
    EXPECT_TRUE(looksAlike(editor->composition(), before));
}

TEST_F(PhotoMenu, PhotosFromOutsideTakeThePlaceInHandOrBoth)
{
    editor->receivePhotos({photo("c.png")});
    settle();
    cut(1, {});
    EXPECT_EQ(names(), "a.png c.png");
    editor->undo();

    const auto dropThree = [&] {
        editor->receivePhotos({photo("b.png"), photo("c.png"), photo("a.png")});
        settle();
        EXPECT_EQ(alertText(), "Too many photos / Lamina blends two photos. One was left out.");
        cut(1, {});
    };
    dropThree();
    EXPECT_FALSE(editor->wantsPhotos());
    top<PinchZoomViewController>()->backButton();
    settle();
    EXPECT_FALSE(editor->canUndo()) << "until both are cut";
    dropThree();
    cut(1, {});
    EXPECT_EQ(names(), "b.png c.png");
    editor->undo();
    EXPECT_EQ(names(), "a.png b.png");
    EXPECT_FALSE(editor->canUndo());
}

TEST_F(PhotoMenu, WhereThereIsACameraTheUserIsAsked)
{
    UIImagePickerController::setCameraAvailability([] { return true; });
    choose(2, "replace");
    EXPECT_EQ(alertText(1), "Replace / ");
    EXPECT_EQ(top<UIImagePickerController>()->sourceType(), UIImagePickerControllerSourceType::Camera);
    UIImagePickerController::setCameraAvailability({});
}

} // namespace
} // namespace lamina::test
