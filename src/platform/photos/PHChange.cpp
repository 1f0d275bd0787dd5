#include "platform/photos/PHChange.h"

namespace lamina {

std::optional<PHFetchResultChangeDetails> PHChange::changeDetailsForFetchResult(const PHFetchResult&) const
{
    return std::nullopt;
}

} // namespace lamina
