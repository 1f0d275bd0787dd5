// What files say of themselves, against what comes when they are decoded, and against blocks made here.

#include "DecodedPictures.h"
#include "TestPictures.h"

#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/codecs/PictureFacts_p.h"
#include "platform/image/codecs/PictureFormats.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

/// A text, or a number when there is no text.
struct Field {
    int tag;
    std::string text;
    std::uint32_t number = 0;
};
using Fields = std::vector<Field>;

/// Puts an EXIF block together: the first directory, the one of the camera, and the second with its small picture.
class Block {
public:
    explicit Block(std::endian order)
        : m_order(order)
    {
    }

    Bytes make(Fields first, Fields camera, const Bytes& thumbnail = {})
    {
        m_bytes = {'E', 'x', 'i', 'f', 0, 0};
        append(m_bytes, std::vector<std::uint8_t>(2, m_order == std::endian::little ? 'I' : 'M'));
        put(42, 2);
        put(8, 4);
        Fields second;
        if (!thumbnail.empty()) {
            second = {{0x0201, "", kThumbnail}, {0x0202, "", static_cast<std::uint32_t>(thumbnail.size())}};
        }
        first.push_back({0x8769, "", kCamera});
        putDirectory(first, 8, second.empty() ? 0 : kSecond);
        putDirectory(camera, kCamera, 0);
        putDirectory(second, kSecond, 0);
        m_bytes.resize(6 + kThumbnail);
        append(m_bytes, thumbnail);
        return m_bytes;
    }

private:
    static constexpr std::uint32_t kCamera = 1000;
    static constexpr std::uint32_t kSecond = 2000;
    static constexpr std::uint32_t kThumbnail = 3000;

    void put(std::uint32_t value, int size)
    {
        for (int i = 0; i < size; ++i)
            m_bytes.push_back(value >> 8 * (m_order == std::endian::little ? i : size - 1 - i) & 0xFF);
    }

    void putDirectory(const Fields& fields, std::uint32_t place, std::uint32_t next)
    {
        m_bytes.resize(6 + place);
        put(static_cast<std::uint32_t>(fields.size()), 2);
        std::uint32_t texts = place + 6 + 12 * static_cast<std::uint32_t>(fields.size());
        for (const Field& field : fields) {
            put(static_cast<std::uint32_t>(field.tag), 2);
            put(field.text.empty() ? 4 : 2, 2);
            const auto length = static_cast<std::uint32_t>(field.text.size() + 1);
            put(field.text.empty() ? 1 : length, 4);
            put(field.text.empty() ? field.number : texts, 4);
            texts += field.text.empty() ? 0 : length;
        }
        put(next, 4);
        for (const Field& field : fields) {
            if (!field.text.empty())
                append(m_bytes,
                       std::vector<std::uint8_t>(field.text.c_str(), field.text.c_str() + field.text.size() + 1));
        }
    }

    std::endian m_order;
    Bytes m_bytes;
};

/// A JPEG file with more segments in front.
Bytes withSegments(const Bytes& jpeg, const std::vector<std::pair<int, Bytes>>& segments)
{
    Bytes whole{0xFF, 0xD8};
    for (const auto& [marker, content] : segments) {
        const std::size_t length = content.size() + 2;
        append(whole, Bytes{0xFF, static_cast<std::uint8_t>(marker), static_cast<std::uint8_t>(length >> 8),
                            static_cast<std::uint8_t>(length)});
        append(whole, content);
    }
    append(whole, std::span(jpeg).subspan(2));
    return whole;
}

Bytes jpegOf(const CGImage& image)
{
    return *encodePicture(image, *pictureFormatForFileName("a.jpg"), "picture");
}

Result<PictureFacts> factsOf(std::span<const std::uint8_t> bytes)
{
    return readPictureFacts(*memorySource(bytes));
}

