#pragma once

#include "platform/image/codecs/CGImageSource.h"
#include "platform/image/codecs/PictureDecoding.h"

#include <cstddef>
#include <memory>

namespace lamina {

/// The sources of the formats that can be decoded while they arrive, whose first bytes have been recognized; for the
/// table of formats.
std::unique_ptr<CGImageSource> makeIncrementalJPEG(const DecodeOptions& options);
std::unique_ptr<CGImageSource> makeIncrementalPNG(const DecodeOptions& options);

/// Whether it is worth to look again at what was not enough: when it has grown by an eighth, or ends. However small the
/// steps in which data grow, looking at them again then costs no more than a few times their length.
class GrowthGate {
public:
    bool opens(std::size_t size, bool isFinal) const { return isFinal || size > m_size + m_size / 8; }
    void wasNotEnough(std::size_t size) { m_size = size; }

private:
    std::size_t m_size = 0;
};

} // namespace lamina
