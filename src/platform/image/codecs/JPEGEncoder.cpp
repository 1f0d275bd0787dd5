#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/EncodedRows_p.h"
#include "platform/image/codecs/PictureEncoder_p.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/ColorConversion.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstdio> // jpeglib.h names FILE without asking for it
#include <jpeglib.h>
#include <memory>
#include <new>
#include <vector>

/// JPEG, by libjpeg-turbo: baseline, the standard Huffman tables. Tables made for the picture would save some percent
/// and cost the memory of all its coefficients.
namespace lamina {

namespace {

constexpr int kBandRows = 64;

/// The compressor of libjpeg with its error jumps kept in, writing into memory. Not movable: the library points into
/// it.
class JPEGOutput {
public:
    JPEGOutput()
    {
        m_info.err = jpeg_std_error(&m_errors);
        m_errors.error_exit = [](j_common_ptr info) { std::longjmp(ownerOf(info).m_jump, 1); };
        m_errors.output_message = [](j_common_ptr) {};
        m_info.client_data = this;
        m_target.init_destination = [](j_compress_ptr info) { ownerOf(info).offerPiece(); };
        m_target.empty_output_buffer = [](j_compress_ptr info) -> boolean {
            ownerOf(info).keep(kPiece);
            ownerOf(info).offerPiece();
            return TRUE;
        };
        m_target.term_destination = [](j_compress_ptr info) {
            ownerOf(info).keep(kPiece - ownerOf(info).m_target.free_in_buffer);
        };
    }
    ~JPEGOutput() { jpeg_destroy_compress(&m_info); }
    JPEGOutput(const JPEGOutput&) = delete;
    JPEGOutput& operator=(const JPEGOutput&) = delete;

    /// False when the library gave up, which without a fault of ours means that memory was short.
    bool write(const FlattenedRows& rows, int quality)
    {
        // Made before the jump is set: what it passes over may not own anything.
        const std::size_t rowBytes = 4 * static_cast<std::size_t>(rows.width());
        std::vector<std::uint8_t> band(rowBytes * static_cast<std::size_t>(std::min(kBandRows, rows.height())));
        // A byte a pixel is much for a JPEG; what isn't written to takes no memory.
        m_bytes.reserve(std::min(kMostReserved, rowBytes / 4 * static_cast<std::size_t>(rows.height())));
        if (setjmp(m_jump) != 0) // NOLINT: the library's only way to report
            return false;
        start(rows, quality);
        for (int first = 0; first < rows.height(); first += kBandRows) {
            const int count = std::min(kBandRows, rows.height() - first);
            const bool isStored = rows.stored(first) != nullptr;
            if (!isStored)
                rows.readBand(first, count, band.data());
            for (int i = 0; i < count; ++i) {
                // The library takes rows that it doesn't change as if it might.
                JSAMPROW row = isStored ? const_cast<JSAMPROW>(rows.stored(first + i))
                                        : band.data() + static_cast<std::size_t>(i) * rowBytes;
                jpeg_write_scanlines(&m_info, &row, 1);
            }
        }
        jpeg_finish_compress(&m_info);
        return !m_memoryShort;
    }

    std::vector<std::uint8_t> take() { return std::move(m_bytes); }

private:
    static constexpr std::size_t kPiece = std::size_t{64} << 10;
    static constexpr std::size_t kMostReserved = std::size_t{16} << 20;

    template <class Info>
    static JPEGOutput& ownerOf(Info info)
    {
        return *static_cast<JPEGOutput*>(info->client_data);
    }

    void start(const FlattenedRows& rows, int quality)
    {
        jpeg_create_compress(&m_info);
        m_info.dest = &m_target;
        m_info.image_width = static_cast<JDIMENSION>(rows.width());
        m_info.image_height = static_cast<JDIMENSION>(rows.height());
        m_info.input_components = 4;
        m_info.in_color_space = JCS_EXT_RGBX;
        jpeg_set_defaults(&m_info);
        jpeg_set_quality(&m_info, quality, TRUE);
        m_info.dct_method = JDCT_ISLOW; // the fast one is visibly coarser in best quality, and hardly faster
        constexpr int kFullColor = 90;
        if (rows.isGray())
            jpeg_set_colorspace(&m_info, JCS_GRAYSCALE);
        else if (quality >= kFullColor)
            m_info.comp_info[0].h_samp_factor = m_info.comp_info[0].v_samp_factor = 1;
        jpeg_start_compress(&m_info, TRUE);
        // A profile of RGB would be wrong beside grey, which is read like sRGB without one.
        if (!rows.isGray())
            jpeg_write_icc_profile(&m_info, sRGBProfile().data(), static_cast<unsigned>(sRGBProfile().size()));
    }

    void offerPiece()
    {
        m_target.next_output_byte = m_piece.data();
        m_target.free_in_buffer = kPiece;
    }

    /// Called by C code, which no exception may cross.
    void keep(std::size_t count)
    {
        try {
            if (!m_memoryShort)
                m_bytes.insert(m_bytes.end(), m_piece.begin(), m_piece.begin() + static_cast<std::ptrdiff_t>(count));
        } catch (const std::bad_alloc&) {
            m_memoryShort = true;
        }
    }

    jpeg_compress_struct m_info{};
    jpeg_error_mgr m_errors{};
    jpeg_destination_mgr m_target{};
    std::jmp_buf m_jump{};
    std::array<std::uint8_t, kPiece> m_piece{};
    std::vector<std::uint8_t> m_bytes;
    bool m_memoryShort = false;
};

/// Of the library's scale from 1 to 100.
int libraryQuality(double quality)
{
    if (std::isnan(quality))
        quality = 1;
    return std::max(1, static_cast<int>(std::lround(100 * std::clamp(quality, 0.0, 1.0))));
}

Result<std::vector<std::uint8_t>> encodeJPEG(CGImage image, const EncodeOptions& options)
{
    if (std::max(image.width(), image.height()) > JPEG_MAX_DIMENSION)
        return Error{{}, "a JPEG picture can't be longer than 65500 pixels"};
    const auto output = std::make_unique<JPEGOutput>();
    if (!output->write(FlattenedRows(image, options.background), libraryQuality(options.quality)))
        return Error{{}, cause::kNoMemory};
    return output->take();
}

} // namespace

const PictureEncoder kJPEGEncoder{encodeJPEG};

} // namespace lamina
