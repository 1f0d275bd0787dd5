#include "promotion/CrossPromotionCoordinater.h"

#include "platform/image/pixels/UIImage.h"
#include "platform/net/WebAddress.h"
#include "promotion/FetchProductViewModel.h"
#include "promotion/ImageDownloader.h"
#include "promotion/PromotionRecords.h"

#include <algorithm>
#include <random>
#include <utility>
#include <variant>
#include <vector>

namespace lamina {

std::size_t systemRandomIndex(std::size_t count)
{
    std::random_device source;
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(source);
}

CrossPromotionCoordinater::CrossPromotionCoordinater(std::shared_ptr<FetchProductViewModel> fetchviewModel,
                                                     std::string displayName, RandomIndex randomIndex)
    : m_fetchviewModel(std::move(fetchviewModel))
    , m_displayName(std::move(displayName))
    , m_randomIndex(std::move(randomIndex))
{
}

CrossPromotionCoordinater::~CrossPromotionCoordinater() = default;

void CrossPromotionCoordinater::fetchPromotion(Completion completion)
{
    const auto held = m_fetchviewModel->holdEvents();
    m_fetchviewModel->fetchProducts();
    m_fetchviewModel->fetchCustomAds();
    m_fetchviewModel->setEventHandler(
        [weak = weak_from_this(), completion = std::move(completion)](const EventHandler& event) {
            if (const auto self = weak.lock())
                self->handle(event, completion);
        });
}

void CrossPromotionCoordinater::handle(const EventHandler& event, const Completion& completion)
{
    if (event.kind == EventHandler::error && event.dataError)
        completion(PromotionError{"DataError", static_cast<int>(*event.dataError), {}});
    else if (event.kind == EventHandler::loaded && isSwitchedOn())
        choosePromotion(completion);
    else if (event.kind == EventHandler::loaded)
        completion(PromotionError{"not register", 0, {}});
}

bool CrossPromotionCoordinater::isSwitchedOn() const
{
    return std::ranges::any_of(m_fetchviewModel->products(), [this](const iOSAppList& app) {
        return app.appName == m_displayName && app.isCheck == 1;
    });
}

void CrossPromotionCoordinater::choosePromotion(const Completion& completion)
{
    const std::vector<CustomInterstrial>& promotions = m_fetchviewModel->customAds();
    if (promotions.empty())
        return; // the other feed is perhaps still on its way
    const CustomInterstrial& promotion = promotions[m_randomIndex(promotions.size())];
    if (!isWebAddress(promotion.interstialLink))
        return;
    m_picture =
        downloadImage(promotion.interstialLink, [link = promotion.appLink, completion](PromotionResult<UIImage> image) {
            if (const auto* const error = std::get_if<PromotionError>(&image))
                return completion(*error);
            completion(PromotionData{std::get<UIImage>(std::move(image)), link});
        });
}

} // namespace lamina
