// The folders that the user has added to the library.
#include "app/PhotoFolders.h"

#include "ScreenTest.h"
#include "app/ViewController.h"
#include "platform/photos/PHPhotoLibrary.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIDocumentPickerViewController.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

TEST(PhotoFolders, AreKeptWhateverTheirNamesAndTheLibraryHasThem)
{
    using Folders = std::vector<std::string>;
    const TemporaryFolder state;
    ::setenv("XDG_STATE_HOME", state.path().c_str(), 1);
    openPhotoFolders({});
    EXPECT_EQ(PHPhotoLibrary::furtherFolders(), Folders());

    const Folders odd{"/mnt/a, b; 100%", "/srv/\xFF\"ü", "/", "/mnt/a, b; 100%"};
    ASSERT_TRUE(keepPhotoFolders(odd));
    EXPECT_EQ(keptPhotoFolders(), Folders(odd.begin(), odd.begin() + 3));
    EXPECT_EQ(PHPhotoLibrary::furtherFolders(), keptPhotoFolders());
    openPhotoFolders({"/mnt/card", "photos/../more/"});
    EXPECT_EQ(PHPhotoLibrary::furtherFolders().back(), std::filesystem::current_path().string() + "/more");
    ASSERT_TRUE(keepPhotoFolders({})); // which does not take away those of the command line
    EXPECT_EQ(keptPhotoFolders(), Folders());
    EXPECT_EQ(PHPhotoLibrary::furtherFolders().size(), 2u);

    // As a person would write it.
    writeFile(state.path("lamina/photos.ini"), "[General]\nfolders=/mnt/card/, relative, \"file:///home/a%20b\"\n");
    EXPECT_EQ(keptPhotoFolders(), (Folders{"/mnt/card", "/home/a b"}));
    writeFile(state.path("lamina/photos.ini"), "folders");
    EXPECT_EQ(keptPhotoFolders(), Folders());
    std::filesystem::remove_all(state.path("lamina"));
    writeFile(state.path("lamina"), "a file in the way");
    EXPECT_FALSE(keepPhotoFolders({"/mnt"}));
    EXPECT_EQ(PHPhotoLibrary::furtherFolders().size(), 2u);
    openPhotoFolders({});
}

class PhotoFoldersMenu : public ScreenTest {
protected:
    /// Opens the list of folders and presses a row of it.
    void press(const std::string& row)
    {
        home->showMenu();
        settle();
        tap("Photo folders…");
        tap(row);
    }
    void tap(const std::string& button)
    {
        const auto sheet = top<UIAlertController>();
        ASSERT_TRUE(sheet);
        const auto& actions = sheet->actions();
        const auto found = std::ranges::find(actions, button, &UIAlertAction::title);
        ASSERT_NE(found, actions.end()) << button;
        sheet->tap(static_cast<int>(found - actions.begin()));
        settle();
    }
    std::shared_ptr<ViewController> home;
};

TEST_F(PhotoFoldersMenu, TakesAFolderInAndOutAgain)
{
    ::setenv("XDG_STATE_HOME", folder.path("state").c_str(), 1);
    home = storyboard->instantiate<ViewController>(scene::kHome);
    window.setRootViewController(home);
    settle();
    const auto choose = [&](const std::string& path) {
        press("Add a folder…");
        const auto picker = top<UIDocumentPickerViewController>();
        ASSERT_TRUE(picker && picker->asksForFolder());
        path.empty() ? picker->cancel() : picker->choose({path});
        settle();
    };
    choose("");
    EXPECT_TRUE(keptPhotoFolders().empty());
    choose(folder.path());
    choose("/mnt/card");
    EXPECT_EQ(PHPhotoLibrary::furtherFolders(), (std::vector<std::string>{folder.path(), "/mnt/card"}));
    press("/mnt/card");
    tap("Keep");
    EXPECT_EQ(keptPhotoFolders().size(), 2u);
    press(folder.path());
    tap("Take out");
    EXPECT_EQ(PHPhotoLibrary::furtherFolders(), std::vector<std::string>{"/mnt/card"});

    std::filesystem::remove_all(folder.path("state"));
    writeFile(folder.path("state"), "a file in the way");
    choose("/mnt/other");
    EXPECT_TRUE(alertText().starts_with("Can’t keep the folders / ")) << alertText();
    openPhotoFolders({});
}

} // namespace
} // namespace lamina::test
