#include "platform/image/codecs/JPEGCoefficients_p.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <jerror.h>
#include <new>

namespace lamina {

namespace {

constexpr std::size_t kMostBytesPerBlock = sizeof(std::uint64_t) + sizeof(JBLOCK);

/// Bit i for the coefficient i that is not nought.
std::uint64_t maskOf(const JCOEF* block)
{
    std::array<std::uint64_t, DCTSIZE2 / 4> fours;
    std::memcpy(fours.data(), block, sizeof(JBLOCK));
    std::uint64_t rest = 0; // nought in most blocks of what is flat
    for (std::size_t i = 1; i < fours.size(); ++i)
        rest |= fours[i];
    std::uint64_t mask = 0;
    for (std::size_t i = 0; i < (rest == 0 ? 1 : fours.size()); ++i)
        for (std::size_t j = 4 * i; fours[i] != 0 && j < 4 * i + 4; ++j)
            mask |= std::uint64_t{block[j] != 0} << j;
    return mask;
}

std::uint8_t* packBlock(const JCOEF* block, std::uint8_t* to)
{
    const std::uint64_t mask = maskOf(block);
    std::memcpy(to, &mask, sizeof mask);
    to += sizeof mask;
    for (std::uint64_t left = mask; left != 0; left &= left - 1, to += sizeof(JCOEF))
        std::memcpy(to, block + std::countr_zero(left), sizeof(JCOEF));
    return to;
}

/// `block` is nought before.
const std::uint8_t* unpackBlock(const std::uint8_t* from, JCOEF* block)
{
    std::uint64_t left;
    std::memcpy(&left, from, sizeof left);
    from += sizeof left;
    for (; left != 0; left &= left - 1, from += sizeof(JCOEF))
        std::memcpy(block + std::countr_zero(left), from, sizeof(JCOEF));
    return from;
}

void giveUp(j_common_ptr info, int code)
{
    info->err->msg_code = code;
    info->err->error_exit(info);
}

} // namespace

void PackedCoefficients::serve(jpeg_decompress_struct& info)
{
    info.client_data = this;
    info.mem->request_virt_barray = request;
    info.mem->access_virt_barray = access;
}

jvirt_barray_ptr PackedCoefficients::request(j_common_ptr info, int, boolean, JDIMENSION blocksPerRow, JDIMENSION rows,
                                             JDIMENSION mostRows)
{
    auto* const self = static_cast<PackedCoefficients*>(info->client_data);
    if (!self->add(blocksPerRow, rows, mostRows))
        giveUp(info, JERR_OUT_OF_MEMORY);
    // The library hands it back and never looks inside.
    return reinterpret_cast<jvirt_barray_ptr>(&self->m_planes[self->m_planeCount - 1]);
}

JBLOCKARRAY PackedCoefficients::access(j_common_ptr info, jvirt_barray_ptr array, JDIMENSION first, JDIMENSION,
                                       boolean writable)
{
    Plane& plane = *reinterpret_cast<Plane*>(array);
    auto* const self = static_cast<PackedCoefficients*>(info->client_data);
    if (!self->show(plane, first)) // reduced further the picture would leave them more
        giveUp(info, self->m_bytes > self->m_mostBytes ? JERR_IMAGE_TOO_BIG : JERR_OUT_OF_MEMORY);
    plane.isChanged = plane.isChanged || writable != 0;
    return plane.pointers.data();
}

/// False when memory is short. No exception may pass through the library.
bool PackedCoefficients::add(std::size_t blocksPerRow, std::size_t rows, std::size_t mostRows)
{
    if (m_planeCount == m_planes.size())
        return false;
    try {
        Plane& plane = m_planes[m_planeCount];
        plane.blocksPerRow = blocksPerRow;
        plane.packed.resize(rows);
        plane.unpacked.resize(mostRows * blocksPerRow * DCTSIZE2);
        for (std::size_t row = 0; row < mostRows; ++row)
            plane.pointers.push_back(
                reinterpret_cast<JBLOCKROW>(plane.unpacked.data() + row * blocksPerRow * DCTSIZE2));
        m_scratch.resize(std::max(m_scratch.size(), blocksPerRow * kMostBytesPerBlock));
    } catch (const std::bad_alloc&) {
        return false;
    }
    ++m_planeCount;
    return true;
}

/// Unpacks the rows from `first` on, as many as are worked on at a time.
bool PackedCoefficients::show(Plane& plane, std::size_t first)
{
    if (plane.isLoaded && plane.first == first)
        return true;
    if (plane.isChanged && !pack(plane))
        return false;
    plane.first = first;
    plane.isLoaded = true;
    std::ranges::fill(plane.unpacked, JCOEF{0});
    for (std::size_t row = 0; row < plane.pointers.size() && first + row < plane.packed.size(); ++row) {
        const std::uint8_t* from = plane.packed[first + row].bytes.get();
        JCOEF* block = plane.pointers[row][0];
        for (std::size_t i = 0; from && i < plane.blocksPerRow; ++i, block += DCTSIZE2)
            from = unpackBlock(from, block);
    }
    return true;
}

bool PackedCoefficients::pack(Plane& plane)
{
    for (std::size_t row = 0; row < plane.pointers.size() && plane.first + row < plane.packed.size(); ++row) {
        std::uint8_t* end = m_scratch.data();
        const JCOEF* block = plane.pointers[row][0];
        for (std::size_t i = 0; i < plane.blocksPerRow; ++i, block += DCTSIZE2)
            end = packBlock(block, end);
        const auto size = static_cast<std::size_t>(end - m_scratch.data());
        if (!keep(plane.packed[plane.first + row], std::span(m_scratch).first(size)))
            return false;
    }
    plane.isChanged = false;
    return true;
}

bool PackedCoefficients::keep(PackedRow& row, std::span<const std::uint8_t> bytes)
{
    if (row.size != bytes.size()) {
        m_bytes += bytes.size() - row.size; // wraps to less where the row has shrunk
        if (m_bytes > m_mostBytes)
            return false;
        row.bytes.reset(new (std::nothrow) std::uint8_t[bytes.size()]);
        row.size = row.bytes ? bytes.size() : 0;
    }
    if (!row.bytes)
        return false;
    std::ranges::copy(bytes, row.bytes.get());
    return true;
}

} // namespace lamina
