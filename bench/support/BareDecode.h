#pragma once

#include <cstdio> // jpeglib.h needs it before
#include <jpeglib.h>
#include <string>
#include <vector>

namespace lamina::bench {

/// What reading a JPEG file can't cost less than: libjpeg-turbo alone, writing the rows of `eighths` / 8 of the sides
/// to `pixels`, which keeps its storage from one call to the next.
void bareDecode(const std::string& path, std::vector<JSAMPLE>& pixels, unsigned eighths);

} // namespace lamina::bench
