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
/// are an attacker's: damage, lies about sides and hostile scan scripts end decoding, with the bounds on memory and
/// work of `decodePicture`; what was decoded before that stays. From one thread at a time.
class CGImageSource {
public:
    /// Nothing has arrived yet. The options' bounds and flag hold; `shortSide` is not looked at, and damaged data are
    /// not read on. The flag must outlive the source; once it is set nothing more is decoded.
    static std::unique_ptr<CGImageSource> makeIncremental(const DecodeOptions& options = {});
    virtual ~CGImageSource() = default;

    /// All data so far: what the last call had, and more behind it. `isFinal`: no more will come, and what comes all
    /// the same is left alone. Nothing is kept of the data, which may lie elsewhere each time. The rows that have come
    /// are decoded here, and whole pictures of formats that don't come in rows.
    virtual void updateData(std::span<const std::uint8_t> data, bool isFinal) = 0;
    /// The properties of picture 0, once its head has arrived. Of formats that are decoded when they are whole, the
    /// orientation may come later than the sides.
    virtual std::optional<CGImageProperties> propertiesAtIndex() const = 0;
    /// Picture 0 as far as it can be decoded yet: its upper rows, `pixelWidth` wide and as many as there are; of files
    /// that come coarse at first (progressive, interlaced) all rows, which become finer with each scan or call. Empty
    /// while there are none. When all of a sound file has come, the bytes are those of `decodePicture`. The orientation
    /// is not looked at.
    ///
    /// The picture never changes. One that comes row by row costs nothing: it shares the source's memory, as a later
    /// one of more rows does. A progressive JPEG that has had another scan since the last call costs going over all of
    /// it once and new memory (of hostile scripts, far fewer times than there are scans); an interlaced PNG a copy, if
    /// anything has come. What is handed out counts for whoever holds it, not against the options' limit.
    virtual CGImage imageAtIndex() = 0;
};

} // namespace lamina
