#include "CommandLines.h"
#include "NoThreads.h"
#include "platform/base/CGGeometry.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <sstream>
#include <unistd.h>
#include <vector>

namespace lamina::test {
namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::Each;
using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// The command where memory, threads, descriptors or a place for what it says are missing, with libraries' lines hidden
/// as people see it.
class HardTimes : public CommandLines {
protected:
    CommandResult hard(const std::string& before, const std::string& line) const
    {
        return shell("export LAMINA_LIBRARY_LINES=hide HOME=\"$PWD\" XDG_CACHE_HOME=\"$PWD/cache\"; " + before +
                     " lamina " + line);
    }

    /// How a run ends, and the picture that it has made, which gets a signal while it waits for its input.
    CommandResult signalled(const std::string& before, const std::string& signal) const
    {
        return shell("rm -f in out.png; mkfifo in; " + before +
                     " '" LAMINA_COMMAND "' op invert -i - -o out.png <in & " + "exec 3>in; sleep 0.5; kill -" +
                     signal + " $!; cat small.png 2>/dev/null >&3; exec 3>&-; wait $!; echo $?; " +
                     "ls | grep out.png");
    }

    const std::vector<std::string> m_work = {
        "op invert -i flat.png -o out.png",
        "blend flat.png small.png -o out.png",
        "collage flat.png small.png -o out.png",
        "export jpg -i flat.png -o out.jpg",
        "export pdf-standard -i flat.png -o out.pdf",
        "export tiff -i flat.png -o out.tiff",
        "photos list",
        "filter GPUImageSepiaFilter -i flat.png -o out.png",
        "export mp4 -i flat.png -o out.mp4",
    };
};

TEST_F(HardTimes, WithoutMemoryACommandFailsInALine)
{
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "shadow memory alone takes more";
#endif
    for (const int kilobytes : {100'000, 220'000, 330'000, 500'000}) {
        for (const std::string& line : m_work) {
            SCOPED_TRACE(std::to_string(kilobytes) + ": " + line);
            const CommandResult run = hard("ulimit -c 0; ulimit -v " + std::to_string(kilobytes) + ";", line);
            if (run.errors.find("error while loading shared libraries") != std::string::npos)
                continue; // the system's own: not even started
            EXPECT_THAT(run.exitCode, AnyOf(0, 1, 3, 4)) << run.errors;
            EXPECT_EQ(run.errors.empty(), run.exitCode == 0) << run.errors;
            EXPECT_THAT(linesOf(run.errors), Each(StartsWith("lamina: ")));
        }
    }
}

TEST_F(HardTimes, WithoutThreadsTheWorkIsDoneAllTheSame)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root may become a user who has no thread left";
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    const std::string nobody = std::to_string(kNobody);
    const std::string alone = "lamina() { timeout 60 setpriv --clear-groups --regid " + nobody + " --reuid " + nobody +
                              " prlimit --nproc=0 '" LAMINA_COMMAND "' \"$@\"; };";
    for (const std::string& line : m_work) {
        SCOPED_TRACE(line);
        const bool mayFail = line.starts_with("filter") || line.ends_with("mp4");
        const CommandResult run = hard(alone, line);
        EXPECT_THAT(run.exitCode, AnyOf(0, mayFail ? 1 : 0, mayFail ? 4 : 0));
        EXPECT_THAT(linesOf(run.errors), AllOf(SizeIs(run.exitCode == 0 ? 0 : 1), Each(StartsWith("lamina: "))));
    }
    EXPECT_THAT(hard(alone, "photos import small.png").output, HasSubstr("/Pictures/Lamina/Lamina "));
    EXPECT_EQ(linesOf(hard(alone, "photos list").output).size(), 1u);
    EXPECT_EQ(hard(alone, "photos watch").errors, "lamina: photos watch: the system has no more threads to give\n");
}

TEST_F(HardTimes, WhatCannotBeSaidIsAFailure)
{
    for (const std::string line :
         {"--help", "--version", "op --help", "filter -h", "filters --help", "blend --help", "collage --help",
          "export --help", "movie --help", "capture --help", "stickers --help", "photos --help", "photos list --help",
          "filters --json", "op --json", "stickers", "op invert -i small.png -o -"}) {
        SCOPED_TRACE(line);
        for (const std::string nowhere : {" >/dev/full", " >&-"}) {
            const CommandResult run = shell("lamina " + line + nowhere);
            EXPECT_EQ(run.exitCode, 4);
            EXPECT_THAT(linesOf(run.errors), AllOf(SizeIs(1), Each(StartsWith("lamina: standard output: "))));
        }
    }
    // A picture takes none of the three places.
    EXPECT_EQ(shell("lamina op invert -i small.png -o out.png <&- >&- 2>&-").exitCode, 0);
    EXPECT_EQ(readPictureFile(folder.path("out.png")).size(), (IntSize{3, 2}));
    const CommandResult closed = shell("lamina op invert -i - -o out.png <&-");
    EXPECT_EQ(closed.exitCode, 3);
    EXPECT_THAT(closed.errors, StartsWith("lamina: standard input: "));
}

