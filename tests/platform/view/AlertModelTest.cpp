#include "platform/view/UIAlertController.h"

#include "ControllerBench.h"
#include "platform/view/UIApplication.h"
#include "platform/view/UIImagePickerController.h"

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
    const QVariantList buttons = sheet->property("actionList").toList();
    ASSERT_EQ(buttons.size(), 2);
    EXPECT_EQ(buttons[1].toMap()["title"].toString(), QString::fromUtf8("Zurück"));
    EXPECT_EQ(buttons[1].toMap()["style"].toInt(), 1);
    int cancel = -2;
    EXPECT_TRUE(QMetaObject::invokeMethod(sheet.get(), "cancelIndex", Q_RETURN_ARG(int, cancel)));
    EXPECT_EQ(cancel, 1);
}

TEST(ScreenNames, LeaveTheNamespaceOut)
{
    EXPECT_EQ(UIImagePickerController().property("className").toString(), "UIImagePickerController");
    EXPECT_EQ(UIViewController().className(), "UIViewController");
}

class LinkOpening : public test::ControllerBench {};

TEST_F(LinkOpening, IsTheInstalledOpenersAnswer)
{
    std::vector<std::string> opened;
    UIApplication& application = UIApplication::shared();
    EXPECT_FALSE(application.openURL("https://example.org"));
    EXPECT_EQ(messages, 1);
    application.setURLOpener([&](const std::string& url) {
        opened.push_back(url);
        return url == UIApplicationOpenSettingsURLString;
    });
    EXPECT_TRUE(application.openURL("app-settings:"));
    EXPECT_FALSE(application.openURL("https://example.org"));
    application.setURLOpener({});
    EXPECT_EQ(opened, (std::vector<std::string>{"app-settings:", "https://example.org"}));
    EXPECT_EQ(messages, 2);
}

} // namespace
} // namespace lamina
