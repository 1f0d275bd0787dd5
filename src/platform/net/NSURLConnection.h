#pragma once

#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace lamina {

/// Whether what was kept from an earlier answer may stand for a new one. Nothing is kept here: whatever the policy, the
/// server is asked. Who keeps answers, as a progressive picture does, looks there before asking.
enum class NSURLRequestCachePolicy {
    UseProtocolCachePolicy = 0,
    ReloadIgnoringLocalCacheData = 1,
    ReturnCacheDataElseLoad = 2,
};

/// What is asked for, and how much of it is taken. A plain value.
struct NSURLRequest {
    std::string URL; ///< "http" or "https", absolute
    NSURLRequestCachePolicy cachePolicy = NSURLRequestCachePolicy::UseProtocolCachePolicy;
    double timeoutInterval = 60;                     ///< seconds without a byte after which it fails
    double mostSeconds = 600;                        ///< for all of it
    std::int64_t mostBytes = std::int64_t{64} << 20; ///< of the body, unpacked; more is a failure
    int mostRedirects = 10;                          ///< a redirection from "https" to "http" is a failure at once

    /// The head of an answer must be there by then, also where `timeoutInterval` is longer: what is taken of one is
    /// bounded by time alone.
    static constexpr double kMostSecondsToHead = 10;
};

/// The head of an answer. A plain value.
struct NSURLResponse {
    std::string URL;                         ///< from which it came in the end
    std::optional<int> statusCode;           ///< of HTTP
    std::int64_t expectedContentLength = -1; ///< of the body as it will be delivered; -1: not known
};

/// Hears of a load, on the load's queue, in this order: one response, data any number of times, then the one end or the
/// other. Nothing after `cancel`.
class NSURLConnectionDelegate {
public:
    virtual ~NSURLConnectionDelegate() = default;
    /// The head has come, after redirections.
    virtual void didReceiveResponse(const NSURLResponse& response) = 0;
    /// What follows what came before, unpacked, at most 64 KB; valid during the call.
    virtual void didReceiveData(std::span<const std::uint8_t> data) = 0;
    /// All has come.
    virtual void connectionDidFinishLoading() = 0;
    /// The error's subject is the `shownAddress`, its cause one phrase in plain English.
    virtual void didFailWithError(const Error& error) = 0;
};

/// One load by GET, which goes on by itself on the network's own thread; that is begun by the first load. A status of
/// any kind is an answer and no failure, but redirections are followed. Nothing of the user's goes along: no cookies,
/// no credentials, no page that one comes from; a certificate that isn't good is a failure. What waits on the queue is
/// bounded: a slow one slows the server down, and then no time-out of silence passes. An answer that is cut is a
/// failure; of one that comes unpacked in chunks the library beneath doesn't always notice it, so that whoever reads it
/// must bear an early end.
///
/// Needs a `QCoreApplication`; loads that are under way when that goes end without a word. Usable from any thread.
class NSURLConnection {
public:
    /// Calls come on `queue`, which is kept while they do.
    NSURLConnection(NSURLRequest request, std::weak_ptr<NSURLConnectionDelegate> delegate,
                    std::shared_ptr<DispatchQueue> queue);
    /// Cancels.
    ~NSURLConnection();
    NSURLConnection(const NSURLConnection&) = delete;
    NSURLConnection& operator=(const NSURLConnection&) = delete;

    /// Begins it; a second call does nothing.
    void start();
    /// Ends it without a word; waits for nobody. No call begins after this when it is called on the queue.
    void cancel();

private:
    friend class NSURLSession;
    class Load;
    explicit NSURLConnection(std::shared_ptr<Load> load);

    std::shared_ptr<Load> m_load;
};

} // namespace lamina
