// The road from an editor over the exporters, and back.
#include "export/ExportFinish.h"

#include "ExportScreensFixture.h"
#include "LogCapture.h"
#include "export/ExporterViewController.h"
#include "export/MP4VideoController.h"
#include "export/PNGController.h"
#include "export/SavingTypeController.h"
#include "export/SavingTypes.h"
#include "export/ShareController.h"
#include "hud/ProgressOverlay.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/photos/PhotoFolder.h"
#include "platform/photos/PictureQueue.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIDocumentPickerViewController.h"

#include <filesystem>
#include <memory>

namespace lamina::test {
namespace {

class ExportRoad : public ExportScreens {
protected:
    ExportRoad()
        : finish(std::make_shared<ExportFinish>(*editor, ExportedWork{[this] {
                                                                          ++flattened;
                                                                          return picture;
                                                                      },
                                                                      [this] { ++exported; }}))
    {
    }
    std::shared_ptr<ExporterViewController> choose(SavingtypeMethod type)
    {
        finish->openChooser();
        finish->openChooser();
        settle();
        const auto chooser = top<SavingTypeController>();
        if (!chooser)
            return nullptr;
        EXPECT_EQ(chooser->selectedIndex(), SavingTypeController::kNothingSelected);
        EXPECT_TRUE(chooser->isimage());
        chooser->selectRow(static_cast<int>(indexOf(type)));
        settle();
        return top<ExporterViewController>();
    }

    /// The share screen, which has opened the system's sheet.
    std::shared_ptr<ShareController> shareScreen() const
    {
        return std::dynamic_pointer_cast<ShareController>(editor->presentedViewController());
    }
    std::vector<std::string> library() const
    {
        std::vector<std::string> files;
        for (const auto& file : std::filesystem::directory_iterator(photoLibraryFolder()))
            files.push_back(file.path());
        return files;
    }

