// Every drawing looks as another renderer draws the file it was made of.
#include "platform/image/named/NamedPictures.h"
#include "CommandRunner.h"
#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIImageDrawing.h"

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace lamina::test {
namespace {

/// The drawing at so many pixels a point, premultiplied; empty where it can't be drawn.
CGImage renderedByAnother(const std::string& path, int zoom)
{
    const CommandResult run = runCommand("/usr/bin/rsvg-convert", {"--zoom", std::to_string(zoom), path});
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(run.output.data());
    const Result<UIImage> picture = decodePicture({bytes, run.output.size()}, path);
    if (!picture)
        return {};
    CGContext context = *CGContext::image(picture->size(), false, 1);
    drawInRect(*picture, context, CGRect({}, picture->size()));
    return context.makeImage();
}

/// The mean of a sample's square of `zoom` x `zoom` pixels: that renderer bends its lines at its pixels.
int meanOf(const CGImage& image, int zoom, int x, int y, int component)
{
    int sum = 0;
    for (int dy = 0; dy < zoom; ++dy) {
        for (int dx = 0; dx < zoom; ++dx)
            sum += image.row(y * zoom + dy)[4 * (x * zoom + dx) + component];
    }
    return sum / (zoom * zoom);
}

TEST(NamedPictures, LookAsAnotherRendererDrawsThem)
{
    int count = 0;
    for (const char* const folder : {"icons", "art", "stickers"}) {
        for (const auto& file : std::filesystem::directory_iterator(std::string(LAMINA_ASSETS "/") + folder)) {
            const std::string name = file.path().stem();
            const int scale = sizeOfImageNamed(name).width < 90 ? 4 : 1;
            constexpr int kFiner = 4;
            const CGImage ours = imageNamed(name, sizeOfImageNamed(name), scale).cgImage();
            const CGImage theirs = renderedByAnother(file.path(), kFiner * scale);
            ASSERT_EQ(theirs.size(), (IntSize{kFiner * ours.width(), kFiner * ours.height()})) << name;
            double sum = 0;
            int far = 0;
            for (int y = 0; y < ours.height(); ++y) {
                for (int i = 0; i < 4 * ours.width(); ++i) {
                    const int off = std::abs(ours.row(y)[i] - meanOf(theirs, kFiner, i / 4, y, i % 4));
                    sum += off;
                    far += off > 32;
                }
            }
            const double samples = 4.0 * ours.width() * ours.height();
            EXPECT_LT(sum / samples, 0.5) << name;
            EXPECT_LT(far / samples, 0.002) << name; // where edges cross or meet inside a pixel
            ++count;
        }
    }
    EXPECT_GT(count, 60);
}

TEST(NamedPictures, AreFittedKeptAndLetGo)
{
    const auto ask = [] { return imageNamed("plus", {24, 40}, 2); };
    const UIImage first = ask();
    EXPECT_EQ(first.pixelSize(), (IntSize{48, 80}));
    EXPECT_EQ(first.scale(), 2);
    const auto alphaAt = [&](int x, int y) { return first.cgImage().row(y)[4 * x + 3]; };
    EXPECT_EQ(alphaAt(24, 40), 255); // where its bars meet
    EXPECT_EQ(alphaAt(24, 12), 0);   // beside it, were it not centred
    EXPECT_TRUE(ask().isIdenticalTo(first));
    EXPECT_FALSE(imageNamed("plus", {24, 40}, 1).isIdenticalTo(first));
    NotificationCenter::defaultCenter().post(UIApplicationDidReceiveMemoryWarningNotification);
    EXPECT_FALSE(ask().isIdenticalTo(first));
    const UIImage again = ask();
    for (int side = 500; side < 520; ++side) // 20 MB
        imageNamed("plus", CGSize(side, side), 1);
    EXPECT_FALSE(ask().isIdenticalTo(again));
    EXPECT_EQ(imageNamed("home_blend").size(), sizeOfImageNamed("home_blend"));
    EXPECT_EQ(sizeOfImageNamed("home_blend"), (CGSize{160, 160}));

    EXPECT_FALSE(imageNamed("no such drawing", {24, 24}, 1));
    EXPECT_FALSE(imageNamed("plus", {0, 24}, 1));
    EXPECT_EQ(sizeOfImageNamed(""), CGSize());
}

} // namespace
} // namespace lamina::test
