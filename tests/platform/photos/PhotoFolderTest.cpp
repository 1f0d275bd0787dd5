#include "platform/photos/PhotoFolder.h"

#include "CommandRunner.h"
#include "TestPictures.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <set>
#include <thread>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

/// A home of its own, whose folder for pictures is "Fotos".
class PhotoLibraryFolder : public testing::Test {
protected:
    void SetUp() override
    {
        fs::create_directory(home.path("config"));
        writeFile(home.path("config/user-dirs.dirs"), "XDG_PICTURES_DIR=\"$HOME/Fotos\"\n");
        ::setenv("HOME", home.path().c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", home.path("config").c_str(), 1);
    }

    static std::string nameAt(std::time_t time)
    {
        std::tm parts{};
        ::localtime_r(&time, &parts);
        char name[64];
        std::strftime(name, sizeof name, "Lamina %Y-%m-%d %H.%M.%S", &parts);
        return name;
    }

    const TemporaryFolder home;
};

TEST_F(PhotoLibraryFolder, IsMadeByTheFirstPicture)
{
    EXPECT_EQ(photoLibraryFolder(), home.path("Fotos/Lamina"));
    EXPECT_FALSE(savePNGToPhotoLibrary(CGImage()));
    EXPECT_FALSE(fs::exists(home.path("Fotos")));

    const std::time_t before = std::time(nullptr);
    const CGImage picture = rampPicture(40, 30, 9);
    const Result<std::string> path = savePNGToPhotoLibrary(picture);
    const std::time_t after = std::time(nullptr);
    ASSERT_TRUE(path);
    const fs::path saved(*path);
    EXPECT_EQ(saved.parent_path(), home.path("Fotos/Lamina"));
    EXPECT_GE(saved.filename(), nameAt(before) + ".png");
    EXPECT_LE(saved.filename(), nameAt(after) + ".png");
    const CGImage read = readPictureFile(*path);
    ASSERT_EQ(read.size(), picture.size());
    EXPECT_EQ(pixelAt(read, 31, 7), pixelAt(picture, 31, 7));
}

TEST_F(PhotoLibraryFolder, NeverReplacesAPicture)
{
    fs::create_directories(photoLibraryFolder());
    const std::time_t now = std::time(nullptr);
    const auto taken = [&](int second) { return photoLibraryFolder() + '/' + nameAt(now + second) + ".png"; };
    constexpr int kSeconds = 60;
    for (int i = 0; i < kSeconds; ++i)
        writeFile(taken(i), "kept");

    std::vector<std::string> paths(8);
    std::vector<std::thread> savers;
    savers.reserve(paths.size());
    for (std::string& path : paths)
        savers.emplace_back([&path] {
            if (const Result<std::string> saved = savePNGToPhotoLibrary(rampPicture(8, 8, 1)))
                path = *saved;
        });
    for (std::thread& saver : savers)
        saver.join();

    for (const std::string& path : paths) {
        // One of the taken names with a number before its extension.
        const std::string tail = " 2.png";
        ASSERT_GT(path.size(), tail.size());
        EXPECT_EQ(readFile(path.substr(0, path.size() - tail.size()) + ".png"), "kept") << path;
        const char number = path[path.size() - 5];
        EXPECT_TRUE(number >= '2' && number <= '9') << path;
        EXPECT_EQ(readPictureFile(path).size(), (IntSize{8, 8}));
    }
    EXPECT_EQ(std::set<std::string>(paths.begin(), paths.end()).size(), paths.size());
    for (int i = 0; i < kSeconds; ++i)
        EXPECT_EQ(readFile(taken(i)), "kept");
}

TEST_F(PhotoLibraryFolder, SaysWhereItCouldNotSave)
{
    writeFile(home.path("Fotos"), "a file in the way");
    const Result<std::string> path = savePNGToPhotoLibrary(rampPicture(8, 8, 1));
    ASSERT_FALSE(path);
    EXPECT_EQ(path.error().subject, home.path("Fotos/Lamina"));
    EXPECT_EQ(readFile(home.path("Fotos")), "a file in the way");
}

} // namespace
} // namespace lamina::test
