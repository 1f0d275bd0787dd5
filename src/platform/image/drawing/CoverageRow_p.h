#pragma once

#include "platform/image/drawing/Compositing_p.h"

#include <cstdint>
#include <cstring>
#include <vector>

namespace lamina {

/// The coverage of one row as the product of several: shape, clip, mask. Null stands for "all", and costs nothing.
class CoverageRow {
public:
    explicit CoverageRow(std::size_t pixels)
        : m_shape(pixels)
        , m_product(pixels)
    {
    }

    /// Room for a shape's own coverage of the row.
    std::uint8_t* scratch() { return m_shape.data(); }

    void start(const std::uint8_t* coverage) { m_current = coverage; }

    void multiply(const std::uint8_t* coverage)
    {
        if (!coverage)
            return;
        if (!m_current) {
            m_current = coverage;
            return;
        }
        if (m_current != m_product.data())
            std::memcpy(m_product.data(), m_current, m_product.size());
        multiplyCoverage(m_product.data(), coverage, m_product.size());
        m_current = m_product.data();
    }

    const std::uint8_t* get() const { return m_current; }

private:
    std::vector<std::uint8_t> m_shape;
    std::vector<std::uint8_t> m_product;
    const std::uint8_t* m_current = nullptr;
};

} // namespace lamina
