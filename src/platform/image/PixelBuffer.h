#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace lamina {

/// Memory for pixels: aligned to 64 bytes, movable, freed with its last owner. Not initialised unless `zeroed`.
/// Empty when the memory could not be had, which callers test.
class PixelBuffer {
public:
    PixelBuffer() = default;
    static PixelBuffer allocate(std::size_t size);
    static PixelBuffer zeroed(std::size_t size);

    std::uint8_t* data() { return m_data.get(); }
    const std::uint8_t* data() const { return m_data.get(); }
    std::size_t size() const { return m_size; }
    explicit operator bool() const { return m_data != nullptr; }

    /// Gives the memory up to readers that share it.
    std::shared_ptr<const std::uint8_t> share() &&;

private:
    struct Free {
        void operator()(std::uint8_t* memory) const noexcept;
    };
    std::unique_ptr<std::uint8_t, Free> m_data;
    std::size_t m_size = 0;
};

} // namespace lamina
