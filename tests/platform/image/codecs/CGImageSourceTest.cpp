#include "DecodedPictures.h"
#include "MadeJPEG.h"
#include "TestPaths.h"
#include "TestPictures.h"

#include "platform/image/codecs/CGImageSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lamina::test {
namespace {

/// A source that has got a file in pieces of a size.
std::unique_ptr<CGImageSource> fed(std::span<const std::uint8_t> file, std::size_t piece, bool isFinal = true)
{
    auto source = CGImageSource::makeIncremental();
    for (std::size_t size = 0; size < file.size();) {
        size = std::min(size + piece, file.size());
        source->updateData(file.first(size), isFinal && size == file.size());
    }
    return source;
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
            const auto source = fed(file, piece);
            ASSERT_TRUE(source->propertiesAtIndex());
            EXPECT_EQ(source->propertiesAtIndex()->pixelWidth, whole.width());
            EXPECT_TRUE(imagesMatch(source->imageAtIndex(), whole));
        }
    }
}

} // namespace
} // namespace lamina::test
