#include "gpu/core/FramebufferKind.h"

#include <bit>
#include <cmath>

namespace lamina {

namespace {

/// `side` in tenths as decimal printing rounds it: to nearest by the exact value, ties to even. The product is rounded
/// itself; only where that makes a tie does its error, which the fused operation gives exactly, decide.
double tenths(double side)
{
    const double product = side * 10;
    if (std::abs(product - std::trunc(product)) != 0.5)
        return std::nearbyint(product);
    const double error = std::fma(side, 10, -product);
    if (error == 0)
        return std::nearbyint(product);
    return error > 0 ? std::ceil(product) : std::floor(product);
}

/// Not a number is written without its payload.
std::uint64_t bitsOfTenths(double side)
{
    return std::bit_cast<std::uint64_t>(std::isnan(side) ? std::copysign(std::nan(""), side) : tenths(side));
}

} // namespace

FramebufferKind::FramebufferKind(CGSize size, const GPUTextureOptions& options, bool onlyTexture)
    : m_width(bitsOfTenths(size.width))
    , m_height(bitsOfTenths(size.height))
    , m_options(options)
    , m_onlyTexture(onlyTexture)
{
}

std::size_t FramebufferKind::hash() const
{
    // FNV-1a over the fields, 64 bits at a time.
    constexpr std::uint64_t kPrime = 0x100000001b3;
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const std::uint64_t field :
         {m_width, m_height, std::uint64_t{m_options.minFilter}, std::uint64_t{m_options.magFilter},
          std::uint64_t{m_options.wrapS}, std::uint64_t{m_options.wrapT}, std::uint64_t{m_options.internalFormat},
          std::uint64_t{m_options.format}, std::uint64_t{m_options.type}, std::uint64_t{m_onlyTexture}})
        hash = (hash ^ field) * kPrime;
    return hash ^ hash >> 32; // the sides' low bits are 0
}

} // namespace lamina