TEST_F(HardTimes, SignalsThatWereIgnoredStayIgnored)
{
    for (const std::string signal : {"HUP", "TERM", "INT"})
        EXPECT_EQ(signalled("trap '' " + signal + ";", signal).output, "0\nout.png\n") << signal;
    EXPECT_EQ(signalled("", "HUP").output, "130\n");
}

TEST_F(HardTimes, NamesAndTextsAreShownWithoutWhatATerminalObeys)
{
    const std::string bad = "a\x1b[2J\xC2\x9B\x9Bz\u202E\u2028.png";
    const std::string shown = "a?[2J??z??.png";
    const struct {
        std::string line;
        std::string message;
    } cases[] = {
        {"op invert -i '" + bad + "' -o out.png", "lamina: " + shown + ": no such file\n"},
        {"'" + bad + "'", "lamina: " + shown + ": is neither"},
        {"op '" + bad + "=1' -i small.png -o out.png", "lamina: " + shown + "=1: there is no operation"},
        {"--" + bad, "lamina: The following argument was not expected: --" + shown},
        {"blend small.png small.png -o out.png --zoom '" + bad + "'", "not '" + shown + "'"},
        {"filter GPUImageSepiaFilter --set '" + bad + "=1' -i small.png", "has no property '" + shown + "'"},
        {"stickers --" + std::string(100'000, '\x9b'), "lamina: "},
    };
    for (const auto& [line, message] : cases) {
        const CommandResult run = shell("lamina " + line);
        EXPECT_NE(run.exitCode, 0);
        EXPECT_THAT(run.errors, HasSubstr(message));
        EXPECT_LT(run.errors.size(), 2000u);
    }
    std::filesystem::create_directories(folder.path("Pictures/" + bad));
    std::filesystem::copy(folder.path("small.png"), folder.path("Pictures/" + bad + "/" + bad));
    EXPECT_THAT(hard("", "photos albums").output, HasSubstr(shown));
    const std::string listed = hard("", "photos list").output;
    EXPECT_THAT(listed, AllOf(StartsWith("\"$(printf '/"),
                              HasSubstr("a\\033[2J\\302\\233\\233z\\342\\200\\256\\342\\200\\250.png')\"\n")));
    EXPECT_EQ(shell("[ -f " + listed.substr(0, listed.size() - 1) + " ] && echo there").output, "there\n");
}

TEST_F(HardTimes, LinesOfLibrariesAreHidden)
{
    const std::string drawing = "filter GPUImageSepiaFilter -i small.png -o out.png";
    const std::string talkative = "EGL_LOG_LEVEL=debug; export EGL_LOG_LEVEL;";
    EXPECT_EQ(hard(talkative, drawing).errors, "");
    EXPECT_THAT(hard(talkative + "LAMINA_LIBRARY_LINES=show;", drawing).errors, HasSubstr("EGL"));
    EXPECT_EQ(
        hard("HOME=/proc XDG_CACHE_HOME=/proc;", "filters --sheet out.png -i small.png --family detection").errors, "");
    EXPECT_THAT(hard(talkative, "op invert -i no.png -o out.png").errors, StartsWith("lamina: no.png: "));
    // One that gives up, with what it says of it.
    const CommandResult aborted = signalled("LAMINA_LIBRARY_LINES=hide; export LAMINA_LIBRARY_LINES;", "ABRT");
    EXPECT_EQ(aborted.output, "1\n");
    EXPECT_THAT(linesOf(aborted.errors), AllOf(SizeIs(1), Each(StartsWith("lamina: something inside gave up"))));
    // Another program has standard error back.
    std::filesystem::copy_file(LAMINA_COMMAND, folder.path("lamina"));
    writeFile(folder.path("lamina-app"), "#!/bin/sh\necho window >&2\n");
    std::filesystem::permissions(folder.path("lamina-app"), std::filesystem::perms::owner_all);
    EXPECT_EQ(shell("LAMINA_LIBRARY_LINES=hide ./lamina").errors, "window\n");
}

} // namespace
} // namespace lamina::test
