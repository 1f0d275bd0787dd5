// What all decoders must do, on the pictures of tests/data and the colours that its table tells.

#include "DecodedPictures.h"
#include "TestPictures.h"

#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/codecs/PictureFacts_p.h"
#include "platform/image/codecs/PictureFormats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstddef>
#include <sstream>
#include <string_view>

namespace lamina::test {
namespace {

struct Flag {
    std::string file;
    std::array<Rgba, 4> quarters; ///< top left, top right, bottom left, bottom right
    int tolerance = 0;
};

constexpr std::array<Rgba, 4> kFlag{{{220, 40, 30, 255}, {30, 170, 60, 255}, {40, 60, 200, 255}, {240, 220, 40, 255}}};

/// Up to four colours as "(220,40,30) (30,170,60,192) ..."; the flag's when there is none.
std::array<Rgba, 4> parseQuarters(const std::string& text)
{
    std::array<Rgba, 4> quarters = kFlag;
    std::size_t at = text.find('(');
    for (std::size_t i = 0; i < 4 && at != std::string::npos; ++i, at = text.find('(', at + 1)) {
        std::istringstream numbers(text.substr(at + 1, text.find(')', at) - at - 1));
        quarters[i] = {0, 0, 0, 255};
        std::string number;
        for (std::size_t c = 0; c < 4 && std::getline(numbers, number, ','); ++c)
            quarters[i][c] = static_cast<std::uint8_t>(std::stoi(number));
    }
    return quarters;
}

/// The rows "| file | holds | colours | tolerance |" of picture files.
std::vector<Flag> readTable()
{
    std::vector<Flag> flags;
    std::istringstream table(readFile(testData("README.md")));
    for (std::string line; std::getline(table, line);) {
        std::istringstream row(line);
        std::array<std::string, 5> cells;
        for (std::string& cell : cells)
            std::getline(row, cell, '|');
        const std::string name = cells[1].substr(0, cells[1].find_last_not_of(' ') + 1);
        if (pictureFormatForFileName(name))
            flags.push_back({name.substr(1), parseQuarters(cells[3]), std::stoi(cells[4])});
    }
    return flags;
}

/// Compares the quarters of the upright picture, whatever its size.
void expectQuarters(const UIImage& image, const Flag& flag, int tolerance)
{
    const CGImage upright = image.upright().cgImage();
    constexpr std::array<CGPoint, 4> places{{{28, 20}, {48, 20}, {28, 36}, {48, 36}}}; // of 64 x 48
    for (std::size_t i = 0; i < 4; ++i) {
        SCOPED_TRACE(i);
        const int x = static_cast<int>(places[i].x / 64 * upright.width());
        const int y = static_cast<int>(places[i].y / 48 * upright.height());
        if (flag.quarters[i][3] == 0)
            EXPECT_EQ(pixelAt(upright, x, y)[3], 0);
        else
            EXPECT_TRUE(pixelMatches(upright, x, y, flag.quarters[i], tolerance));
    }
}

class FlagPictures : public testing::TestWithParam<Flag> {
protected:
    const Bytes m_bytes = dataFile(GetParam().file);
};

TEST_P(FlagPictures, ShowTheirColors)
{
    const UIImage image = shown(m_bytes);
    ASSERT_TRUE(image) << causeOf(m_bytes);
    ASSERT_EQ(image.cgImage().width() + image.cgImage().height(), 64 + 48);
    EXPECT_EQ(image.scale(), 1);
    expectQuarters(image, GetParam(), GetParam().tolerance);
    for (const PictureFormat& format : pictureFormats())
        EXPECT_EQ(format.decoder->recognizes(m_bytes), &format == pictureFormatForFileName(GetParam().file));
}

TEST_P(FlagPictures, KeepTheShortSideWhenReduced)
{
    const UIImage image = shown(m_bytes, {.shortSide = 20});
    EXPECT_GE(std::min(image.cgImage().width(), image.cgImage().height()), 20);
    expectQuarters(image, GetParam(), GetParam().tolerance + 1);
}

TEST_P(FlagPictures, AreNeverShownInPart)
{
    const CGImage whole = shown(m_bytes).cgImage();
    for (std::size_t i = 0; i < 24; ++i) {
        const std::size_t length = 20 + (m_bytes.size() - 21) * i / 23;
        SCOPED_TRACE(length);
        const std::span cut = std::span(m_bytes).first(length);
        // Only end marks and further frames may be missing.
        if (const UIImage image = shown(cut)) {
            EXPECT_GT(length, m_bytes.size() / 2);
            EXPECT_TRUE(imagesMatch(image.cgImage(), whole));
        } else {
            EXPECT_EQ(causeOf(cut), cause::kTruncated);
        }
    }
    Bytes longer = m_bytes;
    longer.resize(longer.size() + 333, 0xA5);
    EXPECT_TRUE(imagesMatch(shown(longer).cgImage(), whole));
}

TEST_P(FlagPictures, StopAndRefuseWhenTold)
{
    const std::atomic<bool> cancelled = true;
    EXPECT_EQ(causeOf(m_bytes, {.cancelled = &cancelled}), cause::kCancelled);
    EXPECT_TRUE(causeOf(m_bytes, {.memoryLimit = 4 * 64 * 48 - 1}).starts_with(cause::kTooLarge));
}

INSTANTIATE_TEST_SUITE_P(Files, FlagPictures, testing::ValuesIn(readTable()), [](const auto& tested) {
    std::string name = tested.param.file;
    std::ranges::replace_if(
        name, [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
    return name;
});

TEST(PictureRecognition, LeavesOtherFilesAlone)
{
    for (const char* text :
         {"BM is how this note begins, and it goes on for a while", "II*II*II*II* a line of stars", "GIF89 is a format",
          "RIFF1234WAVEfmt a sound file it is", "....ftypqt  ....qt  a movie", "MM", "B", ""}) {
        const std::string_view view(text);
        const Bytes bytes(view.begin(), view.end());
        EXPECT_EQ(causeOf(bytes), bytes.empty() ? "the file is empty" : "not a picture") << text;
    }
}

TEST(Decoders, ReadThinPicturesAsTheyWereWritten)
{
    for (const IntSize size : {IntSize{1, 200'000}, IntSize{200'000, 1}}) {
        const CGImage picture = noisePicture(size.width, size.height, CGImageAlphaInfo::NoneSkipLast);
        for (const std::string_view type : {kUTTypePNG, kUTTypeBMP, kUTTypeTIFF}) {
            SCOPED_TRACE(std::string(type) + ", " + std::to_string(size.width) + " wide");
            const Bytes file = *encodePicture(picture, *pictureFormatForUTI(type), "picture");
            EXPECT_TRUE(imagesMatch(shown(file).cgImage(), picture));
            const Result<PictureFacts> facts = readPictureFacts(*memorySource(file));
            ASSERT_TRUE(facts);
            EXPECT_EQ((IntSize{facts->width, facts->height}), size);
        }
    }
}

} // namespace
} // namespace lamina::test
