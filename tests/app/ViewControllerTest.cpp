#include "app/ViewController.h"

#include "LogCapture.h"
#include "ScreenTest.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/collage/CreateCollageViewController.h"
#include "hud/ProgressOverlay.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "platform/application/UIApplication.h"
#include "platform/base/UIColor.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHCollection.h"
#include "platform/photos/PHPhotoLibrary.h"
#include "platform/view/UIImageMetaType.h"
#include "platform/view/UINavigationController.h"

#include <cstddef>
#include <filesystem>
#include <stdexcept>

namespace lamina::test {
namespace {

class HomeScreen : public ScreenTest {
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        UIScreen::setMain({{100, 120}, 3});
        home = storyboard->instantiate<ViewController>(scene::kHome);
        stack = UINavigationController::make(home);
        window.setRootViewController(stack);
        home->view();
        settle();
    }

    /// Opens a picker and answers for it as one that the user has finished, without waiting.
    void finishPicking(const std::string& entry, const std::vector<std::string>& names)
    {
        home->selectedBtnStr = entry;
        home->launchSpecialController();
        settle();
        const auto picker = top<YMSPhotoPickerViewController>();
        ASSERT_TRUE(picker);
        std::vector<PHAsset> assets;
        for (const std::string& name : names)
            assets.push_back({name, folder.path(name), 0, 0, 0});
        picker->delegate()->photoPickerViewController(*picker, assets);
    }
    void pick(const std::string& entry, const std::vector<std::string>& names)
    {
        finishPicking(entry, names);
        settle();
    }

    /// Which photos these are, by the colour that each has all over.
    static std::vector<int> blues(const std::vector<UIImage>& images)
    {
        std::vector<int> read;
        for (const UIImage& image : images)
            read.push_back(pixelAt(image.cgImage(), 0, 0)[2]);
        return read;
    }

