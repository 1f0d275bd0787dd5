#pragma once

#include "platform/base/Result.h"

#include <string>
#include <vector>

namespace lamina {

/// One file of many: what is read, and what is written of it.
struct BatchFile {
    std::string input;
    std::string output = {};    ///< empty: nothing is written; may be the input itself
    bool replacesInput = false; ///< whether it is
};

/// Says of each input where its picture goes: `pattern` as an `OutputPattern`; empty: nothing is written. Looks at the
/// files that there are already, and opens none.
///
/// It fails, before any work is done, where the pattern is wrong or tells no format, where two inputs would write the
/// same file (also by another path, or over a link), and where an input's picture would replace another input. The
/// error's subject is an input or the pattern.
Result<std::vector<BatchFile>> planBatch(const std::vector<std::string>& inputs, const std::string& pattern);

} // namespace lamina
