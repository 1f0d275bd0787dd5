// A blend is kept while it is done, and comes back as it was.
#include "BlendEditorFixture.h"
#include "CommandRunner.h"
#include "LogCapture.h"
#include "editors/blend/BlendTools.h"
#include "editors/common/KeptJournal.h"
#include "editors/common/KeptWork.h"
#include "editors/common/RecordReading.h"
#include "editors/stickers/IQStickerView.h"
#include "editors/stickers/StickerBoard.h"
#include "export/ExportScenes.h"
#include "export/ExporterViewController.h"
#include "export/SavingTypeController.h"
#include "platform/application/UIApplication.h"
#include "platform/base/UIColor.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/view/UIStoryboard.h"

#include <csignal>
#include <cstddef>
#include <filesystem>
#include <gmock/gmock.h>
#include <iterator>
#include <sys/resource.h>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

class BlendKeeping : public BlendEditor {
protected:
    void SetUp() override
    {
        setKeptWorksFolder(state.path("lamina/kept"));
        BlendEditor::SetUp();
        settle();
    }
    void TearDown() override
    {
        editor.reset();
        BlendEditor::TearDown();
        setKeptWorksFolder({});
    }
    /// Until all that has changed is written.
    void settle()
    {
        clock->advance(WorkKeeper::kDelay);
        DispatchQueue::main().runUntilIdle();
    }
    void leave()
    {
        fingers.reset();
        editor->viewWillDisappear(false);
        editor.reset();
        settle();
    }
    std::string file(const std::string& name) const { return state.path("lamina/kept/blend/" + name); }
    std::optional<KeptOffer> offer() const { return offeredWork({keptKind(BlendComposition())}); }
    std::shared_ptr<KeptWork> openOffered() const
    {
        const auto work = KeptWork::open(*offer(), keptKind(BlendComposition()));
        return work ? *work : nullptr;
    }
    /// The editor opens with the work that is offered; false when that can't be read.
    bool resume()
    {
        editor = std::make_shared<BlendPhotoViewController>();
        const auto work = openOffered();
        if (!work || !editor->resumeWork(work))
            return false;
        fingers.emplace(editor->canvasView());
        return true;
    }
    /// All that a record says, its pictures by their contents.
    std::string recordNow() const
    {
        const TemporaryFolder folder;
        KeptPictures pictures(folder.path());
        pictures.beginRecord();
        RecordValue record;
        writeRecord(editor->composition(), pictures, record);
        return record.dump();
    }

    const TemporaryFolder state;
};

