#include "editors/collage/CollageFilters.h"

#include "CollageColorsFixture.h"
#include "editors/collage/CollageFilterRow.h"
#include "editors/collage/FilterSteps.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/filters/FilterCatalogue.h"
#include "imageops/ImageFilters.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/image/drawing/SquareCrop.h"

#include <array>
#include <optional>
#include <vector>

namespace lamina::test {
namespace {

constexpr int kFilterTool = 1002;
constexpr int kStickerTool = 1004;

/// From tag 501.
constexpr std::array kClasses = {"GPUImageAmatorkaFilter",     "GPUImageSepiaFilter",  "GpuImageCustomFilter3",
                                 "GPUImageGrayscaleFilter",    "GPUImageToonFilter",   "GPUImageHueFilter",
                                 "GPUImageSoftEleganceFilter", "GPUImageHazeFilter",   "GPUImageEmbossFilter",
                                 "GPUImageMonochromeFilter",   "GpuImageCustomFilter", "GPUImageErosionFilter",
                                 "GpuImageCustomHue"};

UIImage through(int tag, const UIImage& image)
{
    const auto description = filterCatalogue().find(kClasses.at(static_cast<std::size_t>(tag - 501)));
    return description->make({})->imageByFilteringImage(image);
}

class CollageFilters : public CollageColors {
protected:
    void openPanel()
    {
        editor->imgGesture(kFilterTool);
        DispatchQueue::main().runUntilIdle();
    }
    const std::vector<CollageFilterThumbnail>& thumbnails() const
    {
        return dynamic_cast<ListModel<CollageFilterThumbnail>&>(*editor->filters()).rows();
    }
};

TEST_F(CollageFilters, ThumbnailsAreTheSquareOfThePhotoThroughEachLook)
{
    openPanel();
    ASSERT_EQ(thumbnails().size(), 14U);
    EXPECT_TRUE(editor->applyFilters(500).isIdenticalTo(state().photoSlots[0].image));
    EXPECT_EQ(thumbnails()[0].picture.size(), (CGSize{80, 80})); // the whole of it, squeezed
    const UIImage square = squareImageFromImage(photo(1), 66);
    for (int tag = 501; tag <= 513; ++tag) {
        const CollageFilterThumbnail& thumbnail = thumbnails()[static_cast<std::size_t>(tag - 500)];
        EXPECT_EQ(thumbnail.tag, tag);
        EXPECT_TRUE(same(thumbnail.picture, through(tag, square))) << tag;
        EXPECT_TRUE(same(editor->applyFilters(tag), thumbnail.picture)) << tag;
    }
    EXPECT_FALSE(editor->applyFilters(499) || editor->applyFilters(514));
}

TEST_F(CollageFilters, LooksStartFromTheBaseAndEachIsAStep)
{
    editor->filterImgGesture(502); // nothing to start from yet
    EXPECT_TRUE(same(shown(), photo(1)));
    openPanel();
    editor->filterImgGesture(504);
    editor->filterImgGesture(502);
    EXPECT_TRUE(same(shown(), through(502, photo(1))));
    EXPECT_EQ(editor->filter(), 502);
    editor->filterImgGesture(500);
    EXPECT_TRUE(same(shown(), photo(1)));
    for (const int tag : {502, 504}) {
        editor->undo();
        EXPECT_TRUE(same(shown(), through(tag, photo(1)))) << tag;
    }
    editor->filterImgGesture(513); // the base is that of the state
    EXPECT_TRUE(same(shown(), through(513, photo(1))));
}

TEST_F(CollageFilters, ThePanelTakesItsBaseWhenItOpensAndWhenTheSlotChanges)
{
    editor->contrast(70);
    openPanel();
    const UIImage contrasted = contrastAdjustmentWithValue(photo(1), 70);
    editor->filterImgGesture(504);
    EXPECT_TRUE(same(shown(), through(504, contrasted))); // the effect is baked in
    editor->brightn(50);
    EXPECT_TRUE(same(shown(), brightenWithValue(through(504, contrasted), 50))); // a first touch takes the look
    editor->filterImgGesture(502);
    EXPECT_TRUE(same(shown(), through(502, contrasted))); // from the older base, without the brightness
    editor->brightn(20);
    EXPECT_TRUE(same(shown(), brightenWithValue(through(504, contrasted), 20))); // from the old effect base

    editor->selectSlot(2);
    DispatchQueue::main().runUntilIdle();
    EXPECT_TRUE(same(thumbnails()[4].picture, through(504, squareImageFromImage(photo(2), 66))));
    EXPECT_EQ(thumbnails().size(), 14U);
    editor->filterImgGesture(500);
    EXPECT_TRUE(same(shown(), photo(2)));
}

TEST_F(CollageFilters, WithoutThumbnailsLooksStartFromTheBaseToo)
{
    editor->leaveThumbnailsOut();
    openPanel();
    EXPECT_TRUE(thumbnails().empty());
    editor->filterImgGesture(502);
    EXPECT_TRUE(same(shown(), through(502, photo(1))));
}

TEST_F(CollageFilters, AToolThatIsChosenBeforeTheThumbnailsComeWins)
{
    editor->imgGesture(kFilterTool);
    editor->imgGesture(kStickerTool);
    DispatchQueue::main().runUntilIdle();
    EXPECT_EQ(editor->shownPanel(), QStringLiteral("stickers"));
    EXPECT_TRUE(thumbnails().empty());
    EXPECT_FALSE(editor->filterEnableBool());
}

TEST(FilterStepsTest, LetOthersHaveTheirTurnAndEndWithTheirOwner)
{
    DispatchQueue& queue = GPUImageContext::sharedContextQueue();
    DispatchSemaphore began;
    DispatchSemaphore go;
    std::vector<int> done;
    const auto hold = [&] {
        began.signal();
        go.wait();
    };
    queue.async(hold);
    std::optional<FilterSteps> steps(std::in_place, std::vector<FilterSteps::Step>{[&] { done.push_back(1); },
                                                                                   [&] { done.push_back(3); }, hold,
                                                                                   [&] { done.push_back(4); }});
    queue.async([&] { done.push_back(2); });
    for (int times = 0; times < 2; ++times) {
        began.wait();
        if (times == 1)
            steps.reset(); // while the third is under way
        go.signal();
    }
    queue.sync([] {});
    queue.sync([] {});
    EXPECT_EQ(done, (std::vector{1, 2, 3}));
}

} // namespace
} // namespace lamina::test
