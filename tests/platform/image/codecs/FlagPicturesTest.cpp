// What all decoders must do, on the pictures of tests/data and the colours that its table tells.

#include "DecodedPictures.h"
#include "TestPaths.h"
#include "platform/image/codecs/PictureFormats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace lamina::test {
namespace {

struct Flag {
    std::string file;
    std::array<Pixel, 4> quarters; ///< top left, top right, bottom left, bottom right
    int tolerance = 0;
};

constexpr std::array<Pixel, 4> kFlag{{{220, 40, 30, 255}, {30, 170, 60, 255}, {40, 60, 200, 255}, {240, 220, 40, 255}}};

/// Up to four colours as "(220,40,30) (30,170,60,192) ..."; the flag's when there is none.
std::array<Pixel, 4> parseQuarters(const std::string& text)
{
    std::array<Pixel, 4> quarters = kFlag;
    std::size_t at = text.find('(');
    for (std::size_t i = 0; i < 4 && at != std::string::npos; ++i, at = text.find('(', at + 1)) {
        std::istringstream numbers(text.substr(at + 1, text.find(')', at) - at - 1));
        quarters[i] = {0, 0, 0, 255};
        std::string number;
        for (std::size_t c = 0; c < 4 && std::getline(numbers, number, ','); ++c)
            quarters[i][c] = std::stoi(number);
    }
    return quarters;
}

/// The rows "| file | holds | colours | tolerance |" of the formats that have such files.
std::vector<Flag> readTable()
{
    std::vector<Flag> flags;
    std::ifstream table(testData("README.md"));
    for (std::string line; std::getline(table, line);) {
        std::istringstream row(line);
        std::array<std::string, 5> cells;
        for (std::string& cell : cells)
            std::getline(row, cell, '|');
        const std::string name = cells[1].substr(0, cells[1].find_last_not_of(' ') + 1);
        for (const char* prefix :
             {" jpeg-", " exif-", " png-", " webp-", " heic-", " avif-", " tiff-", " gif-", " bmp-"}) {
            if (name.starts_with(prefix))
                flags.push_back({name.substr(1), parseQuarters(cells[3]), std::stoi(cells[4])});
        }
    }
    return flags;
}

const PictureDecoder& decoderOf(const Bytes& bytes)
{
    const std::span head = std::span(bytes).first(std::min<std::size_t>(64, bytes.size()));
    static const PictureDecoder none{nullptr, nullptr};
    const PictureDecoder* found = &none;
    for (const PictureFormat& format : pictureFormats()) {
        if (format.decoder && format.decoder->recognizes(head)) {
            EXPECT_EQ(found, &none) << "also " << format.name;
            found = format.decoder;
        }
    }
    return *found;
}

/// Compares the quarters of the upright picture, whatever its size.
void expectQuarters(const UIImage& image, const Flag& flag, int tolerance)
{
    const CGImage shown = image.upright().cgImage();
    ASSERT_TRUE(shown);
    // Of 64 x 48, or of 48 x 64 where the file is shown lying.
    const bool lying = shown.height() > shown.width();
    constexpr std::array<std::array<int, 2>, 4> places{{{28, 20}, {48, 20}, {28, 36}, {48, 36}}};
    for (std::size_t i = 0; i < 4; ++i) {
        const int x = places[i][0] * shown.width() / 64;
        const int y = places[i][1] * shown.height() / 48;
        const Pixel got = pixelAt(shown, lying ? (i % 2 == 0 ? shown.width() / 4 : shown.width() * 3 / 4) : x,
                                  lying ? (i < 2 ? shown.height() / 4 : shown.height() * 3 / 4) : y);
        EXPECT_EQ(got[3] == 0, flag.quarters[i][3] == 0) << "quarter " << i;
        for (std::size_t c = flag.quarters[i][3] == 0 ? 3 : 0; c < 4; ++c)
            EXPECT_LE(std::abs(got[c] - flag.quarters[i][c]), tolerance) << "quarter " << i << " component " << c;
    }
}

class FlagPictures : public testing::TestWithParam<Flag> {
protected:
    const Bytes m_bytes = dataFile(GetParam().file);
    const PictureDecoder& m_format = decoderOf(m_bytes);
};

TEST_P(FlagPictures, ShowTheirColors)
{
    ASSERT_NE(m_format.decode, nullptr);
    const Result<UIImage> decoded = decode(m_format, m_bytes);
    EXPECT_EQ(causeOf(decoded), "");
    const UIImage image = pictureOf(decoded);
    ASSERT_EQ(image.cgImage().width() + image.cgImage().height(), 64 + 48);
    EXPECT_EQ(image.scale(), 1);
    expectQuarters(image, GetParam(), GetParam().tolerance);
}

TEST_P(FlagPictures, KeepTheShortSideWhenReduced)
{
    const UIImage image = pictureOf(decode(m_format, m_bytes, {.shortSide = 20}));
    EXPECT_GE(std::min(image.cgImage().width(), image.cgImage().height()), 20);
    expectQuarters(image, GetParam(), GetParam().tolerance + 1);
}

TEST_P(FlagPictures, AreNeverShownInPart)
{
    const UIImage whole = pictureOf(decode(m_format, m_bytes));
    ASSERT_TRUE(whole);
    for (std::size_t i = 0; i < 24; ++i) {
        const std::size_t length = 20 + (m_bytes.size() - 21) * i / 23;
        SCOPED_TRACE(length);
        const Bytes cut(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(length));
        const Result<UIImage> decoded = decode(m_format, cut);
        // Only end marks and further frames may be missing.
        if (const UIImage image = pictureOf(decoded)) {
            EXPECT_GT(length, m_bytes.size() / 2);
            EXPECT_TRUE(std::ranges::equal(image.cgImage().bytes(), whole.cgImage().bytes()));
        } else {
            EXPECT_EQ(causeOf(decoded), cause::kTruncated);
        }
    }
    Bytes longer = m_bytes;
    longer.resize(longer.size() + 333, 0xA5);
    EXPECT_TRUE(std::ranges::equal(pictureOf(decode(m_format, longer)).cgImage().bytes(), whole.cgImage().bytes()));
}

TEST_P(FlagPictures, StopAndRefuseWhenTold)
{
    const std::atomic<bool> cancelled = true;
    EXPECT_EQ(causeOf(decode(m_format, m_bytes, {.cancelled = &cancelled})), cause::kCancelled);
    EXPECT_TRUE(causeOf(decode(m_format, m_bytes, {.memoryLimit = 4 * 64 * 48 - 1})).starts_with(cause::kTooLarge));
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
        EXPECT_EQ(pictureFormatForHead(bytes), nullptr) << text;
    }
}

} // namespace
} // namespace lamina::test
