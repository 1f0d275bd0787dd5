// Alerts and sheets of choices: where the keyboard begins, what Esc answers, and that the answers stay within reach.
#include "WindowDriver.h"
#include "platform/host/Application.h"
#include "platform/view/UIAlertController.h"

#include <QPointingDevice>
#include <QTest>

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>

namespace lamina::test {
namespace {

using Action = UIAlertActionStyle;
using Style = UIAlertControllerStyle;

struct Question {
    const char* title;
    std::vector<std::pair<const char*, Action>> answers;
    Style style = Style::Alert;
};

class Alerts : public testing::Test {
protected:
    void open(QSize size = {360, 720})
    {
        LaunchOptions options;
        options.size = size;
        driver = std::make_unique<WindowDriver>(options);
    }
    void ask(const Question& question, const std::string& message = "A message.")
    {
        answered.clear();
        std::vector<UIAlertAction> actions;
        for (const auto& [title, style] : question.answers)
            actions.push_back({title, style, [this, title = title] { answered += title; }});
        driver->application().screens().window().topViewController()->present(
            UIAlertController::make(question.title, message, std::move(actions), question.style), true);
        ASSERT_TRUE(driver->waitFor<UIAlertController>());
    }
    double placeOf(const QString& name)
    {
        QQuickItem* const item = driver->item(name);
        return item ? item->mapToScene({}).y() : -1;
    }
    /// A finger from the head of the sheet downwards.
    void pullSheet(double by)
    {
        const QPointF head = WindowDriver::middleOf(*driver->item(QStringLiteral("Choose")));
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

const Question kSheet{"Choose", {{"Library", Action::Default}, {"Cancel", Action::Cancel}}, Style::ActionSheet};

TEST_F(Alerts, BeginWithTheSafeAnswerAndEscNeverLosesWork)
{
    const struct {
        Question question;
        const char* focused;
        const char* escape; ///< empty: Esc leaves the question standing
    } table[] = {
        {{"⚠️", {{"YES", Action::Default}, {"NO", Action::Default}}}, "NO", "NO"},
        {{"⚠️", {{"OK", Action::Default}}}, "OK", "OK"},
        {{"Allow it?", {{"Cancel", Action::Cancel}, {"Settings", Action::Default}}}, "Cancel", "Cancel"},
        {kSheet, "Cancel", "Cancel"},
        {{"Which?", {{"One", Action::Default}, {"Two", Action::Default}}}, "Two", ""},
        {{"Choose", {{"One", Action::Default}, {"Two", Action::Default}}, Style::ActionSheet}, "One", ""},
    };
    open();
    for (const auto& c : table) {
        SCOPED_TRACE(c.question.title);
        ask(c.question);
        EXPECT_EQ(driver->focusedName().toStdString(), c.focused);
        driver->press(Qt::Key_Right);
        EXPECT_EQ(driver->ringedName() != QLatin1String(c.focused), c.question.answers.size() > 1);
        driver->press(Qt::Key_Up);
        EXPECT_EQ(driver->ringedName().toStdString(), c.focused) << "an arrow back";
        driver->press(Qt::Key_Escape);
        EXPECT_EQ(answered, c.escape);
        EXPECT_EQ(driver->top<UIAlertController>() != nullptr, answered.empty());
        if (!answered.empty())
            continue;
        driver->press(Qt::Key_Tab);
        const std::string reached = driver->focusedName().toStdString();
        driver->press(Qt::Key_Return);
        EXPECT_EQ(answered, reached) << "Enter gives the answer that has the focus";
    }
}

TEST_F(Alerts, AnswersStayInSightUnderWordsThatDoNotFit)
{
    open({720, 360});
    std::string message;
    for (int i = 0; i < 200; ++i)
        message += "many words ";
    ask({"Can’t open the photo", {{"A rather long answer to this", Action::Default}, {"Cancel", Action::Cancel}}},
        message);
    const QRectF window(QPointF(), QSizeF(driver->view().size()));
    for (const char* const name : {"A rather long answer to this", "Cancel"}) {
        QQuickItem* const answer = driver->item(QString::fromLatin1(name));
        ASSERT_NE(answer, nullptr);
        EXPECT_TRUE(window.contains(answer->mapRectToScene(answer->boundingRect()))) << name;
    }
    EXPECT_GT(placeOf(QStringLiteral("Cancel")), placeOf(QStringLiteral("A rather long answer to this")) + 40)
        << "side by side the long one would be cut";
}

TEST_F(Alerts, ASheetIsPulledAwayOrSpringsBack)
{
    open();
    ask(kSheet);
    const double place = placeOf(QStringLiteral("Library"));
    pullSheet(720 / 3.5 - 20);
    EXPECT_EQ(answered, "");
    EXPECT_DOUBLE_EQ(placeOf(QStringLiteral("Library")), place);
    pullSheet(720 / 3.5 + 20);
    EXPECT_EQ(answered, "Cancel");
}

} // namespace
} // namespace lamina::test
