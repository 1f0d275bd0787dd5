#include "platform/net/NSURLConnection.h"

#include "platform/net/NSURLLoad_p.h"
#include "platform/net/NetworkCauses.h"
#include "platform/net/NetworkThread_p.h"
#include "platform/net/NetworkTransfer_p.h"
#include "platform/net/WebAddress.h"

#include <utility>
#include <vector>

namespace lamina {

NSURLConnection::Load::Load(NSURLRequest request, std::weak_ptr<NSURLConnectionDelegate> delegate,
                            std::shared_ptr<DispatchQueue> queue)
    : m_request(std::move(request))
    , m_delegate(std::move(delegate))
    , m_queue(std::move(queue))
{
}

void NSURLConnection::Load::keep(std::shared_ptr<NSURLConnectionDelegate> delegate)
{
    m_kept = std::move(delegate);
    m_isKept = true;
}

void NSURLConnection::Load::start()
{
    if (m_isStarted.exchange(true))
        return;
    if (!webAddress(m_request.URL).isValid())
        return takeFailure({shownAddress(m_request.URL), cause::kNotAWebAddress});
    if (NetworkThread* const thread = NetworkThread::running())
        thread->run([load = shared_from_this()] { load->begin(); });
    else
        takeFailure({shownAddress(m_request.URL), cause::kNoNetwork});
}

void NSURLConnection::Load::begin()
{
    NetworkThread* const thread = NetworkThread::running();
    if (m_isOver || !thread)
        return;
    m_transfer = new NetworkTransfer(m_request, shared_from_this(), thread->manager(), thread->owner());
}

void NSURLConnection::Load::cancel()
{
    if (m_isOver.exchange(true) || !m_isStarted)
        return;
    m_queue->async([load = shared_from_this()] { load->m_kept.reset(); });
    if (NetworkThread* const thread = NetworkThread::running())
        thread->run([load = shared_from_this()] { delete load->m_transfer.data(); });
}

void NSURLConnection::Load::deliver(const Call& call)
{
    if (m_isOver)
        return;
    if (const auto delegate = m_delegate.lock())
        call(*delegate);
}

void NSURLConnection::Load::tellLast(Call call)
{
    m_queue->async([load = shared_from_this(), call = std::move(call)] {
        if (load->m_isOver.exchange(true))
            return;
        if (const auto delegate = load->m_delegate.lock())
            call(*delegate);
        load->m_kept.reset();
    });
}

void NSURLConnection::Load::takeResponse(const NSURLResponse& response)
{
    m_queue->async([load = shared_from_this(), response] {
        load->deliver([&](NSURLConnectionDelegate& delegate) { delegate.didReceiveResponse(response); });
    });
}

void NSURLConnection::Load::takeData(std::vector<std::uint8_t> data)
{
    constexpr std::int64_t kBesidesBytes = 512; // the blocks and what they hold, of which small pieces need many
    const std::int64_t size = static_cast<std::int64_t>(data.size()) + kBesidesBytes;
    m_waiting += size;
    m_queue->async([load = shared_from_this(), data = std::move(data), size] {
        load->took(size);
        load->deliver([&](NSURLConnectionDelegate& delegate) { delegate.didReceiveData(data); });
    });
}

void NSURLConnection::Load::takeEnd()
{
    tellLast([](NSURLConnectionDelegate& delegate) { delegate.connectionDidFinishLoading(); });
}

void NSURLConnection::Load::takeFailure(const Error& error)
{
    tellLast([error](NSURLConnectionDelegate& delegate) { delegate.didFailWithError(error); });
}

bool NSURLConnection::Load::wantsMore()
{
    constexpr std::int64_t kMostWaiting = 4 * std::int64_t{BodyReader::kPiece};
    if (m_waiting < kMostWaiting)
        return true;
    m_isHeldUp = true; // and looked at once more, for what has been taken in between called nobody
    return m_waiting < kMostWaiting && m_isHeldUp.exchange(false);
}

void NSURLConnection::Load::took(std::int64_t size)
{
    m_waiting -= size;
    if (!m_isHeldUp.exchange(false))
        return;
    if (NetworkThread* const thread = NetworkThread::running())
        thread->run([load = shared_from_this()] {
            if (load->m_transfer)
                load->m_transfer->resume();
        });
}

NSURLConnection::NSURLConnection(NSURLRequest request, std::weak_ptr<NSURLConnectionDelegate> delegate,
                                 std::shared_ptr<DispatchQueue> queue)
    : m_load(std::make_shared<Load>(std::move(request), std::move(delegate), std::move(queue)))
{
}

NSURLConnection::NSURLConnection(std::shared_ptr<Load> load)
    : m_load(std::move(load))
{
}

NSURLConnection::~NSURLConnection()
{
    if (!m_load->isKept())
        m_load->cancel();
}

void NSURLConnection::start()
{
    m_load->start();
}

void NSURLConnection::cancel()
{
    m_load->cancel();
}

} // namespace lamina
