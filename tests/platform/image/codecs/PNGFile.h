#pragma once

#include "DecodedPictures.h"

#include <cstddef>
#include <cstdint>
#include <libdeflate.h>
#include <string>
#include <vector>

namespace lamina::test {

/// A PNG file as its chunks, for tests that put one together or take one apart.
struct PNGChunk {
    std::string type;
    Bytes data;
};

inline void appendBig32(Bytes& bytes, std::size_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

inline std::size_t big32(const Bytes& bytes, std::size_t at)
{
    return std::size_t{bytes[at]} << 24 | std::size_t{bytes[at + 1]} << 16 | std::size_t{bytes[at + 2]} << 8 |
           bytes[at + 3];
}

inline std::vector<PNGChunk> chunksOf(const Bytes& file)
{
    std::vector<PNGChunk> chunks;
    for (std::size_t at = 8; at + 12 <= file.size();) {
        const std::size_t size = big32(file, at);
        const auto data = file.begin() + static_cast<std::ptrdiff_t>(at + 8);
        chunks.push_back({std::string(file.begin() + static_cast<std::ptrdiff_t>(at + 4), data),
                          Bytes(data, data + static_cast<std::ptrdiff_t>(size))});
        at += 12 + size;
    }
    return chunks;
}

inline Bytes pngOf(const std::vector<PNGChunk>& chunks)
{
    Bytes file{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    for (const PNGChunk& chunk : chunks) {
        appendBig32(file, chunk.data.size());
        Bytes checked(chunk.type.begin(), chunk.type.end());
        append(checked, chunk.data);
        append(file, checked);
        appendBig32(file, libdeflate_crc32(0, checked.data(), checked.size()));
    }
    return file;
}

inline Bytes deflated(const Bytes& bytes)
{
    libdeflate_compressor* compressor = libdeflate_alloc_compressor(6);
    Bytes packed(libdeflate_zlib_compress_bound(compressor, bytes.size()));
    packed.resize(libdeflate_zlib_compress(compressor, bytes.data(), bytes.size(), packed.data(), packed.size()));
    libdeflate_free_compressor(compressor);
    return packed;
}

} // namespace lamina::test
