#include "DecodedPictures.h"
#include "MadeJPEG.h"
#include "TestPaths.h"
#include "TestPictures.h"

#include "platform/image/codecs/CGImageSource.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/codecs/PictureFormats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

/// Gives a source a file in pieces of a size, and calls `look` after each.
template <class Look>
void feed(CGImageSource& source, std::span<const std::uint8_t> file, std::size_t piece, Look look)
{
    for (std::size_t size = 0; size < file.size();) {
        size = std::min(size + piece, file.size());
        source.updateData(file.first(size), size == file.size());
        look();
    }
}

/// A file that arrives in pieces. Pictures that were handed out on the way are kept, each with the bytes that
/// it had then.
struct Arrival {
    Arrival(std::span<const std::uint8_t> file, std::size_t piece)
        : source(CGImageSource::makeIncremental())
    {
        feed(*source, file, piece, [&] {
            if (const CGImage image = source->imageAtIndex(); image && source->propertiesAtIndex())
                take(image);
        });
    }
    void take(const CGImage& image)
    {
        if (pictures.empty() || !image.sharesBytesWith(last()) || image.height() > last().height())
            pictures.emplace_back(image, bytesOf(image));
    }
    CGImage last() const { return pictures.empty() ? CGImage() : pictures.back().first; }

    std::unique_ptr<CGImageSource> source;
    std::vector<std::pair<CGImage, Bytes>> pictures;
};

CGImage topOf(const CGImage& picture, int rows)
{
    return picture.subImage({0, 0, picture.width(), rows});
}

double meanError(const CGImage& x, const CGImage& y)
{
    double sum = 0;
    for (std::size_t i = 0; i < x.bytes().size(); ++i)
        sum += std::abs(x.bytes()[i] - y.bytes()[i]);
    return sum / static_cast<double>(x.bytes().size());
}

TEST(CGImageSource, EndsWithThePictureThatDecodingTheFileGives)
{
    std::vector<std::filesystem::path> paths;
    for (const auto& folder : {testData("pictures"), samples()})
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            paths.push_back(entry.path());
    ASSERT_GT(paths.size(), 100u);
    for (const auto& path : paths) {
        SCOPED_TRACE(path.string());
        const std::string content = readFile(path.string());
        const Bytes file(content.begin(), content.end());
        const CGImage whole = shown(file).cgImage();
        ASSERT_TRUE(whole);
        for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, std::size_t{4096}, file.size()}) {
            SCOPED_TRACE(piece);
            const auto source = CGImageSource::makeIncremental();
            feed(*source, file, piece, [] {});
            ASSERT_TRUE(source->propertiesAtIndex());
            EXPECT_EQ(source->propertiesAtIndex()->pixelWidth, whole.width());
            EXPECT_EQ(source->propertiesAtIndex()->pixelHeight, whole.height());
            EXPECT_TRUE(imagesMatch(source->imageAtIndex(), whole));
        }
    }
}

TEST(CGImageSource, TellsTheOrientationAsItIsStored)
{
    for (int tag = 1; tag <= 9; ++tag) {
        const Bytes file = dataFile("exif-" + std::to_string(tag) + ".jpg");
        const auto source = CGImageSource::makeIncremental();
        for (std::size_t size = 1; size < file.size() && !source->propertiesAtIndex(); ++size)
            source->updateData(std::span(file).first(size), false);
        ASSERT_TRUE(source->propertiesAtIndex());
        EXPECT_EQ(source->propertiesAtIndex()->orientation, tag);
        EXPECT_FALSE(source->imageAtIndex()) << "properties come first";
    }
    EXPECT_EQ(Arrival(dataFile("png-exif-6.png"), 50).source->propertiesAtIndex()->orientation, 6);
    EXPECT_EQ(Arrival(dataFile("webp-exif-6.webp"), 50).source->propertiesAtIndex()->orientation, 6);
    EXPECT_EQ(Arrival(dataFile("png-rgb8.png"), 50).source->propertiesAtIndex()->orientation, std::nullopt);
}

/// Files of which pictures come before their end, and whether all rows come early and become finer.
struct Kind {
    const char* name;
    Bytes file;
    bool isRefined;
};

std::vector<Kind> kinds()
{
    const CGImage photo = readPictureFile(samples("dunes.jpg")).subImage({0, 0, 480, 320});
    const auto value = [&](int x, int y, int c) { return photo.row(y)[4 * x + c % 3]; };
    const JPEGRecipe rows{.width = 480, .height = 320, .value = value};
    JPEGRecipe scans = rows;
    scans.progressive = true;
    return {{"rows of JPEG", makeJPEG(rows), false},
            {"rows of PNG", *encodePicture(photo, *pictureFormatForUTI(kUTTypePNG), "rows"), false},
            {"scans", makeJPEG(scans), true},
            {"interlaced", dataFile("png-interlaced.png"), true}};
}

