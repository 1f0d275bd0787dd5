#pragma once

#include "promotion/DataError.h"
#include "promotion/EndPointType.h"
#include "promotion/FeedDecoding.h"

#include <cstdint>
#include <functional>
#include <utility>
#include <variant>
#include <vector>

namespace lamina {

/// Fetches feeds. Usable from any thread.
class APIHelper {
public:
    /// The process's own.
    static APIHelper& shared();

    /// Fetches the feed and tells its records of type `Model`, once, on the URL session's queue. Without a URL nothing
    /// is done and the completion is never called. A feed of more than a megabyte is an error.
    template <class Model>
    void request(const EndPointType& type, std::function<void(FeedResult<Model>)> completion)
    {
        load(type, [completion = std::move(completion)](const Body& body) {
            if (const auto* const error = std::get_if<DataError>(&body))
                return completion(*error);
            if (auto records = decodeFeed<Model>(std::get<Bytes>(body)))
                return completion(*std::move(records));
            completion(DataError::invalidData);
        });
    }

private:
    using Bytes = std::vector<std::uint8_t>;
    using Body = std::variant<Bytes, DataError>;

    APIHelper() = default;
    static void load(const EndPointType& type, std::function<void(const Body& body)> done);
};

} // namespace lamina
