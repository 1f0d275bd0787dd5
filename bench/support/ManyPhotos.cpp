#include "support/ManyPhotos.h"

#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/drawing/Resampling.h"
#include "support/BenchPhotos.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace lamina::bench {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kDate = "2020:01:01 00:00:00";

void put(std::string& bytes, std::uint32_t value, int size)
{
    for (int i = 0; i < size; ++i)
        bytes += static_cast<char>(value >> 8 * i & 0xFF);
}

void putField(std::string& bytes, std::uint32_t tag, std::uint32_t type, std::uint32_t count, std::uint32_t value)
{
    put(bytes, tag, 2);
    put(bytes, type, 2);
    put(bytes, count, 4);
    put(bytes, value, 4);
}

/// An EXIF segment with the date of the original and the bytes that cameras add, so that the frame's header stands
/// beyond the first 4 KB.
std::string exifSegment()
{
    constexpr std::uint32_t kMakersNote = 4000;
    constexpr std::uint32_t kCamera = 26;
    constexpr std::uint32_t kTexts = kCamera + 6 + 2 * 12;
    std::string block("Exif\0\0II*\0", 10);
    put(block, 8, 4);
    put(block, 1, 2);
    putField(block, 0x8769, 4, 1, kCamera);
    put(block, 0, 4);
    put(block, 2, 2);
    putField(block, 0x9003, 2, kDate.size() + 1, kTexts);
    putField(block, 0x927C, 7, kMakersNote, kTexts + 20);
    put(block, 0, 4);
    block.append(kDate).append(1 + kMakersNote, '\0');
    std::string segment("\xFF\xE1");
    const std::size_t length = block.size() + 2;
    segment += static_cast<char>(length >> 8);
    segment += static_cast<char>(length & 0xFF);
    return segment + block;
}

std::string smallPhoto()
{
    const Result<UIImage> sample = loadPicture(LAMINA_SAMPLES "/meadow.jpg");
    if (!sample)
        std::abort();
    const auto jpeg =
        encodePicture(resampled(sample->cgImage(), {96, 72}), *pictureFormatForFileName("small.jpg"), "small.jpg");
    if (!jpeg)
        std::abort();
    const std::string bytes(jpeg->begin(), jpeg->end());
    return bytes.substr(0, 2) + exifSegment() + bytes.substr(2);
}

/// The date of a photo by its number; no two are alike, and neighbours in a folder lie apart in time.
std::string dateOf(int number)
{
    constexpr std::time_t kFirst = 1'577'836'800;
    const std::time_t time = kFirst + std::time_t{number} * 7919 % kManyPhotos * 2003;
    std::array<char, 32> text{};
    std::tm parts{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y:%m:%d %H:%M:%S", ::gmtime_r(&time, &parts));
    return {text.data(), length};
}

std::string numbered(const char* format, int number)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), format, number);
    return text.data();
}

void makePhotos(const fs::path& folder)
{
    std::string photo = smallPhoto();
    const std::size_t date = photo.find(kDate);
    for (int number = 0; number < kManyPhotos; ++number) {
        const fs::path album = folder / numbered("Album %02d", number % kManyFolders);
        if (number < kManyFolders)
            fs::create_directories(album);
        photo.replace(date, kDate.size(), dateOf(number));
        std::ofstream(album / numbered("IMG_%05d.jpg", number), std::ios::binary) << photo;
    }
}

} // namespace

std::string folderOfManyPhotos()
{
    const fs::path folder = fs::temp_directory_path() / "lamina-bench-50000";
    if (!fs::exists(folder)) {
        const fs::path unfinished = folder.string() + ".new";
        fs::remove_all(unfinished);
        makePhotos(unfinished);
        fs::rename(unfinished, folder);
    }
    return folder;
}

std::string homeFolder()
{
    return (fs::temp_directory_path() / "lamina-bench-home").string();
}

void moveIn()
{
    const std::string home = homeFolder();
    fs::remove_all(home);
    fs::create_directories(home + "/config");
    std::ofstream(home + "/config/user-dirs.dirs") << "XDG_PICTURES_DIR=\"" << folderOfManyPhotos() << "\"\n";
    ::setenv("HOME", home.c_str(), 1);
    ::setenv("XDG_CONFIG_HOME", (home + "/config").c_str(), 1);
    ::setenv("XDG_CACHE_HOME", (home + "/cache").c_str(), 1);
}

std::vector<std::string> largePhotos(const std::string& folder, int count)
{
    std::vector<std::string> paths;
    fs::create_directories(folder);
    for (int number = 0; number < count; ++number) {
        paths.push_back(folder + "/" + numbered("large-%02d.jpg", number));
        if (!fs::exists(paths.back()))
            fs::copy_file(twelveMegapixelPhoto(number % 2), paths.back());
    }
    return paths;
}

} // namespace lamina::bench