TEST_F(BlendKeeping, AWorkComesBackWhole)
{
    BlendComposition work = editor->composition();
    const auto noise = [](CGImageAlphaInfo alpha, unsigned seed) { return UIImage(noisePicture(64, 64, alpha, seed)); };
    work.photos[0].actualImage = noise(CGImageAlphaInfo::PremultipliedLast, 1);
    work.photos[0].image = noise(CGImageAlphaInfo::Last, 2);
    work.photos[0].source = PhotoSource::fromFile("/photos/M\xFCnchen 100%.jpg"); // not text
    work.photos[1].source = PhotoSource::fromBytes({1, 2, 3}, "Pasted");
    work.photos[0].crop = {{4000, 3000}, kSide, 1.1, {1.0 / 3, 1e-7}};
    work.photos[1].image =
        UIImage(noisePicture(40, 64, CGImageAlphaInfo::NoneSkipLast, 3), 2, UIImageOrientation::Right);
    work.photos[1].transform = {0.1 + 0.2, -0.7, 1e-3, 1.0 / 7, 12.345678901234567, -1e-9};
    work.photos[1].alpha = 0.1 + 0.2;
    work.backdrop = UIColor{1.0 / 3, 0.5, 0, 1};
    work.order = {1, 0};
    work.photo1Selected = work.toolBool = work.contrastBool = true;
    work.photo2Selected = false;
    work.mode = BlendMode::Effects;
    work.sliders = {-200, 34.5, 0.1};
    work.stickers = {{501, "big117", {200.5, 37}, {1.0 / 3, -9}, CGAffineTransform::rotation(0.1), true, true, true},
                     {500, "big116", {60, 70}, {0, 0}, {}, false, false, false}};
    work.current = 0;
    work.applyFxOnImage1 = work.photos[0].image;
    work.applyFxOnImage2 = work.photos[0].actualImage;
    editor->setComposition(work);
    const std::string record = recordNow();
    const CGImage look = editor->renderedCanvas().cgImage();
    leave();
    UIScreen::setMain({{2.0 * kSide, 4.0 * kSide}, 2}); // another window: the canvas stays as it was

    ASSERT_TRUE(resume());
    EXPECT_EQ(recordNow(), record);
    EXPECT_EQ(bytesOf(editor->renderedCanvas().cgImage()), bytesOf(look));
    EXPECT_FALSE(editor->canUndo() || editor->isEdited());
    EXPECT_TRUE(firstPickedImage.isIdenticalTo(editor->composition().photos[0].actualImage));
    EXPECT_EQ(editor->composition().photos[0].source.path, work.photos[0].source.path);
    EXPECT_TRUE(editor->composition().photos[1].source.path.empty());
    EXPECT_FALSE(offer()) << "what is open is not offered";

    // Undo begins there, and what is done from now on is kept in the same place.
    editor->panBtn();
    dragBy(20);
    settle();
    const std::string moved = recordNow();
    EXPECT_NE(moved, record);
    editor->undo();
    editor->undo();
    EXPECT_EQ(recordNow(), record);
    leave();
    ASSERT_TRUE(resume());
    EXPECT_EQ(recordNow(), record);
    EXPECT_EQ(std::distance(fs::directory_iterator(state.path("lamina/kept")), {}), 1);
}

TEST_F(BlendKeeping, RecordsOfTheFirstVersionAreReadAndWhatMakesNoSenseIsNot)
{
    const TemporaryFolder folder;
    KeptPictures pictures(folder.path());
    pictures.beginRecord();
    RecordValue record;
    writeRecord(editor->composition(), pictures, record);
    BlendComposition read;
    const std::pair<const char*, RecordValue> wrong[] = {
        {"mode", 4}, {"mode", "tools"}, {"sliders", {0, 0, 0}}, {"stickers", {1}}};
    for (const auto& [name, value] : wrong) {
        RecordValue changed = record;
        changed[name] = value;
        EXPECT_FALSE(readRecord(changed, pictures, read)) << name << value;
    }
    for (const char* const later : {"mode", "sliders", "stickers"})
        record.erase(later);
    record["photos"][0].erase("source");
    record["photos"][1]["source"] = 7;
    for (const bool moves : {true, false}) {
        record["panBool"] = moves;
        ASSERT_TRUE(readRecord(record, pictures, read));
        EXPECT_EQ(read.mode, moves ? BlendMode::Move : BlendMode::Tools);
        EXPECT_TRUE(read.sliders == kBlendSliderStarts && read.stickers.empty());
    }
}

TEST_F(BlendKeeping, ThePrintShowsNoHandles)
{
    editor->stickerImgGesture(6000);
    IQStickerView& sticker = *StickerBoard::find(editor->mainImgView(), 500);
    sticker.scaleBy(0.25);
    editor->letGoOfStickers();
    settle();
    const std::string print = readFile(file("print.png"));
    sticker.contentTapped();
    settle();
    EXPECT_EQ(readFile(file("print.png")), print);
    EXPECT_TRUE(sticker.showsBorder() && !sticker.closeView().isHidden());
}

