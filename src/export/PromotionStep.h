#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <functional>
#include <memory>
#include <string>

namespace lamina {

class UIViewController;

/// What is recommended after an export.
struct PromotionData {
    UIImage image;
    std::string appStoreLink; ///< where a tap on the image leads
};

/// Who finds out what to recommend, if anything.
class PromotionFetcher {
public:
    virtual ~PromotionFetcher() = default;
    /// The completion may run more than once, and on any thread; an error is no news for the user.
    virtual void fetchPromotion(std::function<void(Result<PromotionData>)> completion) = 0;
};

/// What may be shown some seconds after an export. Nothing does so as long as none is installed.
struct PromotionStep {
    std::function<std::shared_ptr<PromotionFetcher>()> makeCoordinator;
    std::function<std::shared_ptr<UIViewController>(const PromotionData& promotion)> makeScreen;
};

} // namespace lamina
