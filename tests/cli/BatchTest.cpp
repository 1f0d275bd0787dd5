#include "CommandLines.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <gmock/gmock.h>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class Batch : public CommandLines {
protected:
    using Files = std::map<std::string, std::string>;

    /// Names and contents of what lies in a folder.
    Files filesIn(const std::string& name) const
    {
        Files files;
        std::error_code none;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path(name), none))
            files[entry.path().filename().string()] = readFile(entry.path().string());
        return files;
    }
    static CommandOptions onCores(int count)
    {
        CommandOptions options;
        options.cores = count;
        return options;
    }
    /// The flat picture under other names.
    void copies(const std::vector<std::string>& names) const
    {
        for (const std::string& name : names)
            std::filesystem::copy_file(folder.path("flat.png"), folder.path(name));
    }
};

TEST_F(Batch, AFileThatFailsStopsNoOtherAndTheRestIsAsOneByOne)
{
    const std::string sample = LAMINA_SAMPLES "/dunes.jpg";
    writeFile(folder.path("cut.jpg"), readFile(sample).substr(0, 60'000));
    std::filesystem::create_directory(folder.path("folder.png"));
    std::filesystem::create_directories(folder.path("taken/flat.jpg"));
    const std::vector<std::pair<std::string, std::string>> cases{
        {"op scaleToFitSize=100x100 sharpenWithBias ", sample},
        {"op cropToSize=3x2 maskWithImage=small.png ", "small.png"},
        {"filter GPUImageLowPassFilter ", "small.png"}, // would remember the picture before
        {"filter GPUImageAddBlendFilter -i flat.png ", "small.png"},
    };
    for (const auto& [work, file] : cases) {
        SCOPED_TRACE(work);
        // The one of many is the first input.
        const std::size_t further = std::min(work.find("-i"), work.size());
        for (const std::string& input : {file, std::string("flat.png")}) {
            const std::string output = std::filesystem::path(input).stem().string() + ".png";
            const std::string line =
                work.substr(0, further) + "-i '" + input + "' " + work.substr(further) + "-o one/" + output;
            ASSERT_EQ(shell("mkdir -p one && lamina " + line).errors, "");
        }
        for (const int cores : {1, 64}) {
            const CommandResult run = shell("lamina " + work + "--each cut.jpg '" + file +
                                                "' no.png folder.png flat.png -o 'many/{name}.png'",
                                            onCores(cores));
            EXPECT_EQ(run.exitCode, 1);
            EXPECT_EQ(std::ranges::count(run.errors, '\n'), 4) << run.errors;
            EXPECT_THAT(run.errors, HasSubstr("lamina: cut.jpg: the file ends too early\n"));
            EXPECT_THAT(run.errors, HasSubstr("lamina: no.png: no such file\n"));
            EXPECT_THAT(run.errors, HasSubstr("lamina: folder.png: is a folder\n"));
            EXPECT_THAT(run.errors, EndsWith("lamina: 3 of 5 files failed\n"));
            EXPECT_EQ(filesIn("many"), filesIn("one"));
        }
    }
    // Nor does one that can't be written.
    EXPECT_EQ(shell("lamina op invert --each flat.png small.png -o 'taken/{name}.jpg'").errors,
              "lamina: taken/flat.jpg: is a folder\nlamina: 1 of 2 files failed\n");
    EXPECT_EQ(filesIn("taken").count("small.jpg"), 1U);
    CommandOptions small;
    small.fileSizeLimit = 100'000;
    const CommandResult full = shell("lamina op invert --each flat.png small.png -o 'full/{name}.bmp'", small);
    EXPECT_EQ(full.exitCode, 1);
    EXPECT_EQ(filesIn("full").count("small.bmp"), 1U);
    EXPECT_EQ(filesIn("full").size(), 1U);
}

TEST_F(Batch, ListsNameAnyFile)
{
    const std::string strange = "-o new\nline {name} \xc3\xbc\xff.a.png";
    copies({"1.png", " 2.png", "-3.png", strange});
    struct Case {
        std::string list;
        std::string options;
        std::vector<std::string> made;
    };
    const std::vector<Case> cases{
        {"1.png\n\n 2.png\r\n-3.png", "", {"1- 2.png", "2--3.png", "0-1.png"}},
        {"1.png\n", "--each ./-3.png small.png", {"0--3.png", "1-small.png", "2-1.png"}},
        {std::string("1.png\0", 6) + strange + '\0', "", {"0-1.png", "1--o new\nline {name} \xc3\xbc\xff.a.png"}},
        {"", "", {}},
    };
    for (Case expected : cases) {
        SCOPED_TRACE(expected.list);
        for (std::string& name : expected.made)
            name[0] = static_cast<char>(name[0] + 1); // places count from 1
        std::ranges::sort(expected.made);
        writeFile(folder.path("list"), expected.list);
        const std::string socket = "/usr/bin/python3 -c 'import socket, subprocess, sys; a, b = socket.socketpair(); "
                                   "a.sendall(open(\"list\", \"rb\").read()); a.close(); "
                                   "sys.exit(subprocess.call(sys.argv[1:], stdin=b))' ";
        const std::pair<std::string, std::string> roads[] = {
            {"", "--from list"},        {"", "--from - < list"},
            {"", "--from <(cat list)"}, {"(echo no.png; cat list) > behind; { read -r; ", "--from -; } < behind"},
            {socket, "--from -"},
        };
        for (const auto& [before, from] : roads) {
            const std::string line = "cd '" + folder.path() + "' && " + before + "'" LAMINA_COMMAND "' op invert " +
                                     expected.options + " -o 'out/{number}-{name}.{extension}' " + from;
            const CommandResult run = runCommand("/bin/bash", {"-c", line});
            EXPECT_EQ(run.exitCode, 0);
            EXPECT_EQ(run.errors, "");
            std::vector<std::string> made;
            for (const auto& [name, content] : filesIn("out"))
                made.push_back(name);
            EXPECT_EQ(made, expected.made) << from;
            std::filesystem::remove_all(folder.path("out"));
        }
    }
}

TEST_F(Batch, ShardsMakeTheWholeTogether)
{
    copies({"a.png", "b.png", "c.png"});
    const std::string line = "lamina op brightenWithValue=9 --each a.png b.png c.png flat.png small.png ";
    EXPECT_EQ(shell(line + "-o 'whole/{number}.jpg'").exitCode, 0);
    std::size_t before = 0;
    for (const std::string shard : {"1/3", "2/3", "3/3", "7/7"}) {
        const CommandResult run = shell(line + "-o 'parts/{number}.jpg' --shard " + shard);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_EQ(filesIn("parts").size(), before += shard == "3/3" ? 1 : shard == "7/7" ? 0 : 2) << shard;
    }
    EXPECT_EQ(filesIn("parts"), filesIn("whole"));
    EXPECT_EQ(shell("lamina op invert --each a.png b.png a.jpg -o 'c/{name}.png' --shard 2/3").exitCode, 2);
}

TEST_F(Batch, PicturesMayReplaceThemselves)
{
    copies({"a.png", "b.png"});
    EXPECT_EQ(shell("lamina op invert -i flat.png -o inverted.png").exitCode, 0);
    EXPECT_EQ(shell("lamina op invert --each a.png ./b.png -o '{name}.png'").errors, "");
    for (const std::string name : {"a.png", "b.png"})
        EXPECT_EQ(readFile(folder.path(name)), readFile(folder.path("inverted.png"))) << name;
}

TEST_F(Batch, InterruptedItLeavesWholeFiles)
{
    constexpr std::size_t kFiles = 1000;
    std::string list;
    for (std::size_t i = 0; i < kFiles; ++i)
        list += LAMINA_SAMPLES "/dunes.jpg\n";
    writeFile(folder.path("list"), list);
    const CommandResult run =
        shell("true; '" LAMINA_COMMAND "' op scaleToFitSize=200x200 --from list -o 'out/{number}.jpg' & "
              "for i in $(seq 500); do [ \"$(ls out 2>/dev/null | wc -l)\" -lt 6 ] || break; sleep 0.02; done; kill "
              "-TERM $!; wait $!");
    EXPECT_EQ(run.exitCode, 130);
    EXPECT_EQ(run.errors, "");
    const Files files = filesIn("out");
    EXPECT_GE(files.size(), 6U);
    EXPECT_LT(files.size(), kFiles);
    for (const auto& [name, content] : files)
        EXPECT_EQ(content, files.begin()->second) << name;
}

TEST_F(Batch, PicturesThatReplaceThemselvesDoNotWaitForTheOthers)
{
    const CommandResult run =
        shell("mkdir all; for i in $(seq 200); do cp '" LAMINA_SAMPLES "/dunes.jpg' all/$i.jpg; done; "
              "'" LAMINA_COMMAND "' op scaleToFitSize=200x200 --each all/*.jpg -o 'all/{name}.jpg' & "
              "for i in $(seq 1000); do find all -size -100k -name '[1-9]*' | grep -q . && break; sleep 0.01; done; "
              "kill -TERM $!; wait $!",
              onCores(2));
    EXPECT_EQ(run.exitCode, 130);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(filesIn("all").size(), 200U);
}

TEST_F(Batch, ReportsAreALineEach)
{
    std::filesystem::copy_file(folder.path("small.png"), folder.path("\xc2\x9b.png"));
    const CommandResult run =
        shell("lamina filter GPUImageAverageColor --each flat.png no.png small.png \xc2\x9b.png --report");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.output, HasSubstr(R"({"file":"\u009b.png",)")) << "nothing that a terminal would follow";
    EXPECT_THAT(run.output, testing::StartsWith(R"({"file":"flat.png","report":{"averageColor":{"red":0.392)"));
    EXPECT_THAT(run.output, HasSubstr("}}}\n{\"file\":\"small.png\","));
}

/// Mean difference of two pictures' components.
double difference(const CGImage& a, const CGImage& b)
{
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            for (std::size_t c = 0; c < 3; ++c)
                sum += std::abs(pixelAt(a, x, y)[c] - pixelAt(b, x, y)[c]);
        }
    }
    return sum / (3.0 * a.width() * a.height());
}

