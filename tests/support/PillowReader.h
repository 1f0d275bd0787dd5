#pragma once

#include "CommandRunner.h"
#include "TestPictures.h"
#include "platform/image/pixels/CGImage.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace lamina::test {

/// What another program makes of a picture file.
struct PillowPicture {
    /// Format, mode, name of the embedded profile ("-" without one), and of a JPEG the factors of its first component:
    /// "JPEG RGB sRGB 2x2".
    std::string kind;
    CGImage pixels; ///< RGBA
};

/// Reads the files with Pillow; fails the running test when it can't.
inline std::vector<PillowPicture> readWithPillow(const std::vector<std::vector<std::uint8_t>>& files)
{
    static const char* const script = R"(
import io, sys
from PIL import Image, ImageCms
for path in sys.argv[1:]:
    im = Image.open(path)
    im.load()
    kind = [im.format, im.mode, '-']
    if 'icc_profile' in im.info:
        profile = ImageCms.ImageCmsProfile(io.BytesIO(im.info['icc_profile']))
        kind[2] = ImageCms.getProfileName(profile).split()[0]
        assert abs(profile.profile.red_primary[0][0] - 0.4360) < 0.0005 # of sRGB in D50, as IEC 61966-2-1 has it
    if hasattr(im, 'layer'):
        kind.append('%dx%d' % im.layer[0][1:3])
    sys.stdout.buffer.write(('%d %d %s\n' % (im.width, im.height, ' '.join(kind))).encode())
    sys.stdout.buffer.write(im.convert('RGBA').tobytes())
)";
    const TemporaryFolder folder;
    std::vector<std::string> arguments{"-c", script};
    for (const auto& file : files) {
        arguments.push_back(folder.path(std::to_string(arguments.size())));
        writeFile(arguments.back(), {file.begin(), file.end()});
    }
    const CommandResult reader = runCommand("/usr/bin/python3", arguments);
    EXPECT_EQ(reader.exitCode, 0) << reader.errors;
    std::istringstream output(reader.output);
    std::vector<PillowPicture> pictures(files.size());
    for (PillowPicture& picture : pictures) {
        int width = 0;
        int height = 0;
        output >> width >> height >> std::ws;
        std::getline(output, picture.kind);
        const CGImageLayout layout = CGImageLayout::rgba(width, height, CGImageAlphaInfo::Last);
        std::vector<std::uint8_t> bytes(width > 0 && height > 0 ? layout.byteCount() : 0);
        output.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        if (output)
            picture.pixels = pictureFromBytes(layout, bytes);
    }
    return pictures;
}

} // namespace lamina::test
