#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/JPEGInput_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/ColorConversion.h"

#include <atomic>
#include <cstdint>
#include <optional>

namespace lamina {

/// All blocks of coefficients, filled up to whole units of the sampling as the library keeps them.
std::uint64_t blockCount(const jpeg_decompress_struct& info);

/// Chooses size and colours of the output, and limits the work. Fails where the picture may not be taken; of data that
/// arrive it may be once more of them have come.
Outcome prepareOutput(JPEGInput& input, std::uint64_t fileBytes, const DecodeOptions& options);

/// What makes sRGB of the rows as the library gives them, by what stands before the first scan.
class JPEGColors {
public:
    /// The output was prepared.
    explicit JPEGColors(JPEGInput& input);

    /// In place. Once `cancelled` is set the rest of the rows may stay as they are.
    void convertRows(const PixelRows& rows, const std::atomic<bool>* cancelled) const;

private:
    bool m_hasInks;
    bool m_isInverted; ///< the inks' programs store 255 for no ink
    std::optional<ColorConversion> m_conversion;
};

} // namespace lamina
