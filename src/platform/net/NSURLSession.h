#pragma once

#include "platform/base/Result.h"
#include "platform/net/NSURLConnection.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lamina {

/// How a data task ended. A transport that failed has an error; then data may be there as far as they came.
struct NSURLTaskResult {
    std::optional<std::vector<std::uint8_t>> data;
    std::optional<NSURLResponse> response;
    std::optional<Error> error;
};

/// Loads whole answers. Usable from any thread.
class NSURLSession {
public:
    using Completion = std::function<void(NSURLTaskResult result)>;

    /// The process's own, never destroyed.
    static NSURLSession& sharedSession();

    /// Begins at once; the completion runs once, on the session's own serial queue. It doesn't begin after `cancel` of
    /// the returned task, which need not be kept: without it the load goes on.
    std::shared_ptr<NSURLConnection> dataTask(NSURLRequest request, Completion completion);
};

} // namespace lamina
