#include "support/BareDecode.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace lamina::bench {

void bareDecode(const std::string& path, std::vector<JSAMPLE>& pixels, unsigned eighths)
{
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (file == nullptr)
        std::abort();
    jpeg_decompress_struct decoder;
    jpeg_error_mgr errors;
    decoder.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&decoder);
    jpeg_stdio_src(&decoder, file);
    jpeg_read_header(&decoder, TRUE);
    decoder.out_color_space = JCS_EXT_RGBX;
    decoder.scale_num = eighths;
    decoder.scale_denom = 8;
    jpeg_start_decompress(&decoder);
    const std::size_t rowBytes = 4 * std::size_t{decoder.output_width};
    pixels.resize(rowBytes * decoder.output_height);
    while (decoder.output_scanline < decoder.output_height) {
        JSAMPROW row = pixels.data() + rowBytes * decoder.output_scanline;
        jpeg_read_scanlines(&decoder, &row, 1);
    }
    jpeg_finish_decompress(&decoder);
    jpeg_destroy_decompress(&decoder);
    std::fclose(file);
}

} // namespace lamina::bench
