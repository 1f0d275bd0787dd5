// A collage is kept while it is done, and comes back as it was.
#include "CollageColorsFixture.h"
#include "CommandRunner.h"
#include "editors/common/KeptPictures.h"
#include "editors/common/KeptWork.h"
#include "editors/common/RecordReading.h"
#include "editors/stickers/Sticker.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/UIColor.h"
#include "platform/image/pixels/CGImage.h"

#include <algorithm>
#include <filesystem>
#include <future>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

class CollageKeeping : public CollageColors {
protected:
    void SetUp() override
    {
        setKeptWorksFolder(folder.path("kept"));
        CollageColors::SetUp();
    }
    void TearDown() override
    {
        editor.reset();
        CollageColors::TearDown();
        setKeptWorksFolder({});
    }
    void settle()
    {
        clock->advance(WorkKeeper::kDelay);
        DispatchQueue::main().runUntilIdle();
    }
    void leave()
    {
        editor->viewWillDisappear(false);
        editor.reset();
        settle();
    }
    std::optional<KeptOffer> offer() const { return offeredWork({keptKind(CollageComposition())}); }
    bool resume()
    {
        const auto work = KeptWork::open(*offer(), keptKind(CollageComposition()));
        editor = std::make_shared<CreateCollageViewController>();
        if (!work || !editor->resumeWork(*work))
            return false;
        editor->canvasView();
        return true;
    }
    static RecordValue recordOf(const CollageComposition& composition, KeptPictures& pictures)
    {
        pictures.beginRecord();
        RecordValue record;
        writeRecord(composition, pictures, record);
        return record;
    }
    std::string recordNow() const
    {
        const TemporaryFolder files;
        KeptPictures pictures(files.path());
        return recordOf(state(), pictures).dump();
    }
    /// Of three photos, with something of all that a record holds.
    CollageComposition richWork() const
    {
        CollageComposition work = state();
        work.count = 3;
        work.layout = 3004;
        work.current = 2;
        work.photoSlots[0] = {photo(1), photo(2), {30.25, 1.0 / 3}, CGAffineTransform::rotation(0.3), 0.1 + 0.2, {}};
        work.photoSlots[1] = {photo(3), photo(3), {-500, 48}, {}, 1, UIColor{1.0 / 3, 0.5, 0, 1}};
        work.photoSlots[2] = {photo(4), UIImage(noisePicture(20, 30, CGImageAlphaInfo::PremultipliedLast, 5)),
                              {48, 48}, {1.5, 0.1, 0.2, 1.2, 0, 0},
                              0,        UIColor{0, 0, 0, 0}};
        work.stickers = {
            {7003, "big117", {200.5, 37}, {1.0 / 3, -9}, CGAffineTransform::rotation(0.1), true, true, true},
            {7000, "big116", {60, 70}, {0, 0}, {}, false, false, false}};
        work.stickersBelow = 1;
        work.effectFlags = {true, false, false, false, false, false, false, true, true};
        work.applyFxOnImg = photo(6);
        work.beforeApplyFilterImage = photo(7);
        work.sliders = {-200, 34.5, 1, 2, 3, 0.25, 2, 0.1, 0.1 + 0.2};
        work.filter = 513;
        work.borderWidth = 2.5;
        work.gap = 40;
        work.borderColor = {0.25, 0.5, 0.75, 1};
        work.tool = "sticker";
        return work;
    }

    const TemporaryFolder folder;
};

TEST_F(CollageKeeping, AWorkComesBackWholeInAnotherWindow)
{
    const CollageComposition work = richWork();
    editor = std::make_shared<CreateCollageViewController>();
    editor->setSelectedImages({work.photoSlots[0].master, work.photoSlots[1].master, work.photoSlots[2].master});
    editor->canvasView();
    editor->setComposition(work);
    const std::string record = recordNow();
    const CGImage look = editor->renderedCanvas().cgImage();
    leave();
    UIScreen::setMain({{200, 300}, 2});

    ASSERT_TRUE(resume());
    EXPECT_EQ(recordNow(), record);
    EXPECT_EQ(bytesOf(editor->renderedCanvas().cgImage()), bytesOf(look));
    EXPECT_EQ(editor->photoCount(), 3);
    EXPECT_EQ(editor->currentSlot(), 3);
    EXPECT_EQ(editor->stickerHandleTag(), 7004);
    EXPECT_FALSE(editor->canUndo() || editor->isEdited() || offer());

    // Undo begins there, and what is done from now on is kept in the same place.
    editor->applyLayout(3001);
    settle();
    editor->undo();
    EXPECT_EQ(recordNow(), record);
    editor->redo();
    const std::string later = recordNow();
    leave();
    ASSERT_TRUE(resume());
    EXPECT_EQ(recordNow(), later);
}