    std::shared_ptr<ViewController> home;
    std::shared_ptr<UINavigationController> stack;
};

TEST_F(HomeScreen, OnlyLogsThatAnInterstitialCannotBePreloaded)
{
    int calls = 0;
    ViewController::setInterstitialPreload([&] {
        if (++calls == 2)
            throw std::runtime_error("no such advertiser");
        return Outcome(Error{"interstitial", "no network"});
    });
    const LogCapture log;
    const auto another = storyboard->instantiate<ViewController>(scene::kHome);
    another->view();
    another->view();
    storyboard->instantiate<ViewController>(scene::kHome)->view();
    ViewController::setInterstitialPreload({});
    storyboard->instantiate<ViewController>(scene::kHome)->view();
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(log.text(), "the interstitial can't be preloaded: interstitial: no network\n"
                          "the interstitial can't be preloaded: no such advertiser\n");
}

TEST_F(HomeScreen, CollageEntriesOpenThePickerInItsColours)
{
    const UIColor teal{40 / 255.0, 196 / 255.0, 182 / 255.0, 1};
    YMSPhotoPickerTheme theme;
    theme.navigationBarBackgroundColor = theme.orderTintColor = theme.cameraVeilColor = teal;
    theme.tintColor = theme.orderLabelTextColor = UIColor::black();
    for (const unsigned photos : {2u, 3u}) {
        YMSPhotoPickerTheme::sharedInstance().reset();
        photos == 2 ? home->twoPhotoCollage() : home->threePhotoCollage();
        settle();
        const auto picker = top<YMSPhotoPickerViewController>();
        ASSERT_TRUE(picker);
        EXPECT_EQ(picker->numberOfPhotoToSelect, photos);
        EXPECT_EQ(picker->theme(), theme);
        home->dismissAllViewControllers();
        settle();
    }
}

TEST_F(HomeScreen, PickedPhotosReachTheEditorInTheirOrder)
{
    const auto photos = [this] { return top<CreateCollageViewController>()->selectedImages(); };
    pick("threePhoto", {"a.png", "b.png", "a.png"});
    ASSERT_TRUE(top<CreateCollageViewController>());
    EXPECT_EQ(stack->viewControllers().size(), 2u);
    EXPECT_EQ(blues(photos()), (std::vector{10, 200, 10}));
    for (const UIImage& image : photos()) // all of it, over 40 points less than the screen on each axis, at its scale
        EXPECT_EQ(image.pixelSize(),
                  pixelAt(image.cgImage(), 0, 0)[2] == 10 ? (IntSize{320, 240}) : (IntSize{180, 240}));
    stack->popViewController(false);
    settle();
    pick("blendPhoto", {"b.png", "a.png"});
    ASSERT_TRUE(top<BlendPhotoViewController>());
    EXPECT_EQ(blues(top<BlendPhotoViewController>()->getImageArr), (std::vector{200, 10}));
}

TEST_F(HomeScreen, LeadsFromTheLibraryOverThePickerToTheEditor)
{
    PHPhotoLibrary::setFurtherFolders({folder.path()});
    const auto ownAlbum = [this] {
        for (const PHAssetCollection& album :
             fetchAssetCollectionsWithType(PHAssetCollectionType::Album, PHAssetCollectionSubtype::AlbumRegular))
            if (album.path == folder.path())
                return fetchAssetsInAssetCollection(album);
        return PHFetchResult();
    };
    ASSERT_TRUE(DispatchQueue::main().runUntil([&] { return ownAlbum().count() == 2; }, 20));
    home->twoPhotoCollage();
    settle();
    const auto picker = top<YMSPhotoPickerViewController>();
    ASSERT_TRUE(picker && picker->currentCollectionItem());
    for (const char* const name : {"b.png", "a.png"}) // in the order of choice
        for (const PHAsset& asset : ownAlbum().objects(0, 2))
            if (asset.path == folder.path(name))
                picker->tapItem(static_cast<int>(*picker->currentCollectionItem()->assets.indexOfObject(asset)) + 1);
    picker->finishPickingPhotos();
    settle();
    ASSERT_TRUE(top<CreateCollageViewController>());
    EXPECT_EQ(blues(top<CreateCollageViewController>()->selectedImages()), (std::vector{200, 10}));
    PHPhotoLibrary::setFurtherFolders({});
}

TEST_F(HomeScreen, LargePhotosAreReducedAndTheirReadingCanBeCancelled)
{
    writePng(folder.path("large.png"), rampPicture(900, 700, 0));
    pick("twoPhoto", {"large.png"});
    EXPECT_EQ(alertText(), "Oops / Please select 2 photos");
    ASSERT_EQ(home->chosenImages.size(), 1u);
    EXPECT_EQ(home->chosenImages[0].pixelSize(), (IntSize{771, 600})); // 6 times the screen's width

    const UIImage before = home->chosenImages[0];
    finishPicking("blendPhoto", {"a.png", "b.png"});
    ASSERT_TRUE(DispatchQueue::main().runUntil([] { return ProgressOverlay::shared().isBlocking(); }, 20));
    EXPECT_EQ(window.topViewController(), home);
    ProgressOverlay::shared().giveUp();
    settle();
    EXPECT_FALSE(ProgressOverlay::shared().isPresent());
    EXPECT_EQ(window.topViewController(), home);
    ASSERT_EQ(home->chosenImages.size(), 1u);
    EXPECT_TRUE(home->chosenImages[0].isIdenticalTo(before));
}

TEST_F(HomeScreen, ADamagedPhotoIsUsedAndToldOf)
{
    writeFile(folder.path("broken.jpg"), damagedPhoto());
    pick("twoPhoto", {"a.png", "broken.jpg"});
    EXPECT_EQ(alertText(), "The photo is damaged / broken.jpg: the picture is damaged; it is shown as far as it goes.");
    ASSERT_TRUE(top<CreateCollageViewController>());
    EXPECT_EQ(top<CreateCollageViewController>()->selectedImages().size(), 2u);
}

TEST_F(HomeScreen, AnotherNumberOfPhotosOpensNothing)
{
    const struct {
        const char* entry;
        std::vector<std::string> names;
        std::size_t kept;
        const char* alert;
    } table[] = {
        {"threePhoto", {"a.png", "b.png"}, 2, "Oops / Please select 3 photos"},
        {"twoPhoto", {"a.png", "b.png", "a.png"}, 3, "Oops / Please select 2 photos"},
        {"twoPhoto", {"a.png", "gone.png"}, 1, "Oops / Please select 2 photos\ngone.png: no such file."},
        {"", {"a.png"}, 1, ""},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(testing::Message() << c.entry << ' ' << c.names.size());
        pick(c.entry, c.names);
        EXPECT_EQ(home->chosenImages.size(), c.kept);
        EXPECT_EQ(alertText(), c.alert);
        EXPECT_EQ(window.topViewController(), home);
    }
}

TEST_F(HomeScreen, PhotosFromOutsideBeginWhatTheirNumberOrTheirEntrySays)
{
    const std::string bytes = readFile(folder.path("b.png"));
    const PhotoSource a = photo("a.png");
    const PhotoSource b = PhotoSource::fromBytes({bytes.begin(), bytes.end()}, "pasted"); // none of these has a file
    const struct {
        const char* entry; ///< empty: dropped on this screen
        std::vector<PhotoSource> photos;
        std::vector<int> collage; ///< none: it doesn't begin
        const char* alert;
    } table[] = {
        {"", {}, {}, ""},
        {"", {a, b, a}, {10, 200, 10}, ""},
        {"", {b, a, b, a}, {200, 10, 200}, "Too many photos / The collage has no place for one of the photos."},
        {"twoPhoto", {b, a}, {200, 10}, ""},
        {"twoPhoto", {b, a, b, b}, {200, 10}, "Too many photos / The collage has no place for 2 of the photos."},
        {"threePhoto", {a, b}, {}, "Oops / Please select 3 photos"},
        {"twoPhoto",
         {photo("gone.png"), PhotoSource::fromBytes({1, 2}, "odd")},
         {},
         "Oops / Please select 2 photos\ngone.png: no such file.\nodd: not a picture."},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(testing::Message() << c.entry << ' ' << c.photos.size());
        *c.entry ? home->beginCollage(c.entry, c.photos) : home->receivePhotos(c.photos);
        settle();
        EXPECT_EQ(alertText(), c.alert);
        const auto editor = top<CreateCollageViewController>();
        EXPECT_EQ(blues(editor ? editor->selectedImages() : std::vector<UIImage>()), c.collage);
        if (editor)
            stack->popViewController(false);
        settle();
    }
    home->receivePhotos({a, b, a});
    EXPECT_FALSE(home->wantsPhotos()); // those are read first
    home->receivePhotos({b, b, b});
    settle();
    ASSERT_TRUE(top<CreateCollageViewController>());
    EXPECT_EQ(blues(top<CreateCollageViewController>()->selectedImages()), (std::vector{10, 200, 10}));
}

TEST_F(HomeScreen, WorkThatWasLeftIsOfferedUntilItIsRemoved)
{
    setKeptWorksFolder(folder.path("kept"));
    firstPickedImage = secondPickedImage = UIImage(rampPicture(100, 100, 0));
    home->performSegue(segue::kPickedToBlend);
    settle();
    EXPECT_FALSE(home->workOffered());
    const auto leave = [&] {
        top<BlendPhotoViewController>()->nudge(7, 0);
        top<BlendPhotoViewController>()->backBtn();
        settle();
        EXPECT_EQ(alertText(), "⚠️ / Discard Editing");
    };
    leave();
    EXPECT_FALSE(firstPickedImage);
    ASSERT_TRUE(home->workOffered());
    EXPECT_TRUE(home->workWasLeft());
    EXPECT_TRUE(home->workPrint().value<UIImage>());
    EXPECT_TRUE(home->workLine().startsWith("Blend, today at ")) << home->workLine().toStdString();

    home->continueWork();
    home->continueWork(); // an impatient second press
    settle();
    ASSERT_TRUE(top<BlendPhotoViewController>());
    EXPECT_FALSE(home->workOffered());
    EXPECT_EQ(top<BlendPhotoViewController>()->composition().photos[1].transform.tx, 7);
    leave();

    home->discardWork();
    settle();
    EXPECT_EQ(alertText(1), "⚠️ / Discard this work?");
    EXPECT_TRUE(home->workOffered());
    const KeptOffer offer = *offeredWork({keptKind(BlendComposition())});
    for (const auto& entry : std::filesystem::directory_iterator(offer.folder))
        if (entry.path().filename() != "journal")
            std::filesystem::remove(entry); // all pictures
    home->continueWork();
    settle();
    EXPECT_EQ(alertText(), "Can’t open the work / a part of it is missing or damaged");
    home->discardWork();
    settle();
    alertText();
    EXPECT_FALSE(home->workOffered());
    EXPECT_EQ(home->workLine(), "");
    EXPECT_FALSE(std::filesystem::exists(offer.folder));
    setKeptWorksFolder({});
}

TEST_F(HomeScreen, ACollageIsOfferedBesideABlendTheNewestFirst)
{
    setKeptWorksFolder(folder.path("kept"));
    const auto makeCollage = [this](std::vector<PhotoSource> photos, double dx) {
        home->beginCollage(photos.size() == 3 ? "threePhoto" : "twoPhoto", photos);
        settle();
        top<CreateCollageViewController>()->nudge(dx, 0);
        top<CreateCollageViewController>()->backBtn();
        settle();
        EXPECT_EQ(window.topViewController(), home) << "nothing is asked";
    };
    makeCollage({photo("a.png"), photo("b.png"), photo("a.png")}, 7);
    EXPECT_TRUE(home->workWasLeft() && home->workPrint().value<UIImage>());
    EXPECT_TRUE(home->workLine().startsWith("Collage, today at ")) << home->workLine().toStdString();
    firstPickedImage = secondPickedImage = UIImage(rampPicture(100, 100, 0));
    home->performSegue(segue::kPickedToBlend);
    settle();
    top<BlendPhotoViewController>()->backBtn();
    settle();
    alertText();
    EXPECT_TRUE(home->workLine().startsWith("Blend, ")) << home->workLine().toStdString();
    home->discardWork();
    settle();
    alertText();

    const auto goOn = [this] {
        home->continueWork();
        settle();
        EXPECT_FALSE(home->workOffered() || home->presentedViewController());
        return top<CreateCollageViewController>();
    };
    auto editor = goOn();
    ASSERT_TRUE(editor);
    EXPECT_EQ(stack->viewControllers().back(), editor);
    EXPECT_EQ(editor->photoCount(), 3);
    EXPECT_EQ(editor->composition().photoSlots[0].center.x, 57);
    editor->backBtn();
    editor.reset();
    settle();
    makeCollage({photo("a.png"), photo("b.png")}, 5); // takes the place of the one before
    editor = goOn();
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->photoCount(), 2);
    EXPECT_FALSE(std::filesystem::exists(folder.path("kept/collage-2")));
    editor->backBtn();
    editor.reset();
    settle();
    setKeptWorksFolder({});
}

