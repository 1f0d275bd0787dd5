#include "platform/pdf/BandDeflater_p.h"

#include "platform/base/Causes.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/codecs/PNGFilters.h"

#include <algorithm>
#include <array>
#include <memory>
#include <vector>
#include <zlib.h>

namespace lamina {

namespace {

constexpr std::size_t kBandBytes = std::size_t{512} << 10;

/// A stretch of rows on its way.
struct Band {
    std::vector<std::uint8_t> deflated;
    std::size_t plainSize = 0;
    std::uint32_t checksum = 0; ///< of the plain bytes
    bool complete = false;
};

struct EndStream {
    void operator()(z_stream* stream) const { deflateEnd(stream); }
};

/// Rows [first, last) as they are compressed.
std::vector<std::uint8_t> plainBytes(const DeflateRows& rows, bool predicted, int first, int last)
{
    const std::size_t stride = rows.bytes + (predicted ? 1 : 0);
    std::vector<std::uint8_t> plain(stride * static_cast<std::size_t>(last - first));
    std::uint8_t* target = plain.data();
    if (!predicted) {
        for (int y = first; y < last; ++y, target += stride)
            rows.read(y, target);
        return plain;
    }
    PNGFilters filters(rows.bytes, rows.pixelBytes);
    for (int y = std::max(0, first - 1); y < last; ++y) {
        rows.read(y, filters.next());
        if (y < first)
            continue;
        filters.filter(target);
        target += stride;
    }
    return plain;
}

/// Runs and Huffman codes alone: as small as the fastest search for repetitions where rows are differences, in half the
/// time. A band ends at a whole byte and knows nothing of the one before.
bool deflateBand(const std::vector<std::uint8_t>& plain, bool last, std::vector<std::uint8_t>& deflated)
{
    constexpr int kRawWindow = -15;
    constexpr int kMemory = 9;
    z_stream stream{};
    if (deflateInit2(&stream, 1, Z_DEFLATED, kRawWindow, kMemory, Z_RLE) != Z_OK)
        return false;
    const std::unique_ptr<z_stream, EndStream> end(&stream);
    constexpr std::size_t kMarker = 16;
    deflated.resize(deflateBound(&stream, static_cast<uLong>(plain.size())) + kMarker);
    stream.next_in = const_cast<Bytef*>(plain.data());
    stream.avail_in = static_cast<uInt>(plain.size());
    stream.next_out = deflated.data();
    stream.avail_out = static_cast<uInt>(deflated.size());
    const int result = deflate(&stream, last ? Z_FINISH : Z_FULL_FLUSH);
    deflated.resize(stream.total_out);
    return stream.avail_in == 0 && result == (last ? Z_STREAM_END : Z_OK);
}

Band makeBand(const DeflateRows& rows, bool predicted, int first, int last)
{
    Band band;
    const std::vector<std::uint8_t> plain = plainBytes(rows, predicted, first, last);
    band.plainSize = plain.size();
    band.checksum = static_cast<std::uint32_t>(adler32(1, plain.data(), static_cast<uInt>(plain.size())));
    band.complete = deflateBand(plain, last == rows.count, band.deflated);
    return band;
}

Outcome writeNumber(std::uint32_t value, const PDFSink& sink)
{
    const std::array<std::uint8_t, 4> bytes{static_cast<std::uint8_t>(value >> 24),
                                            static_cast<std::uint8_t>(value >> 16),
                                            static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
    return sink(bytes);
}

int bandHeight(const DeflateRows& rows)
{
    return static_cast<int>(std::clamp<std::size_t>(kBandBytes / rows.bytes, 1, static_cast<std::size_t>(rows.count)));
}

} // namespace

bool differencesPay(const DeflateRows& rows)
{
    constexpr int kPlaces = 4;
    constexpr int kRows = 8;
    std::array<std::size_t, 2> sizes{};
    for (int place = 0; place < kPlaces; ++place) {
        const auto first = static_cast<int>(static_cast<std::int64_t>(rows.count) * place / kPlaces);
        const int last = std::min(rows.count, first + kRows);
        for (const bool predicted : {false, true})
            sizes[predicted ? 1 : 0] += makeBand(rows, predicted, first, last).deflated.size();
    }
    return sizes[1] < sizes[0] - sizes[0] / 64;
}

Outcome deflateRows(const DeflateRows& rows, bool predicted, const PDFSink& sink,
                    const std::function<Outcome(double done)>& told)
{
    constexpr std::array<std::uint8_t, 2> kHeader{0x78, 0x01};
    if (Outcome written = sink(kHeader); !written)
        return written;
    const int height = bandHeight(rows);
    const int bandCount = (rows.count + height - 1) / height;
    std::vector<Band> bands(
        std::min<std::size_t>(static_cast<std::size_t>(bandCount), 2 * WorkerPool::shared().concurrency()));
    std::uint32_t checksum = 1;
    for (int begin = 0; begin < bandCount; begin += static_cast<int>(bands.size())) {
        const int end = std::min(bandCount, begin + static_cast<int>(bands.size()));
        WorkerPool::shared().parallelFor(begin, end, 1, [&](int first, int last) {
            for (int i = first; i < last; ++i)
                bands[static_cast<std::size_t>(i - begin)] =
                    makeBand(rows, predicted, i * height, std::min(rows.count, (i + 1) * height));
        });
        for (int i = begin; i < end; ++i) {
            const Band& band = bands[static_cast<std::size_t>(i - begin)];
            if (!band.complete)
                return Error{{}, cause::kNoMemory};
            checksum = static_cast<std::uint32_t>(
                adler32_combine(checksum, band.checksum, static_cast<z_off_t>(band.plainSize)));
            if (Outcome written = sink(band.deflated); !written)
                return written;
        }
        if (Outcome goesOn = told(static_cast<double>(end) / bandCount); !goesOn)
            return goesOn;
    }
    return writeNumber(checksum, sink);
}

} // namespace lamina
