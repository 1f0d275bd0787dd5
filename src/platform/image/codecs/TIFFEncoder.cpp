#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/codecs/EncodedRows_p.h"
#include "platform/image/codecs/PictureEncoder_p.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/codecs/TIFFFile_p.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/ColorConversion.h"
#include "platform/image/pixels/PixelConversion.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <vector>

/// TIFF, by libtiff.
namespace lamina {

namespace {

/// A file in memory that libtiff writes, and reads again where it completes what it has written.
class MemoryFile {
public:
    tmsize_t read(void* target, tmsize_t size)
    {
        const std::size_t left = m_position < m_bytes.size() ? m_bytes.size() - m_position : 0;
        const std::size_t count = std::min(left, static_cast<std::size_t>(std::max<tmsize_t>(0, size)));
        std::memcpy(target, m_bytes.data() + m_position, count);
        m_position += count;
        return static_cast<tmsize_t>(count);
    }
    /// Takes room for the whole file, which costs memory only as far as it is filled: growing by copies would hold it
    /// twice.
    void reserve(std::size_t bytes) { m_bytes.reserve(bytes); }
    /// Called by C code, which no exception may cross.
    tmsize_t write(const void* source, tmsize_t size)
    {
        const auto count = static_cast<std::size_t>(std::max<tmsize_t>(0, size));
        try {
            if (m_position + count > m_bytes.size())
                m_bytes.resize(m_position + count);
        } catch (const std::bad_alloc&) {
            m_memoryShort = true;
            return -1;
        }
        std::memcpy(m_bytes.data() + m_position, source, count);
        m_position += count;
        return size;
    }
    toff_t seek(toff_t offset, int origin)
    {
        const std::size_t base = origin == SEEK_CUR ? m_position : origin == SEEK_END ? m_bytes.size() : 0;
        m_position = base + offset; // negative distances come as their two's complement
        return m_position;
    }
    toff_t size() const { return m_bytes.size(); }
    bool memoryShort() const { return m_memoryShort; }
    std::vector<std::uint8_t> take() { return std::move(m_bytes); }

private:
    std::vector<std::uint8_t> m_bytes;
    std::size_t m_position = 0;
    bool m_memoryShort = false;
};

MemoryFile& fileOf(thandle_t handle)
{
    return *static_cast<MemoryFile*>(handle);
}

using Handle = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

/// Without messages on standard error.
Handle openForWriting(const TIFFLibrary& tiff, MemoryFile& file)
{
    Handle handle(nullptr, tiff.close);
    const std::unique_ptr<TIFFOpenOptions, decltype(tiff.openOptionsFree)> options(tiff.openOptionsAlloc(),
                                                                                   tiff.openOptionsFree);
    if (!options)
        return handle;
    const auto silent = [](TIFF*, void*, const char*, const char*, std::va_list) { return 1; };
    tiff.setErrorHandler(options.get(), silent, nullptr);
    tiff.setWarningHandler(options.get(), silent, nullptr);
    constexpr const char* kLittleEndian = "w4l"; // on every machine the same file
    handle.reset(tiff.clientOpen(
        "picture", kLittleEndian, &file,
        [](thandle_t self, void* target, tmsize_t size) { return fileOf(self).read(target, size); },
        [](thandle_t self, void* source, tmsize_t size) { return fileOf(self).write(source, size); },
        [](thandle_t self, toff_t offset, int origin) { return fileOf(self).seek(offset, origin); },
        [](thandle_t) { return 0; }, [](thandle_t self) { return fileOf(self).size(); },
        [](thandle_t, void**, toff_t*) { return 0; }, [](thandle_t, void*, toff_t) {}, options.get()));
    return handle;
}

/// False when the library refuses a value.
bool describe(const TIFFLibrary& tiff, TIFF* file, const CGImage& image, StoredColors colors, int rowsPerStrip,
              std::span<const std::uint8_t> profile)
{
    const bool gray = colors == StoredColors::Gray || colors == StoredColors::GrayAlpha;
    const bool alpha = colors == StoredColors::GrayAlpha || colors == StoredColors::RGBA;
    bool good = true;
    const auto set = [&](std::uint32_t tag, auto... value) { good = good && tiff.setField(file, tag, value...) == 1; };
    set(TIFFTAG_IMAGEWIDTH, image.width());
    set(TIFFTAG_IMAGELENGTH, image.height());
    set(TIFFTAG_BITSPERSAMPLE, 8);
    set(TIFFTAG_SAMPLESPERPIXEL, static_cast<int>(storedBytes(colors)));
    set(TIFFTAG_PHOTOMETRIC, gray ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
    set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    set(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    set(TIFFTAG_COMPRESSION, COMPRESSION_LZW); // of the good ones the one that every reader knows
    set(TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    set(TIFFTAG_ROWSPERSTRIP, rowsPerStrip);
    if (alpha) {
        const std::uint16_t straight[] = {EXTRASAMPLE_UNASSALPHA};
        set(TIFFTAG_EXTRASAMPLES, 1, static_cast<const std::uint16_t*>(straight));
    }
    if (!gray)
        set(TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(profile.size()), profile.data());
    return good;
}

bool writePixels(const TIFFLibrary& tiff, TIFF* file, const CGImage& image, const RowConverter& rows,
                 StoredColors colors, int rowsPerStrip)
{
    const auto width = static_cast<std::size_t>(image.width());
    const std::size_t rowBytes = width * storedBytes(colors);
    std::vector<std::uint8_t> strip(rowBytes * static_cast<std::size_t>(rowsPerStrip));
    for (int first = 0; first < image.height(); first += rowsPerStrip) {
        const int last = std::min(first + rowsPerStrip, image.height());
        parallelRows(first, last, width, [&](int begin, int end) {
            std::vector<std::uint8_t> rgba(4 * width);
            for (int y = begin; y < end; ++y) {
                rows.convert(0, y, image.width(), rgba.data());
                packRow(rgba.data(), width, colors, strip.data() + static_cast<std::size_t>(y - first) * rowBytes);
            }
        });
        const auto bytes = static_cast<tmsize_t>(rowBytes * static_cast<std::size_t>(last - first));
        if (tiff.writeEncodedStrip(file, static_cast<std::uint32_t>(first / rowsPerStrip), strip.data(), bytes) < 0)
            return false;
    }
    return tiff.flush(file) == 1;
}

Result<std::vector<std::uint8_t>> encodeTIFF(CGImage image, const EncodeOptions& options)
{
    const TIFFLibrary* tiff = TIFFLibrary::shared();
    if (!tiff)
        return Error{{}, "TIFF pictures need libtiff"};
    const RowConverter rows(image, AlphaForm::Straight);
    const StoredColors colors = options.alwaysRGBA ? StoredColors::RGBA : chooseStoredColors(image, rows);
    const std::size_t rowBytes = static_cast<std::size_t>(image.width()) * storedBytes(colors);
    constexpr std::size_t kMost = 4'000'000'000; // offsets of 32 bits, with some room for what does not get smaller
    if (rowBytes * static_cast<std::size_t>(image.height()) > kMost)
        return Error{{}, "a TIFF picture can't be larger than 4 GB"};
    // Enough rows for the table of codes to pay, few enough for readers that show a part.
    constexpr std::size_t kStripBytes = std::size_t{256} << 10;
    const int rowsPerStrip = std::clamp(static_cast<int>(kStripBytes / rowBytes), 1, image.height());

    const std::span<const std::uint8_t> profile = options.profile.empty() ? sRGBProfile() : options.profile;
    MemoryFile file;
    constexpr std::size_t kAround = std::size_t{64} << 10; // header, profile, table of strips
    const std::size_t pixelBytes = rowBytes * static_cast<std::size_t>(image.height());
    file.reserve(pixelBytes + pixelBytes / 2 + kAround); // codes of up to 12 bits a byte
    bool good = false;
    {
        const Handle handle = openForWriting(*tiff, file);
        good = handle && describe(*tiff, handle.get(), image, colors, rowsPerStrip, profile) &&
               writePixels(*tiff, handle.get(), image, rows, colors, rowsPerStrip);
    }
    if (!good || file.memoryShort())
        return Error{{}, cause::kNoMemory};
    return file.take();
}

} // namespace

const PictureEncoder kTIFFEncoder{encodeTIFF};

} // namespace lamina
