#include "platform/host/services/UnifiedPush.h"

#include "CommandRunner.h"
#include "Environment.h"
#include "EventPump.h"
#include "LogCapture.h"
#include "TestDistributor.h"
#include "platform/application/UIApplication.h"
#include "platform/base/Clock.h"
#include "platform/host/services/SessionName.h"
#include "platform/host/system/BackgroundWork.h"

#include <QDBusError>
#include <QDBusVariant>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <unistd.h>

namespace lamina::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Writes down what the application is told.
class Listener : public UIApplicationDelegate, public FIRMessagingDelegate {
public:
    bool didFinishLaunchingWithOptions(UIApplication&) override { return true; }
    void applicationDidBecomeActive(UIApplication&) override {}
    void applicationWillResignActive(UIApplication&) override {}
    void applicationDidEnterBackground(UIApplication&) override {}
    void applicationWillEnterForeground(UIApplication&) override {}
    void applicationWillTerminate(UIApplication&) override {}
    void didRegisterForRemoteNotificationsWithDeviceToken(UIApplication&,
                                                          const std::vector<std::uint8_t>& token) override
    {
        told.push_back("token " + std::string(token.begin(), token.end()));
    }
    void didFailToRegisterForRemoteNotificationsWithError(UIApplication&, const Error& error) override
    {
        told.push_back("failed " + error.message());
    }
    void didReceiveRemoteNotification(UIApplication&, const UNNotification& notification,
                                      const std::function<void(UIBackgroundFetchResult)>&) override
    {
        told.push_back(notification.title + ' ' + notification.userInfo.value("badge", nlohmann::json()).dump());
    }
    void messaging(FIRMessaging&, const std::string& endpoint) override { told.push_back("at " + endpoint); }

    std::vector<std::string> told;
};

/// One run of the application after the other, with one state folder.
class UnifiedPushes : public testing::Test {
protected:
    void SetUp() override
    {
        UIApplication::shared().setDelegate(listener);
        FIRMessaging::messaging().setDelegate(listener);
    }
    void TearDown() override
    {
        end();
        Clock::setShared(nullptr);
    }

    /// Begins a run; when this returns the distributor has been asked where there is one.
    void start(bool isForMessages = false)
    {
        end();
        listener->told.clear();
        push = std::make_unique<UnifiedPush>();
        name = std::make_unique<SessionName>();
        name->addExport(push->exporter());
        name->begin();
        UIApplication::shared().registerForRemoteNotifications();
        isForMessages ? push->beginForMessages() : push->begin();
        ASSERT_TRUE(DispatchQueue::main().runUntilIdle(20));
    }
    void end()
    {
        name.reset();
        push.reset();
    }
    /// Starts, and waits until the distributor's answer has been told.
    void startRegistered()
    {
        start();
        ASSERT_TRUE(runUntil([&] { return !listener->told.empty(); }));
        listener->told.clear();
    }
    /// The error's name; empty: it was taken.
    static std::string answerTo(const QDBusPendingCall& call)
    {
        if (!runUntil([&] { return call.isFinished(); }))
            return "no answer";
        const QDBusMessage reply = call.reply();
        if (reply.type() == QDBusMessage::ErrorMessage)
            return reply.errorName().split(QLatin1Char('.')).last().toStdString();
        return reply.signature() == QLatin1String("a{sv}") ? "" : "a strange answer";
    }
    std::string tokenFile() const { return state.path("lamina/push.json"); }
    std::string toldToken(const TestDistributor& distributor) const
    {
        return "token " + distributor.token().toStdString();
    }

    TemporaryFolder state;
    Variable home{"XDG_STATE_HOME", state.path()};
    LogCapture log;
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
    std::unique_ptr<UnifiedPush> push;
    std::unique_ptr<SessionName> name;
};

TEST_F(UnifiedPushes, RegisterUnderATokenThatIsKeptForTheirDistributor)
{
    auto distributor = std::make_unique<TestDistributor>(QStringLiteral("M"));
    ASSERT_TRUE(distributor->isRunning());
    start();
    ASSERT_TRUE(runUntil([&] { return !listener->told.empty(); }));
    const QString token = distributor->token();
    EXPECT_THAT(listener->told, ElementsAre(toldToken(*distributor)));
    EXPECT_EQ(distributor->registrations().back(),
              (QVariantMap{{QStringLiteral("service"), QStringLiteral("org.lamina.lamina")},
                           {QStringLiteral("token"), token},
                           {QStringLiteral("description"), QStringLiteral("Lamina")}}));
    EXPECT_EQ(std::filesystem::status(tokenFile()).permissions(), std::filesystem::perms(0600));
    {
        const TestDistributor earlier(QStringLiteral("A"));
        startRegistered();
        EXPECT_EQ(distributor->token(), token) << "the distributor knows us again";
        EXPECT_THAT(earlier.registrations(), IsEmpty()) << "though another comes first by name";
    }
    for (const char* const damage : {"", "{", "[]", R"({"distributor":1,"token":"x"})",
                                     R"({"distributor":"org.unifiedpush.Distributor.M","token":"../.."})"}) {
        writeFile(tokenFile(), damage);
        const QString before = distributor->token();
        startRegistered();
        EXPECT_NE(distributor->token(), before) << damage;
    }
    end();
    const QString before = distributor->token();
    distributor = std::make_unique<TestDistributor>(QStringLiteral("Z"));
    const TestDistributor earlier(QStringLiteral("B"));
    startRegistered();
    EXPECT_EQ(earlier.registrations().size(), 1u) << "the first by name, where the former is gone";
    EXPECT_NE(earlier.token(), before);
    EXPECT_EQ(log.text(), "");
}

