// Thumbnails on disk: ours, and those of the desktop.
#include "platform/photos/thumbnails/ThumbnailStore.h"
#include "CommandRunner.h"
#include "LogCapture.h"
#include "TestPictures.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/photos/DesktopThumbnail_p.h"

#include <QCryptographicHash>

#include <algorithm>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

const FileStamp kPhoto{1, 2, 3'500'000'000, 4, "/a.jpg"};

std::vector<std::string> filesBelow(const std::string& folder)
{
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    return files;
}

class KeptThumbnails : public testing::Test {
protected:
    const TemporaryFolder home;
    const std::string folder = home.path("cache/thumbnails");
    const UIImage ramp{rampPicture(512, 384, 40)};
};

TEST_F(KeptThumbnails, AreOfOneFileAsItIsAndForItsOwnerAlone)
{
    ThumbnailStore(folder).keep(kPhoto, ramp);
    const ThumbnailStore later(folder);
    EXPECT_TRUE(imagesMatch(later.find(kPhoto, 0).cgImage(), ramp.cgImage(), 8));
    EXPECT_EQ(later.find(kPhoto, 190).pixelSize(), (IntSize{256, 192}));            // reduced on the way
    EXPECT_TRUE(later.find({8, 9, kPhoto.modified, kPhoto.bytes, kPhoto.path}, 0)); // as after another start
    EXPECT_FALSE(later.find({1, 2, kPhoto.modified + 1, kPhoto.bytes, kPhoto.path}, 0));
    EXPECT_FALSE(later.find({1, 2, kPhoto.modified, kPhoto.bytes + 1, kPhoto.path}, 0));
    EXPECT_FALSE(later.find({1, 2, kPhoto.modified, kPhoto.bytes, "/b.jpg"}, 0));

    const std::vector<std::string> files = filesBelow(folder);
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(fs::status(files[0]).permissions(), fs::perms(0600));
    for (const std::string& made : {folder, fs::path(files[0]).parent_path().string()})
        EXPECT_EQ(fs::status(made).permissions(), fs::perms(0700));
}

TEST_F(KeptThumbnails, AreNotShownDamagedAndAreReplaced)
{
    ThumbnailStore store(folder);
    store.keep(kPhoto, ramp);
    const std::string path = filesBelow(folder).at(0);
    const std::string whole = readFile(path);
    std::string flipped = whole;
    flipped[whole.size() / 2] ^= 1;
    const TemporaryFolder elsewhere;
    ThumbnailStore other(elsewhere.path());
    other.keep({9, 9, 9, 9, "/b.jpg"}, ramp);
    const std::string ofAnother = readFile(filesBelow(elsewhere.path()).at(0));
    for (const std::string& content : {flipped, whole.substr(0, whole.size() / 2), whole.substr(0, 10), std::string(),
                                       ofAnother, whole.substr(0, whole.size() - 16)}) {
        writeFile(path, content);
        EXPECT_FALSE(store.find(kPhoto, 0)) << content.size();
        store.keep(kPhoto, ramp);
        EXPECT_TRUE(store.find(kPhoto, 0));
    }
}

TEST_F(KeptThumbnails, LeaveTheLeastUsedBehind)
{
    constexpr std::int64_t kMost = 400'000;
    ThumbnailStore store(folder, kMost);
    const UIImage noise(noisePicture(200, 100, CGImageAlphaInfo::NoneSkipLast)); // 18 kB
    const auto photo = [](std::int64_t number) { return FileStamp{1, 2, number, 0, "/a.jpg"}; };
    const auto keep = [&](std::int64_t first, std::int64_t last) {
        for (; first < last; ++first)
            if (store.keep(photo(first), noise))
                store.trim();
    };
    keep(0, 1);
    const std::string first = filesBelow(folder).at(0);
    keep(1, 12);
    for (const std::string& path : filesBelow(folder)) {
        const timespec times[] = {{path == first ? 1'000 : 2'000, 0}, {0, UTIME_OMIT}};
        ::utimensat(AT_FDCWD, path.c_str(), times, 0);
    }
    EXPECT_TRUE(store.find(photo(0), 0)); // used again
    keep(12, 26);
    EXPECT_TRUE(store.find(photo(0), 0));
    keep(26, 60);
    EXPECT_TRUE(store.find(photo(59), 0));
    std::int64_t bytes = 0;
    for (const std::string& path : filesBelow(folder))
        bytes += static_cast<std::int64_t>(fs::file_size(path));
    EXPECT_LE(bytes, kMost + kMost / 8);
    EXPECT_GT(bytes, kMost / 2);
}

TEST_F(KeptThumbnails, AreDoneWithoutWhereNothingCanBeWritten)
{
    writeFile(home.path("cache"), "in the way");
    const LogCapture log;
    for (const std::string& place : {folder, std::string()}) {
        ThumbnailStore store(place);
        for (int i = 0; i < 2; ++i)
            store.keep(kPhoto, ramp);
        EXPECT_FALSE(store.find(kPhoto, 0));
    }
    EXPECT_EQ(log.messages.size(), 1u) << log.text();
}

/// A PNG with texts before its pixels.
std::string pngWith(IntSize size, const std::string& url, const std::string& modified)
{
    const auto bytes = encodePNG(solidPicture(size.width, size.height, {0, 0, 255, 255}), "thumbnail");
    std::string png(bytes->begin(), bytes->end());
    for (const std::string& text :
         {std::string("Thumb::URI") + '\0' + url, std::string("Thumb::MTime") + '\0' + modified})
        png.insert(33, std::string(3, '\0') + static_cast<char>(text.size()) + "tEXt" + text + std::string(4, '\0'));
    return png;
}

TEST(DesktopThumbnails, AreTakenWhereTheyAreLargeEnoughAndOfTheFileAsItIs)
{
    const TemporaryFolder folder;
    for (const char* size : {"normal", "large", "x-large", "xx-large"})
        fs::create_directory(folder.path(size));
    const std::string path = "/home/a b;\xC3\xA4\xFF/it's (1)+[2].jpg";
    const std::string url = "file:///home/a%20b%3B%C3%A4%FF/it's%20(1)+%5B2%5D.jpg";
    const std::string name =
        QCryptographicHash::hash(QByteArray::fromStdString(url), QCryptographicHash::Md5).toHex().toStdString();
    const AssetPictureRequest request{
        {.localIdentifier = "1", .path = path}, {200, 200}, PHImageContentMode::AspectFill};
    const struct {
        const char* size;
        IntSize pixels;
        std::string url, modified;
        bool taken;
    } table[] = {
        {"large", {256, 200}, url, "3", true},    {"x-large", {512, 384}, url, "3", true},
        {"xx-large", {300, 200}, url, "3", true}, {"large", {256, 199}, url, "3", false},
        {"normal", {256, 200}, url, "3", false},  {"large", {256, 200}, url, "4", false},
        {"large", {256, 200}, url, "3.5", false}, {"large", {256, 200}, url + "x", "3", false},
        {"large", {256, 200}, url, "", false},
    };
    for (const auto& c : table) {
        const std::string file = folder.path(c.size) + '/' + name + ".png";
        writeFile(file, pngWith(c.pixels, c.url, c.modified));
        EXPECT_EQ(loadDesktopThumbnail(folder.path(), kPhoto, request).pixelSize(), c.taken ? c.pixels : IntSize())
            << c.size << ' ' << c.pixels.width << ' ' << c.url << ' ' << c.modified;
        // The end of a chunk that claims more than there is, or of the picture, is the end of it all.
        const std::string whole = readFile(file);
        for (const std::size_t length : {0u, 7u, 20u, 40u, 100u, 200u}) {
            writeFile(file, whole.substr(0, length));
            EXPECT_FALSE(loadDesktopThumbnail(folder.path(), kPhoto, request));
        }
        fs::remove(file);
    }
}

} // namespace
} // namespace lamina::test
