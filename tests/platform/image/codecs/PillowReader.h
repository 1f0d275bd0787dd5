#pragma once

#include "CommandRunner.h"

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace lamina::test {

/// What another program makes of a picture file.
struct PillowPicture {
    std::string format;
    std::string mode; ///< "RGB", "RGBA", "L", "LA", "P"
    int width = 0;
    int height = 0;
    std::string profile;  ///< name of the embedded profile, "-" without one
    std::string sampling; ///< JPEG: horizontal and vertical factors of the colours, such as "2x2"; "-" elsewhere
    std::string rgba;     ///< 4 · width · height bytes

    std::uint8_t at(int x, int y, int c) const
    {
        const auto place = static_cast<std::size_t>(4 * (y * width + x) + c);
        return place < rgba.size() ? static_cast<std::uint8_t>(rgba[place]) : 0;
    }
};

/// Reads the file with Pillow; fails the running test when it can't.
inline PillowPicture readWithPillow(const std::string& path)
{
    static const char* const script = R"(
import io, sys
from PIL import Image, ImageCms
im = Image.open(sys.argv[1])
im.load()
icc = im.info.get('icc_profile')
name = ImageCms.getProfileName(ImageCms.ImageCmsProfile(io.BytesIO(icc))).split()[0] if icc else '-'
layer = getattr(im, 'layer', None)
sampling = '%dx%d' % layer[0][1:3] if layer else '-'
print(im.format, im.mode, im.width, im.height, name, sampling)
sys.stdout.flush()
sys.stdout.buffer.write(im.convert('RGBA').tobytes())
)";
    const CommandResult reader = runCommand("/usr/bin/python3", {"-c", script, path});
    EXPECT_EQ(reader.exitCode, 0) << reader.errors;
    PillowPicture picture;
    const std::size_t end = reader.output.find('\n');
    if (end == std::string::npos)
        return picture;
    std::istringstream head(reader.output.substr(0, end));
    head >> picture.format >> picture.mode >> picture.width >> picture.height >> picture.profile >> picture.sampling;
    picture.rgba = reader.output.substr(end + 1);
    EXPECT_EQ(picture.rgba.size(), static_cast<std::size_t>(4 * picture.width * picture.height));
    return picture;
}

} // namespace lamina::test