/// The date of a photo with these fields; -1 when it has none.
double dateOf(const Fields& first, const Fields& camera, std::endian order = std::endian::little)
{
    const Bytes file = withSegments(dataFile("jpeg-420.jpg"), {{0xE1, Block(order).make(first, camera)}});
    const Result<PictureFacts> facts = factsOf(file);
    EXPECT_TRUE(facts);
    return facts ? facts->date.value_or(-1) : -1;
}

/// Seconds since 1970 UTC, by another road than the code's.
double utc(const char* text)
{
    std::tm time{};
    EXPECT_NE(::strptime(text, "%Y-%m-%d %H:%M:%S", &time), nullptr);
    return static_cast<double>(::timegm(&time));
}

TEST(PictureFacts, AgreeWithTheDecodedPicture)
{
    std::size_t pictures = 0;
    for (const auto& entry : fs::directory_iterator(testData("pictures"))) {
        SCOPED_TRACE(entry.path().filename().string());
        const Result<UIImage> picture = loadPicture(entry.path());
        if (!picture)
            continue;
        ++pictures;
        const Result<PictureFacts> facts = readPictureFacts(entry.path().string());
        ASSERT_TRUE(facts) << facts.error().message();
        EXPECT_EQ((IntSize{facts->width, facts->height}), picture->pixelSize());
        EXPECT_EQ(facts->orientation, picture->imageOrientation());
    }
    EXPECT_GT(pictures, 80u);
}

TEST(PictureFacts, AreReadOutOfHEIC)
{
    const Bytes file = dataFile("heic-thumbnail.heic");
    const Result<PictureFacts> facts = factsOf(file);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->date, utc("2026-02-03 03:05:06"));
    const Result<UIImage> small = loadEmbeddedThumbnail(*memorySource(file));
    ASSERT_TRUE(small) << small.error().cause;
    EXPECT_EQ(small->cgImage().size(), (IntSize{32, 24}));
    EXPECT_TRUE(pixelMatches(small->cgImage(), 8, 6, {220, 40, 30, 255}, 8));
    EXPECT_EQ(loadEmbeddedThumbnail(*memorySource(dataFile("heic-444.heic"))).error().cause,
              "the file holds no thumbnail");
}

TEST(PictureFacts, TellTheBestDateWithItsOffset)
{
    constexpr int kOriginal = 0x9003, kDigitized = 0x9004, kChanged = 0x0132;
    constexpr int kChangedOffset = 0x9010, kOriginalOffset = 0x9011, kDigitizedOffset = 0x9012;
    const std::string day = "2026:02:03 ";
    struct Case {
        Fields first;
        Fields camera;
        double date;
    };
    const std::vector<Case> cases{
        {{{kChanged, day + "03:00:00"}},
         {{kOriginal, day + "01:00:00"},
          {kDigitized, day + "02:00:00"},
          {kOriginalOffset, "+05:30"},
          {kChangedOffset, "+01:00"}},
         utc("2026-02-02 19:30:00")},
        {{{kChanged, day + "03:00:00"}},
         {{kOriginal, "0000:00:00 00:00:00"}, {kDigitized, day + "02:00:00"}, {kDigitizedOffset, "-08:00"}},
         utc("2026-02-03 10:00:00")},
        {{{kChanged, day + "03:00:00"}}, {{kChangedOffset, "-00:30"}}, utc("2026-02-03 03:30:00")},
        {{}, {{kOriginal, "1969:12:31 23:59:59"}, {kOriginalOffset, "+00:00"}}, -1}, // a date as well as none
        {{}, {{kOriginal, "1931-01-02T03:04:05"}, {kOriginalOffset, "+00:00"}}, utc("1931-01-02 03:04:05")},
        {{}, {{kOriginal, "2024:02:29 23:59:60"}, {kOriginalOffset, "+00:00"}}, utc("2024-03-01 00:00:00")},
        {{}, {{kOriginal, day + "12:00:00"}, {kOriginalOffset, "+99:00"}}, utc("2026-02-03 11:00:00")}, // local time
        {{}, {{kOriginal, "2026:07:03 12:00:00"}}, utc("2026-07-03 10:00:00")},                         // in summer
    };
    ::setenv("TZ", "Europe/Berlin", 1);
    for (const Case& one : cases) {
        for (const std::endian order : {std::endian::little, std::endian::big})
            EXPECT_EQ(dateOf(one.first, one.camera, order), one.date) << &one - cases.data();
    }
    for (const char* nonsense :
         {"    :  :     :  :  ", "2026:13:01 00:00:00", "2026:02:29 00:00:00", "1899:01:01 00:00:00",
          "2026:02:03 24:00:00", "2026:02:03 1", "2026:02:03", "+026:02:03 01:00:00"})
        EXPECT_EQ(dateOf({{kChanged, nonsense}}, {{kChangedOffset, "+00:00"}}), -1) << nonsense;
    ::unsetenv("TZ");
}

