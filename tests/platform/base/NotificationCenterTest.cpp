#include "platform/base/NotificationCenter.h"
#include "LogCapture.h"

#include <atomic>
#include <gtest/gtest.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace lamina {
namespace {

TEST(NotificationCenter, CallsByNameAndSenderInOrder)
{
    NotificationCenter center;
    const int photo = 0;
    const int other = 0;
    std::string calls;
    const auto everybody = center.addObserver("saved", [&](const Notification& n) {
        calls += 'e';
        if (const auto path = n.userInfo.find("path"); path != n.userInfo.end())
            calls += std::any_cast<std::string>(path->second);
    });
    const auto ofPhoto = center.addObserver(
        "saved", [&](const Notification&) { calls += 'p'; }, &photo);
    const auto otherName = center.addObserver("loaded", [&](const Notification&) { calls += 'l'; });
    center.post("saved", &photo, {{"path", std::string("(a.png)")}});
    EXPECT_EQ(calls, "e(a.png)p");
    calls.clear();
    center.post("saved", &other);
    center.post("saved");
    EXPECT_EQ(calls, "ee");
}

TEST(NotificationCenter, ObserversComeAndGoDuringAPost)
{
    NotificationCenter center;
    std::string calls;
    std::vector<NotificationObserver> added;
    std::optional<NotificationObserver> last;
    NotificationObserver self = center.addObserver("n", [&](const Notification&) {
        calls += '1';
        self.remove();
        last.reset();
        added.push_back(center.addObserver("n", [&](const Notification&) { calls += '+'; }));
    });
    const auto stays = center.addObserver("n", [&](const Notification&) { calls += '2'; });
    last = center.addObserver("n", [&](const Notification&) { calls += '3'; });
    center.post("n");
    EXPECT_EQ(calls, "12");
    center.post("n");
    EXPECT_EQ(calls, "122+");
    added.front() = center.addObserver("n", [&](const Notification&) { calls += 'r'; }); // the former one goes
    calls.clear();
    center.post("n");
    EXPECT_EQ(calls, "2r");
}

TEST(NotificationCenter, AFailingObserverDoesNotStopTheOthers)
{
    LogCapture log;
    NotificationCenter center;
    bool called = false;
    const auto bad = center.addObserver("n", [](const Notification&) { throw std::runtime_error("lost"); });
    const auto good = center.addObserver("n", [&](const Notification&) { called = true; });
    center.post("n");
    EXPECT_TRUE(called);
    ASSERT_EQ(log.messages.size(), 1u);
    EXPECT_NE(log.messages[0].second.find("lost"), std::string::npos);
}

TEST(NotificationCenter, RegistrationFromManyThreads)
{
    std::atomic<int> calls{0};
    std::optional<NotificationCenter> center(std::in_place);
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&] {
                for (int i = 0; i < 200; ++i) {
                    const int sender = i;
                    const auto observer = center->addObserver(
                        "n", [&](const Notification&) { ++calls; }, &sender);
                    center->post("n", &sender);
                }
            });
    }
    EXPECT_EQ(calls, 800);
    auto survivor = center->addObserver("n", [](const Notification&) {});
    center.reset();
    survivor.remove();
}

} // namespace
} // namespace lamina
