#pragma once

#include "platform/base/Result.h"

#include <string>

namespace lamina {

/// An option that stands for a step of an editor's script.
template <class Step>
struct StepOption {
    const char* name;   ///< "--move"
    const char* syntax; ///< of its value, for help; empty: it has none
    const char* about;
    /// The step that a value stands for; the cause of the error is a sentence that holds the value.
    Result<Step> (*parse)(const std::string& text);
};

} // namespace lamina