    UIImage picture{rampPicture(40, 30, 100), 2};
    int flattened = 0;
    int exported = 0;
    std::shared_ptr<ExportFinish> finish;
};

TEST_F(ExportRoad, EveryTypeHasItsExporter)
{
    for (int type = 0; type < kSavingTypeCount; ++type) {
        const auto exporter = choose(*savingTypeOf(type));
        ASSERT_TRUE(exporter) << type;
        EXPECT_EQ(exporter->saveTypeNumber(), type);
        EXPECT_TRUE(exporter->tobeSavedimage().isIdenticalTo(picture));
        EXPECT_EQ(exporter->modalPresentationStyle(), UIModalPresentationStyle::OverCurrentContext);
        exporter->backAction();
        settle();
        EXPECT_EQ(top<UIViewController>(), editor);
    }
    EXPECT_EQ(flattened, kSavingTypeCount);
    for (const int none : {-1, 7, 1000})
        finish->presentControllerWithType(none, picture);
    EXPECT_EQ(top<UIViewController>(), editor);
    EXPECT_EQ(exported, 0);
}

TEST_F(ExportRoad, AnotherTypeIsFlattenedAnew)
{
    choose(SavingtypeMethod::png)->handlefileTap();
    settle();
    picture = UIImage(rampPicture(10, 10, 1));
    top<SavingTypeController>()->selectRow(6);
    settle();
    const auto exporter = top<ExporterViewController>();
    ASSERT_TRUE(exporter);
    EXPECT_EQ(exporter->saveType(), SavingtypeMethod::tiff);
    EXPECT_TRUE(exporter->tobeSavedimage().isIdenticalTo(picture));
}

TEST_F(ExportRoad, EachTypeReachesTheShareScreenWithItsFile)
{
    const std::string documents = home.path("Documents/Lamina/");
    const struct {
        SavingtypeMethod type;
        std::string file;   // in the documents; none: elsewhere
        std::string begins; // how such a file does
        std::size_t from = 0;
    } table[] = {
        {SavingtypeMethod::jpg, "", ""},
        {SavingtypeMethod::png, "default.png", "\x89PNG"},
        {SavingtypeMethod::pdfStandard, "UntitledPdf.pdf", "%PDF-1."},
        {SavingtypeMethod::pdfPrint, "UntitledPdf.pdf", "%PDF-1."},
        {SavingtypeMethod::svg, "UntitledSVG.svg", "<?xml"},
        {SavingtypeMethod::mp4, "Convert/Convert.mp4", "ftyp", 4},
        {SavingtypeMethod::tiff, "", "II*"},
    };
    int shared = 0;
    for (const auto& c : table) {
        SCOPED_TRACE(static_cast<int>(c.type));
        const auto exporter = choose(c.type);
        ASSERT_TRUE(exporter);
        const std::string told = exporter->filePixelsText().toStdString();
        exporter->downloadbtnAction();
        exporter->downloadbtnAction(); // one at a time
        EXPECT_TRUE(exporter->isExporting());
        exporter->handlePanGesture(3, kScreenHeight);
        exporter->backAction();
        exporter->handlefileTap();
        EXPECT_EQ(top<ExporterViewController>(), exporter) << "it can't be left meanwhile";
        ASSERT_TRUE(DispatchQueue::main().runUntil([&] { return shareScreen() && exported > shared; }, 60));
        const auto share = shareScreen();
        EXPECT_EQ(share->fetchData(), c.type);
        EXPECT_EQ(share->modalPresentationStyle(), UIModalPresentationStyle::OverCurrentContext);
        if (!c.file.empty()) {
            EXPECT_EQ(share->sharevideoURL(), documents + c.file);
        }
        if (!c.begins.empty()) {
            EXPECT_EQ(readFile(share->sharevideoURL()).substr(c.from, c.begins.size()), c.begins);
        }
        EXPECT_EQ(share->sharevideoURL().empty(), c.type == SavingtypeMethod::jpg);
        EXPECT_EQ(exported, ++shared);
        EXPECT_EQ(told, "40 × 30 pixels");
        editor->dismiss(false);
        settle();
    }
    // A JPG's bytes, a PNG's, the film's copy and the TIFF.
    EXPECT_EQ(library().size(), 4u);
}

TEST_F(ExportRoad, AnExporterThatLeavesStopsItsWork)
{
    for (const bool isHeld : {true, false}) {
        auto exporter = choose(SavingtypeMethod::png);
        ASSERT_TRUE(exporter);
        exporter->setSavingDelegate(listener);
        DispatchSemaphore otherWork{0};
        pictureQueue().async([&] { otherWork.wait(); });
        exporter->downloadbtnAction();
        editor->dismiss(false);
        const std::weak_ptr<ExporterViewController> left = exporter;
        if (!isHeld)
            exporter.reset();
        const auto hasStopped = [&] { return left.expired() || !left.lock()->isExporting(); };
        EXPECT_TRUE(DispatchQueue::main().runUntil(hasStopped, 60));
        otherWork.signal();
        settle();
        EXPECT_TRUE(listener->records.empty());
        EXPECT_FALSE(std::filesystem::exists(home.path("Documents/Lamina/default.png")));
    }
}

TEST_F(ExportRoad, AFailureIsToldOnThePanelAndTheSheetStays)
{
    writeFile(home.path("Documents"), ""); // a file in the folder's place
    const auto exporter = choose(SavingtypeMethod::svg);
    ASSERT_TRUE(exporter);
    const LogCapture log;
    exporter->downloadbtnAction();
    settle();
    EXPECT_EQ(top<ExporterViewController>(), exporter);
    EXPECT_TRUE(exporter->isReady());
    EXPECT_EQ(exported, 0);
    EXPECT_NE(log.text().find("Documents"), std::string::npos) << log.text();

    // Another place may do.
    for (const bool taken : {false, true}) {
        ProgressOverlay::shared().hud()->choiceButton().sendActions(UIControlEvents::TouchUpInside);
        settle();
        const auto picker = top<UIDocumentPickerViewController>();
        ASSERT_TRUE(picker);
        EXPECT_EQ(picker->suggestedName(), "UntitledSVG.svg");
        picker->choose({home.path(taken ? "mine.svg" : "Documents/a.svg"), false});
        if (!taken)
            settle();
    }
    ASSERT_TRUE(DispatchQueue::main().runUntil([&] { return shareScreen() != nullptr; }, 20));
    EXPECT_EQ(shareScreen()->sharevideoURL(), home.path("mine.svg"));
    EXPECT_EQ(readFile(home.path("mine.svg")).substr(0, 5), "<?xml");
    editor->dismiss(false);
    settle();
}

TEST_F(ExportRoad, AJPGIsSafeOnceTheLibraryHasIt)
{
    writeFile(home.path("Pictures"), "");
    choose(SavingtypeMethod::jpg)->downloadbtnAction();
    ASSERT_TRUE(DispatchQueue::main().runUntil([&] { return top<UIAlertController>() != nullptr; }, 20));
    EXPECT_EQ(exported, 0);
    editor->dismiss(false);
    settle();
}

TEST_F(ExportRoad, AClipIsStoodForByAFrame)
{
    ASSERT_TRUE(choose(SavingtypeMethod::mp4));
    const auto film = top<MP4VideoController>();
    film->setSavingDelegate(listener);
    film->qualitySliderAction(0.2f);
    film->downloadbtnAction();
    settle();
    ASSERT_EQ(listener->records.size(), 1u);
    film->backAction();
    settle();
    const std::string clip = home.path("clip.mp4");
    std::filesystem::copy_file(listener->records[0].sharedURL, clip);

    for (const auto& sheet : std::vector<std::shared_ptr<ExporterViewController>>{
             std::make_shared<PNGController>(), std::make_shared<MP4VideoController>()}) {
        const bool isFilm = sheet->saveType() == SavingtypeMethod::mp4;
        sheet->setVideoUrl(clip);
        sheet->setSavingDelegate(listener);
        present(sheet);
        EXPECT_EQ(sheet->tobeSavedimage().pixelSize(), (IntSize{40, 30}));
        EXPECT_EQ(sheet->sheetHeight(), 0);
        EXPECT_EQ(sheet->isSuggested(), isFilm);
        EXPECT_EQ(sheet->infoLbl().isEmpty(), isFilm);
        sheet->handlefileTap();
        settle();
        EXPECT_FALSE(top<SavingTypeController>()->isimage());
        top<SavingTypeController>()->backAction();
        settle();
        sheet->downloadbtnAction();
        settle();
        const std::string file = readFile(listener->records.back().sharedURL);
        EXPECT_EQ(file.substr(isFilm ? 4 : 1, 3), isFilm ? "fty" : "PNG");
        sheet->backAction();
        settle();
    }

    const auto broken = std::make_shared<PNGController>();
    writeFile(clip, "no film");
    broken->setVideoUrl(clip);
    present(broken);
    EXPECT_TRUE(top<UIAlertController>());
    EXPECT_FALSE(broken->isReady() || broken->isLoading());
}

TEST_F(ExportRoad, WithoutMemoryOrAFileAnAlertSaysSo)
{
    picture = {};
    EXPECT_FALSE(choose(SavingtypeMethod::png));
    const auto alert = top<UIAlertController>();
    ASSERT_TRUE(alert);
    EXPECT_EQ(alert->message(), "The picture: not enough memory.");
    alert->tap(0);
    settle();
    finish->dataPassingDetails({UIImage(rampPicture(4, 4, 0)), "", SavingtypeMethod::png});
    settle();
    ASSERT_TRUE(top<UIAlertController>());
    EXPECT_EQ(exported, 0);
}

} // namespace
} // namespace lamina::test
