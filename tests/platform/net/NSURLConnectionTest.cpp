#include "platform/net/NSURLConnection.h"

#include "TestHTTPServer.h"
#include "WaitUntil.h"
#include "platform/base/DispatchSemaphore.h"

#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <utility>

namespace lamina {
namespace {

using test::HTTPAnswer;
using test::TestHTTPServer;

/// Notes its calls on the queue, and does what a test wants at data.
class Listener : public NSURLConnectionDelegate {
public:
    void didReceiveResponse(const NSURLResponse&) override { note("response "); }
    void didReceiveData(std::span<const std::uint8_t> data) override
    {
        note("data ");
        size += data.size();
        if (atData)
            atData();
    }
    void connectionDidFinishLoading() override
    {
        note("end");
        ended.signal();
    }
    void didFailWithError(const Error& error) override
    {
        note(error.cause);
        ended.signal();
    }

    std::shared_ptr<DispatchQueue> queue = std::make_shared<DispatchQueue>("test");
    std::string calls;
    std::size_t size = 0;
    std::function<void()> atData;
    DispatchSemaphore ended{0};

private:
    void note(const std::string& call)
    {
        EXPECT_TRUE(queue->isCurrent());
        calls += call;
    }
};

class NSURLConnectionTest : public testing::Test {
protected:
    NSURLConnection connection() { return {{.URL = server.url()}, listener, listener->queue}; }

    TestHTTPServer server;
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
};

TEST_F(NSURLConnectionTest, TellsItsQueueInOrder)
{
    server.set("/", {.body = "abc", .piece = 1, .isHeld = true});
    listener->atData = [this] { server.release(1); };
    NSURLConnection connection = this->connection();
    connection.start();
    connection.start();
    server.release(1);
    listener->ended.wait();
    EXPECT_EQ(listener->calls, "response data data data end");
    EXPECT_EQ(server.requests().size(), 1u);
}

TEST_F(NSURLConnectionTest, ASlowQueueHoldsTheServerUp)
{
    constexpr std::int64_t kAll = std::int64_t{48} << 20;
    server.set("/", {.body = std::string(1 << 16, 'x'), .copies = kAll >> 16});
    std::int64_t sentMeanwhile = kAll;
    listener->atData = [&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        sentMeanwhile = server.bytesSent();
        listener->atData = nullptr;
    };
    NSURLConnection connection = this->connection();
    connection.start();
    listener->ended.wait();
    EXPECT_LT(sentMeanwhile, kAll / 2); // most of it in the system's own buffers
    EXPECT_EQ(listener->size, static_cast<std::size_t>(kAll));
}

TEST_F(NSURLConnectionTest, NothingComesAfterCancelAndNobodyIsKept)
{
    server.set("/", {.body = "abc", .framing = HTTPAnswer::Framing::Chunked, .copies = HTTPAnswer::kEndless});
    {
        const NSURLConnection unstarted = this->connection();
        NSURLConnection connection = this->connection();
        DispatchSemaphore cancelled{0};
        listener->atData = [&] {
            connection.cancel();
            cancelled.signal();
        };
        connection.start();
        cancelled.wait();
    }
    EXPECT_TRUE(test::waitUntil([this] { return server.connections() == 0; }));
    listener->queue->sync([] {});
    EXPECT_EQ(listener->calls, "response data ");

    const std::weak_ptr<DispatchQueue> left = std::exchange(listener->queue, nullptr);
    EXPECT_TRUE(test::waitUntil([&] { return left.expired(); }));
}

} // namespace
} // namespace lamina