TEST_F(BlendKeeping, NobodyElseReadsItAndOldPicturesGo)
{
    for (unsigned seed = 1; seed < 6; ++seed) {
        BlendComposition work = editor->composition();
        work.photos[1].image = UIImage(noisePicture(kSide, kSide, CGImageAlphaInfo::Last, seed));
        editor->setComposition(work);
        writeFile(file("." + std::to_string(seed) + ".lamina-unfinished"), "left by a kill");
        settle();
    }
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(state.path())) {
        const bool folder = entry.is_directory();
        EXPECT_EQ(entry.status().permissions(), folder ? fs::perms(0700) : fs::perms(0600)) << entry.path();
        if (!folder)
            names.push_back(entry.path().extension());
    }
    // The two photos as they came, and the second one as it was in the last two records; the print.
    EXPECT_THAT(names, testing::UnorderedElementsAre("", ".png", ".png", ".png", ".png", ".png"));
}

TEST_F(BlendKeeping, WhatCannotBeReadIsNotOfferedAndNobodyIsStopped)
{
    dragBy(10);
    settle();
    const std::string older = recordNow();
    dragBy(10);
    leave();
    const std::string journal = readFile(file("journal"));
    const std::string moreThanItEverHolds(std::size_t{2} << 20, ' ');
    const struct {
        const char* what;
        std::function<void()> damage;
        bool offered;
        std::string log;
    } table[] = {
        {"cut", [&] { writeFile(file("journal"), journal.substr(0, journal.size() - 9)); }, true, ""},
        {"empty", [&] { writeFile(file("journal"), ""); }, false, "can't be read"},
        {"foreign", [&] { writeFile(file("journal"), "\x89PNG"); }, false, ""}, // the same is told once
        {"huge", [&] { writeFile(file("journal"), moreThanItEverHolds); }, false, "too large"},
        {"newer", [&] { writeFile(file("journal"), "lamina-kept 2 {}"); }, false, "a later version"},
        {"a folder", [&] { fs::create_directory(file("journal")); }, false, "is a folder"},
        {"no record",
         [&] {
             writeFile(file("journal"), [] {
                 const auto bytes =
                     journalOf(std::vector<std::string>{R"({"editor":"blend","version":1,"when":"now"})"});
                 return std::string(bytes.begin(), bytes.end());
             }());
         },
         false, ""},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(c.what);
        fs::remove_all(file("journal"));
        c.damage();
        const LogCapture log;
        EXPECT_EQ(offer().has_value(), c.offered);
        offer();
        EXPECT_EQ(log.messages.size(), c.log.empty() ? 0u : 1u) << log.text();
        EXPECT_THAT(log.text(), testing::HasSubstr(c.log));
        if (c.offered) {
            ASSERT_TRUE(resume());
            EXPECT_EQ(recordNow(), older);
            leave();
        }
    }

    // A picture that is gone or damaged takes all records with it that name it.
    writeFile(file("journal"), journal);
    for (const auto& entry : fs::directory_iterator(file("")))
        if (entry.path().extension() == ".png" && entry.path().filename() != "print.png")
            writeFile(entry.path(), readFile(entry.path()) + "x");
    EXPECT_FALSE(resume());

    // A work of a later version is left for that one.
    writeFile(file("journal"), "lamina-kept 2 {}");
    firstPickedImage = flat(kRed);
    editor = std::make_shared<BlendPhotoViewController>();
    editor->view();
    leave();
    EXPECT_EQ(readFile(file("journal")), "lamina-kept 2 {}");
    ASSERT_TRUE(offer());
    EXPECT_THAT(offer()->folder, testing::EndsWith("/blend-2"));
}

TEST_F(BlendKeeping, AFullDiskIsToldOnceAndLeavesWhatWasKept)
{
    const std::string before = recordNow();
    const std::string journal = readFile(file("journal"));
    rlimit former{};
    ::getrlimit(RLIMIT_FSIZE, &former);
    const rlimit full{200, former.rlim_max};
    const LogCapture log;
    for (const bool first : {true, false}) {
        dragBy(10);
        ::setrlimit(RLIMIT_FSIZE, &full);
        settle();
        ::setrlimit(RLIMIT_FSIZE, &former);
        EXPECT_EQ(editor->notice().isEmpty(), !first) << editor->notice().toStdString();
        editor->dismissNotice();
        EXPECT_EQ(readFile(file("journal")), journal);
    }
    EXPECT_THAT(log.text(), testing::MatchesRegex(".*/kept/blend/.*: the file is too large for the device\n"));
    const std::string last = recordNow();
    EXPECT_NE(last, before);
    leave(); // there is room again
    ASSERT_TRUE(resume());
    EXPECT_EQ(recordNow(), last);
}