TEST_F(CollageKeeping, WhatMakesNoSenseIsNotRead)
{
    KeptPictures pictures(folder.path());
    const RecordValue record = recordOf(richWork(), pictures);
    CollageComposition read;
    ASSERT_TRUE(readRecord(record, pictures, read));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const RecordValue slot = record["slots"][0];
    const std::pair<const char*, RecordValue> wrong[] = {
        {"/side", 0.5},
        {"/screenHeight", 1e9},
        {"/layout", 2000},
        {"/current", 3},
        {"/slots", {slot}},
        {"/slots", {slot, slot, slot, slot}},
        {"/slots/0/alpha", nan},
        {"/slots/0/center", {nan, 1}},
        {"/slots/0/transform", {1, 1, 1, 1, 0, 0}},
        {"/slots/0/background", {2, 0, 0, 1}},
        {"/slots/0/master", {{"file", "../../a.png"}, {"scale", 1}, {"orientation", 0}}},
        {"/slots/0/master", nullptr},
        {"/effectFlags", {true}},
        {"/sliders/0", 201},
        {"/filter", 514},
        {"/borderWidth", -0.1},
        {"/gap", 41},
        {"/borderColor", nullptr},
        {"/tool", "crop"},
    };
    for (const auto& [path, value] : wrong) {
        RecordValue changed = record;
        changed[RecordValue::json_pointer(path)] = RecordValue::parse(value.dump(), nullptr, false); // as from a file
        EXPECT_FALSE(readRecord(changed, pictures, read)) << path << ' ' << value;
    }
    // What is harmless is put right.
    RecordValue odd = record;
    odd["applyFxOnImg"] = nullptr;
    odd["stickersBelow"] = 1000;
    odd["slots"][2]["image"] = nullptr;
    ASSERT_TRUE(readRecord(odd, pictures, read));
    EXPECT_EQ(read.effectFlags, CollageComposition().effectFlags) << "a slider works from a base that is there";
    EXPECT_EQ(read.stickersBelow, 2u);
    EXPECT_TRUE(read.photoSlots[2].image.isIdenticalTo(read.photoSlots[2].master));
}

TEST_F(CollageKeeping, APictureIsThereOnceAndWhatChangesDuringAWriteIsWrittenTogether)
{
    CollageComposition work = state();
    work.photoSlots[1] = work.photoSlots[0];
    work.applyFxOnImg = work.beforeApplyFilterImage = work.photoSlots[0].image;
    editor->setComposition(work);
    settle();
    std::promise<void> gate;
    keptWorksQueue().async([&gate] { gate.get_future().wait(); });
    for (int i = 1; i <= 3; ++i) {
        editor->nudge(i, 0);
        clock->advance(2);
        DispatchQueue::main().drain();
    }
    gate.set_value();
    leave();

    const auto kept = KeptWork::open(*offer(), keptKind(work));
    ASSERT_TRUE(kept);
    std::vector<double> moves;
    (*kept)->read([&](const RecordValue& record, KeptPictures& pictures) {
        CollageComposition read;
        EXPECT_TRUE(readRecord(record, pictures, read));
        moves.push_back(read.photoSlots[0].center.x - work.photoSlots[0].center.x);
        return false;
    });
    EXPECT_EQ(moves, (std::vector{6.0, 1.0})) << "none of 3 points";
    const std::filesystem::directory_iterator files(folder.path("kept/collage"));
    EXPECT_EQ(std::count_if(begin(files), end(files),
                            [](const auto& file) { return isKeptPictureName(file.path().filename().string()); }),
              1);
}

} // namespace
} // namespace lamina::test
