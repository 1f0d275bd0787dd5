#include "platform/host/system/FolderModel.h"
#include "TestPaths.h"

#include "CommandRunner.h"
#include "Environment.h"
#include "EventPump.h"

#include <QAbstractItemModelTester>
#include <QLocale>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <sys/stat.h>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class Folders : public testing::Test {
protected:
    void SetUp() override { QLocale::setDefault(QLocale::c()); } // a Swede looks for Ä behind Z

    void file(const std::string& name, int minutesOld = 0)
    {
        writeFile(folder.path(name), "x");
        fs::last_write_time(folder.path(name), fs::file_time_type::clock::now() - std::chrono::minutes(minutesOld));
    }
    bool listed()
    {
        return runUntil([this] { return !model.isLoading(); });
    }
    Names names() const
    {
        Names names;
        for (int row = 0; row < model.rowCount(); ++row) {
            const bool isFolder = model.data(model.index(row), FolderModel::IsFolderRole).toBool();
            names.push_back(model.data(model.index(row), FolderModel::NameRole).toString().toStdString() +
                            (isFolder ? "/" : ""));
        }
        return names;
    }
    QString path(const std::string& name = "") const { return QString::fromStdString(folder.path(name)); }

    const TemporaryFolder folder;
    FolderModel model;
};

TEST_F(Folders, ShowFoldersFirstThenPictures)
{
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (const char* const name : {"b", "A", "folder 10", "folder 9", ".hidden"})
        fs::create_directory(folder.path(name));
    file("img10.jpg", 30);
    file("img9.JPEG", 20);
    file("Ämter.heic", 10);
    file("zebra.webp", 5);
    for (const char* const name : {".hidden.jpg", "text.txt", "jpg", "movie.mp4", "half.jpg.part", "caf\xe9.jpg"})
        file(name);
    ::mkfifo(folder.path("pipe.jpg").c_str(), 0600);
    fs::create_directory(folder.path("album.jpg")); // a folder, whatever its name
    fs::create_symlink("nowhere", folder.path("broken.png"));
    fs::create_symlink("zebra.webp", folder.path("link.png"));

    model.setFolder(path());
    EXPECT_TRUE(model.isLoading());
    EXPECT_EQ(model.rowCount(), 0) << "nothing waits for the disk";
    ASSERT_TRUE(listed());
    const Names folders = {"A/", "album.jpg/", "b/", "folder 9/", "folder 10/"};
    const auto with = [&](Names pictures) {
        pictures.insert(pictures.begin(), folders.begin(), folders.end());
        return pictures;
    };
    EXPECT_EQ(names(), with({"link.png", "zebra.webp", "Ämter.heic", "img9.JPEG", "img10.jpg"}));
    EXPECT_EQ(model.data(model.index(5), FolderModel::PathRole).toString(), path("link.png"));
    EXPECT_EQ(model.error(), "");
    EXPECT_EQ(model.note(), "");

    model.setOrder(FolderModel::ByName);
    ASSERT_TRUE(listed());
    EXPECT_EQ(names(), with({"Ämter.heic", "img9.JPEG", "img10.jpg", "link.png", "zebra.webp"}));
}

TEST_F(Folders, GoUpAndDown)
{
    fs::create_directories(folder.path("a/b"));
    file("a/b/one.png");
    int changes = 0;
    QObject::connect(&model, &FolderModel::folderChanged, [&] { ++changes; });
    model.setFolder(path("a/../a/b/"));
    EXPECT_EQ(model.folder(), path("a/b"));
    EXPECT_EQ(model.parentFolder(), path("a"));
    EXPECT_EQ(model.title(), "b");
    model.setFolder(model.parentFolder()); // before the first has been listed: its answer is dropped
    ASSERT_TRUE(listed());
    EXPECT_EQ(names(), Names{"b/"});
    EXPECT_EQ(changes, 2);

    file("a/two.png");
    model.refresh();
    ASSERT_TRUE(listed());
    EXPECT_EQ(names(), (Names{"b/", "two.png"}));
    model.setFolder("");
    EXPECT_EQ(model.folder(), path("a"));
    model.setFolder("/");
    EXPECT_EQ(model.parentFolder(), "");
    EXPECT_EQ(model.title(), "/");
}

TEST_F(Folders, SayWhyTheyCannotBeShown)
{
    file("file.png");
    file("one.png", 1);
    for (const char* const name : {"missing", "file.png"}) {
        model.setFolder(path(name));
        ASSERT_TRUE(listed());
        EXPECT_EQ(model.rowCount(), 0);
        EXPECT_NE(model.error(), "") << name;
    }
    model.setFolder(path());
    ASSERT_TRUE(listed());
    EXPECT_EQ(model.error(), "");
    EXPECT_EQ(names(), (Names{"file.png", "one.png"}));
}

TEST_F(Folders, ShowTheFirstOfVeryMany)
{
    for (int i = 0; i < 12; ++i)
        file("img" + std::to_string(i) + ".jpg", i);
    fs::create_directory(folder.path("folder"));
    model.setLimit(4);
    model.setFolder(path());
    ASSERT_TRUE(listed());
    EXPECT_EQ(names(), (Names{"folder/", "img0.jpg", "img1.jpg", "img2.jpg"}));
    EXPECT_EQ(model.note(), "Only the first 4 of 13 are shown.");

    auto passing = std::make_unique<FolderModel>();
    passing->setFolder(path());
    passing.reset();
    runFor(30); // its answer has nobody to go to
}

TEST_F(Folders, BeginWhereThePicturesAre)
{
    const Variable home("HOME", folder.path());
    const Variable configuration("XDG_CONFIG_HOME", folder.path("none"));
    Variable samples("LAMINA_SAMPLES", test::samples().c_str());
    const auto start = [this] {
        model.openStart();
        EXPECT_TRUE(listed());
        Names places;
        for (const QVariant& place : model.places())
            places.push_back(place.toMap()["name"].toString().toStdString());
        return std::pair(model.title().toStdString(), places);
    };
    EXPECT_EQ(start(), std::pair(std::string("Samples"), Names({"Pictures", "Home", "Samples"})));
    EXPECT_EQ(model.folder(), QString::fromStdString(test::samples()));
    EXPECT_GT(model.rowCount(), 0);
    samples.set(folder.path("none"));
    EXPECT_EQ(start(), std::pair(std::string("Home"), Names({"Pictures", "Home"}))) << "no folder for pictures";
    samples.set(test::samples().c_str());
    fs::create_directory(folder.path("Pictures"));
    EXPECT_EQ(start().first, "Samples");
    file("Pictures/mine.png");
    EXPECT_EQ(start(), std::pair(std::string("Pictures"), Names({"Pictures", "Home"})));
    EXPECT_EQ(names(), Names{"mine.png"});
}

} // namespace
} // namespace lamina::test
