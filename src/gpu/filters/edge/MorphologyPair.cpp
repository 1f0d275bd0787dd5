#include "gpu/filters/edge/MorphologyPair.h"

#include <utility>

namespace lamina {

MorphologyPair::MorphologyPair(std::shared_ptr<MorphologyFilter> first, std::shared_ptr<MorphologyFilter> second)
    : m_first(std::move(first))
    , m_second(std::move(second))
{
    addFiltersInLine({m_first, m_second});
}

void MorphologyPair::setVerticalTexelSpacing(double texels)
{
    m_first->setVerticalTexelSpacing(texels);
    m_second->setVerticalTexelSpacing(texels);
}

void MorphologyPair::setHorizontalTexelSpacing(double texels)
{
    m_first->setHorizontalTexelSpacing(texels);
    m_second->setHorizontalTexelSpacing(texels);
}

} // namespace lamina
