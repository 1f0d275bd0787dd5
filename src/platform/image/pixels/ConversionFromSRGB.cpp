#include "platform/image/pixels/ConversionFromSRGB.h"

#include "platform/image/pixels/ColorConversion.h"

#include <lcms2.h>

// Profiles and rendering intents are those of ICC.1.

namespace lamina {

namespace {

cmsUInt32Number formatOf(CGColorSpace::Model model)
{
    switch (model) {
    case CGColorSpace::Model::Gray:
        return TYPE_GRAY_8;
    case CGColorSpace::Model::CMYK:
        return TYPE_CMYK_8;
    default:
        return TYPE_RGBA_8;
    }
}

} // namespace

std::optional<ConversionFromSRGB> ConversionFromSRGB::make(std::span<const std::uint8_t> iccProfile,
                                                           CGColorSpace::Model model)
{
    if (iccProfile.empty() || profileModel(iccProfile) != model)
        return std::nullopt;
    if (model == CGColorSpace::Model::RGB && !ColorConversion::toSRGB(iccProfile, model))
        return std::nullopt;
    cmsHPROFILE profile = cmsOpenProfileFromMem(iccProfile.data(), static_cast<cmsUInt32Number>(iccProfile.size()));
    if (!profile)
        return std::nullopt;
    cmsHPROFILE source = cmsCreate_sRGBProfile();
    const bool inks = model == CGColorSpace::Model::CMYK;
    const cmsUInt32Number intent = inks ? INTENT_PERCEPTUAL : INTENT_RELATIVE_COLORIMETRIC;
    // Without its cache a transform may be used by several threads.
    cmsHTRANSFORM transform = cmsCreateTransform(source, TYPE_RGBA_8, profile, formatOf(model), intent,
                                                 cmsFLAGS_BLACKPOINTCOMPENSATION | cmsFLAGS_NOCACHE);
    cmsCloseProfile(source);
    cmsCloseProfile(profile);
    if (!transform)
        return std::nullopt;
    return ConversionFromSRGB(std::shared_ptr<void>(transform, cmsDeleteTransform));
}

void ConversionFromSRGB::convert(const std::uint8_t* rgba, int count, std::uint8_t* components) const
{
    cmsDoTransform(m_transform.get(), rgba, components, static_cast<cmsUInt32Number>(count));
}

} // namespace lamina
