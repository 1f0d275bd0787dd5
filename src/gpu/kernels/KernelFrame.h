#pragma once

#include "platform/base/CGGeometry.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

namespace lamina {

/// Pixels in memory: R G B A of 8 bits, rows without gaps, first row on top.
struct KernelPixels {
    const std::uint8_t* bytes = nullptr;
    IntSize size;

    /// Begin of a row.
    const std::uint8_t* row(int y) const
    {
        return bytes + std::size_t{4} * static_cast<std::size_t>(size.width) * static_cast<std::size_t>(y);
    }
};

/// What a kernel works on. The output has the size of the first input and shares no byte with any.
struct KernelFrame {
    KernelPixels first;
    KernelPixels second; ///< without bytes where the filter has one input
    std::uint8_t* output = nullptr;

    /// Begin of a row of the output.
    std::uint8_t* outputRow(int y) const
    {
        return output + std::size_t{4} * static_cast<std::size_t>(first.size.width) * static_cast<std::size_t>(y);
    }
};

/// What a filter draws, worked out by the processor: within a step of 8 bits of its shader, and the same bytes on every
/// processor and with any number of cores.
struct FilterKernel {
    /// Writes the whole output, on all cores; the values in force are bound in it. False: memory was short. Empty:
    /// there is no kernel.
    std::function<bool(const KernelFrame&)> run;
    /// What the second input must measure; the size of the first where nothing is said.
    std::optional<IntSize> secondSize = std::nullopt;

    explicit operator bool() const { return static_cast<bool>(run); }
};

} // namespace lamina
