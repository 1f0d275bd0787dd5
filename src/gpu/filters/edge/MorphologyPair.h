#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/filters/edge/MorphologyFilter.h"

#include <memory>
#include <string>
#include <vector>

namespace lamina {

/// A dilation after an erosion or the other way round: what opening and closing have in common.
class MorphologyPair : public GPUImageFilterGroup {
public:
    /// Steps from neighbour to neighbour in texels, of both filters; 1 at first.
    double verticalTexelSpacing() const { return m_first->verticalTexelSpacing(); }
    void setVerticalTexelSpacing(double texels);
    /// The same across.
    double horizontalTexelSpacing() const { return m_first->horizontalTexelSpacing(); }
    void setHorizontalTexelSpacing(double texels);

protected:
    MorphologyPair(std::shared_ptr<MorphologyFilter> first, std::shared_ptr<MorphologyFilter> second);

    /// The description of one of them, with what all let one set.
    template <class Filter>
    static FilterDescription describePair(std::string className, std::string help)
    {
        return filterDescriptionWithRadius<Filter>(std::move(className), "edge", std::move(help),
                                                   MorphologyFilter::radiusProperty(),
                                                   morphologySpacingProperties<MorphologyPair>());
    }

private:
    std::shared_ptr<MorphologyFilter> m_first;
    std::shared_ptr<MorphologyFilter> m_second;
};

} // namespace lamina
