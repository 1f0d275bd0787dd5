#pragma once

#include "promotion/EndPointType.h"

#include <optional>
#include <string>

namespace lamina {

/// The two feeds of the promotion server (`promotionRoot`). A cheap value.
class EndPointItems : public EndPointType {
public:
    /// Which of them.
    enum Item {
        apps,       ///< of `iOSAppList`
        promotions, ///< of `CustomInterstrial`
    };

    EndPointItems(Item item);

    std::string path() const override;
    /// Empty.
    std::string suffix() const override { return {}; }
    std::string baseURL() const override;
    std::optional<std::string> url() const override;
    /// `get`.
    HTTPMethods method() const override { return HTTPMethods::get; }

private:
    Item m_item;
};

} // namespace lamina
