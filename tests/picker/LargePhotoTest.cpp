// One photo of the picker, large.
#include "PhotoPickerFixture.h"

#include "picker/YMSSinglePhotoViewController.h"
#include "platform/view/HeadlessHost.h"
#include "platform/view/PresentationHost.h"
#include "platform/view/TouchDispatcher.h"

namespace lamina::test {
namespace {

using Style = YMSSinglePhotoViewController::PresentationStyle;

class MovingHost : public HeadlessHost {
    bool showsMotion() const override { return true; }
};

class LargePhoto : public PhotoPickerTest {
protected:
    void SetUp() override
    {
        PhotoPickerTest::SetUp();
        open(3);
        show("sea");
        album = picker->currentCollectionItem()->assets;
        picker->dismiss(false);
        settle();
    }
    /// With its neighbours in "sea", of which only the second can be added.
    void look(std::size_t index)
    {
        large = std::make_shared<YMSSinglePhotoViewController>(
            album.objectAtIndex(index), manager, [this](bool selected) { heard += selected ? 'y' : 'n'; });
        large->setNeighbours(album, index);
        large->setStateOfPhoto([this](const PHAsset& asset) {
            const auto place = *album.indexOfObject(asset);
            return SinglePhotoState{QString::number(place + 1), place == 1};
        });
        window.rootViewController()->present(large, false);
        settle();
        large->placeViews(360, 720, 52, 128);
    }
    std::string name() const { return std::filesystem::path(large->currentAsset().path).stem().string(); }
    CGSize seen() const { return large->photoImageView().image().size(); }
    CGRect shownRect() const
    {
        const UIView& photo = large->photoImageView();
        return photo.transformToRoot().boundingBox(photo.bounds());
    }
    void drag(double from, double to)
    {
        TouchDispatcher fingers(large->canvasView());
        fingers.touchBegan(1, {from, 300}, 0);
        for (int step = 1; step <= 20; ++step)
            fingers.touchMoved(1, {from + (to - from) * step / 20, 300}, step * 0.01);
        fingers.touchEnded(1, {to, 300}, 0.3);
        settle();
    }

