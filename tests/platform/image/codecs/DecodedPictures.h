#pragma once

#include "CommandRunner.h"
#include "TestPaths.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace lamina::test {

using Bytes = std::vector<std::uint8_t>;

/// A file of tests/data/pictures.
inline Bytes dataFile(const std::string& name)
{
    const std::string content = readFile(testData("pictures/" + name));
    return {content.begin(), content.end()};
}

/// The picture, or the empty one.
inline UIImage shown(std::span<const std::uint8_t> bytes, const DecodeOptions& options = {})
{
    const Result<UIImage> picture = decodePicture(bytes, "picture", options);
    return picture ? *picture : UIImage();
}

/// The cause of failure; empty when there is a picture.
inline std::string causeOf(std::span<const std::uint8_t> bytes, const DecodeOptions& options = {})
{
    const Result<UIImage> picture = decodePicture(bytes, "picture", options);
    return picture ? "" : picture.error().cause;
}

inline void append(Bytes& bytes, std::span<const std::uint8_t> more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

} // namespace lamina::test