TEST_F(BlendKeeping, WithoutAFolderTheWorkGoesOn)
{
    writeFile(state.path("file"), "");
    setKeptWorksFolder(state.path("file/kept"));
    const LogCapture log;
    EXPECT_FALSE(offer());
    editor = std::make_shared<BlendPhotoViewController>();
    editor->view();
    settle();
    EXPECT_EQ(editor->notice(), QStringLiteral("Your work can’t be kept safe: no such folder"));
    EXPECT_EQ(log.text(), state.path("file/kept") + ": no such folder\n");
    leave();
}

TEST_F(BlendKeeping, WhatIsOpenElsewhereIsLeftAlone)
{
    // Whoever holds a folder counts as another process.
    KeptOffer opened{state.path("lamina/kept/blend"), "blend", 0};
    const std::string journal = readFile(file("journal"));
    EXPECT_FALSE(offer());
    EXPECT_FALSE(KeptWork::open(opened, keptKind(BlendComposition())));
    EXPECT_FALSE(removeKeptWork(opened));
    auto other = std::make_shared<BlendPhotoViewController>();
    other->view();
    settle();
    other.reset();
    settle();
    EXPECT_EQ(readFile(file("journal")), journal);
    ASSERT_TRUE(offer());
    EXPECT_EQ(offer()->folder, opened.folder + "-2");

    // One that is begun takes the place of the one that was offered.
    other = std::make_shared<BlendPhotoViewController>();
    other->view();
    settle();
    EXPECT_FALSE(offer());
    EXPECT_FALSE(fs::exists(opened.folder + "-3"));
}

TEST_F(BlendKeeping, OnlyWhatIsNotExportedIsKept)
{
    addExportScenes(*UIStoryboard::named(kMainStoryboard));
    EXPECT_TRUE(fs::exists(file("journal")));
    editor->shareBtn();
    settle();
    std::dynamic_pointer_cast<SavingTypeController>(editor->presentedViewController())->selectRow(1);
    DispatchQueue::main().drain(); // turns the ground white, which is to be kept
    settle();
    EXPECT_TRUE(fs::exists(file("journal")));
    const auto exporter = std::dynamic_pointer_cast<ExporterViewController>(editor->presentedViewController());
    exporter->savingDelegate()->dataPassingDetails({flat(kRed), file("a.png"), SavingtypeMethod::png});
    DispatchQueue::main().drain();
    editor->dismiss(false); // the share screen, with its timers
    settle();
    EXPECT_FALSE(fs::exists(file("")));
    editor->toolBtn();
    editor->panBtn();
    settle();
    EXPECT_FALSE(fs::exists(file(""))) << "nothing is seen of a tool that was chosen";
    dragBy(10);
    // Leaving waits for no delay, and a drag under way counts as far as it went.
    beginDrag(10);
    const std::string record = recordNow();
    NotificationCenter::defaultCenter().post(UIApplicationWillTerminateNotification);
    EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
    EXPECT_TRUE(fs::exists(file("journal")));
    leave();
    ASSERT_TRUE(offer());
    EXPECT_TRUE(printOfKeptWork(*offer()));
    ASSERT_TRUE(resume());
    EXPECT_EQ(recordNow(), record);
    leave();
    EXPECT_TRUE(removeKeptWork(*offer()));
    EXPECT_FALSE(fs::exists(file("")));
}

} // namespace
} // namespace lamina::test
