#include "DecodedPictures.h"
#include "TestPictures.h"

#include "platform/image/codecs/PictureDecoder_p.h"

#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <limits>
#include <unistd.h>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

std::string causeOfLoading(const std::string& path)
{
    const Result<UIImage> picture = loadPicture(path);
    if (picture)
        return "a picture";
    EXPECT_EQ(picture.error().subject, path);
    return picture.error().cause;
}

TEST(LoadPicture, SaysPlainlyWhatIsWrongWithAFile)
{
    const TemporaryFolder folder;
    writeFile(folder.path("text.jpg"), "a note that somebody named as a photo\n");
    fs::create_symlink("circle", folder.path("circle"));
    EXPECT_EQ(causeOfLoading(folder.path("text.jpg/x")), "no such file");
    EXPECT_EQ(causeOfLoading(""), "no such file");
    EXPECT_EQ(causeOfLoading(folder.path("text.jpg")), "not a picture");
    EXPECT_EQ(causeOfLoading(folder.path("circle")), "a symbolic link leads in a circle");
}

TEST(LoadPicture, DecidesByContentAndFollowsLinks)
{
    const TemporaryFolder folder;
    fs::copy_file(testData("pictures/png-exif-6.png"), folder.path("photo.jpg"));
    fs::create_symlink("photo.jpg", folder.path("link"));
    const Result<UIImage> picture = loadPicture(folder.path("link"));
    ASSERT_TRUE(picture) << picture.error().cause;
    EXPECT_EQ(picture->imageOrientation(), UIImageOrientation::Right);
    EXPECT_EQ(picture->cgImage().size(), (IntSize{48, 64}));
    EXPECT_EQ(decodePicture({}, "standard input").error().subject, "standard input");
}

TEST(LoadPicture, RefusesHugeFilesAtOnce)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("huge.jpg");
    for (const char* head : {"a film, perhaps", "\xFF\xD8\xFF"}) {
        writeFile(path, head);
        ASSERT_EQ(::truncate(path.c_str(), off_t{1} << 36), 0); // a hole of 64 GB
        const std::clock_t start = std::clock();
        EXPECT_NE(causeOfLoading(path), "a picture");
        EXPECT_LT(std::clock() - start, 3 * CLOCKS_PER_SEC); // a second without sanitizers
    }
}

TEST(Claims, AreWeighed)
{
    constexpr std::uint64_t kKilo = 1000;
    constexpr std::uint64_t kMega = kKilo * kKilo;
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    struct Claim {
        std::int64_t width, height;
        std::uint64_t held, file;
        bool isBelieved;
        PixelKind kind = PixelKind::Any;
    };
    for (const Claim& claim : {Claim{20000, 20000, 10 * kMega, 400 * kKilo, true}, // 400 million
                               {20000, 20001, 10 * kMega, 900 * kMega, false},
                               {20000, 20000, 10 * kMega, 300 * kKilo, false}, // more work than the bytes can give
                               {11000, 11000, 200 * kMega, 100, true},
                               {11000, 11000, 484 * kMega, 100, false}, // more memory than any file may take
                               {12250, 8192, 401 * kMega, 600 * kKilo, true},
                               {12250, 8192, 1001 * kMega, 600 * kMega, false},
                               {18724, 13244, 992 * kMega, 2 * kKilo, true, PixelKind::Bilevel}, // a white plan
                               {18724, 13244, 10 * kMega, 2 * kKilo, false},
                               {kMost, kMost, 0, 0, false}}) {
        SCOPED_TRACE(claim.held + claim.file);
        const DecodeOptions options{.memoryLimit = 1000 * kMega};
        EXPECT_EQ(checkClaim(claim.width, claim.height, claim.held, claim.file, options, claim.kind).ok(),
                  claim.isBelieved);
    }
}

} // namespace
} // namespace lamina::test
