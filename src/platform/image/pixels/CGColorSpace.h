#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace lamina {

/// What the numbers of a pixel mean: a model, and either the device's own reading of it or an ICC profile.
/// Device RGB and device grey are read as sRGB; device CMYK by the plain formula R = (1 - C)(1 - K) and its siblings.
/// A cheap value (the profile is shared), usable from any thread.
class CGColorSpace {
public:
    /// The colour components of a pixel, in memory's order: one of light, R G B, C M Y K (the most is full ink), or
    /// none.
    enum class Model { Gray, RGB, CMYK, AlphaOnly };

    /// One component of light by the curve of sRGB, 0 black.
    static CGColorSpace deviceGray() { return CGColorSpace(Model::Gray, nullptr); }
    /// sRGB (IEC 61966-2-1).
    static CGColorSpace deviceRGB() { return CGColorSpace(Model::RGB, nullptr); }
    /// Inks without a profile: R = (1 - C)(1 - K) and its siblings.
    static CGColorSpace deviceCMYK() { return CGColorSpace(Model::CMYK, nullptr); }
    /// No colour at all, only coverage.
    static CGColorSpace alphaOnly() { return CGColorSpace(Model::AlphaOnly, nullptr); }
    /// `iccProfile` must be a profile of the model; a profile that can't be used is treated as absent when pixels
    /// convert.
    static CGColorSpace withProfile(Model model, std::vector<std::uint8_t> iccProfile)
    {
        return CGColorSpace(model, std::make_shared<const std::vector<std::uint8_t>>(std::move(iccProfile)));
    }

    Model model() const { return m_model; }

    /// Colour components of a pixel, alpha not counted: 1, 3, 4 or 0.
    int componentCount() const
    {
        switch (m_model) {
        case Model::Gray:
            return 1;
        case Model::RGB:
            return 3;
        case Model::CMYK:
            return 4;
        case Model::AlphaOnly:
            break;
        }
        return 0;
    }

    /// The ICC profile's bytes; empty for a device space. Valid as long as a copy of this colour space lives.
    std::span<const std::uint8_t> iccProfile() const
    {
        return m_profile ? std::span<const std::uint8_t>(*m_profile) : std::span<const std::uint8_t>();
    }

    friend bool operator==(const CGColorSpace& x, const CGColorSpace& y)
    {
        return x.m_model == y.m_model &&
               (x.m_profile == y.m_profile || (x.m_profile && y.m_profile && *x.m_profile == *y.m_profile));
    }

private:
    CGColorSpace(Model model, std::shared_ptr<const std::vector<std::uint8_t>> profile)
        : m_model(model)
        , m_profile(std::move(profile))
    {
    }

    Model m_model;
    std::shared_ptr<const std::vector<std::uint8_t>> m_profile;
};

} // namespace lamina
