#include "platform/photos/PHFetchResult.h"

#include <utility>

namespace lamina {

struct PHFetchResult::Content {};

PHFetchResult::PHFetchResult()
    : m_content(std::make_shared<const Content>())
{
}

PHFetchResult::PHFetchResult(std::shared_ptr<const Content> content)
    : m_content(std::move(content))
{
}

std::size_t PHFetchResult::count() const
{
    return 0;
}

PHAsset PHFetchResult::objectAtIndex(std::size_t) const
{
    return {};
}

std::optional<PHAsset> PHFetchResult::firstObject() const
{
    return std::nullopt;
}

std::vector<PHAsset> PHFetchResult::objects(std::size_t, std::size_t) const
{
    return {};
}

std::optional<std::size_t> PHFetchResult::indexOfObject(const PHAsset&) const
{
    return std::nullopt;
}

bool operator==(const PHFetchResult& x, const PHFetchResult& y)
{
    return x.count() == y.count();
}

} // namespace lamina
