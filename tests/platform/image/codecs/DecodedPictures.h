#pragma once

#include "CommandRunner.h"
#include "TestPaths.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <libdeflate.h>
#include <span>
#include <string>
#include <string_view>
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
    bytes.resize(bytes.size() + more.size());
    std::ranges::copy(more, bytes.end() - std::ssize(more));
}

inline void storeBig32(std::uint8_t* bytes, std::size_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        *bytes++ = static_cast<std::uint8_t>(value >> shift);
}

/// `head`, then `content` compressed as PNG has it.
inline Bytes packed(const Bytes& content, std::string_view head = {})
{
    libdeflate_compressor* compressor = libdeflate_alloc_compressor(6);
    Bytes data(head.begin(), head.end());
    data.resize(head.size() + libdeflate_zlib_compress_bound(compressor, content.size()));
    data.resize(head.size() + libdeflate_zlib_compress(compressor, content.data(), content.size(), &data[head.size()],
                                                       data.size() - head.size()));
    libdeflate_free_compressor(compressor);
    return data;
}

inline Bytes pngChunk(std::string_view type, const Bytes& content)
{
    Bytes chunk(4 + type.size());
    storeBig32(chunk.data(), content.size());
    std::ranges::copy(type, chunk.begin() + 4);
    append(chunk, content);
    chunk.resize(chunk.size() + 4);
    storeBig32(&chunk[chunk.size() - 4], libdeflate_crc32(0, &chunk[4], chunk.size() - 8));
    return chunk;
}

} // namespace lamina::test