TEST_F(HomeScreen, ASinglePictureIsKeptAndNothingOpens)
{
    home->twoPhotoCollage();
    settle();
    const UIImage picture(rampPicture(4, 4, 0));
    home->photoPickerViewController(*top<YMSPhotoPickerViewController>(), picture);
    settle();
    ASSERT_EQ(home->chosenImages.size(), 1u);
    EXPECT_TRUE(home->chosenImages[0].isIdenticalTo(picture));
    EXPECT_EQ(window.topViewController(), home);
}

TEST_F(HomeScreen, RefusedAccessLeadsToTheSettings)
{
    std::vector<std::string> opened;
    UIApplication::shared().setURLOpener([&](const std::string& url) {
        opened.push_back(url);
        return true;
    });
    YMSPhotoPickerViewController picker;
    home->photoPickerViewControllerDidReceivePhotoAlbumAccessDenied(picker);
    settle();
    EXPECT_EQ(alertText(), "Allow photo album access? / Need your permission to access photo albumbs");
    EXPECT_TRUE(opened.empty());

    home->twoPhotoCollage();
    settle();
    const auto shown = top<YMSPhotoPickerViewController>();
    home->photoPickerViewControllerDidReceiveCameraAccessDenied(*shown);
    settle();
    EXPECT_EQ(alertText(1), "Allow camera access? / Need your permission to take a photo");
    EXPECT_EQ(opened, std::vector<std::string>{"app-settings:"});
    EXPECT_EQ(window.topViewController(), shown);
    UIApplication::shared().setURLOpener({});
}

TEST_F(HomeScreen, ShortScreensSpaceTheEntriesByThemselves)
{
    const std::pair<double, double> table[] = {{480, 55}, {568, 55}, {568.5, 0}, {667, 0}};
    for (const auto& [height, spacing] : table) {
        UIScreen::setMain({{320, height}, 3});
        ViewController screen;
        screen.view();
        EXPECT_EQ(screen.verticlebtnConstraints, spacing) << height;
    }
}

} // namespace
} // namespace lamina::test
