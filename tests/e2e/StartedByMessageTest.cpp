// The real application, which the bus starts because a server's message has come.
#include "CommandRunner.h"
#include "EventPump.h"
#include "TestDesktop.h"
#include "TestDistributor.h"
#include "TestSession.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace lamina::test {
namespace {

/// As an earlier start has left it.
void keepRegistration(const TestSession& session, const char* token)
{
    std::filesystem::create_directories(session.path("state/lamina"));
    writeFile(session.path("state/lamina/push.json"),
              R"({"distributor":"org.unifiedpush.Distributor.Test","token":")" + std::string(token) + "\"}");
}

TEST(StartedByAMessage, WithoutADisplayItTellsTheUserAndLeavesWhenNothingIsShownAnyMore)
{
    constexpr const char* kToken = "0b8de4d6-9a4f-4a3e-8f4e-1d2c3b4a5968";
    TestSession session(LAMINA_APP, TestSession::Display::None);
    keepRegistration(session, kToken);
    const QString address = session.environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    TestDesktop desktop(TestDesktop::Kind::Service, address);
    const TestDistributor distributor(QStringLiteral("Test"), address);
    ASSERT_TRUE(desktop.isRunning() && distributor.isRunning());
    const auto send = [&](const char* message) {
        return distributor.call(QStringLiteral("Message"),
                                {QVariantMap{{"token", kToken}, {"message", QByteArray(message)}}});
    };

    ASSERT_EQ(session.owner(), 0);
    const QDBusPendingCall first = send(R"({"title":"Two <b>new</b> frames","badge":2})");
    ASSERT_TRUE(runUntil([&] { return desktop.shown().size() == 1 && desktop.badges() == QList<qlonglong>{2}; }));
    EXPECT_EQ(desktop.shown()[0].title, "Two <b>new</b> frames");
    ASSERT_TRUE(runUntil([&] { return first.isFinished(); }));
    EXPECT_FALSE(first.isError()) << first.error().message().toStdString();
    EXPECT_TRUE(distributor.registrations().empty()) << "an answer to it could start us again, and so on for ever";

    desktop.sweep(desktop.shown()[0].number);
    (void)send(R"({"badge":0})");
    EXPECT_TRUE(runUntil([&] { return desktop.badges().size() == 2; }));
    EXPECT_TRUE(runUntil([&] { return session.owner() == 0; }, 40'000));
}

} // namespace
} // namespace lamina::test
