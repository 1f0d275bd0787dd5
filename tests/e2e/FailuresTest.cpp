#include "WindowTest.h"

#include "platform/base/DispatchQueue.h"

#include <QCoreApplication>
#include <QEvent>

#include <stdexcept>

namespace lamina::test {
namespace {

class Failures : public WindowTest {
protected:
    static void failInBlock(const char* cause)
    {
        DispatchQueue::main().async([cause] { throw std::runtime_error(cause); });
    }
    static void failInEvent(const char* cause)
    {
        struct Failing : QObject {
            bool event(QEvent*) override { throw std::runtime_error(cause); }
            const char* cause = "";
        } receiver;
        receiver.cause = cause;
        QEvent event(QEvent::User);
        QCoreApplication::sendEvent(&receiver, &event);
    }
};

TEST_F(Failures, AreToldOneAtATime)
{
    open();
    failInEvent("the first");
    failInBlock("the second");
    failInBlock("the third");
    driver->settle();
    EXPECT_EQ(alertText(), "That didn’t work|the first");
    ASSERT_TRUE(driver->tap(QStringLiteral("OK")));
    EXPECT_EQ(alertText(), "");
    failInBlock("another");
    driver->settle();
    EXPECT_EQ(alertText(), "That didn’t work|another");
    // Without a screen there is nobody to be told; that doesn't fail in its turn.
    Application::current()->screens().window().setRootViewController(nullptr);
    failInBlock("unseen");
    driver->settle();
}

} // namespace
} // namespace lamina::test
