#include "promotion/PromotionRoot.h"

#include "platform/base/Log.h"
#include "platform/net/WebAddress.h"

#include <cstdlib>

namespace lamina {

std::string promotionRoot()
{
    const char* const told = std::getenv("LAMINA_PROMOTION_ROOT");
    std::string root = told ? told : LAMINA_PROMOTION_ROOT;
    if (root.empty() || (root.back() == '/' && isWebAddress(root)))
        return root;
    logWarning("LAMINA_PROMOTION_ROOT: not an http or https URL that ends with '/': " + root);
    return {};
}

} // namespace lamina
