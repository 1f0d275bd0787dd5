#include "GraphFixture.h"
#include "MovieEnding.h"
#include "TestClips.h"
#include "gpu/endpoints/GPUImageMovieComposition.h"
#include "platform/base/CMTime.h"
#include "platform/media/AVAsset.h"
#include "platform/media/CMSampleBuffer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace lamina::test {
namespace {

using MovieCompositionTest = GraphFixture;

std::shared_ptr<const AVURLAsset> openedClip(const std::string& path)
{
    auto asset = AVURLAsset::make(path);
    EXPECT_TRUE(asset) << asset.error().message();
    return asset ? *asset : nullptr;
}

/// Keeps sound with its times.
class SoundKeeper : public GPUImageAudioEncodingTarget {
public:
    bool hasAudioTrack() const override { return true; }
    void setHasAudioTrack(bool) override {}
    bool shouldPassthroughAudio() const override { return false; }
    void setShouldInvalidateAudioSampleWhenDone(bool) override {}
    void processAudioBuffer(const CMSampleBuffer& piece) override { pieces.push_back(piece); }

    /// Loudness from a moment to another, and how many moments there are; by root mean square.
    std::pair<double, int> loudness(double from, double to) const
    {
        double sum = 0;
        int count = 0;
        for (const CMSampleBuffer& piece : pieces) {
            for (int i = 0; i < piece.audio->sampleCount(); ++i) {
                const double time = piece.presentationTime.seconds() + double(i) / piece.audio->sampleRate;
                if (time < from || time >= to)
                    continue;
                sum += std::pow(piece.audio->samples[static_cast<std::size_t>(i * piece.audio->channels)], 2);
                ++count;
            }
        }
        return {std::sqrt(sum / std::max(count, 1)), count};
    }

    std::vector<CMSampleBuffer> pieces;
};

TEST_F(MovieCompositionTest, JoinsRangesOfClipsUprightAndMixesTheirSound)
{
    const TemporaryFolder folder;
    const std::string first = folder.path("first.mov");
    const std::string second = folder.path("second.mov");
    makeClip({"-f", "lavfi", "-i", "color=red:s=64x48:r=10:d=2", "-f", "lavfi", "-i", "sine=d=2:r=48000", "-pix_fmt",
              "yuv420p", "-c:a", "pcm_s16le"},
             first);
    const std::string lying = folder.path("lying.mov");
    makeClip({"-f", "lavfi", "-i", "color=blue:s=48x32:r=20:d=2", "-f", "lavfi", "-i", "sine=d=2:r=48000", "-pix_fmt",
              "yuv420p", "-c:a", "pcm_s16le"},
             lying);
    makeClip({"-i", lying, "-c", "copy", "-metadata:s:v", "rotate=90"}, second);
    AVMutableComposition composition;
    ASSERT_TRUE(composition.insertTimeRange({CMTime::make(5, 10), CMTime::make(1, 1)}, openedClip(first)));
    ASSERT_TRUE(composition.insertTimeRange({CMTime::make(1, 1), kCMTimePositiveInfinity}, openedClip(second)));
    EXPECT_FALSE(composition.insertTimeRange({CMTime::make(9, 1), kCMTimePositiveInfinity}, openedClip(first)));
    EXPECT_NEAR(composition.duration().seconds(), 2, 0.05);
    AVMutableAudioMix mix;
    mix.setVolume(0.25F, 1);

    const auto movie = std::make_shared<GPUImageMovieComposition>(composition, AVMutableVideoComposition{}, mix);
    const auto ending = MovieEnding::of(*movie);
    const auto sound = std::make_shared<SoundKeeper>();
    movie->setAudioEncodingTarget(sound);
    const auto filter = multiplying(1);
    movie->addTarget(filter);
    const auto consumer = consumerOf(*filter);
    movie->processAsset();
    EXPECT_THAT(ending->calls(), testing::ElementsAre("completed"));

    ASSERT_EQ(consumer->frames().size(), 30U);
    for (std::size_t i = 0; i < 30; ++i) {
        const auto& frame = consumer->frames()[i];
        EXPECT_NEAR(frame.time.seconds(), i < 10 ? 0.1 * double(i) : 1 + 0.05 * double(i - 10), 1e-4) << i;
        EXPECT_EQ(frame.size, (CGSize{64, 48}));
    }
    EXPECT_GT(pixelAt(consumer->frames()[9].pixels, 2, 2)[0], 200);
    // 32 x 48 upright: as high as the frame, with 16 pixels of black on either side.
    const CGImage& blue = consumer->frames()[10].pixels;
    EXPECT_LE(pixelAt(blue, 12, 24)[2], 2);
    EXPECT_GT(pixelAt(blue, 20, 24)[2], 200);
    EXPECT_GT(pixelAt(blue, 32, 1)[2], 200);

    const auto [loud, momentsOfFirst] = sound->loudness(0, 1);
    const auto [soft, momentsOfSecond] = sound->loudness(1, 2);
    EXPECT_EQ(momentsOfFirst, 48000);
    EXPECT_NEAR(momentsOfSecond, 48000, 2);
    EXPECT_NEAR(soft / loud, 0.25, 0.01);
}

} // namespace
} // namespace lamina::test
