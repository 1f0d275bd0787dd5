#pragma once

#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/CGImage.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace lamina {

/// What a picture file says of its picture before the pixels. A plain value.
struct CGImageProperties {
    std::int32_t pixelWidth = 0; ///< as stored, before the orientation's turn
    std::int32_t pixelHeight = 0;
    std::optional<int> orientation; ///< the metadata's value, 1 to 8 when it is sound
};

/// Decodes a picture while its file arrives: JPEG, of one scan and progressive, and PNG, interlaced or not, as far as
/// their bytes go; other formats once they are whole. Each byte is decoded once, whatever the number of updates. Bytes
/// are an attacker's: damage, lies about sides and hostile scan scripts end in "no picture", with the bounds on memory
/// and work of `decodePicture`. From one thread at a time.
class CGImageSource {
public:
    /// Nothing has arrived yet. The options' bounds and flag hold; `shortSide` is not looked at. The flag must outlive
    /// the source.
    static std::unique_ptr<CGImageSource> makeIncremental(const DecodeOptions& options = {});
    virtual ~CGImageSource() = default;

    /// All data so far: what the last call had, and more behind it. `final`: no more will come.
    virtual void updateData(std::span<const std::uint8_t> data, bool final) = 0;
    /// The properties of picture 0, once its head has arrived.
    virtual std::optional<CGImageProperties> propertiesAtIndex() const = 0;
    /// Picture 0 as far as it can be decoded yet: its upper rows, `pixelWidth` wide and as many as there are; of files
    /// that come coarse at first (progressive, interlaced) all rows, which become finer with each call. Empty while
    /// there are none. Colours and alpha as those of `decodePicture`; the orientation is not looked at.
    virtual CGImage imageAtIndex() = 0;
};

} // namespace lamina
