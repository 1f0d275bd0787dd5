#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/confined/ConfinedPool.h"
#include "platform/confined/SharedMemory.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/DecoderProtocol_p.h"
#include "platform/image/codecs/HeifFacts_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/TIFFFacts_p.h"
#include "platform/image/codecs/WindowedSource_p.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <sys/vfs.h>

/// HEIC and TIFF, by a program of its own that has nothing but the file and memory for the pixels.
namespace lamina {

namespace {

using namespace decoder;

/// A copy of this process begins with programs of its own.
ConfinedPool& pool()
{
    static std::atomic<ConfinedPool*> shared{nullptr};
    ConfinedPool* known = shared.load();
    while (!known || !known->isOwn()) {
        auto* const made = new ConfinedPool(kProgram); // never destroyed: pictures may be read until the very end
        if (shared.compare_exchange_strong(known, made))
            return *made;
        delete made;
    }
    return *known;
}

/// What a request may cost.
struct Bounds {
    double processorSeconds;
    double seconds;
    std::size_t memory;
};

/// As many as any decoder would begin with.
double believedPixels(const StoredFacts& facts, const Request& request)
{
    const bool isBelieved = checkClaim(static_cast<std::int64_t>(facts.width), static_cast<std::int64_t>(facts.height),
                                       0, request.fileBytes, {})
                                .ok();
    return isBelieved ? static_cast<double>(facts.width) * static_cast<double>(facts.height) : 0;
}

/// A sound picture takes some 30 ns a pixel and up to 200 a byte on a desktop; a phone may take ten times that, and the
/// wall clock runs on while others work. Pixels that the file says next to nothing of take little, so that a small one
/// is soon given up whatever it claims.
Bounds boundsOf(const StoredFacts& facts, const Request& request)
{
    constexpr std::size_t kCodec = std::size_t{64} << 20; // tables, threads, the compressed bytes of small files
    constexpr double kSmallFile = 256 << 10;
    const double pixels = believedPixels(facts, request);
    const double bytes = std::min(static_cast<double>(request.fileBytes), kSmallFile + 2 * pixels);
    const double told = std::min(pixels, 100 * bytes);
    const double work = 1 + pixels * 50e-9 + told * 250e-9 + bytes * 2000e-9;
    const std::uint64_t held = std::min(2 * request.fileBytes, request.memoryLimit);
    return {work, 30 + 4 * work, request.memoryLimit + held + kCodec};
}

/// Memory for the pixels that the file claims; without a claim, all that there may be. A small picture's is small,
/// since it counts as a file where a process's files are bounded.
std::uint64_t pixelRoom(const StoredFacts& facts, const Request& request)
{
    constexpr std::uint64_t kMost = 4 * static_cast<std::uint64_t>(kMaximumClaimedPixels);
    constexpr std::uint64_t kAnySide = kMaximumClaimedSide;
    constexpr std::uint64_t kMore = std::uint64_t{1} << 20; // a side may be cut otherwise than it is told
    const std::uint64_t most = std::min<std::uint64_t>(request.memoryLimit, kMost);
    const bool isKnown = request.part == Part::Picture && facts.width > 0 && facts.height > 0 &&
                         facts.width <= kAnySide && facts.height <= kAnySide;
    return isKnown ? std::min(most, 4 * (facts.width + 1) * (facts.height + 1) + kMore) : most;
}

/// All that a decoder waits for may be its own threads, except where another program answers for the file.
double longestSleep(int file)
{
    constexpr auto kFilesOfPrograms = 0x65735546; // FUSE
    constexpr double kLongest = 2;
    struct statfs system {};
    return ::fstatfs(file, &system) == 0 && system.f_type == kFilesOfPrograms ? 0 : kLongest;
}

Error failure(ConfinedEnd end, Format format)
{
    switch (end) {
    case ConfinedEnd::NotInstalled:
        return Error{{},
                     format == Format::HEIC ? "HEIC pictures need lamina-decoder, which is not installed"
                                            : "TIFF pictures need lamina-decoder, which is not installed"};
    case ConfinedEnd::NotStarted:
        return Error{{}, "the picture can't be read: its decoder can't be started"};
    case ConfinedEnd::NotConfined:
        return Error{{}, "the picture can't be read: this system can't confine its decoder"};
    case ConfinedEnd::TookTooLong:
        return Error{{}, "the picture can't be read: its decoder took too long"};
    case ConfinedEnd::OutOfMemory:
        return Error{{}, cause::kNoMemory};
    case ConfinedEnd::Cancelled:
        return Error{{}, cause::kCancelled};
    case ConfinedEnd::Stopped:
    case ConfinedEnd::Answered:
        break;
    }
    return Error{{}, "the picture can't be read: its decoder stopped"};
}

/// The descriptor of the file, or of a copy of what is no file, which `copy` keeps open.
Result<int> descriptorOf(ByteSource& source, std::optional<SharedMemory>& copy)
{
    if (source.descriptor() >= 0)
        return source.descriptor();
    Result<SharedMemory> made = SharedMemory::filled(
        static_cast<std::size_t>(source.size()),
        [&](std::uint64_t offset, std::span<std::uint8_t> target) { return source.read(offset, target); });
    if (!made)
        return made.error();
    copy.emplace(std::move(*made));
    return copy->descriptor();
}

/// Asks for one picture.
class WalledReading {
public:
    WalledReading(ByteSource& source, Format format, Part part, const DecodeOptions& options)
        : m_source(source)
        , m_options(options)
    {
        m_request.format = format;
        m_request.part = part;
        m_request.shortSide = options.shortSide;
        m_request.wantsWarning = options.warning ? 1 : 0;
        m_request.memoryLimit = options.memoryLimit;
        m_request.fileBytes = source.size();
    }

