#pragma once

#include "gpu/core/GPUVectors.h"
#include "platform/media/CVPixelBuffer.h"

namespace lamina {

// From Y, Cb and Cr to red, green and blue (ITU-R BT.601, BT.709), for the frames of movies and cameras. The records
// are the columns that a shader multiplies with Y, Cb and Cr: Y counts from 0 (video range: less 16/255), Cb and Cr
// from their middle. Video range stretches 219 steps to 255.

inline constexpr GPUMatrix3x3 kColorConversionMatrix601{
    {1.164F, 1.164F, 1.164F}, {0.0F, -0.392F, 2.017F}, {1.596F, -0.813F, 0.0F}};
inline constexpr GPUMatrix3x3 kColorConversionMatrix601FullRange{
    {1.0F, 1.0F, 1.0F}, {0.0F, -0.343F, 1.765F}, {1.4F, -0.711F, 0.0F}};
inline constexpr GPUMatrix3x3 kColorConversionMatrix709{
    {1.164F, 1.164F, 1.164F}, {0.0F, -0.213F, 2.112F}, {1.793F, -0.533F, 0.0F}};
inline constexpr GPUMatrix3x3 kColorConversionMatrix709FullRange{
    {1.0F, 1.0F, 1.0F}, {0.0F, -0.187F, 1.856F}, {1.575F, -0.468F, 0.0F}};

/// The matrix for frames with such a tag: 601 without one. Other tags than 601 count as 709.
const GPUMatrix3x3& colorConversionMatrix(YCbCrMatrix tag, bool fullRange);

/// Fragment shaders with the samplers `luminanceTexture` (Y in red) and `chrominanceTexture` (Cb in red, Cr in alpha)
/// and the uniform `colorConversionMatrix`.
extern const char* const kGPUImageYUVVideoRangeConversionForLAFragmentShaderString;
extern const char* const kGPUImageYUVFullRangeConversionForLAFragmentShaderString;

} // namespace lamina