TEST_F(UnifiedPushes, AreSilentWithoutADistributorOrOurName)
{
    start();
    runFor(50);
    TestDistributor distributor;
    QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("other"));
    end();
    ASSERT_TRUE(other.registerService(kApplicationBusName));
    start();
    runFor(50);
    EXPECT_THAT(distributor.registrations(), IsEmpty()) << "another process has the name";
    EXPECT_THAT(listener->told, IsEmpty());
    EXPECT_EQ(log.text(), "");
    EXPECT_FALSE(std::filesystem::exists(tokenFile()));
    other.unregisterService(kApplicationBusName);
}

TEST_F(UnifiedPushes, TellWhyADistributorRefuses)
{
    TestDistributor distributor;
    const auto refusal = [](const QString& reason) {
        return QVariantMap{{QStringLiteral("success"), QStringLiteral("REGISTRATION_FAILED")},
                           {QStringLiteral("reason"), reason}};
    };
    const std::pair<QVariantMap, std::string> rows[] = {
        {{}, "it is broken"},
        {refusal(QStringLiteral("NETWORK")), "NETWORK"},
        {refusal(QStringLiteral("x\nlamina: all is well")), "x?lamina: all is well"},
        {refusal({}), "it gives no reason"},
        {refusal(QString(100'000, QLatin1Char('x'))), std::string(200, 'x') + "..."},
        {{{QStringLiteral("success"), 1}}, "its answer makes no sense"},
        {{{QStringLiteral("failure"), QVariantMap()}}, "its answer makes no sense"},
    };
    for (const auto& [answer, cause] : rows) {
        distributor.setAnswer(answer);
        start();
        ASSERT_TRUE(runUntil([&] { return !listener->told.empty(); }));
        EXPECT_THAT(listener->told, ElementsAre("failed org.unifiedpush.Distributor.Test: " + cause));
    }
}

TEST_F(UnifiedPushes, TakeCallsOfTheirDistributorAlone)
{
    const TestDistributor distributor;
    const TestDistributor stranger(QStringLiteral("Z"));
    startRegistered();
    const QVariant token = distributor.token();
    const QVariant message = QByteArray(R"({"title":"Hi","badge":2})");
    const QString key = QStringLiteral("token");
    const QString content = QStringLiteral("message");
    const QString endpoint = QStringLiteral("endpoint");
    const QVariantMap good{{key, token}, {content, message}};
    QVariantMap many = good;
    for (int i = 0; i < 1000; ++i)
        many.insert(QString::number(i), i);
    const auto messageOf = [&](const QVariant& contents) -> QVariantList {
        return {QVariantMap{{key, token}, {content, contents}}};
    };
    const auto endpointOf = [&](const QVariant& address) -> QVariantList {
        return {QVariantMap{{key, token}, {endpoint, address}}};
    };
    struct Row {
        const TestDistributor* caller;
        const char* method;
        QVariantList arguments;
        std::string answer; ///< the error's name
        std::string told;
    };
    const Row rows[] = {
        {&distributor, "Message", {good}, "", "Hi 2"},
        {&stranger, "Message", {good}, "AccessDenied", ""},
        {&distributor, "Message", {QVariantMap{{key, QStringLiteral("x")}, {content, message}}}, "AccessDenied", ""},
        {&distributor, "Message", {many}, "InvalidArgs", ""},
        {&distributor, "Message", {}, "InvalidArgs", ""},
        {&distributor, "Message", {good, good}, "InvalidArgs", ""},
        {&distributor, "Message", {QStringLiteral("x")}, "InvalidArgs", ""},
        {&distributor, "Message", {QVariantMap{{key, token}}}, "InvalidArgs", ""},
        {&distributor, "Message", {QVariantMap{{key, 1}, {content, message}}}, "InvalidArgs", ""},
        {&distributor, "Message", {QVariantMap{{key, QString(5000, 'x')}, {content, message}}}, "InvalidArgs", ""},
        {&distributor, "Message", messageOf(QStringLiteral("{}")), "InvalidArgs", ""},
        {&distributor, "Message", messageOf(QVariantMap()), "InvalidArgs", ""},
        {&distributor, "Message", messageOf(QByteArray()), "", ""},
        {&distributor, "Message", messageOf(QByteArray(4097, ' ')), "", ""},
        {&distributor, "NewEndpoint", endpointOf(QStringLiteral("https://push.example/a")), "",
         "at https://push.example/a"},
        {&distributor, "NewEndpoint", endpointOf(QStringLiteral("https://push.example/a")), "", ""},
        {&distributor, "NewEndpoint", endpointOf(QStringLiteral("file:///etc/passwd")), "", ""},
        {&distributor, "NewEndpoint", endpointOf(5), "InvalidArgs", ""},
        {&stranger, "NewEndpoint", endpointOf(QStringLiteral("https://evil.example")), "AccessDenied", ""},
        {&stranger, "Unregistered", {QVariantMap{{key, token}}}, "AccessDenied", ""},
        {&distributor, "Shutdown", {QVariantMap{{key, token}}}, "UnknownMethod", ""},
        {&distributor, "Unregistered", {QVariantMap{{key, token}}}, "", ""},
        {&distributor, "Message", {good}, "AccessDenied", ""},
    };
    for (const Row& row : rows) {
        listener->told.clear();
        EXPECT_EQ(answerTo(row.caller->call(QLatin1String(row.method), row.arguments)), row.answer) << row.method;
        EXPECT_EQ(listener->told, row.told.empty() ? std::vector<std::string>() : std::vector{row.told});
    }
    EXPECT_EQ(log.messages.size(), 3u) << log.text(); // of a distributor that may speak
    EXPECT_TRUE(runUntil([&] { return !std::filesystem::exists(tokenFile()); }));
    startRegistered();
    EXPECT_NE(distributor.token(), token.toString()) << "what was taken back is not used again";
}

TEST_F(UnifiedPushes, ShowSomeOfAFloodAndKeepItsLastBadge)
{
    const auto clock = std::make_shared<ManualClock>();
    Clock::setShared(clock);
    const TestDistributor distributor;
    startRegistered();
    constexpr int kMessages = 50; // the bus itself lets no more than 128 calls wait
    for (int i = 1; i <= kMessages; ++i) {
        (void)distributor.send(R"({"title":"T","badge":)" + std::to_string(i) + "}");
        (void)distributor.send("no message");
    }
    ASSERT_TRUE(runUntil([&] { return listener->told.size() == kMessages; }));
    EXPECT_EQ(std::ranges::count_if(listener->told, [](const std::string& line) { return line.starts_with('T'); }),
              UnifiedPush::kMostShown);
    EXPECT_EQ(listener->told.back(), " 50");
    EXPECT_EQ(log.messages.size(), static_cast<std::size_t>(UnifiedPush::kMostLines));
    clock->advance(60);
    EXPECT_EQ(answerTo(distributor.send(R"({"title":"T"})")), "");
    EXPECT_EQ(listener->told.back(), "T null");
    EXPECT_EQ(answerTo(distributor.send("[]")), "");
    EXPECT_THAT(log.messages.back().second, HasSubstr("not a JSON object (and "));
}

TEST_F(UnifiedPushes, StayRegisteredWhereAMessageHasStartedThem)
{
    const TestDistributor distributor;
    start(true);
    ASSERT_TRUE(runUntil([&] { return !listener->told.empty(); }));
    start(true);
    EXPECT_THAT(listener->told, ElementsAre(toldToken(distributor)));
    EXPECT_EQ(distributor.registrations().size(), 1u) << "the one that there had never been";
    EXPECT_EQ(answerTo(distributor.send("{}")), "");
    push->begin(); // there is a window after all
    EXPECT_TRUE(runUntil([&] { return distributor.registrations().size() == 2; }));
}

TEST_F(UnifiedPushes, KeepNothingOfWhatTheyRefuse)
{
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the limits are for a build without sanitizers";
#endif
    const TestDistributor distributor;
    startRegistered();
    QVariantMap many{{QStringLiteral("token"), distributor.token()}};
    for (int i = 0; i < 40; ++i)
        many.insert(QString::number(i), QByteArray(50'000, 'x'));
    const auto refuse = [&] {
        EXPECT_EQ(answerTo(distributor.call(QStringLiteral("Message"), {many})), "InvalidArgs");
    };
    const auto pages = [] {
        return std::stol(readFile("/proc/self/statm").substr(readFile("/proc/self/statm").find(' ')));
    };
    refuse();
    const long before = pages();
    for (int i = 0; i < 50; ++i)
        refuse();
    EXPECT_LT((pages() - before) * sysconf(_SC_PAGESIZE), 50'000'000) << "of 100 MB";
}

TEST_F(UnifiedPushes, RegisterAgainWithADistributorThatComesBack)
{
    auto distributor = std::make_unique<TestDistributor>();
    startRegistered();
    const QString token = distributor->token();
    distributor.reset();
    distributor = std::make_unique<TestDistributor>();
    ASSERT_TRUE(runUntil([&] { return !listener->told.empty(); }));
    EXPECT_EQ(distributor->token(), token);
    EXPECT_EQ(answerTo(distributor->send(R"({"badge":1})")), "") << "its new connection may speak";
}

} // namespace
} // namespace lamina::test
