// The sheets of an export: what they mark, how they close, and whom they tell.
#include "ExportScreensFixture.h"
#include "export/ColorProfileController.h"
#include "export/PDFPrintController.h"
#include "export/PNGController.h"
#include "export/SavingTypeController.h"
#include "export/SavingTypes.h"
#include "platform/image/pixels/UIImage.h"

#include <limits>

namespace lamina::test {
namespace {

class ExportSheets : public ExportScreens {
protected:
    std::shared_ptr<SavingTypeController> chooser()
    {
        auto sheet = present(std::make_shared<SavingTypeController>());
        sheet->setDelegate(listener);
        return sheet;
    }
    template <class Exporter>
    std::shared_ptr<Exporter> exporter()
    {
        const auto sheet = std::make_shared<Exporter>();
        sheet->setShareImage(UIImage(rampPicture(8, 8, 0), 2));
        sheet->setDelegate(listener);
        return present(sheet);
    }
};

TEST_F(ExportSheets, TheChooserMarksOneRowAndSuggestsOne)
{
    const struct {
        bool isimage;
        int selected;
        int marked; // none: -1
        int suggested;
    } table[] = {{true, 8, -1, 1}, {true, 1, 1, 1}, {false, 0, 0, 5}, {false, 6, 6, 5}};
    const auto sheet = chooser();
    EXPECT_EQ(sheet->selectedIndex(), 8);
    ASSERT_EQ(sheet->cells().count(), 7);
    for (const auto& c : table) {
        sheet->setIsimage(c.isimage);
        sheet->setSelectedIndex(c.selected);
        for (int row = 0; row < 7; ++row) {
            const auto& cell = sheet->cells().rows()[static_cast<std::size_t>(row)];
            EXPECT_EQ(cell.selectbtn, row == c.marked) << row;
            EXPECT_EQ(cell.suggestedLbl, row == c.suggested) << row;
        }
    }
    EXPECT_EQ(sheet->cells().rows()[6].savingImageName, "ic_gif");
    EXPECT_FALSE(savingTypeOf(7) || savingTypeOf(-1));
}

TEST_F(ExportSheets, AChoiceIsToldOnceWhenTheChooserHasGone)
{
    const auto sheet = chooser();
    sheet->selectRow(7);
    sheet->selectRow(-1);
    EXPECT_TRUE(sheet->isDimmed());
    sheet->selectRow(4);
    sheet->selectRow(5);
    EXPECT_FALSE(sheet->isDimmed());
    EXPECT_TRUE(listener->selected.empty());
    settle();
    EXPECT_EQ(listener->selected, std::vector{SavingtypeMethod::svg});
    EXPECT_EQ(top<UIViewController>(), editor);
}

TEST_F(ExportSheets, AFarPullDownwardsCloses)
{
    constexpr int kBegan = 1;
    constexpr int kChanged = 2;
    constexpr int kEnded = 3;
    constexpr int kCancelled = 4;
    constexpr double kFar = kScreenHeight / 3.5; // 200, exactly
    const struct {
        double translation;
        double place; // where the sheet stands then
        int state;
        bool closes;
    } table[] = {
        {50, 0, kBegan, false},      {-30, 0, kChanged, false},
        {50, 50, kChanged, false},   {-1, 50, kChanged, false}, // up does nothing
        {0, 50, kCancelled, false},  {kFar, 0, kEnded, false},
        {-400, 0, kEnded, false},    {std::numeric_limits<double>::quiet_NaN(), 0, kEnded, false},
        {300, 300, kChanged, false}, {std::nextafter(kFar, 1e3), 300, kEnded, true},
    };
    const auto sheet = exporter<PNGController>();
    for (const auto& c : table) {
        sheet->handlePanGesture(c.state, c.translation);
        EXPECT_EQ(sheet->sheetTranslation().value(), c.place) << c.state << ' ' << c.translation;
        EXPECT_EQ(sheet->isDimmed(), !c.closes);
        EXPECT_EQ(editor->presentedViewController() == nullptr, c.closes);
    }
    sheet->backAction(); // it leaves already
    settle();
    EXPECT_TRUE(listener->called.empty() && listener->selected.empty());
}

TEST_F(ExportSheets, ATapAboveCloses)
{
    const auto first = chooser();
    first->handleTopTapWithSender();
    settle();
    const auto profiles = present(std::make_shared<ColorProfileController>());
    profiles->setDelegate(listener);
    profiles->handlePanGesture(2, 100);
    profiles->handlePanGesture(3, 500); // these don't follow a finger
    EXPECT_EQ(profiles->sheetTranslation().value(), 0);
    EXPECT_EQ(top<ColorProfileController>(), profiles);
    profiles->handleTopTapWithSender();
    settle();
    EXPECT_EQ(top<UIViewController>(), editor);
    EXPECT_TRUE(listener->selected.empty() && listener->profiles.empty());
}

TEST_F(ExportSheets, AnExporterLeavesForAnotherTypeAlone)
{
    const auto sheet = exporter<PNGController>();
    const auto choose = [&](int row) {
        sheet->handlefileTap();
        sheet->handlefileTap();
        settle();
        const auto rows = top<SavingTypeController>();
        ASSERT_TRUE(rows);
        EXPECT_EQ(rows->selectedIndex(), 1);
        EXPECT_TRUE(rows->isimage());
        rows->selectRow(row);
        settle();
    };
    choose(1);
    EXPECT_EQ(top<PNGController>(), sheet);
    EXPECT_TRUE(sheet->isDimmed());
    choose(3);
    EXPECT_EQ(top<UIViewController>(), editor);
    EXPECT_FALSE(sheet->isDimmed());
    EXPECT_EQ(listener->called, std::vector{SavingtypeMethod::pdfPrint});
}

TEST_F(ExportSheets, TheProfileComesFromASheetOverThePrint)
{
    const auto sheet = exporter<PDFPrintController>();
    EXPECT_EQ(sheet->colorProfileLbl(), "RGB (best for digital use)");
    for (const int row : {1, 1, 0}) {
        const int before = sheet->rgbselect() ? 0 : 1;
        sheet->handleprofileTap();
        settle();
        const auto profiles = top<ColorProfileController>();
        ASSERT_TRUE(profiles);
        EXPECT_EQ(profiles->selecIndex(), before);
        EXPECT_TRUE(profiles->cells().rows()[static_cast<std::size_t>(before)].doneImgView);
        EXPECT_FALSE(profiles->cells().rows()[static_cast<std::size_t>(1 - before)].doneImgView);
        profiles->selectRow(2);
        profiles->selectRow(row);
        settle();
        EXPECT_EQ(top<PDFPrintController>(), sheet);
        EXPECT_EQ(sheet->rgbselect(), row == 0);
        EXPECT_EQ(sheet->options().colors, row == 0 ? PrintColors::RGB : PrintColors::CMYK);
    }
}

} // namespace
} // namespace lamina::test
