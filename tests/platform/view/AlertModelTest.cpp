#include "platform/view/UIAlertController.h"

#include <gtest/gtest.h>

namespace lamina {
namespace {

TEST(AlertModel, AViewReadsStyleAndButtons)
{
    const auto question = UIAlertController::make("Discard?", "", {{"YES", UIAlertActionStyle::Destructive, {}}});
    EXPECT_EQ(question->property("preferredStyle").toInt(), 1);
    const auto sheet = UIAlertController::make(
        "", "", {{"Retina", UIAlertActionStyle::Default, {}}, {"Zurück", UIAlertActionStyle::Cancel, {}}},
        UIAlertControllerStyle::ActionSheet);
    EXPECT_EQ(sheet->property("preferredStyle").toInt(), 0);
    EXPECT_EQ(sheet->property("className").toString(), "UIAlertController");
    const QVariantList buttons = sheet->property("actionList").toList();
    ASSERT_EQ(buttons.size(), 2);
    EXPECT_EQ(buttons[1].toMap()["title"].toString(), QString::fromUtf8("Zurück"));
    EXPECT_EQ(buttons[1].toMap()["style"].toInt(), 1);
}

} // namespace
} // namespace lamina
