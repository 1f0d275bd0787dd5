#include "platform/net/NSURLSession.h"

#include "platform/base/DispatchQueue.h"
#include "platform/net/NSURLLoad_p.h"

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

} // namespace

NSURLSession& NSURLSession::sharedSession()
{
    static auto* const session = new NSURLSession;
    return *session;
}

std::shared_ptr<NSURLConnection> NSURLSession::dataTask(NSURLRequest request, Completion completion)
{
    static const auto* const queue =
        new std::shared_ptr<DispatchQueue>(std::make_shared<DispatchQueue>("network answers"));
    const auto answer = std::make_shared<WholeAnswer>(std::move(completion));
    auto load = std::make_shared<NSURLConnection::Load>(std::move(request), answer, *queue);
    load->keep(answer);
    load->start();
    return std::shared_ptr<NSURLConnection>(new NSURLConnection(std::move(load)));
}

} // namespace lamina
