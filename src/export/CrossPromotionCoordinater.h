#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <functional>
#include <string>

namespace lamina {

/// What is recommended after an export.
struct PromotionData {
    UIImage image;
    std::string appStoreLink; ///< where a tap on the image leads
};

/// The step after an export that may recommend another application. Nothing here does so: without one installed the
/// share screen goes without.
class CrossPromotionCoordinater {
public:
    virtual ~CrossPromotionCoordinater() = default;
    /// The completion may run more than once, and on any thread; an error is no news for the user.
    virtual void fetchPromotion(std::function<void(Result<PromotionData>)> completion) = 0;
};

} // namespace lamina
