#include "CommandRunner.h"
#include "TestPictures.h"
#include "export/functions/ExportWork.h"
#include "export/functions/PDFPrintFunction.h"
#include "export/functions/PDFStandardFunction.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

const bool kSurroundingsAreNamed =
    ::setenv("LAMINA_MODULES", LAMINA_MODULES, 0) == 0 && ::setenv("LAMINA_PROFILES", LAMINA_PROFILES, 0) == 0;

struct Saving {
    SavingtypeMethod type;
    ExportOptions options;
    std::string name;
};

TEST(PDFExport, WritesTheDocumentThatIsAskedForUnderItsName)
{
    const std::vector<Saving> savings = {
        {SavingtypeMethod::pdfStandard, {}, "UntitledPdf.pdf"},
        {SavingtypeMethod::pdfStandard, {.notes = true}, "NotesPDF.pdf"},
        {SavingtypeMethod::pdfPrint, {}, "UntitledPdf.pdf"},
        {SavingtypeMethod::pdfPrint, {.notes = true, .colors = PrintColors::CMYK}, "Notes.pdf"},
        {SavingtypeMethod::pdfPrint, {.cropMarks = true, .colors = PrintColors::CMYK}, "CropMarks.pdf"},
        {SavingtypeMethod::pdfPrint, {.notes = true, .cropMarks = true}, "Crop&Note.pdf"},
    };
    ASSERT_TRUE(kSurroundingsAreNamed);
    const UIImage picture(chartPicture(16, 12), 2);
    for (const auto& [type, options, name] : savings) {
        const TemporaryFolder folder;
        const Result<ExportedFile> file = runExport(type, {picture, {}}, options, {folder.path(), {}});
        ASSERT_TRUE(file) << name << ": " << file.error().message();
        EXPECT_EQ(file->path, folder.path(name));
        const std::string bytes = readFile(file->path);
        const bool inks = options.colors == PrintColors::CMYK;
        EXPECT_EQ(bytes.find("PDF/X-1a:2001") != std::string::npos, inks) << name;
        if (type == SavingtypeMethod::pdfStandard) {
            EXPECT_TRUE(file->picture.isIdenticalTo(picture)) << name;
            continue;
        }
        EXPECT_EQ(file->picture.scale(), 1) << name; // a page counts pixels as points
        EXPECT_EQ(file->picture.cgImage().colorSpace().model(),
                  inks ? CGColorSpace::Model::CMYK : CGColorSpace::Model::RGB);
    }
}

TEST(PDFExport, IsFollowedAndStopped)
{
    const UIImage picture(noisePicture(1200, 900, CGImageAlphaInfo::Last));
    const TemporaryFolder folder;
    writeFile(folder.path("a.pdf"), "former");
    std::vector<double> told;
    std::atomic<bool> cancelled = false;
    PDFSettings settings;
    settings.place = {folder.path(), "a.pdf"};
    settings.watch.cancelled = &cancelled;
    settings.watch.progress = [&](double share) {
        told.push_back(share);
        cancelled = share > 0.1;
    };
    const Result<std::string> stopped = PDFStandardFunction::shared().createPDF(picture, settings);
    ASSERT_FALSE(stopped);
    EXPECT_EQ(stopped.error().message(), folder.path("a.pdf") + ": cancelled");
    EXPECT_LT(told.back(), 0.9);
    EXPECT_EQ(readFile(folder.path("a.pdf")), "former");

    cancelled = false;
    told.clear();
    settings.watch.progress = [&](double share) { told.push_back(share); };
    ASSERT_TRUE(PDFStandardFunction::shared().createPDF(picture, settings));
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(told.back(), 1);
}

TEST(PDFExport, RefusesWhatCanBeNoPage)
{
    const TemporaryFolder folder;
    const UIImage picture(solidPicture(4, 4, {1, 2, 3, 255}));
    const auto marked = [&](const UIImage& image, double margin, double pixelsPerInch) {
        PDFSettings settings;
        settings.place.folder = folder.path();
        settings.pixelsPerInch = pixelsPerInch;
        const auto path = PDFPrintFunction::shared().createCropMarksPDF(image, margin, settings);
        return path ? "written" : path.error().cause;
    };
    const std::string noPage = "such a page can't be written";
    EXPECT_EQ(marked({}, 20, 72), "there is no picture");
    EXPECT_EQ(marked(picture, 20, 0), noPage);
    EXPECT_EQ(marked(picture, 20, -300), noPage);
    EXPECT_EQ(marked(picture, std::numeric_limits<double>::quiet_NaN(), 72), noPage);
    EXPECT_EQ(marked(picture, -20, 72), noPage);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

} // namespace
} // namespace lamina::test
