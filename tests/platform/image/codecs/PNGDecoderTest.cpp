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

void storeBig32(std::uint8_t* bytes, std::size_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        *bytes++ = static_cast<std::uint8_t>(value >> shift);
}

/// A chunk of its head (type, name, the end of that and the method) and packed bytes.
Bytes packedChunk(const std::string& head, const Bytes& content)
{
    libdeflate_compressor* compressor = libdeflate_alloc_compressor(6);
    Bytes data(head.begin(), head.end());
    data.resize(head.size() + libdeflate_zlib_compress_bound(compressor, content.size()));
    data.resize(head.size() + libdeflate_zlib_compress(compressor, content.data(), content.size(), &data[head.size()],
                                                       data.size() - head.size()));
    libdeflate_free_compressor(compressor);
    Bytes chunk(data.size() + 8);
    storeBig32(chunk.data(), data.size() - 4); // without the type
    std::copy(data.begin(), data.end(), chunk.begin() + 4);
    storeBig32(&chunk[chunk.size() - 4], libdeflate_crc32(0, data.data(), data.size()));
    return chunk;
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
    append(file, packedChunk({"iCCPx\0\0", 7}, large));
    append(file, packedChunk({"zTXtx\0\0", 7}, large));
    append(file, std::span(whole).subspan(kHeader));
    EXPECT_TRUE(shown(file));
    EXPECT_LT(megabytesTakenBy([&] { (void)shown(file); }), 40);
}

} // namespace
} // namespace lamina::test
