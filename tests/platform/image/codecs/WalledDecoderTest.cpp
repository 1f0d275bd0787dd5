// HEIC and TIFF through the program that decodes them: the same pictures as without it, and what is said where that
// program can't be trusted.

#include "DecodedPictures.h"
#include "TestPictures.h"

#include "platform/base/Causes.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/codecs/decoder/BareDecoders_p.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <thread>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

/// Another folder of modules, for as long as it lives.
class OtherModules {
public:
    explicit OtherModules(const char* folder)
        : m_before(std::getenv("LAMINA_MODULES"))
    {
        ::setenv("LAMINA_MODULES", folder, 1);
    }
    ~OtherModules() { ::setenv("LAMINA_MODULES", m_before.c_str(), 1); }
    OtherModules(const OtherModules&) = delete;
    OtherModules& operator=(const OtherModules&) = delete;

private:
    std::string m_before;
};

void expectSame(const Result<UIImage>& walled, const Result<UIImage>& bare)
{
    ASSERT_EQ(walled.ok(), bare.ok());
    if (!bare) {
        EXPECT_EQ(walled.error().cause, bare.error().cause);
        return;
    }
    EXPECT_TRUE(imagesMatch(walled->cgImage(), bare->cgImage()));
    EXPECT_EQ(walled->cgImage().bitmapInfo(), bare->cgImage().bitmapInfo());
    EXPECT_EQ(walled->imageOrientation(), bare->imageOrientation());
}

TEST(WalledDecoder, GivesWhatTheLibrariesGiveInThisProcess)
{
    int compared = 0;
    for (const auto& entry : fs::directory_iterator(testData("pictures"))) {
        const std::string name = entry.path().filename();
        const PictureFormat* format = pictureFormatForFileName(name);
        const PictureDecoder& bare = name.starts_with("tiff") ? kTIFFDecoder : kHEICDecoder;
        if (!format || (format->decoder != &kWalledHEICDecoder && format->decoder != &kWalledTIFFDecoder))
            continue;
        SCOPED_TRACE(name);
        ++compared;
        const auto file = openFileSource(entry.path());
        const Bytes bytes = dataFile(name);
        for (const DecodeOptions options : {DecodeOptions{}, {.shortSide = 5}, {.memoryLimit = 1000}}) {
            expectSame(format->decoder->decode(**file, options), bare.decode(**file, options));
            expectSame(format->decoder->decode(*memorySource(bytes), options), bare.decode(**file, options));
        }
        if (bare.thumbnail) {
            expectSame(format->decoder->thumbnail(**file, {}), bare.thumbnail(**file, {}));
        }
    }
    EXPECT_GE(compared, 25);
}

TEST(WalledDecoder, BelievesNoAnswerThatCanNotBe)
{
    const Bytes bytes = dataFile("heic-420.heic");
    {
        const OtherModules fake(LAMINA_FAKE_DECODER);
        constexpr int kTrue = 4;
        constexpr int kLast = 12;
        EXPECT_EQ(causeOf(bytes, {.shortSide = kTrue}), "");
        EXPECT_EQ(causeOf(bytes, {.shortSide = 1}), "the picture can't be read: its decoder took too long");
        for (int lie = 2; lie <= kLast; ++lie) {
            if (lie != kTrue) {
                EXPECT_EQ(causeOf(bytes, {.shortSide = lie}), "the picture can't be read: its decoder stopped") << lie;
            }
        }
        EXPECT_EQ(causeOf(bytes, {.shortSide = kTrue}), "");
    }
    EXPECT_TRUE(imagesMatch(shown(bytes).cgImage(), shown(dataFile("heic-420.heic")).cgImage()));
}

TEST(WalledDecoder, IsLeftInTheMidstOfItsWork)
{
    const OtherModules fake(LAMINA_FAKE_DECODER);
    constexpr int kHangs = 1;
    for (const char* file : {"heic-420.heic", "avif-444.avif", "tiff-g4.tif"}) {
        std::atomic<bool> cancelled = false;
        std::thread other([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            cancelled = true;
        });
        EXPECT_EQ(causeOf(dataFile(file), {.shortSide = kHangs, .cancelled = &cancelled}), cause::kCancelled) << file;
        other.join();
    }
}

TEST(WalledDecoder, WorksWhereTheSizeOfFilesIsBounded)
{
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto causeWithin = [&](rlim_t most) {
        const rlimit bounded{most, before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &bounded);
        const std::string cause = causeOf(dataFile("heic-420.heic"));
        ::setrlimit(RLIMIT_FSIZE, &before);
        return cause;
    };
    EXPECT_EQ(causeWithin(2 << 20), "");
    EXPECT_EQ(causeWithin(1 << 10), "the limit for the size of files (ulimit -f) is too small for it");
}

TEST(WalledDecoder, IsMissedByNameAndByNobodyElse)
{
    const OtherModules none("/nowhere");
    EXPECT_EQ(causeOf(dataFile("heic-420.heic")), "HEIC pictures need lamina-decoder, which is not installed");
    EXPECT_EQ(causeOf(dataFile("tiff-g4.tif")), "TIFF pictures need lamina-decoder, which is not installed");
    EXPECT_EQ(causeOf(dataFile("png-rgb8.png")), "");
}

} // namespace
} // namespace lamina::test
