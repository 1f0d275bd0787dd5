#include "PNGFile.h"
#include "TestPictures.h"

#include "platform/image/codecs/PictureDecoder_p.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lamina::test {
namespace {

// A byte of the pixels or of their checksum: never a picture that is not the whole one.
TEST(PNGDecoder, RefusesPixelsThatWereChanged)
{
    const Bytes whole = dataFile("png-rgb8.png");
    const auto chunks = chunksOf(whole);
    const std::size_t pixels = whole.size() - 12 - chunks[chunks.size() - 2].data.size() - 4;
    for (std::size_t at = pixels; at < whole.size() - 12; at += 3) {
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
    Bytes profile{'x', 0, 0};
    append(profile, deflated(Bytes(std::size_t{100} << 20, 0)));
    Bytes text{'x', 0};
    append(text, std::span(profile).subspan(2));
    auto chunks = chunksOf(dataFile("png-rgb8.png"));
    chunks.insert(chunks.begin() + 1, {{"iCCP", profile}, {"zTXt", text}});
    const Bytes file = pngOf(chunks);
    EXPECT_TRUE(shown(file));
    EXPECT_LT(megabytesTakenBy([&] { (void)shown(file); }), 40);
}

} // namespace
} // namespace lamina::test
