#pragma once

#include <variant>
#include <vector>

namespace lamina {

/// What stood in the way of a feed. It has no texts: nobody is shown it.
enum class DataError {
    invalidURL,     ///< no data came, or not all of them; whatever the URL
    inalidResponse, ///< no answer of HTTP, or a status that is none of success
    invalidData,    ///< another body than the feed's
};

/// A feed's records, or why there are none.
template <class Record>
using FeedResult = std::variant<std::vector<Record>, DataError>;

} // namespace lamina
