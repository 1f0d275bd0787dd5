// The program behind the wall: it decodes HEIC and TIFF, and has nothing to lose.

#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/confined/ConfinedService.h"
#include "platform/confined/SharedMemory.h"
#include "platform/files/FileReading.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/DecoderProtocol_p.h"
#include "platform/image/codecs/PictureBuilder_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/TIFFFile_p.h"
#include "platform/image/codecs/decoder/BareDecoders_p.h"
#include "platform/image/codecs/decoder/HeifLibrary_p.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <sys/mman.h>
#include <system_error>
#include <thread>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
// What looks for leaks reads other processes' memory, which is out of reach here.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options()
{
    return "detect_leaks=0";
}
#endif

namespace lamina::decoder {

namespace {

/// The memory for the pixels while one request is answered. Its pages are made ahead of who fills them, by another
/// thread: that takes as long as many a codec's own work on them.
class Pixels {
public:
    Pixels(int descriptor, std::size_t size)
        : m_descriptor(descriptor)
        , m_most(size)
    {
        s_current = this;
        setPixelMemory([](std::size_t wanted) { return s_current->take(wanted); });
    }
    ~Pixels()
    {
        m_done = true;
        if (m_thread.joinable())
            m_thread.join();
        if (m_memory)
            unmap(m_memory, m_size);
        setPixelMemory(nullptr);
    }
    Pixels(const Pixels&) = delete;
    Pixels& operator=(const Pixels&) = delete;

    bool holds(const CGImage& image) const { return m_memory && image.bytes().data() == m_memory; }

private:
    /// Once for each request: every decoder makes one picture.
    PixelBuffer take(std::size_t size)
    {
        if (m_memory || size > m_most)
            return {};
        m_memory = mapForWriting(m_descriptor, size);
        if (!m_memory)
            return {};
        m_size = size;
        makePages();
        return PixelBuffer::borrowed(m_memory, size);
    }

    void makePages()
    {
        constexpr std::size_t kWorthwhile = std::size_t{2} << 20;
        ::madvise(m_memory, m_size, MADV_HUGEPAGE); // a hint, which few systems take for shared memory
        if (m_size < kWorthwhile)
            return;
        try {
            m_thread = std::thread([this] {
                constexpr std::size_t kStep = std::size_t{1} << 20;
                for (std::size_t at = 0; at < m_size && !m_done; at += kStep) {
                    if (::madvise(m_memory + at, std::min(kStep, m_size - at), MADV_POPULATE_WRITE) != 0)
                        return; // an older kernel
                }
            });
        } catch (const std::system_error&) { // no thread is to be had: pages are made as they are met
        }
    }

    static inline Pixels* s_current = nullptr;
    int m_descriptor;
    std::size_t m_most;
    std::uint8_t* m_memory = nullptr;
    std::size_t m_size = 0;
    std::atomic<bool> m_done = false;
    std::thread m_thread;
};

Result<UIImage> decode(const Request& request, ByteSource& source, std::string& warning)
{
    const PictureDecoder& decoder = request.format == Format::HEIC ? kHEICDecoder : kTIFFDecoder;
    if (request.part == Part::Thumbnail)
        return decoder.thumbnail ? decoder.thumbnail(source, {}) : Error{{}, cause::kNoThumbnail};
    DecodeOptions options;
    options.shortSide = request.shortSide;
    options.memoryLimit = static_cast<std::size_t>(request.memoryLimit);
    options.warning = request.wantsWarning != 0 ? &warning : nullptr;
    return decoder.decode(source, options);
}

Answer failed(std::string_view cause)
{
    Answer answer;
    answer.cause = Sentence(cause);
    return answer;
}

Answer describe(const Result<UIImage>& picture, const Pixels& pixels, const std::string& warning)
{
    if (!picture)
        return failed(picture.error().cause);
    const CGImage image = picture->cgImage();
    if (!pixels.holds(image))
        return failed(cause::kNoMemory);
    Answer answer;
    answer.isPicture = 1;
    answer.width = image.width();
    answer.height = image.height();
    answer.alphaInfo = static_cast<std::uint32_t>(image.alphaInfo());
    answer.orientation = static_cast<std::int32_t>(picture->imageOrientation());
    answer.warning = Sentence(warning);
    return answer;
}

Answer answerTo(const Request& request, std::span<FileDescriptor> descriptors)
{
    const std::unique_ptr<ByteSource> source = fileSource({std::move(descriptors[0]), request.fileBytes});
    Pixels pixels(descriptors[1].get(), static_cast<std::size_t>(request.pixelBytes));
    std::string warning;
    try {
        const Answer answer = describe(decode(request, *source, warning), pixels, warning);
        if (answer.isPicture == 0 && *answer.cause.text() == cause::kNoMemory)
            leaveForWantOfMemory(); // a new program may do with what it gets
        return answer;
    } catch (const std::bad_alloc&) {
        leaveForWantOfMemory();
    }
}

std::size_t answer(std::span<const std::byte> bytes, std::span<FileDescriptor> descriptors, std::span<std::byte> target)
{
    Request request;
    Answer answer = failed(cause::kDamaged);
    if (bytes.size() == sizeof(request) && descriptors.size() == 2) {
        std::memcpy(&request, bytes.data(), sizeof(request));
        answer = answerTo(request, descriptors);
    }
    std::memcpy(target.data(), &answer, sizeof(answer));
    return sizeof(answer);
}

} // namespace

} // namespace lamina::decoder

int main()
{
    using namespace lamina;
    return serveConfined({
        [] {
            HeifLibrary::shared();
            TIFFLibrary::shared();
        },
        decoder::answer,
        [] { PixelBuffer::releaseIdle(); },
    });
}
