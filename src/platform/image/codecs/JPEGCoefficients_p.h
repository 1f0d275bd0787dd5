#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio> // jpeglib.h names FILE without asking for it
#include <jpeglib.h>
#include <memory>
#include <span>
#include <vector>

namespace lamina {

/// The coefficients of a file of several scans, which must all be held until its last scan has come, packed: a block
/// takes 8 bytes and two for each coefficient that is not nought, in place of 128. Memory then follows what the file
/// says and not what it claims. It costs some nanoseconds a block and scan; for pictures whose plain coefficients are
/// too much.
///
/// Stands in for the memory manager's arrays of blocks. The library asks for one row of blocks after the other; those
/// it works on are unpacked, all others packed. Outlives the decompressor's use of them.
class PackedCoefficients {
public:
    /// At most `mostBytes` of packed blocks; beyond them the library finds the picture too large.
    explicit PackedCoefficients(std::uint64_t mostBytes)
        : m_mostBytes(mostBytes)
    {
    }

    /// To be called between `jpeg_read_header` and `jpeg_start_decompress`. Takes `client_data`.
    void serve(jpeg_decompress_struct& info);

    /// The memory that a block takes at least, one coefficient in it.
    static constexpr std::uint64_t kLeastBytesPerBlock = 10;

private:
    struct PackedRow {
        std::unique_ptr<std::uint8_t[]> bytes; ///< null: nought throughout
        std::size_t size = 0;
    };
    /// One component's blocks.
    struct Plane {
        std::size_t blocksPerRow = 0;
        std::vector<PackedRow> packed;
        std::vector<JCOEF> unpacked;     ///< the rows that the library works on
        std::vector<JBLOCKROW> pointers; ///< to them
        std::size_t first = 0;           ///< the first of them
        bool isLoaded = false;
        bool isChanged = false;
    };

    static jvirt_barray_ptr request(j_common_ptr info, int pool, boolean preZero, JDIMENSION blocksPerRow,
                                    JDIMENSION rows, JDIMENSION mostRows);
    static JBLOCKARRAY access(j_common_ptr info, jvirt_barray_ptr array, JDIMENSION first, JDIMENSION count,
                              boolean writable);

    bool add(std::size_t blocksPerRow, std::size_t rows, std::size_t mostRows);
    bool show(Plane& plane, std::size_t first);
    bool pack(Plane& plane);
    bool keep(PackedRow& row, std::span<const std::uint8_t> bytes);

    std::uint64_t m_mostBytes;
    std::uint64_t m_bytes = 0;
    std::array<Plane, MAX_COMPONENTS> m_planes;
    std::size_t m_planeCount = 0;
    std::vector<std::uint8_t> m_scratch; ///< room for the longest packed row
};

} // namespace lamina
