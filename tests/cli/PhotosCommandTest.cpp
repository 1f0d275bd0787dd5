// The photo library from the shell: real folders, read by other programs.
#include "CommandLines.h"
#include "TestPaths.h"

#include <cstddef>
#include <filesystem>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

/// A home of its own. Each picture's name tells the hour of its date, on 3 November 2001.
class PhotosCommand : public CommandLines {
protected:
    PhotosCommand()
    {
        shellHome = "export HOME=\"$PWD\" XDG_CACHE_HOME=\"$PWD/cache\" XDG_CONFIG_HOME=\"$PWD/config\" "
                    "XDG_STATE_HOME=\"$PWD/state\" TZ=UTC; mkdir -p config; echo 'XDG_PICTURES_DIR=\"$HOME/Photos\"' "
                    ">config/user-dirs.dirs; ";
        for (const char* name : {"09.png", "Trip/10.png", "Trip/Day's \"1\" & 2/11.png", "DCIM/Camera/12.png",
                                 "Trip/1\n3%'.png", "Trip/14 \xff.png"})
            put(name);
    }
    void put(const std::string& name) const
    {
        const fs::path path = fs::path(folder.path("Photos")) / name;
        fs::create_directories(path.parent_path());
        fs::copy_file(folder.path("small.png"), path);
        std::string digits = path.filename().string();
        std::erase_if(digits, [](char c) { return c < '0' || c > '9'; });
        ASSERT_EQ(runCommand("/usr/bin/touch", {"-d", "2001-11-03T" + digits + ":00:07Z", path}).exitCode, 0);
    }
    CommandResult photos(const std::string& line) const { return home("lamina photos " + line); }
    /// A line of shell whose home this is, which its output has as "~".
    CommandResult home(const std::string& line) const
    {
        CommandResult run = shell(shellHome + line);
        for (std::size_t at = 0; (at = run.output.find(folder.path(), at)) != std::string::npos;)
            run.output.replace(at, folder.path().size(), "~");
        return run;
    }
    nlohmann::json json(const std::string& line) const
    {
        return nlohmann::json::parse(photos(line + " --json").output, nullptr, false);
    }

    std::string shellHome;
};

TEST_F(PhotosCommand, ListsAlbumsAsThePickerShowsThem)
{
    EXPECT_EQ(photos("albums").output, "6  smart  All Photos\n"
                                       "3  user   Trip           ~/Photos/Trip\n"
                                       "1  user   Day's \"1\" & 2  ~/Photos/Trip/Day's \"1\" & 2\n"
                                       "1  smart  Camera         ~/Photos/DCIM/Camera\n");
    EXPECT_EQ(json("albums")[0],
              nlohmann::json::parse(R"({"title": "All Photos", "count": 6, "kind": "smart", "path": null})"));
    EXPECT_EQ(json("albums")[1],
              nlohmann::json::parse(R"({"title": "Trip", "count": 3, "kind": "user", "path": "~/Photos/Trip"})"));
    fs::create_directories(folder.path("card/Trip"));
    fs::copy(folder.path("small.png"), folder.path("card/Trip/x.png"));
    fs::create_directory(folder.path("empty"));
    EXPECT_EQ(photos("albums --photos card --photos empty --quiet").output,
              "7  smart  All Photos\n"
              "3  user   Trip           ~/Photos/Trip\n"
              "1  user   Day's \"1\" & 2  ~/Photos/Trip/Day's \"1\" & 2\n"
              "1  user   Trip           ~/card/Trip\n"
              "1  smart  Camera         ~/Photos/DCIM/Camera\n");
    EXPECT_EQ(photos("list --photos card Trip").errors, "lamina: Trip: several albums have this title: name the folder "
                                                        "instead\n");
    EXPECT_EQ(photos("list --photos card card/Trip/").output, "~/card/Trip/x.png\n");
    EXPECT_EQ(photos("list").output.find("x.png"), std::string::npos); // the folder belongs to one run alone
    fs::create_directories(folder.path("state/lamina"));
    writeFile(folder.path("state/lamina/photos.ini"), "[General]\nfolders=" + folder.path("card"));
    EXPECT_THAT(photos("list --photos empty").output, HasSubstr("~/card/Trip/x.png\n")); // this one to all
}

