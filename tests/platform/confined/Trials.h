#pragma once

#include <array>
#include <cstdint>

namespace lamina::test {

/// What the trial program is asked to try.
struct TrialRequest {
    std::array<char, 32> name{};
    std::uint64_t amount = 0;
    std::int32_t parent = 0;
};

struct TrialAnswer {
    std::int32_t result = 0; ///< 0, or a number of <cerrno>
};

} // namespace lamina::test