TEST(PictureFacts, StandBehindLongSegmentsAndBlocks)
{
    const Bytes exif = Block(std::endian::big).make({{0x0112, "", 6}}, {});
    const Bytes longSegment(65000, 0x55);
    std::vector<std::pair<int, Bytes>> segments(12, {0xE2, longSegment});
    segments.push_back({0xE1, exif});
    segments.insert(segments.end(), 12, {0xE1, longSegment});
    const Bytes file = withSegments(dataFile("jpeg-420.jpg"), segments);
    const Result<PictureFacts> facts = factsOf(file);
    ASSERT_TRUE(facts) << facts.error().cause;
    EXPECT_EQ(facts->orientation, UIImageOrientation::Right);
    EXPECT_EQ((IntSize{facts->width, facts->height}), (IntSize{48, 64}));
}

/// A thumbnail of red left, blue right, with black bars of `bar` rows above and below.
CGImage barred(int width, int height, int bar, std::uint8_t ground = 0)
{
    return makePicture(width, height, [=](int x, int y) {
        if (y < bar || y >= height - bar)
            return Rgba{ground, ground, ground, 255};
        return x < width / 2 ? Rgba{220, 20, 20, 255} : Rgba{20, 20, 220, 255};
    });
}

TEST(EmbeddedThumbnail, HasThePicturesShapeAndOrientation)
{
    struct Case {
        IntSize picture;
        CGImage thumbnail;
        IntSize stored; ///< that comes; empty: none
    };
    const Case cases[]{
        {{64, 48}, barred(160, 120, 0), {160, 120}}, {{400, 299}, barred(160, 120, 0), {160, 120}},
        {{60, 40}, barred(160, 120, 6), {160, 106}}, // 3 : 2 between black bars
        {{60, 40}, barred(160, 120, 6, 90), {}},     // not black: cut afterwards
        {{48, 64}, barred(160, 120, 0), {}},         // turned afterwards
        {{500, 1}, barred(160, 120, 59), {160, 2}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(&one - cases);
        const Bytes exif = Block(std::endian::little).make({{0x0112, "", 8}}, {}, jpegOf(one.thumbnail));
        const Bytes plain = jpegOf(solidPicture(one.picture.width, one.picture.height, {9, 9, 9, 255}));
        const Result<UIImage> small = loadEmbeddedThumbnail(*memorySource(withSegments(plain, {{0xE1, exif}})));
        ASSERT_EQ(small.ok(), !one.stored.isEmpty());
        if (!small)
            continue;
        EXPECT_EQ(small->cgImage().size(), one.stored);
        EXPECT_EQ(small->imageOrientation(), UIImageOrientation::Left);
        EXPECT_TRUE(pixelMatches(small->cgImage(), 20, one.stored.height / 2, {220, 20, 20, 255}, 12));
    }
    EXPECT_EQ(loadEmbeddedThumbnail(*memorySource(dataFile("exif-6.jpg"))).error().cause,
              "the file holds no thumbnail");
}

} // namespace
} // namespace lamina::test
