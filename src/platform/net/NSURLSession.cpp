#include "platform/net/NSURLSession.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/net/NSURLLoad_p.h"

#include <QCoreApplication>

#include <span>
#include <utility>

namespace lamina {

namespace {

/// Gathers an answer, on the session's queue.
class WholeAnswer : public NSURLConnectionDelegate {
public:
    explicit WholeAnswer(NSURLSession::Completion completion)
        : m_completion(std::move(completion))
    {
    }

    void didReceiveResponse(const NSURLResponse& response) override
    {
        m_result.response = response;
        m_result.data.emplace();
    }
    void didReceiveData(std::span<const std::uint8_t> data) override
    {
        m_result.data->insert(m_result.data->end(), data.begin(), data.end());
    }
    void connectionDidFinishLoading() override { complete(); }
    void didFailWithError(const Error& error) override
    {
        m_result.error = error;
        complete();
    }

private:
    void complete()
    {
        if (m_completion)
            m_completion(std::move(m_result));
        m_completion = nullptr;
    }

    NSURLTaskResult m_result;
    NSURLSession::Completion m_completion;
};

void awaitCompletions();

/// Begun before the network's thread, and so waited for after that has ended.
const std::shared_ptr<DispatchQueue>& sessionQueue()
{
    static const auto* const queue = [] {
        qAddPostRoutine(awaitCompletions);
        return new std::shared_ptr<DispatchQueue>(std::make_shared<DispatchQueue>("network answers"));
    }();
    return *queue;
}

/// When the application goes: what has come is heard of, unless that takes too long.
void awaitCompletions()
{
    constexpr double kSeconds = 1;
    const auto ended = std::make_shared<DispatchSemaphore>(0);
    sessionQueue()->async([ended] { ended->signal(); });
    ended->wait(kSeconds);
}

} // namespace

NSURLSession& NSURLSession::sharedSession()
{
    static auto* const session = new NSURLSession;
    return *session;
}

std::shared_ptr<NSURLConnection> NSURLSession::dataTask(NSURLRequest request, Completion completion)
{
    const auto answer = std::make_shared<WholeAnswer>(std::move(completion));
    auto load = std::make_shared<NSURLConnection::Load>(std::move(request), answer, sessionQueue());
    load->keep(answer);
    load->start();
    return std::shared_ptr<NSURLConnection>(new NSURLConnection(std::move(load)));
}

} // namespace lamina