TEST(CGImageSource, ComesFromTheTopOrFromCoarseToFine)
{
    for (const Kind& kind : kinds()) {
        SCOPED_TRACE(kind.name);
        const Arrival arrival(kind.file, std::max<std::size_t>(kind.file.size() / 200, 1));
        const CGImage end = shown(kind.file).cgImage();
        ASSERT_GT(arrival.pictures.size(), 3u);
        double error = 255;
        int height = 0;
        for (const auto& [image, bytes] : arrival.pictures) {
            ASSERT_EQ(bytesOf(image), bytes) << "changed after it was handed out";
            ASSERT_EQ(image.width(), end.width());
            ASSERT_GE(image.height(), height);
            height = image.height();
            if (!kind.isRefined) {
                EXPECT_TRUE(imagesMatch(image, topOf(end, height)));
            } else if (height == end.height()) {
                EXPECT_LE(meanError(image, end), error * 1.02);
                error = meanError(image, end);
            }
        }
        EXPECT_TRUE(imagesMatch(arrival.last(), end));
        const auto early =
            std::ranges::find(arrival.pictures, end.height(), [](const auto& p) { return p.first.height(); });
        EXPECT_EQ(arrival.pictures.end() - early > 4, kind.isRefined);
    }
}

// The file is cut, changed or given up amid its pixels.
TEST(CGImageSource, KeepsWhatCameBeforeTheDamage)
{
    for (const Kind& kind : kinds()) {
        SCOPED_TRACE(kind.name);
        const std::size_t middle = kind.file.size() * 3 / 4;
        const CGImage end = shown(kind.file).cgImage();
        const Arrival cut(std::span(kind.file).first(middle), 16);
        Bytes spoiled = kind.file;
        for (std::size_t i = 0; i < 16; ++i)
            spoiled[middle + i] = i % 2 == 0 ? 0xFF : 0xC5;
        const Arrival damaged(spoiled, 16);
        std::atomic<bool> cancelled = false;
        const auto source = CGImageSource::makeIncremental({.cancelled = &cancelled});
        source->updateData(std::span(kind.file).first(middle), false);
        const CGImage before = source->imageAtIndex();
        cancelled = true;
        source->updateData(kind.file, true);
        EXPECT_TRUE(imagesMatch(source->imageAtIndex(), before));
        for (const CGImage& kept : {cut.last(), damaged.last(), before}) {
            ASSERT_TRUE(kept);
            EXPECT_TRUE(kept.height() < end.height() || kind.isRefined);
            EXPECT_TRUE(kind.isRefined || imagesMatch(topOf(kept, kept.height() / 2), topOf(end, kept.height() / 2)));
        }
    }
}

// Its other size and components are none of the rows' that are made of the scans before it.
TEST(CGImageSource, MakesNoRowsByASecondHeaderBetweenScans)
{
    constexpr std::uint8_t kOtherFrame[] = {0xFF, 0xC0, 0, 8, 8, 0x7F, 0xFF, 0x7F, 0xFF, 0};
    Bytes file = makeJPEG({.width = 480, .height = 320, .progressive = true});
    file.insert(lastScan(file), std::begin(kOtherFrame), std::end(kOtherFrame));
    const Arrival arrival(file, 1);
    EXPECT_EQ(arrival.last().size(), (IntSize{480, 320}));
    std::string warning;
    EXPECT_EQ(shown(file, {.warning = &warning}).cgImage().size(), (IntSize{480, 320}));
    EXPECT_EQ(warning, cause::kShownAsFarAsItGoes);
}

// It is the caller's fault, and harmless.
TEST(CGImageSource, BearsDataThatShrinkAndChange)
{
    for (const Kind& kind : kinds()) {
        const auto source = CGImageSource::makeIncremental();
        source->updateData(std::span(kind.file).first(kind.file.size() / 2), false);
        source->updateData(Bytes(kind.file.size() / 4, 0xFF), false);
        source->updateData(Bytes(kind.file.size(), 0xFF), true);
        source->updateData({}, true);
        EXPECT_TRUE(source->imageAtIndex()) << kind.name;
    }
    EXPECT_FALSE(Arrival(Bytes(100, 'x'), 7).last());
    EXPECT_FALSE(Arrival(Bytes{0xFF, 0xD8, 0xFF}, 1).last());
}

// Each would be looked at from its beginning with every byte that comes, or with every scan.
TEST(CGImageSource, IsNotHeldUpByTricklesNorByEndlessScans)
{
    const Bytes flat =
        makeJPEG({.width = 2000, .height = 2000, .progressive = true, .value = [](int, int, int) { return 90; }});
    const Bytes scan(lastScan(flat), flat.end() - 2);
    Bytes scans(flat.begin(), flat.end() - 2);
    for (int i = 0; i < 20000; ++i)
        append(scans, scan);
    Bytes tables{0xFF, 0xD8, 0xFF, 0xDB, 0xFF, 0xFF};
    for (int table = 0; table < 1000; ++table) {
        tables.push_back(0);
        tables.insert(tables.end(), 64, 1);
    }
    Bytes fill{0xFF, 0xD8};
    fill.resize(100'000, 0xFF);
    Bytes chunk = dataFile("png-rgb8.png");
    chunk.resize(33);
    append(chunk, {{0, 0x03, 0, 0, 't', 'E', 'X', 't'}});
    chunk.resize(150'000);
    for (const auto& [file, piece] :
         {std::pair<const Bytes&, std::size_t>{scans, 100}, {tables, 1}, {fill, 1}, {chunk, 1}}) {
        const std::clock_t start = std::clock();
        const auto source = CGImageSource::makeIncremental();
        feed(*source, file, piece, [&] { (void)source->imageAtIndex(); });
        EXPECT_LT(std::clock() - start, 3 * CLOCKS_PER_SEC); // of the processor's time; far less without sanitizers
        EXPECT_EQ(static_cast<bool>(source->imageAtIndex()), &file == &scans);
    }
}

} // namespace
} // namespace lamina::test
