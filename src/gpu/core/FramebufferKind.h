#pragma once

#include "gpu/core/GPUTextureOptions.h"
#include "platform/base/CGGeometry.h"

#include <cstddef>
#include <cstdint>
#include <functional>

namespace lamina {

/// What framebuffers that can stand for each other have in common: the key of their pool. Two kinds are equal exactly
/// where `GPUImageFramebufferCache::hashForSize` gives the same text.
class FramebufferKind {
public:
    /// `size` in pixels, rounded to tenths; what is no number is a size like any other.
    FramebufferKind(CGSize size, const GPUTextureOptions& options, bool onlyTexture);

    friend bool operator==(const FramebufferKind&, const FramebufferKind&) = default;

    /// For unordered containers.
    std::size_t hash() const;

private:
    // The bits of whole numbers of tenths.
    std::uint64_t m_width;
    std::uint64_t m_height;
    GPUTextureOptions m_options;
    bool m_onlyTexture;
};

} // namespace lamina

template <>
struct std::hash<lamina::FramebufferKind> {
    /// As the kind says itself.
    std::size_t operator()(const lamina::FramebufferKind& kind) const { return kind.hash(); }
};