    Result<UIImage> read(const StoredFacts& facts)
    {
        m_request.pixelBytes = pixelRoom(facts, m_request);
        Result<SharedMemory> pixels = SharedMemory::make(static_cast<std::size_t>(m_request.pixelBytes));
        std::optional<SharedMemory> copy;
        const Result<int> file = descriptorOf(m_source, copy);
        if (!pixels || !file)
            return pixels ? file.error() : pixels.error();
        const std::array<int, 2> descriptors{*file, pixels->descriptor()};
        const ConfinedEnd end = pool().call(callFor(descriptors, boundsOf(facts, m_request), *pixels));
        return end == ConfinedEnd::Answered ? result() : failure(end, m_request.format);
    }

private:
    ConfinedCall callFor(std::span<const int> descriptors, const Bounds& bounds, SharedMemory& pixels)
    {
        ConfinedCall call;
        call.request = std::as_bytes(std::span(&m_request, 1));
        call.descriptors = descriptors;
        call.answer = std::as_writable_bytes(std::span(&m_answer, 1));
        call.memory = bounds.memory;
        call.processorSeconds = bounds.processorSeconds;
        call.seconds = bounds.seconds;
        call.asleepSeconds = longestSleep(descriptors.front());
        call.cancelled = m_options.cancelled;
        call.accept = [this, &pixels] { return accept(pixels); };
        return call;
    }

    bool accept(SharedMemory& pixels)
    {
        if (!isPossible(m_answer, m_request))
            return false;
        if (m_answer.isPicture != 0)
            m_pixels = pixels.freeze(static_cast<std::size_t>(pixelBytes(m_answer)));
        return m_answer.isPicture == 0 || m_pixels;
    }

    Result<UIImage> result()
    {
        if (m_answer.isPicture == 0)
            return Error{{}, *m_answer.cause.text()};
        if (const std::string warning = *m_answer.warning.text(); m_options.warning && !warning.empty())
            *m_options.warning = warning;
        const auto layout =
            CGImageLayout::rgba(m_answer.width, m_answer.height, static_cast<CGImageAlphaInfo>(m_answer.alphaInfo));
        return UIImage(CGImage::make(layout, std::move(m_pixels), layout.byteCount()), 1,
                       static_cast<UIImageOrientation>(m_answer.orientation));
    }

    ByteSource& m_source;
    const DecodeOptions& m_options;
    Request m_request;
    Answer m_answer;
    std::shared_ptr<const std::uint8_t> m_pixels;
};

/// What the file claims bounds the time; one that claims nothing readable gets little of it.
StoredFacts claimOf(ByteSource& source, Result<StoredFacts> (*facts)(ByteSource&))
{
    WindowedSource window(source);
    const Result<StoredFacts> found = facts(window);
    return found ? *found : StoredFacts{};
}

Result<UIImage> decodeHEICBehindWall(ByteSource& source, const DecodeOptions& options)
{
    return WalledReading(source, Format::HEIC, Part::Picture, options).read(claimOf(source, readHeifFacts));
}

Result<UIImage> decodeTIFFBehindWall(ByteSource& source, const DecodeOptions& options)
{
    return WalledReading(source, Format::TIFF, Part::Picture, options).read(claimOf(source, factsOfTIFF));
}

Result<UIImage> loadHEICThumbnailBehindWall(ByteSource& source, const StoredFacts& facts)
{
    const DecodeOptions options{.memoryLimit = std::size_t{16} << 20};
    return WalledReading(source, Format::HEIC, Part::Thumbnail, options).read(facts);
}

} // namespace

const PictureDecoder kWalledHEICDecoder{recognizesHEIC, decodeHEICBehindWall, readHeifFacts,
                                        loadHEICThumbnailBehindWall};
const PictureDecoder kWalledTIFFDecoder{recognizesTIFF, decodeTIFFBehindWall, factsOfTIFF, nullptr};

} // namespace lamina
