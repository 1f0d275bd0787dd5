// Alerts and sheets of choices: where the keyboard begins, what Esc answers, and that the answers stay within reach.
#include "WindowDriver.h"
#include "platform/view/UIAlertController.h"

#include <QPointingDevice>
#include <QTest>

#include <gtest/gtest.h>
#include <ostream>

namespace lamina::test {
namespace {

using Action = UIAlertActionStyle;
using Style = UIAlertControllerStyle;

struct Answer {
    const char* title;
    Action style;
};

struct Question {
    const char* name;
    const char* title;
    std::vector<Answer> answers;
    const char* focused;
    const char* escape; ///< empty: Esc leaves the question standing
    Style style = Style::Alert;
    friend void PrintTo(const Question& question, std::ostream* out) { *out << question.name; }
};

class Alerts : public testing::TestWithParam<Question> {
protected:
    void open(QSize size)
    {
        LaunchOptions options;
        options.size = size;
        driver = std::make_unique<WindowDriver>(options);
    }
    void ask(const Question& question, const std::string& message)
    {
        std::vector<UIAlertAction> actions;
        for (const Answer& answer : question.answers)
            actions.push_back({answer.title, answer.style, [this, title = answer.title] { answered += title; }});
        driver->application().screens().window().topViewController()->present(
            UIAlertController::make(question.title, message, std::move(actions), question.style), true);
        ASSERT_TRUE(driver->waitFor<UIAlertController>());
    }
    /// A finger from the head of the sheet downwards.
    void pullSheet(double by)
    {
        QQuickItem* const title = driver->item(QStringLiteral("Choose"));
        ASSERT_NE(title, nullptr) << "the title has no name";
        const QPointF head = WindowDriver::middleOf(*title);
        QTest::touchEvent(&driver->view(), finger.get()).press(0, head.toPoint(), &driver->view());
        for (int step = 1; step <= 10; ++step)
            QTest::touchEvent(&driver->view(), finger.get())
                .move(0, (head + QPointF(0, by * step / 10)).toPoint(), &driver->view());
        QTest::touchEvent(&driver->view(), finger.get()).release(0, (head + QPointF(0, by)).toPoint(), &driver->view());
        driver->settle();
    }

    std::unique_ptr<QPointingDevice> finger{QTest::createTouchDevice()};
    std::unique_ptr<WindowDriver> driver;
    std::string answered;
};

const Question kSheet{"Sheet",  "Choose", {{"Library", Action::Default}, {"Cancel", Action::Cancel}},
                      "Cancel", "Cancel", Style::ActionSheet};

TEST_P(Alerts, BeginWithTheSafeAnswerAndEscNeverLosesWork)
{
    open({360, 720});
    ask(GetParam(), "A message.");
    EXPECT_EQ(driver->focusedName().toStdString(), GetParam().focused);
    driver->press(Qt::Key_Escape);
    EXPECT_EQ(answered, GetParam().escape);
    EXPECT_EQ(driver->top<UIAlertController>() != nullptr, answered.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Questions, Alerts,
    testing::Values(
        Question{"Discard", "⚠️", {{"YES", Action::Default}, {"NO", Action::Default}}, "NO", "NO"},
        Question{"Notice", "⚠️", {{"OK", Action::Default}}, "OK", "OK"},
        Question{
            "Permission", "Allow it?", {{"Cancel", Action::Cancel}, {"Settings", Action::Default}}, "Cancel", "Cancel"},
        Question{"NoWayOut", "Which?", {{"One", Action::Default}, {"Two", Action::Default}}, "Two", ""}, kSheet,
        Question{"SheetWithoutCancel",
                 "Choose",
                 {{"One", Action::Default}, {"Two", Action::Default}},
                 "One",
                 "",
                 Style::ActionSheet}),
    [](const auto& question) { return std::string(question.param.name); });

TEST_F(Alerts, EnterGivesTheAnswerThatHasTheFocus)
{
    open({360, 720});
    ask({"", "⚠️", {{"YES", Action::Default}, {"NO", Action::Default}}, "", ""}, "Discard Editing");
    driver->press(Qt::Key_Tab);
    driver->press(Qt::Key_Return);
    EXPECT_EQ(answered, "YES");
}

TEST_F(Alerts, AnswersStayInSightUnderWordsThatDoNotFit)
{
    open({720, 360});
    std::string message;
    for (int i = 0; i < 200; ++i)
        message += "many words ";
    ask({"",
         "Can’t open the photo",
         {{"A rather long answer to this", Action::Default}, {"Cancel", Action::Cancel}},
         "",
         ""},
        message);
    const QRectF window(QPointF(), QSizeF(driver->view().size()));
    QRectF places[2];
    for (const int i : {0, 1}) {
        QQuickItem* const answer =
            driver->item(i == 0 ? QStringLiteral("A rather long answer to this") : QStringLiteral("Cancel"));
        ASSERT_NE(answer, nullptr);
        places[i] = answer->mapRectToScene(answer->boundingRect());
        EXPECT_TRUE(window.contains(places[i]));
    }
    EXPECT_GE(places[1].top(), places[0].bottom()) << "side by side the long one would be cut";
}

TEST_F(Alerts, ASheetIsPulledAwayOrSpringsBack)
{
    open({360, 720});
    ask(kSheet, "");
    const double place = driver->item(QStringLiteral("Library"))->mapToScene({}).y();
    pullSheet(720 / 3.5 - 20);
    EXPECT_EQ(answered, "");
    ASSERT_NE(driver->item(QStringLiteral("Library")), nullptr);
    EXPECT_DOUBLE_EQ(driver->item(QStringLiteral("Library"))->mapToScene({}).y(), place);
    pullSheet(720 / 3.5 + 20);
    EXPECT_EQ(answered, "Cancel");
}

} // namespace
} // namespace lamina::test