    PHFetchResult album; ///< s1 ... s4, of 40 × 30 pixels
    const std::shared_ptr<PHImageManager> manager = std::make_shared<PHImageManager>();
    std::shared_ptr<YMSSinglePhotoViewController> large;
    std::string heard;
};

TEST_F(LargePhoto, IsAskedForAtTheScaleTwiceOver)
{
    writePng(home.path("long.png"), rampPicture(3600, 20, 0));
    const PHAsset asset{.localIdentifier = "long", .path = home.path("long.png")};
    large = std::make_shared<YMSSinglePhotoViewController>(asset, manager, nullptr);
    window.rootViewController()->present(large, false);
    settle();
    EXPECT_EQ(seen(), (CGSize{3 * 3 * 360, 18}));
    EXPECT_EQ(large->photoFacts(), ""); // nothing is known of it
    large->showNeighbour(1);
    EXPECT_EQ(large->currentAsset(), asset);
}

TEST_F(LargePhoto, StandsBetweenTheBarsOrAlone)
{
    look(0);
    EXPECT_EQ(shownRect(), CGRect(0, 187, 360, 270)); // 540 high from 52 on
    PresentationHost::setCurrent(std::make_shared<MovingHost>());
    const struct {
        Style style;
        double alpha;
        bool statusBarHidden;
    } steps[] = {{Style::FullPicture, 0, true}, {Style::Bars, 1, false}};
    for (const auto& step : steps) {
        TouchDispatcher finger(large->canvasView());
        finger.touchBegan(1, {180, 300}, 0);
        finger.touchEnded(1, {180, 300}, 0.1);
        EXPECT_EQ(large->presentationStyle(), step.style);
        EXPECT_EQ(large->barAlpha().value(), step.alpha);
        EXPECT_EQ(large->barAlpha().motion().duration, 0.15);
        EXPECT_EQ(large->prefersStatusBarHidden(), step.statusBarHidden);
        EXPECT_EQ(shownRect(), step.alpha == 0 ? CGRect(0, 225, 360, 270) : CGRect(0, 187, 360, 270));
    }
    large->placeViews(720, 360, 52, 30);
    EXPECT_TRUE(large->prefersStatusBarHidden());
    EXPECT_NEAR(shownRect().size.height, 278, 1e-9);
    PresentationHost::setCurrent(nullptr);
}

TEST_F(LargePhoto, AZoomThatEndsAllTheWayOutBringsTheBarsBack)
{
    look(0);
    TouchDispatcher wheel(large->canvasView());
    const struct {
        std::function<void()> zoom;
        double scale;
        Style after; ///< from the full picture
    } table[] = {
        {[&] { large->zoomBy(1.5); }, 1.5, Style::FullPicture},
        {[&] { large->zoomBy(0.5); }, 1, Style::Bars},
        {[&] { large->toggleZoom(90, 225); }, 2.5, Style::FullPicture},
        {[&] { large->toggleZoom(90, 300); }, 1, Style::Bars},
        {[&] {
             wheel.wheel({180, 300}, 1);
         },
         1.1, Style::FullPicture},
        {[&] {
             wheel.wheel({180, 300}, -3);
         },
         1, Style::Bars},
        {[&] { large->zoomBy(100); }, PhotoZoomView::kMaximumZoom, Style::FullPicture},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(&c - table);
        if (large->presentationStyle() == Style::Bars)
            large->switchPresentationStyle();
        c.zoom();
        EXPECT_NEAR(large->zoomScale(), c.scale, 1e-9);
        EXPECT_EQ(large->presentationStyle(), c.after);
        EXPECT_EQ(shownRect().contains({180, 360}), true); // no gap is dragged into sight
    }
    // From near a finger drags the photo, as far as it goes.
    const double before = shownRect().minX();
    drag(300, 100);
    EXPECT_EQ(name(), "s1");
    EXPECT_NEAR(shownRect().minX(), before - 200, 10);
    large->nudge(1e6, 0);
    EXPECT_NEAR(shownRect().minX(), 0, 1e-9);
    // A window of another size, or the bars, leave what is in the middle there.
    large->nudge(-800, 0);
    const double share = (180 - shownRect().minX()) / shownRect().size.width;
    large->switchPresentationStyle();
    EXPECT_NEAR((180 - shownRect().minX()) / shownRect().size.width, share, 1e-9);
    EXPECT_EQ(large->zoomScale(), PhotoZoomView::kMaximumZoom);
}

TEST_F(LargePhoto, GoesOnToItsNeighboursOneLargePictureAtATime)
{
    writePng(file("sea/s2"), rampPicture(1600, 1200, 0));
    look(1);
    EXPECT_EQ(seen(), (CGSize{1600, 1200}));
    const struct {
        std::function<void()> go;
        const char* name;
    } table[] = {
        {[&] { large->showNeighbour(1); }, "s3"},  {[&] { drag(300, 180); }, "s4"},
        {[&] { drag(300, 180); }, "s4"},           {[&] { large->showNeighbour(5); }, "s4"},
        {[&] { drag(100, 130); }, "s4"},           {[&] { drag(100, 250); }, "s3"},
        {[&] { large->showNeighbour(-9); }, "s1"}, {[&] { large->showNeighbour(-1); }, "s1"},
    };
    for (const auto& c : table) {
        c.go();
        EXPECT_LE(seen().width, 640);
        EXPECT_EQ(name(), c.name) << &c - table;
        EXPECT_EQ(large->numberText(), QString::fromLatin1(c.name + 1));
        EXPECT_EQ(large->photoName(), QString::fromLatin1(c.name) + ".png");
        EXPECT_FALSE(large->rightBarButtonItem()->isEnabled());
        EXPECT_EQ(large->zoomScale(), 1);
        settle();
        EXPECT_FALSE(large->isWaiting());
    }
    large->selectCurrentPhoto(); // can't be added
    large->rightBarButtonItem()->press();
    EXPECT_EQ(heard, "");
    large->showNeighbour(1);
    EXPECT_TRUE(large->rightBarButtonItem()->isEnabled());
    large->rightBarButtonItem()->press();
    large->cancel();
    settle();
    EXPECT_EQ(heard, "y");
    EXPECT_EQ(name(), "s2");
    EXPECT_EQ(window.topViewController(), window.rootViewController());
    look(1);
    large->cancel();
    settle();
    EXPECT_EQ(heard, "yn");
}

TEST_F(LargePhoto, TellsWhyOneCannotBeRead)
{
    writeFile(file("sea/s2"), "half");
    look(1);
    EXPECT_TRUE(large->isUnreadable());
    EXPECT_EQ(large->failure(), "s2.png: not a picture.");
    EXPECT_EQ(seen(), CGSize());
    large->showNeighbour(1);
    EXPECT_EQ(large->failure(), "");
    settle();
    EXPECT_FALSE(large->isUnreadable());
}

} // namespace
} // namespace lamina::test
