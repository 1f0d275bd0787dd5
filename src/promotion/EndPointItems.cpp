#include "promotion/EndPointItems.h"

#include "promotion/PromotionRoot.h"

namespace lamina {

EndPointItems::EndPointItems(Item item)
    : m_item(item)
{
}

std::string EndPointItems::path() const
{
    return m_item == apps ? "iosapps.php" : "iosinterstial.php";
}

std::string EndPointItems::baseURL() const
{
    return promotionRoot();
}

std::optional<std::string> EndPointItems::url() const
{
    const std::string root = baseURL();
    return root.empty() ? std::nullopt : std::optional(root + path());
}

} // namespace lamina
