#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/filters/blend/BlendShader.h"
#include "platform/image/pixels/AlphaForm.h"

#include <string>

namespace lamina {

/// A blend that is a formula and no more.
struct BlendFormula {
    const char* className;
    const char* help; ///< one line, without a full stop
    AlphaForm alphaForm;
    const char* result;            ///< see `blendShader`
    const char* declarations = ""; ///< of functions that the result calls
};

/// The base of the blends in BlendFilters.h.
class BlendFilter : public GPUImageTwoInputFilter {
public:
    AlphaForm alphaForm() const override { return m_formula.alphaForm; }

protected:
    /// The formula is kept by reference.
    explicit BlendFilter(const BlendFormula& formula)
        : GPUImageTwoInputFilter(blendShader(formula.result, formula.declarations))
        , m_formula(formula)
    {
    }

private:
    const BlendFormula& m_formula;
};

/// What the class `Filter` derives from to be the blend by this formula.
template <class Filter, const BlendFormula& formula>
class BlendBy : public BlendFilter {
public:
    BlendBy()
        : BlendFilter(formula)
    {
    }
    static FilterDescription describe()
    {
        FilterDescription description = blendDescription<Filter>(formula.className, formula.help);
        description.alphaForm = formula.alphaForm;
        return description;
    }
};

} // namespace lamina
