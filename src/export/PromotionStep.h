#pragma once

#include "platform/image/pixels/UIImage.h"

#include <functional>
#include <memory>
#include <string>
#include <variant>

namespace lamina {

class UIViewController;

/// What is recommended after an export.
struct PromotionData {
    UIImage image;
    std::string appStoreLink; ///< where a tap on the image leads
};

/// Why there is nothing to recommend, for the log: nobody is shown it.
struct PromotionError {
    std::string domain; ///< who says so
    int code = 0;       ///< within the domain
    std::string description;
};

/// A value, or the error that stood in its way.
template <class T>
using PromotionResult = std::variant<T, PromotionError>;

/// Who finds out what to recommend, if anything.
class PromotionFetcher {
public:
    using Completion = std::function<void(PromotionResult<PromotionData>)>;

    virtual ~PromotionFetcher() = default;
    /// The completion may run more than once, or never, and on any thread; an error is no news for the user.
    virtual void fetchPromotion(Completion completion) = 0;
};

/// What may be shown some seconds after an export. Nothing does so as long as none is installed.
struct PromotionStep {
    std::function<std::shared_ptr<PromotionFetcher>()> makeCoordinator;
    std::function<std::shared_ptr<UIViewController>(const PromotionData& promotion)> makeScreen;
};

} // namespace lamina
