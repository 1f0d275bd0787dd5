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
    const DecodeOptions options;
    constexpr std::uint64_t kMega = 1'000'000;
    EXPECT_TRUE(checkClaim(20000, 20000, 10 * kMega, 9 * kMega, options)); // 400 million, 8 MB wanted
    EXPECT_FALSE(checkClaim(20000, 20001, 10 * kMega, 900 * kMega, options));
    EXPECT_FALSE(checkClaim(20000, 20000, 10 * kMega, 7 * kMega, options));
    EXPECT_TRUE(checkClaim(8000, 8000, 256 * kMega, 100, options)); // small enough to be given
    EXPECT_FALSE(checkClaim(8000, 8000, 269 * kMega, 100, options));
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    EXPECT_FALSE(checkClaim(kMost, kMost, 0, 0, options));
}

} // namespace
} // namespace lamina::test
