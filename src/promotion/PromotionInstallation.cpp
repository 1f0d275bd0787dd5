#include "promotion/PromotionInstallation.h"

#include "export/PromotionStep.h"
#include "export/ShareController.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIViewController.h"
#include "promotion/CrossPromotionCoordinater.h"
#include "promotion/FetchProductViewModel.h"
#include "promotion/InterstitialPresentController.h"
#include "promotion/PromotionRoot.h"

#include <memory>

namespace lamina {

namespace {

std::shared_ptr<UIViewController> makeInterstitial(const PromotionData& promotion)
{
    const auto screen =
        UIStoryboard::named(kMainStoryboard)->instantiate<InterstitialPresentController>(kInterstitialScene);
    if (!screen)
        return nullptr;
    screen->setModalPresentationStyle(UIModalPresentationStyle::CurrentContext);
    screen->setInterstititalImage(promotion.image);
    screen->setAppstoreLink(promotion.appStoreLink);
    return screen;
}

} // namespace

void installPromotion(const std::string& displayName)
{
    UIStoryboard::named(kMainStoryboard)
        ->addScene(kInterstitialScene,
                   {[] { return std::make_shared<InterstitialPresentController>(); }, "InterstitialPresentScreen.qml"});
    if (promotionRoot().empty())
        return ShareController::setPromotionStep({});
    ShareController::setPromotionStep({[displayName]() -> std::shared_ptr<PromotionFetcher> {
                                           return std::make_shared<CrossPromotionCoordinater>(
                                               std::make_shared<FetchProductViewModel>(), displayName);
                                       },
                                       makeInterstitial});
}

} // namespace lamina
