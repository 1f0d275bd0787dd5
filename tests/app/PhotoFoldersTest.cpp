// The folders that the user has added to the library.
#include "app/PhotoFolders.h"

#include "CommandRunner.h"
#include "platform/photos/PHPhotoLibrary.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

TEST(PhotoFolders, AreKeptWhateverTheirNamesAndTheLibraryHasThem)
{
    using Folders = std::vector<std::string>;
    const TemporaryFolder state;
    ::setenv("XDG_STATE_HOME", state.path().c_str(), 1);
    openPhotoFolders("");
    EXPECT_EQ(PHPhotoLibrary::furtherFolders(), Folders());

    const Folders odd{"/mnt/a, b; 100%", "/srv/\xFF\"ü", "/", "/mnt/a, b; 100%"};
    ASSERT_TRUE(keepPhotoFolders(odd));
    EXPECT_EQ(keptPhotoFolders(), Folders(odd.begin(), odd.begin() + 3));
    EXPECT_EQ(PHPhotoLibrary::furtherFolders(), keptPhotoFolders());
    openPhotoFolders("photos/../more/");
    EXPECT_EQ(PHPhotoLibrary::furtherFolders().back(), std::filesystem::current_path().string() + "/more");
    ASSERT_TRUE(keepPhotoFolders({})); // which does not take away the one of the command line
    EXPECT_EQ(keptPhotoFolders(), Folders());
    EXPECT_EQ(PHPhotoLibrary::furtherFolders().size(), 1u);

    // As a person would write it.
    writeFile(state.path("lamina/photos.ini"), "[General]\nfolders=/mnt/card/, relative, \"file:///home/a%20b\"\n");
    EXPECT_EQ(keptPhotoFolders(), (Folders{"/mnt/card", "/home/a b"}));
    writeFile(state.path("lamina/photos.ini"), "folders");
    EXPECT_EQ(keptPhotoFolders(), Folders());
    std::filesystem::remove_all(state.path("lamina"));
    writeFile(state.path("lamina"), "a file in the way");
    EXPECT_FALSE(keepPhotoFolders({"/mnt"}));
    EXPECT_EQ(PHPhotoLibrary::furtherFolders().size(), 1u);
    openPhotoFolders("");
}

} // namespace
} // namespace lamina::test
