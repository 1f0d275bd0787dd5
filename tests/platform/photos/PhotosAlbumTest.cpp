#include "platform/photos/PhotosAlbum.h"

#include "../base/LogCapture.h"
#include "CommandRunner.h"
#include "TestPictures.h"
#include "platform/base/DispatchQueue.h"
#include "platform/photos/PhotoFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace lamina::test {
namespace {

class PhotosAlbum : public testing::Test {
protected:
    void SetUp() override
    {
        std::filesystem::create_directory(home.path("config"));
        writeFile(home.path("config/user-dirs.dirs"), "XDG_PICTURES_DIR=\"$HOME/Fotos\"\n");
        ::setenv("HOME", home.path().c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", home.path("config").c_str(), 1);
    }

    /// What a program does before it leaves.
    static bool finish() { return DispatchQueue::main().runUntilIdle(60); }

    const TemporaryFolder home;
};

TEST_F(PhotosAlbum, TakesThePictureUpright)
{
    const CGImage ramp = rampPicture(40, 30, 9);
    EXPECT_TRUE(saveToPhotosAlbum(UIImage(ramp, 1, UIImageOrientation::Right)));
    EXPECT_TRUE(saveToPhotosAlbum(UIImage(ramp)));
    ASSERT_TRUE(finish());
    std::vector<CGImage> saved;
    for (const auto& file : std::filesystem::directory_iterator(photoLibraryFolder()))
        saved.push_back(readPictureFile(file.path()));
    ASSERT_EQ(saved.size(), 2u);
    const bool firstIsTurned = saved[0].width() == 30;
    const CGImage& turned = saved[firstIsTurned ? 0 : 1];
    ASSERT_EQ(turned.size(), (IntSize{30, 40}));
    EXPECT_EQ(pixelAt(turned, 29, 0), pixelAt(ramp, 0, 0)); // a quarter to the right: top left goes to the top right
    EXPECT_EQ(pixelAt(turned, 0, 39), pixelAt(ramp, 39, 29));
    EXPECT_EQ(pixelAt(saved[firstIsTurned ? 1 : 0], 39, 29), pixelAt(ramp, 39, 29));
}

TEST_F(PhotosAlbum, TellsFailuresInTheLogAlone)
{
    writeFile(home.path("Fotos"), "a file in the way");
    LogCapture log;
    EXPECT_TRUE(saveToPhotosAlbum(UIImage(rampPicture(8, 8, 1))));
    EXPECT_TRUE(saveToPhotosAlbum(UIImage()));
    ASSERT_TRUE(finish());
    ASSERT_EQ(log.messages.size(), 2u);
    EXPECT_EQ(log.messages[0].second, home.path("Fotos/Lamina") + ": the folder can't be made");
    EXPECT_NE(log.messages[1].second.find("there is no picture"), std::string::npos);
    EXPECT_EQ(readFile(home.path("Fotos")), "a file in the way");
}

} // namespace
} // namespace lamina::test
