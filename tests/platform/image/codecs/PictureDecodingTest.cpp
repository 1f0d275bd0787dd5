#include "CommandRunner.h"
#include "DecodedPictures.h"

#include "platform/image/codecs/PictureDecoding.h"

#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace lamina::test {
namespace {

/// Runs as an ordinary user for a while, so that permissions count for the superuser too.
class OrdinaryUser {
public:
    OrdinaryUser()
    {
        constexpr uid_t kNobody = 65534;
        if (m_before == 0) {
            EXPECT_EQ(::seteuid(kNobody), 0);
        }
    }
    ~OrdinaryUser() { EXPECT_EQ(::seteuid(m_before), 0); }

private:
    uid_t m_before = ::geteuid();
};

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
    const auto with = [&](const std::string& name, const std::string& content) {
        writeFile(folder.path(name), content);
        return causeOfLoading(folder.path(name));
    };
    EXPECT_EQ(causeOfLoading(folder.path("none.jpg")), "no such file");
    EXPECT_EQ(causeOfLoading(folder.path("none/none.jpg")), "no such file");
    EXPECT_EQ(causeOfLoading(""), "no such file");
    EXPECT_EQ(causeOfLoading(folder.path()), "is a folder");
    EXPECT_EQ(with("empty.jpg", ""), "the file is empty");
    EXPECT_EQ(with("text.jpg", "a note that somebody named as a photo\n"), "not a picture");
    EXPECT_EQ(with("one.jpg", "\xFF"), "not a picture");
    EXPECT_EQ(causeOfLoading(folder.path("one.jpg") + "/x"), "no such file");
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(causeOfLoading(folder.path("pipe")), "not a regular file"); // and nobody writes to it
    std::filesystem::create_symlink("circle", folder.path("circle"));
    EXPECT_EQ(causeOfLoading(folder.path("circle")), "a symbolic link leads in a circle");
    std::filesystem::permissions(folder.path("text.jpg"), std::filesystem::perms::none);
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    const OrdinaryUser user;
    EXPECT_EQ(causeOfLoading(folder.path("text.jpg")), "permission denied");
}

TEST(LoadPicture, DecidesByContentAndFollowsLinks)
{
    const TemporaryFolder folder;
    const Bytes bytes = dataFile("png-rgb8.png");
    writeFile(folder.path("photo.jpg"), std::string(bytes.begin(), bytes.end()));
    std::filesystem::create_symlink("photo.jpg", folder.path("link"));
    const Result<UIImage> picture = loadPicture(folder.path("link"));
    ASSERT_TRUE(picture) << picture.error().cause;
    EXPECT_EQ(pixelAt(picture->cgImage(), 28, 20), (Pixel{220, 40, 30, 255}));
    EXPECT_EQ(picture->scale(), 1);
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
        EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC);
    }
}

TEST(DecodePicture, ReadsFromMemory)
{
    const Result<UIImage> picture = decodePicture(dataFile("exif-6.jpg"), "standard input");
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->imageOrientation(), UIImageOrientation::Right);
    EXPECT_EQ(picture->cgImage().size(), (IntSize{48, 64}));
    EXPECT_EQ(picture->pixelSize(), (IntSize{64, 48}));
    const Result<UIImage> nothing = decodePicture({}, "standard input");
    ASSERT_FALSE(nothing);
    EXPECT_EQ(nothing.error().subject, "standard input");
    EXPECT_EQ(nothing.error().cause, "the file is empty");
}

TEST(Refusal, WeighsClaims)
{
    const DecodeOptions options;
    constexpr std::uint64_t kMega = 1'000'000;
    EXPECT_TRUE(checkClaim(20000, 20000, 10 * kMega, 9 * kMega, options)); // 400 million, 8 MB wanted
    EXPECT_FALSE(checkClaim(20000, 20001, 10 * kMega, 900 * kMega, options));
    EXPECT_FALSE(checkClaim(20000, 20000, 10 * kMega, 7 * kMega, options));
    EXPECT_TRUE(checkClaim(8000, 8000, 256 * kMega, 100, options)); // small enough to be given
    EXPECT_FALSE(checkClaim(8000, 8000, 269 * kMega, 100, options));
    EXPECT_EQ(checkClaim(0, 5, 0, 100, options).error().cause, cause::kDamaged);
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    EXPECT_FALSE(checkClaim(kMost, kMost, 0, 0, options));
}

} // namespace
} // namespace lamina::test
