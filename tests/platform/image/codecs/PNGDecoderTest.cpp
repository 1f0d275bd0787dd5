#include "DecodedPictures.h"
#include "TestPictures.h"

#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/pixels/ColorConversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <libdeflate.h>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lamina::test {
namespace {

// A byte of the pixels or of their checksum: never a picture that is not the whole one.
TEST(PNGDecoder, RefusesPixelsThatWereChanged)
{
    const Bytes whole = dataFile("png-rgb8.png");
    const std::string_view kData("IDAT");
    const auto last = std::find_end(whole.begin(), whole.end(), kData.begin(), kData.end());
    for (auto at = static_cast<std::size_t>(last - whole.begin()) + 4; at < whole.size() - 12; at += 3) {
        Bytes file = whole;
        file[at] ^= 0x10;
        EXPECT_EQ(causeOf(file), cause::kDamaged) << at;
    }
}

/// The megabytes by which `body` raises the most memory that a process of its own has held; at least 255 when it
/// crashes.
template <class Body>
int megabytesTakenBy(Body body)
{
    const pid_t child = ::fork();
    if (child == 0) {
        const auto peak = [] {
            rusage usage{};
            ::getrusage(RUSAGE_SELF, &usage);
            return usage.ru_maxrss / 1024;
        };
        const long before = peak();
        body();
        ::_exit(static_cast<int>(std::min(254L, peak() - before)));
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 255;
}

TEST(PNGDecoder, PassesOverChunksThatSwellWhenUnpacked)
{
    // A sound profile but for its length.
    Bytes large(sRGBProfile().begin(), sRGBProfile().end());
    large.resize(std::size_t{100} << 20);
    large[0] = static_cast<std::uint8_t>(large.size() >> 24);
    large[1] = static_cast<std::uint8_t>(large.size() >> 16);
    large[2] = large[3] = 0;
    const Bytes whole = dataFile("png-rgb8.png");
    constexpr std::size_t kHeader = 33;
    Bytes file(whole.begin(), whole.begin() + kHeader);
    append(file, pngChunk("iCCP", packed(large, {"x\0\0", 3})));
    append(file, pngChunk("zTXt", packed(large, {"x\0\0", 3})));
    append(file, std::span(whole).subspan(kHeader));
    EXPECT_TRUE(shown(file));
    EXPECT_LT(megabytesTakenBy([&] { (void)shown(file); }), 40);
}

} // namespace
} // namespace lamina::test
