// Finished pictures on their way into the library's folder.
#include "CommandRunner.h"
#include "LogCapture.h"
#include "TestPictures.h"
#include "platform/base/DispatchQueue.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHAssetCreationRequest.h"
#include "platform/photos/PHPhotoLibrary.h"
#include "platform/photos/PhotoFolder.h"
#include "platform/photos/PhotosAlbum.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>
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
    const CGImage picture = chartPicture(9, 7, CGImageAlphaInfo::NoneSkipLast);
};

TEST_F(PhotoLibraryFolder, NeverReplacesAPicture)
{
    fs::create_directories(photoLibraryFolder());
    const std::time_t now = std::time(nullptr);
    for (int second = 0; second < 60; ++second)
        writeFile(photoLibraryFolder() + '/' + nameAt(now + second) + ".png", "kept");

    std::vector<std::string> paths(8);
    std::vector<std::thread> savers;
    savers.reserve(paths.size());
    for (std::string& path : paths)
        savers.emplace_back([&path, this] {
            if (const Result<std::string> saved = savePNGToPhotoLibrary(picture))
                path = *saved;
        });
    for (std::thread& saver : savers)
        saver.join();

    EXPECT_EQ(std::set<std::string>(paths.begin(), paths.end()).size(), paths.size());
    for (const std::string& path : paths) {
        // One of the taken names with a number before its extension.
        ASSERT_GT(path.size(), std::string(" 2.png").size());
        EXPECT_EQ(readFile(path.substr(0, path.size() - 6) + ".png"), "kept") << path;
        EXPECT_TRUE(imagesMatch(readPictureFile(path), picture)) << path;
    }
}

TEST_F(PhotoLibraryFolder, IsMadeByTheFirstPictureWhichIsUprightBeforeTheProgramLeaves)
{
    // The way to say that there is no such folder does not make a library of all that is in home.
    writeFile(home.path("config/user-dirs.dirs"), "XDG_PICTURES_DIR=\"$HOME/\"\n");
    EXPECT_EQ(photoLibraryFolder(), home.path("Pictures/Lamina"));
    SetUp();
    EXPECT_FALSE(savePNGToPhotoLibrary(CGImage()));
    EXPECT_FALSE(fs::exists(home.path("Fotos")));
    EXPECT_TRUE(saveToPhotosAlbum(UIImage(picture, 1, UIImageOrientation::Right)));
    ASSERT_TRUE(DispatchQueue::main().runUntilIdle(60));
    const auto saved = fs::directory_iterator(home.path("Fotos/Lamina"));
    ASSERT_NE(saved, fs::end(saved));
    const CGImage turned = readPictureFile(saved->path());
    ASSERT_EQ(turned.size(), (IntSize{7, 9}));
    EXPECT_EQ(pixelAt(turned, 6, 0), pixelAt(picture, 0, 0)); // a quarter to the right: top left goes to the top right
    EXPECT_EQ(pixelAt(turned, 0, 8), pixelAt(picture, 8, 6));
}

TEST_F(PhotoLibraryFolder, TellsWhatCouldNotBeSavedWhereAndWhy)
{
    writeFile(home.path("Fotos"), "a file in the way");
    LogCapture log;
    EXPECT_TRUE(saveToPhotosAlbum(UIImage(picture)));
    EXPECT_TRUE(saveToPhotosAlbum(UIImage()));
    ASSERT_TRUE(DispatchQueue::main().runUntilIdle(60));
    ASSERT_EQ(log.messages.size(), 2u);
    EXPECT_EQ(log.messages[0].second, home.path("Fotos/Lamina") + ": no such folder");
    EXPECT_NE(log.messages[1].second.find("there is no picture"), std::string::npos);
    EXPECT_EQ(readFile(home.path("Fotos")), "a file in the way");
}

TEST_F(PhotoLibraryFolder, KeepsFilesByteForByteAndTellsTheMainThread)
{
    writeFile(home.path("film ü.MP4"), std::string(3'000'000, 'f') + "end");
    fs::permissions(home.path("film ü.MP4"), fs::perms(0600));
    std::vector<Result<std::string>> heard;
    const auto hear = [&heard](const Result<std::string>& path) {
        EXPECT_TRUE(DispatchQueue::main().isCurrent());
        heard.push_back(path);
    };
    saveToPhotosAlbum({1, 2, 3}, ".jpg", hear);
    UISaveVideoAtPathToSavedPhotosAlbum(home.path("film ü.MP4"), hear);
    UISaveVideoAtPathToSavedPhotosAlbum(home.path("none.mp4"), hear);
    UISaveVideoAtPathToSavedPhotosAlbum(home.path(), hear);
    ASSERT_TRUE(DispatchQueue::main().runUntilIdle(60));
    ASSERT_EQ(heard.size(), 4u);
    EXPECT_EQ(readFile(*heard[0]), "\x01\x02\x03");
    EXPECT_TRUE(heard[0]->ends_with(".jpg") && heard[1]->ends_with(".MP4")) << *heard[0] << *heard[1];
    EXPECT_EQ(readFile(*heard[1]), readFile(home.path("film ü.MP4")));
    EXPECT_EQ(fs::status(*heard[1]).permissions(), fs::perms(0600)); // what was private stays so
    EXPECT_EQ(heard[2].error().message(), home.path("none.mp4") + ": no such file");
    EXPECT_EQ(heard[3].error().message(), home.path() + ": is a folder");
}

TEST_F(PhotoLibraryFolder, CarriesOutAChangeAsAWholeOrNotAtAll)
{
    EXPECT_EQ(PHAssetCreationRequest::creationRequestForAsset(), nullptr);
    writeFile(home.path("a.tiff"), "first");
    writeFile(home.path("b.tiff"), "second");
    std::vector<std::string> identifiers;
    std::vector<std::string> outcomes;
    const auto create = [&](const std::vector<std::string>& names) {
        PHPhotoLibrary::performChanges(
            [&, names] {
                for (const std::string& name : names) {
                    PHAssetCreationRequest* const request = PHAssetCreationRequest::creationRequestForAsset();
                    request->addResource(PHAssetResourceType::Photo, home.path(name));
                    identifiers.push_back(request->placeholderForCreatedAsset().localIdentifier);
                }
            },
            [&](const Outcome& outcome) { outcomes.push_back(outcome ? "done" : outcome.error().cause); });
        ASSERT_TRUE(DispatchQueue::main().runUntilIdle(60));
    };
    create({"a.tiff", "none.tiff"});
    EXPECT_FALSE(fs::exists(home.path("Fotos")));
    create({"a.tiff", "b.tiff"});
    PHPhotoLibrary::setAuthorizer({[] { return PHAuthorizationStatus::Denied; }, {}});
    create({"a.tiff"});
    PHPhotoLibrary::setAuthorizer({});
    EXPECT_EQ(outcomes, (std::vector<std::string>{"no such file", "done", "access to the photo library is not given"}));
    ASSERT_EQ(identifiers.size(), 4u);
    const std::vector<PHAsset> assets = fetchAssetsWithLocalIdentifiers(identifiers);
    ASSERT_EQ(assets.size(), 2u); // of the change that was carried out
    EXPECT_EQ(assets[0].localIdentifier, identifiers[2]);
    EXPECT_EQ(readFile(assets[0].path) + readFile(assets[1].path), "firstsecond");
}

} // namespace
} // namespace lamina::test
