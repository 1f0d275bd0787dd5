#pragma once

#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"
#include "platform/net/KeptQueue.h"
#include "platform/net/NSURLConnection.h"
#include "platform/net/NetworkTransfer_p.h"

#include <QPointer>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace lamina {

/// One load between the network's thread and its queue. What waits on the queue is bounded: a queue that is slow slows
/// the server down.
class NSURLConnection::Load : public TransferReceiver, public std::enable_shared_from_this<Load> {
public:
    Load(NSURLRequest request, std::weak_ptr<NSURLConnectionDelegate> delegate, std::shared_ptr<DispatchQueue> queue);

    void start();
    void cancel();
    /// Keeps the delegate, and the load itself going when its connection has gone, until the end.
    void keep(std::shared_ptr<NSURLConnectionDelegate> delegate);
    bool isKept() const { return m_isKept; }

    void takeResponse(const NSURLResponse& response) override;
    void takeData(std::vector<std::uint8_t> data) override;
    void takeEnd() override;
    void takeFailure(const Error& error) override;
    bool wantsMore() override;

private:
    using Call = std::function<void(NSURLConnectionDelegate& delegate)>;

    void begin();
    void deliver(const Call& call);
    void tellLast(Call call);
    void took(std::int64_t size);

    const NSURLRequest m_request;
    std::weak_ptr<NSURLConnectionDelegate> m_delegate;
    std::shared_ptr<NSURLConnectionDelegate> m_kept; ///< for the queue, once it was started
    const KeptQueue m_queue;                         ///< the network's thread waits for nobody
    bool m_isKept = false;
    std::atomic<bool> m_isStarted{false};
    std::atomic<bool> m_isOver{false};
    std::atomic<std::int64_t> m_waiting{0}; ///< on the queue, in bytes of memory
    std::atomic<bool> m_isHeldUp{false};    ///< the transfer waits for `resume`
    QPointer<NetworkTransfer> m_transfer;   ///< for the network's thread
};

} // namespace lamina
