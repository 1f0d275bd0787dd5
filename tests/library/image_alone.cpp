// A program of the picture libraries alone: a drawing, as a file and back.

#include "AllHeaders.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/pixels/UIImage.h"

#include <cstdio>
#include <optional>

using namespace lamina;

int main()
{
    std::optional<CGContext> context =
        CGContext::bitmap(4, 3, 16, CGColorSpace::deviceRGB(), bitmapInfo(CGImageAlphaInfo::PremultipliedLast));
    if (!context)
        return 1;
    const auto file = encodePNG(context->makeImage(), "drawing.png");
    if (!file)
        return 1;
    const Result<UIImage> read = decodePicture(*file, "drawing.png");
    if (!read)
        std::fprintf(stderr, "%s\n", read.error().cause.c_str());
    return read && read->cgImage().size() == IntSize{4, 3} ? 0 : 1;
}
