#include "platform/host/system/FolderModel.h"

#include "CommandRunner.h"
#include "Environment.h"
#include "EventPump.h"
#include "TestPaths.h"

#include <QAbstractItemModelTester>
#include <QLocale>

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <utility>

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
    /// What is shown below the way up, once it has been listed: folders end in "/", and a failure or a note stands
    /// alone.
    Names shown()
    {
        EXPECT_TRUE(runUntil([this] { return !model.isLoading(); }));
        Names names;
        const std::size_t first = model.parentFolder().isEmpty() ? 0 : 1;
        for (std::size_t row = 0; row < model.rows().size(); ++row) {
            const FolderEntry& entry = model.rows()[row];
            EXPECT_EQ(entry.isParent, row < first);
            if (row >= first)
                names.push_back(entry.name + (entry.isFolder ? "/" : ""));
        }
        for (const QString& text : {model.note(), model.error()})
            if (!text.isEmpty())
                names.push_back(text.toStdString());
        return names;
    }
    Names shown(const QString& there)
    {
        model.setFolder(there);
        return shown();
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
    EXPECT_EQ(model.rowCount(), 1) << "nothing waits for the disk, and the way up is there";
    EXPECT_EQ(model.rows().front().path, model.parentFolder().toStdString());
    EXPECT_EQ(shown(), (Names{"A/", "album.jpg/", "b/", "folder 9/", "folder 10/", "link.png", "zebra.webp",
                              "Ämter.heic", "img9.JPEG", "img10.jpg"}));
    EXPECT_EQ(model.rows()[6].path, folder.path("link.png"));
    model.setOrder(FolderModel::ByName);
    EXPECT_EQ(shown(), (Names{"A/", "album.jpg/", "b/", "folder 9/", "folder 10/", "Ämter.heic", "img9.JPEG",
                              "img10.jpg", "link.png", "zebra.webp"}));
}

TEST_F(Folders, GoUpAndDown)
{
    fs::create_directories(folder.path("a/b"));
    int changes = 0;
    QObject::connect(&model, &FolderModel::folderChanged, [&] { ++changes; });
    model.setFolder(path("a/../a/b/"));
    EXPECT_EQ(model.folder(), path("a/b"));
    EXPECT_EQ(model.title(), "b");
    // Before the first has been listed: its answer is dropped.
    EXPECT_EQ(shown(model.parentFolder()), Names{"b/"});
    EXPECT_EQ(model.folder(), path("a"));
    EXPECT_EQ(changes, 2);
    file("a/two.png");
    model.refresh();
    EXPECT_EQ(shown(), (Names{"b/", "two.png"}));
    model.setFolder("");
    EXPECT_EQ(model.folder(), path("a"));
    model.setFolder("/");
    EXPECT_EQ(model.parentFolder(), "");
    EXPECT_EQ(model.title(), "/");
}

TEST_F(Folders, SayWhyTheyCannotBeShownAndThatMoreIsThere)
{
    for (int i = 0; i < 12; ++i)
        file("img" + std::to_string(i) + ".jpg", i);
    fs::create_directory(folder.path("folder"));
    model.setLimit(4);
    EXPECT_EQ(shown(path("missing")), Names{"The folder does not exist."});
    EXPECT_EQ(shown(path()),
              (Names{"folder/", "img0.jpg", "img1.jpg", "img2.jpg", "Only the first 4 of 13 are shown."}));
    EXPECT_EQ(shown(path("img0.jpg")), Names{"This is not a folder."});

    auto passing = std::make_unique<FolderModel>();
    passing->setFolder(path());
    passing.reset();
    runFor(30); // its answer has nobody to go to
}

TEST_F(Folders, FindANameWhileItIsTyped)
{
    for (const char* const name : {"beach.jpg", "Bell.jpg", "berg see.jpg", "up.jpg"})
        file(name);
    model.setOrder(FolderModel::ByName);
    shown(path()); // the way up, then these four
    model.setTypingMemory(10'000);
    EXPECT_EQ(model.rowForTyping(QStringLiteral(" "), 0), -1) << "it presses the row";
    EXPECT_EQ(model.rowForTyping(QStringLiteral("u"), 0), 4) << "the way up has no name of its own";
    // The same letter again goes on to the next such name, at once or after a pause.
    EXPECT_EQ(model.rowForTyping(QStringLiteral("U"), 4), 4);
    model.setTypingMemory(0);
    model.rowForTyping(QStringLiteral("x"), 0);
    int row = 0;
    for (const int next : {1, 2, 3, 1}) {
        runFor(1);
        row = model.rowForTyping(QStringLiteral("b"), row);
        EXPECT_EQ(row, next);
    }
    model.setTypingMemory(10'000);
    row = 3;
    for (const auto& [letter, next] : {std::pair{"b", 1}, {"E", 1}, {"r", 3}, {"g", 3}, {" ", 3}, {"x", -1}}) {
        runFor(1);
        row = model.rowForTyping(QString::fromLatin1(letter), row);
        EXPECT_EQ(row, next) << letter;
    }
}

TEST_F(Folders, BeginWhereThePicturesAre)
{
    const Variable home("HOME", folder.path());
    const Variable configuration("XDG_CONFIG_HOME", folder.path("none"));
    Variable samplesVariable("LAMINA_SAMPLES", samples());
    /// The folder's title, then all places.
    const auto start = [this] {
        model.openStart();
        shown();
        Names names{model.title().toStdString()};
        for (const QVariant& place : model.places())
            names.push_back(place.toMap()["name"].toString().toStdString());
        return names;
    };
    EXPECT_EQ(start(), (Names{"Samples", "Pictures", "Home", "Samples"}));
    EXPECT_EQ(model.folder(), QString::fromStdString(samples()));
    samplesVariable.set(folder.path("none"));
    EXPECT_EQ(start(), (Names{"Home", "Pictures", "Home"})) << "no folder for pictures";
    fs::create_directories(folder.path("Pictures/Camera"));
    file("Pictures/.thumb.jpg");
    EXPECT_EQ(start(), (Names{"Pictures", "Pictures", "Home"}));
    samplesVariable.set(samples());
    EXPECT_EQ(start().front(), "Samples");
    fs::create_directories(folder.path("Pictures/Lamina"));
    file("Pictures/Lamina/made.png");
    EXPECT_EQ(start().front(), "Samples") << "what was saved from here is not the user's own";
    file("Pictures/Camera/mine.png");
    EXPECT_EQ(start(), (Names{"Pictures", "Pictures", "Home", "Samples"})) << "the samples stay at hand";
    EXPECT_EQ(shown(), (Names{"Camera/", "Lamina/"}));
}

} // namespace
} // namespace lamina::test
