#pragma once

#include "export/PromotionStep.h"
#include "promotion/EventHandler.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace lamina {

class FetchProductViewModel;
class ImageDownload;

/// One of so many, each as likely as the others, from the system's source of chance. `count` is at least 1. From any
/// thread.
std::size_t systemRandomIndex(std::size_t count);

/// Decides whether this application is to show a promotion, picks one and fetches its picture. Must be held by
/// std::shared_ptr. Completions come on the URL session's queue, and none once this has gone, which ends the load of
/// the picture.
class CrossPromotionCoordinater : public PromotionFetcher,
                                  public std::enable_shared_from_this<CrossPromotionCoordinater> {
public:
    /// Gives a number below `count`. Called on the URL session's queue.
    using RandomIndex = std::function<std::size_t(std::size_t count)>;

    /// `displayName` is the name under which the server would know this application.
    CrossPromotionCoordinater(std::shared_ptr<FetchProductViewModel> fetchviewModel, std::string displayName,
                              RandomIndex randomIndex = systemRandomIndex);
    ~CrossPromotionCoordinater() override;
    CrossPromotionCoordinater(const CrossPromotionCoordinater&) = delete;
    CrossPromotionCoordinater& operator=(const CrossPromotionCoordinater&) = delete;

    /// Fetches both feeds. The completion comes with the first error of either; with a promotion once both are here and
    /// the first entry of this application that is switched on has found one; and with an error of domain "not
    /// register" each time a feed comes and there is no such entry (yet): so maybe first with that and then with a
    /// promotion. It never comes where there is an entry but no promotion, or where the picture's URL is no web
    /// address.
    void fetchPromotion(Completion completion) override;

private:
    void handle(const EventHandler& event, const Completion& completion);
    void choosePromotion(const Completion& completion);
    bool isSwitchedOn() const;

    std::shared_ptr<FetchProductViewModel> m_fetchviewModel;
    std::string m_displayName;
    RandomIndex m_randomIndex;
    std::unique_ptr<ImageDownload> m_picture; ///< on its way
};

} // namespace lamina