TEST_F(PhotosCommand, ListsPathsThatNoNameBreaks)
{
    EXPECT_EQ(photos("list").output, "~/Photos/Trip/14 \xff.png\n\"$(printf '~/Photos/Trip/1\\0123%%\\047.png')\"\n"
                                     "~/Photos/DCIM/Camera/12.png\n~/Photos/Trip/Day's \"1\" & 2/11.png\n"
                                     "~/Photos/Trip/10.png\n~/Photos/09.png\n");
    EXPECT_EQ(photos("list Trip -0 | xargs -0 stat -c %Y | wc -l").output, "3\n");
    EXPECT_EQ(photos("list Trip -0 | sha256sum").output,
              shell("printf '%s\\0' \"$PWD/Photos/Trip/14 \xff.png\" \"$PWD/Photos/Trip/1\n3%'.png\" "
                    "\"$PWD/Photos/Trip/10.png\" | sha256sum")
                  .output);
    // On a terminal every line is a word of the shell.
    const std::string terminal = "list >paths; script -qec \"'" LAMINA_COMMAND
                                 "' photos list\" /dev/null | tr -d '\\r' | while read -r path; do sh -c \"stat -c "
                                 "%Y $path\"; done | sort | uniq | wc -l";
    EXPECT_EQ(photos(terminal).output, "6\n");

    const nlohmann::json list = json("list Trip");
    ASSERT_EQ(list.size(), 3u);
    EXPECT_THAT(list[2]["identifier"].get<std::string>(), MatchesRegex("[0-9a-f]{16}-[0-9]+"));
    EXPECT_EQ(list[2]["path"], "~/Photos/Trip/10.png");
    EXPECT_EQ(list[2]["width"], 3);
    EXPECT_EQ(list[2]["height"], 2);
    EXPECT_EQ(list[2]["date"], "2001-11-03T10:00:07Z");
    EXPECT_EQ(list[0]["path"], "~/Photos/Trip/14 \uFFFD.png");
    EXPECT_THAT(list[0]["url"].get<std::string>(), testing::EndsWith("/Photos/Trip/14%20%FF.png"));
    EXPECT_FALSE(list[1].contains("url"));
    fs::rename(folder.path("Photos/Trip/10.png"), folder.path("Photos/10b.png"));
    EXPECT_EQ(json("list")[4]["identifier"], list[2]["identifier"]);
}

TEST_F(PhotosCommand, RefusesWhatIsNotThere)
{
    const std::vector<std::pair<std::string, std::string>> lines{
        {"list Tripp", "3 lamina: Tripp: there is no such album; did you mean Trip?"},
        {"list Photos/nowhere", "3 lamina: Photos/nowhere: there is no such album; did you mean "},
        {"albums --photos nowhere", "3 lamina: nowhere: no such folder"},
        {"albums --photos small.png", "3 lamina: small.png: no such folder"},
        {"", "2 lamina: A subcommand is required"},
        {"import", "2 lamina: FILE is required"},
        {"list --json -0", "2 lamina: "},
    };
    for (const auto& [line, message] : lines) {
        const CommandResult run = photos(line);
        EXPECT_THAT(std::to_string(run.exitCode) + ' ' + run.errors, StartsWith(message));
        EXPECT_EQ(run.output, "");
    }
    fs::remove_all(folder.path("Photos"));
    EXPECT_EQ(photos("albums").output, "");
    EXPECT_EQ(json("list").size(), 0u);
}

TEST_F(PhotosCommand, ImportsWhatIsAPictureAndGoesOn)
{
    writeFile(folder.path("text.jpg"), "no picture");
    fs::copy_file(folder.path("flat.png"), folder.path("flat"));
    fs::copy_file(samples("dunes.jpg"), folder.path("upright.jpg"));
    const CommandResult run = photos("import none.png small.png text.jpg flat Photos upright.jpg");
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.output,
                MatchesRegex("~/Photos/Lamina/Lamina [0-9. -]+\\.png\n~/Photos/Lamina/Lamina [0-9. -]+\\.jpg\n"));
    EXPECT_THAT(run.errors, MatchesRegex("lamina: none.png: [^\n]*\nlamina: text.jpg: [^\n]*\nlamina: flat: [^\n]*\n"
                                         "lamina: Photos: [^\n]*\n"));
    const std::string copy = photos("list Lamina | head -n 1").output;
    EXPECT_EQ(readFile(folder.path(copy.substr(2, copy.find('\n') - 2))), readFile(folder.path("upright.jpg")));
    const nlohmann::json imported = json("import flat.png");
    ASSERT_EQ(imported.size(), 1u);
    EXPECT_EQ(imported[0]["width"], 400);
    EXPECT_THAT(json("list Lamina"), testing::Contains(imported[0]));
    // The library's folder can't be made.
    fs::remove_all(folder.path("Photos"));
    writeFile(folder.path("Photos"), "");
    EXPECT_EQ(photos("import small.png").exitCode, 4);
}

TEST_F(PhotosCommand, WatchesUntilItIsStopped)
{
    // The shell acts when the watch has begun, and each time waits for the line that tells of it.
    const CommandResult run = home(
        "'" LAMINA_COMMAND "' photos watch --json >>lines & watch=$!; "
        "await() { for i in $(seq 100); do [ $(wc -l <lines) -ge $1 ] && return; sleep 0.05; done; }; "
        "cp small.png Photos/probe.png; for i in $(seq 100); do [ -s lines ] && break; sleep 0.1; touch "
        "Photos/probe.png; done; rm Photos/probe.png; sleep 0.5; : >lines; "
        "cp small.png Photos/a.png; await 1; cp flat.png Photos/a.png; await 2; mv Photos/a.png \"Photos/b c.png\"; "
        "await 4; rm \"Photos/b c.png\"; await 5; kill -TERM $watch; wait $watch; echo $?; cat lines");
    std::string told;
    for (std::size_t at = 0; (at = run.output.find("\"event\":\"", at)) != std::string::npos; at += 9)
        told += run.output.substr(at + 9, run.output.find('"', at + 9) - at - 9) + ' ';
    EXPECT_EQ(told, "added changed removed added removed ") << run.output;
    EXPECT_THAT(run.output, HasSubstr("~/Photos/b c.png"));
    EXPECT_THAT(run.output, StartsWith("130\n"));
    // It ends with its reader, also while nothing happens.
    EXPECT_EQ(photos("watch | true; echo over").output, "over\n");
}

} // namespace
} // namespace lamina::test
