#pragma once

#include "DecodedPictures.h"

#include <algorithm>
#include <cstdint>
#include <cstdio> // jpeglib.h names FILE without asking for it
#include <cstdlib>
#include <functional>
#include <jpeglib.h>
#include <vector>

namespace lamina::test {

/// A JPEG to be made.
struct JPEGRecipe {
    int width = 64;
    int height = 48;
    int components = 3;
    bool progressive = false;
    unsigned restartRows = 0;
    bool adobeMarker = true;                ///< for four components
    std::vector<jpeg_scan_info> scans = {}; ///< in place of the usual ones
    std::function<int(int x, int y, int c)> value = [](int x, int y, int c) { return (x * 3 + y * 2 + c * 50) % 256; };
};

inline Bytes makeJPEG(const JPEGRecipe& recipe)
{
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &memory, &size);
    info.image_width = static_cast<JDIMENSION>(recipe.width);
    info.image_height = static_cast<JDIMENSION>(recipe.height);
    info.input_components = recipe.components;
    info.in_color_space = recipe.components == 4 ? JCS_CMYK : recipe.components == 3 ? JCS_RGB : JCS_GRAYSCALE;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 95, TRUE);
    info.restart_in_rows = static_cast<int>(recipe.restartRows);
    if (recipe.progressive)
        jpeg_simple_progression(&info);
    if (!recipe.scans.empty()) {
        info.scan_info = recipe.scans.data();
        info.num_scans = static_cast<int>(recipe.scans.size());
    }
    if (!recipe.adobeMarker)
        info.write_Adobe_marker = FALSE;
    jpeg_start_compress(&info, TRUE);
    Bytes row(static_cast<std::size_t>(recipe.width * recipe.components));
    for (int y = 0; y < recipe.height; ++y) {
        for (int i = 0; i < static_cast<int>(row.size()); ++i)
            row[static_cast<std::size_t>(i)] =
                static_cast<std::uint8_t>(recipe.value(i / recipe.components, y, i % recipe.components));
        JSAMPROW rows = row.data();
        jpeg_write_scanlines(&info, &rows, 1);
    }
    jpeg_finish_compress(&info);
    Bytes bytes(memory, memory + size);
    jpeg_destroy_compress(&info);
    std::free(memory);
    return bytes;
}

inline constexpr std::uint8_t kScan[] = {0xFF, 0xDA};

/// Where the last scan begins.
inline Bytes::const_iterator lastScan(const Bytes& file)
{
    return std::find_end(file.begin(), file.end(), std::begin(kScan), std::end(kScan));
}

} // namespace lamina::test
