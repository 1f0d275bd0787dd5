// What the exporters' sheets begin with, and what their controls do.
#include "ExportScreensFixture.h"
#include "export/JPGController.h"
#include "export/MP4VideoController.h"
#include "export/PDFPrintController.h"
#include "export/PDFStandardController.h"
#include "export/PNGController.h"
#include "export/SVGController.h"
#include "export/TiffController.h"
#include "platform/image/pixels/UIImage.h"

#include <cmath>
#include <functional>
#include <limits>
#include <utility>

namespace lamina::test {
namespace {

class ExporterOptions : public ExportScreens {
protected:
    template <class Exporter>
    static std::shared_ptr<Exporter> open(int width = 64, int height = 48, double scale = 1)
    {
        auto exporter = std::make_shared<Exporter>();
        exporter->setShareImage(UIImage(rampPicture(width, height, 0), scale));
        exporter->view();
        return exporter;
    }
    static float below(float value) { return std::nextafter(value, -1.0f); }
    static float above(float value) { return std::nextafter(value, 9.0f); }
};

TEST_F(ExporterOptions, EachSheetHasItsHeightAndItsType)
{
    const std::pair<std::shared_ptr<ExporterViewController>, double> table[] = {
        {open<JPGController>(), 480},      {open<PNGController>(), 450}, {open<PDFStandardController>(), 360},
        {open<PDFPrintController>(), 470}, {open<SVGController>(), 300}, {open<MP4VideoController>(), 0},
        {open<TiffController>(), 267},
    };
    int type = 0;
    for (const auto& [exporter, height] : table) {
        EXPECT_EQ(exporter->sheetHeight(), height);
        EXPECT_EQ(exporter->saveTypeNumber(), type++);
        EXPECT_EQ(exporter->isSuggested(), exporter->saveType() == SavingtypeMethod::png);
        EXPECT_EQ(exporter->infoLbl(), "");
        EXPECT_TRUE(exporter->isReady());
        EXPECT_EQ(exporter->cornerRadius(), 30);
    }
}

TEST_F(ExporterOptions, TheSizeIsToldInPointsAndInPixels)
{
    const auto png = open<PNGController>(1024, 768);
    EXPECT_EQ(png->pxLbl(), "1024.0 x 768.0 px");
    EXPECT_EQ(png->filePixels(), (IntSize{2048, 1536})) << "contexts have the screen's scale";
    png->sizeSliderAction(0.5f);
    EXPECT_EQ(png->pxLbl(), "512.0 x 384.0 px");
    EXPECT_EQ(png->sizeValueLbl(), "0.5");
    EXPECT_EQ(png->filePixelsText(), "1024 × 768 pixels");
    for (const float bad : {0.0f, -1.0f, std::numeric_limits<float>::infinity(), std::nanf("")})
        png->sizeSliderAction(bad);
    EXPECT_EQ(png->newWidth(), 512);

    const auto jpg = open<JPGController>(101, 50, 2);
    EXPECT_EQ(jpg->pxLbl(), "50.5 x 25.0 px");
    EXPECT_EQ(jpg->filePixels(), (IntSize{101, 50}));
    jpg->sizeSliderAction(0.7f);
    EXPECT_EQ(jpg->newWidth(), 50.5 * static_cast<double>(0.7f)) << "of the value as it is";
    EXPECT_EQ(jpg->pxLbl(), "35.3 x 17.5 px");
    EXPECT_EQ(jpg->options().height, jpg->newheight());
}

TEST_F(ExporterOptions, BandsOfTheQualityOfAJPGEndAtFloats)
{
    const auto jpg = open<JPGController>();
    EXPECT_EQ(jpg->qualityParameter(), 1);
    EXPECT_EQ(jpg->qualityValueLbl(), "10");
    const struct {
        float value;
        const char* label;
        const char* size;
    } table[] = {
        {below(0.1f), "0", "Large"}, {0.1f, "1", "Small"},         {below(0.3f), "2", "Small"}, {0.3f, "3", "Medium"},
        {0.55f, "5", "Medium"},      {below(0.7f), "6", "Medium"}, {0.7f, "7", "Large"},        {1.0f, "10", "Large"},
    };
    for (const auto& c : table) {
        jpg->qualitySlideraction(c.value);
        EXPECT_EQ(jpg->qualityValueLbl().toStdString(), c.label) << c.value;
        EXPECT_EQ(jpg->fileSizeLbl().toStdString(), std::string("File size: ") + c.size) << c.value;
        EXPECT_EQ(jpg->options().quality, static_cast<double>(c.value));
    }
    for (const float bad : {std::nanf(""), std::numeric_limits<float>::infinity(), 3e8f})
        jpg->qualitySlideraction(bad);
    EXPECT_EQ(jpg->qualityParameter(), 1);
}

TEST_F(ExporterOptions, BandsOfTheQualityOfAFilmEndAtFloats)
{
    const auto film = open<MP4VideoController>(101, 50);
    EXPECT_EQ(film->sizelbl(), "High");
    EXPECT_EQ(film->filePixels(), (IntSize{102, 50}));
    EXPECT_FALSE(film->audioURL().empty());
    const struct {
        const char* label;
        float value;
        VideoQuality quality;
    } table[] = {
        {"Low", 0.2f, VideoQuality::Low},
        {"Low", below(0.2f), VideoQuality::Low},
        {"High", 1.0f, VideoQuality::High},
        {"Medium", below(1.0f), VideoQuality::Medium},
        {"Low", below(0.6f), VideoQuality::Low},
        {"Medium", 0.6f, VideoQuality::Medium},
        {"High", 1.5f, VideoQuality::High},
        {"Medium", 0.6f, VideoQuality::Medium},
        {"Medium", above(1.5f), VideoQuality::Medium},
        {"Medium", 1.6f, VideoQuality::Medium},
        {"Medium", std::nanf(""), VideoQuality::Medium},
    };
    for (const auto& c : table) {
        film->qualitySliderAction(c.value);
        EXPECT_EQ(film->sizelbl(), c.label) << c.value;
        EXPECT_EQ(film->options().video, c.quality) << c.value;
    }
}

TEST_F(ExporterOptions, TicksFlipTheirMarksAndTheirOptions)
{
    const auto png = open<PNGController>();
    const auto svg = open<SVGController>();
    const auto pdf = open<PDFStandardController>();
    const auto print = open<PDFPrintController>();
    const struct {
        std::shared_ptr<ExporterViewController> sheet;
        const char* tap;
        const char* mark;
        const char* option; // none: nothing stands behind the mark
    } table[] = {
        {png, "handletrasnparentTap", "trasnparentCheck", "trasparentBool"},
        {png, "handleCompressTap", "compressQuailityCheck", nullptr},
        {svg, "handletrasnparentTap", "trasnparentCehck", "trasparentChoose"},
        {pdf, "handlenotTap", "noteCheckView", "notesChoose"},
        {pdf, "handleFlattenTap", "flattenCheckView", "flattenChoose"},
        {print, "handlenotTap", "notesCheck", "notesChoose"},
        {print, "handleFlattenTap", "flattenCheck", "flattenChoose"},
        {print, "handlecropTap", "cropMarksCheck", "cropSelect"},
        {print, "handleppiTap", "ppiCheck", "ppiSelect"},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(c.mark);
        for (const bool ticked : {false, true, false}) {
            EXPECT_EQ(c.sheet->property(c.mark).toString(), ticked ? "ic_checkbox1" : "ic_checkbox");
            EXPECT_TRUE(!c.option || c.sheet->property(c.option).toBool() == ticked);
            EXPECT_TRUE(QMetaObject::invokeMethod(c.sheet.get(), c.tap));
        }
    }
    EXPECT_TRUE(png->options().transparency && svg->options().transparency && pdf->options().notes);
    EXPECT_TRUE(print->options().notes && print->options().cropMarks && print->options().pixelsPerInch == 300);
}

TEST_F(ExporterOptions, APrintTellsItsSizeOnPaper)
{
    const auto print = open<PDFPrintController>(1125, 562);
    EXPECT_EQ(print->printSizeLbl(), "39.7 × 19.8 cm, 72 ppi");
    print->handleppiTap();
    EXPECT_EQ(print->printSizeLbl(), "9.5 × 4.8 cm, 300 ppi");
}

} // namespace
} // namespace lamina::test