// A step before the scaling has the file read whole.
TEST_F(Batch, AReducedReadingLooksLikeTheWholeOne)
{
    const std::string upright = LAMINA_SAMPLES "/dunes.jpg";
    const std::string turned = LAMINA_SAMPLES "/aurora-lake.jpg";
    const std::vector<std::pair<std::string, std::string>> cases{
        {upright, "scaleToFitSize=256x256"},
        {turned, "scaleToFitSize=256x256"},
        {turned, "scaleToFillSize=70x333.3"},
        {upright, "scaleToCoverSize=111x111"},
        {upright, "scaleToSize=301x301,2 cropToSize=100x100,8"},
        {upright, "scaleByFactor=0.1234"},
        {turned, "scaleToFitSize=99x50 --picture-scale 3"},
        {"big.png", "scaleToFitSize=63x63"},
    };
    EXPECT_EQ(shell("lamina op scaleToFitSize=700x700 -i '" + upright + "' -o big.png").exitCode, 0);
    for (const auto& [input, line] : cases) {
        const CGImage whole = picture("lamina op autoEnhance " + line + " -i '" + input + "' -o out.png");
        const CGImage reduced = picture("lamina op " + line + " -i '" + input + "' -o out.png");
        ASSERT_EQ(reduced.size(), whole.size()) << line;
        EXPECT_LT(difference(reduced, whole), 1.5) << line;
    }
}

} // namespace
} // namespace lamina::test
