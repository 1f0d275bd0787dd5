// The road from an editor over the exporters, and back.
#include "export/ExportFinish.h"

#include "ExportScreensFixture.h"
#include "export/ExporterViewController.h"
#include "export/SavingTypeController.h"
#include "export/SavingTypes.h"
#include "platform/view/UIAlertController.h"

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
