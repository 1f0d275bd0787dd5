#include "platform/base/NotificationCenter.h"
#include "LogCapture.h"

#include <any>
#include <atomic>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace lamina {
namespace {

TEST(NotificationCenter, CallsByNameAndSenderInOrderAndGoesOnAfterAFailure)
{
    test::LogCapture log;
    NotificationCenter center;
    const int photo = 0;
    const int other = 0;
    std::string calls;
    const auto everybody = center.addObserver("saved", [&](const Notification& n) {
        calls += 'e';
        calls += std::any_cast<std::string>(n.userInfo.at("path")); // throws where there is none
    });
    const auto ofPhoto = center.addObserver(
        "saved", [&](const Notification&) { calls += 'p'; }, &photo);
    const auto otherName = center.addObserver("loaded", [&](const Notification&) { calls += 'l'; });
    center.post("saved", &photo, {{"path", std::string("(a.png)")}});
    center.post("saved", &other);
    center.post("saved", &photo);
    EXPECT_EQ(calls, "e(a.png)peep");
    EXPECT_EQ(log.messages.size(), 2u);
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

TEST(NotificationCenter, ServesThreadsAndEndsBeforeItsObservers)
{
    std::atomic<int> calls{0};
    std::optional<NotificationCenter> center(std::in_place);
    const auto registerAndPost = [&] {
        for (int sender = 0; sender < 200; ++sender) {
            const auto observer = center->addObserver(
                "n", [&](const Notification&) { ++calls; }, &sender);
            center->post("n", &sender);
        }
    };
    {
        const std::jthread other(registerAndPost);
        registerAndPost();
    }
    EXPECT_EQ(calls, 400);
    auto survivor = center->addObserver("n", [](const Notification&) {});
    center.reset();
    survivor.remove();
}

} // namespace
} // namespace lamina
