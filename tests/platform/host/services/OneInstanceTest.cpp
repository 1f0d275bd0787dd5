// The application's name, the calls that come under it, and how a second start hands over what it was asked for.
#include "platform/base/ShownText.h"
#include "platform/files/FileURL.h"
#include "platform/host/services/ApplicationService.h"
#include "platform/host/services/SessionName.h"

#include "EventPump.h"

#include <QDBusMessage>

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <thread>
#include <type_traits>

namespace lamina::test {
namespace {

using namespace std::chrono_literals;
using State = SessionName::State;

const QString kPath = QStringLiteral("/org/lamina/lamina");
const QString kInterface = QStringLiteral("org.freedesktop.Application");

/// The application on the bus, and another program that calls it.
class OneInstance : public testing::Test {
protected:
    void SetUp() override
    {
        name.addExport([this](QDBusConnection& bus) { service.exportOn(bus); });
        name.begin();
        ASSERT_EQ(name.waitFor(20s), State::Owned);
    }
    void heed()
    {
        service.setHandler([this](const ApplicationRequest& request) {
            heard.push_back(request);
            return answer;
        });
    }
    QDBusMessage call(const char* method, const QVariantList& arguments)
    {
        QDBusMessage message =
            QDBusMessage::createMethodCall(kApplicationBusName, kPath, kInterface, QLatin1String(method));
        message.setArguments(arguments);
        return inAnotherProgram([&](const QDBusConnection& bus) { return bus.call(message, QDBus::Block, 20'000); });
    }
    Outcome handOverElsewhere(const ApplicationRequest& request, double seconds)
    {
        return inAnotherProgram([&](const QDBusConnection& bus) { return handOver(bus, request, seconds); });
    }
    /// Runs it where it may wait, while this side answers unless it `hangs`.
    template <class Work>
    std::invoke_result_t<Work, QDBusConnection> inAnotherProgram(Work work)
    {
        auto result = std::async(std::launch::async, [&] { return work(other); });
        runUntil([&] { return result.wait_for(hangs ? 20s : 0s) == std::future_status::ready; });
        return result.get();
    }

    ApplicationService service;
    SessionName name;
    QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("other"));
    std::vector<ApplicationRequest> heard;
    Outcome answer = success();
    bool hangs = false;
};

TEST_F(OneInstance, CallsAreLookedAtBeforeTheyAreHeeded)
{
    heed();
    const QVariantMap token{{"activation-token", "t_1"}};
    const auto list = [](const QString& uri, int count) { return QStringList(count, uri); };
    const std::string longPath(5000, 'x');
    const auto elsewhere = [](const char* file) { return Error{file, "the file is not on this device"}; };
    const struct {
        const char* method;
        QVariantList arguments;
        std::optional<ApplicationRequest> request;
    } table[] = {
        {"Activate", {token}, ApplicationRequest{{}, {}, "t_1"}},
        {"Activate", {QVariantMap{{"desktop-startup-id", "x_TIME9"}, {"else", 3}}}, {{{}, {}, "x_TIME9"}}},
        {"Activate", {QVariantMap{{"activation-token", "two\nlines"}}}, ApplicationRequest{}},
        {"Activate", {QVariantMap{{"activation-token", QString(2000, 'x')}}}, ApplicationRequest{}},
        {"Activate", {QVariantMap{{"activation-token", QVariantList{1}}}}, ApplicationRequest{}},
        {"Activate", {}, std::nullopt},
        {"Activate", {QStringLiteral("text")}, std::nullopt},
        {"Activate", {token, token}, std::nullopt},
        {"Open",
         {QStringList{"file:///a%20b.jpg", "/c.png", "https://example.org/d.jpg"}, QVariantMap()},
         {{{}, {"/a b.jpg", "/c.png"}, {}, elsewhere("d.jpg")}}},
        {"Open", {QStringList(), QVariantMap()}, ApplicationRequest{}},
        {"Open", {QStringList{"smb://host/d.jpg", "mtp://e"}, QVariantMap()}, {{{}, {}, {}, elsewhere("d.jpg")}}},
        {"Open", {QStringList{"relative.jpg"}, QVariantMap()}, {{{}, {}, {}, elsewhere("relative.jpg")}}},
        {"Open",
         {QStringList{"file:///nothing%00more"}, QVariantMap()},
         {{{}, {}, {}, pathOfFileURL("file:///nothing%00more").error()}}},
        {"Open",
         {QStringList{QString::fromStdString("/" + longPath)}, QVariantMap()},
         {{{}, {}, {}, Error{beginningOf("/" + longPath, 100), "this is no path"}}}},
        {"Open", {list("/a.jpg", 257), QVariantMap()}, std::nullopt},
        {"Open", {QStringLiteral("/a.jpg"), QVariantMap()}, std::nullopt},
        {"ActivateAction", {QStringLiteral("two"), QVariantList(), token}, {{"two", {}, "t_1"}}},
        {"ActivateAction",
         {QStringLiteral("blend"), QVariantList{QStringList{"/a.jpg"}}, QVariantMap()},
         {{"blend", {"/a.jpg"}, {}}}},
        {"ActivateAction", {QStringLiteral("home"), QVariantList(), token}, std::nullopt},
        {"ActivateAction", {QStringLiteral("two"), QVariantList{7}, token}, std::nullopt},
        {"ActivateAction", {QStringLiteral("two"), QVariantList{QStringList(), QStringList()}, token}, std::nullopt},
        {"Quit", {}, std::nullopt},
    };
    int row = 0;
    for (const auto& c : table) {
        SCOPED_TRACE(std::to_string(row++) + c.method);
        heard.clear();
        const QDBusMessage reply = call(c.method, c.arguments);
        EXPECT_EQ(reply.type(), c.request ? QDBusMessage::ReplyMessage : QDBusMessage::ErrorMessage)
            << reply.errorMessage().toStdString();
        ASSERT_EQ(heard.size(), c.request ? 1u : 0u);
        if (!c.request)
            continue;
        EXPECT_EQ(heard[0].action, c.request->action);
        EXPECT_EQ(heard[0].photos, c.request->photos);
        EXPECT_EQ(heard[0].activationToken, c.request->activationToken);
        EXPECT_EQ(heard[0].leftOut.value_or(Error()).message(), c.request->leftOut.value_or(Error()).message());
    }
    answer = Error{{}, "the window is closed"};
    EXPECT_EQ(call("Activate", {token}).errorMessage().toStdString(), "the window is closed");
}

TEST_F(OneInstance, ASecondStartHandsOverAndTheThirdFollowsTheFirst)
{
    SessionName second([] { return QDBusConnection::connectToBus(QDBusConnection::SessionBus, "second"); });
    EXPECT_EQ(second.state(), State::Asking);
    second.begin();
    ASSERT_EQ(second.waitFor(20s), State::Taken);

    const ApplicationRequest requests[] = {
        {{}, {}, "token"}, {{}, {"/with space \xff.jpg", "/b.png"}, {}}, {"three", {}, {}}, {"two", {"/c.jpg"}, "t"}};
    for (const ApplicationRequest& request : requests)
        EXPECT_TRUE(handOverElsewhere(request, 20).ok()) << "it need not be ready yet";
    heed();
    ASSERT_EQ(heard.size(), 4u);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(heard[i].action, requests[i].action);
        EXPECT_EQ(heard[i].photos, requests[i].photos);
        EXPECT_EQ(heard[i].activationToken, requests[i].activationToken);
    }

    // What nobody answers in time must not be done later: the caller has done it itself by then.
    hangs = true;
    EXPECT_FALSE(handOverElsewhere(requests[3], 0.05).ok());
    runFor(50);
    EXPECT_EQ(heard.size(), 4u);

    name.release();
    SessionName third([] { return QDBusConnection::connectToBus(QDBusConnection::SessionBus, "third"); });
    third.begin();
    EXPECT_EQ(third.waitFor(20s), State::Owned);
}

TEST(SessionNames, NoBusAndOneThatHangsKeepNobodyWaiting)
{
    SessionName alone([] { return QDBusConnection(QStringLiteral("none")); });
    alone.begin();
    EXPECT_EQ(alone.waitFor(20s), State::NoBus);
    EXPECT_FALSE(alone.connection());

    std::promise<void> end;
    {
        SessionName stuck([&end] {
            end.get_future().wait();
            return QDBusConnection(QStringLiteral("none"));
        });
        stuck.begin();
        EXPECT_EQ(stuck.waitFor(10ms), State::Asking);
        end.set_value();
    }
}

} // namespace
} // namespace lamina::test
