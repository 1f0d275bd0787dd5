#include "platform/image/codecs/JPEGInput_p.h"

#include "platform/base/Causes.h"

#include <algorithm>
#include <cstring>
#include <jerror.h>

namespace lamina {

namespace {

constexpr std::string_view kExifMark("Exif\0\0", 6);
constexpr std::string_view kProfileMark("ICC_PROFILE\0", 12);

// Going over a block costs 10 to 40 ns even when a scan says nothing about it, and twice that where it is held packed.
// Files made by programs go over each block some 5 times, and two of these have a bit for it at least.
constexpr std::uint64_t kVisitsOfAnyFile = 8'000'000;
constexpr std::uint64_t kVisitsPerByte = 20;
constexpr int kMostScans = 1000;

bool beginsWith(std::span<const std::uint8_t> bytes, std::string_view mark)
{
    return bytes.size() >= mark.size() && std::memcmp(bytes.data(), mark.data(), mark.size()) == 0;
}

/// Warnings after which a part of the picture is made up. The others are about bytes between segments, version numbers
/// and the like, which every viewer passes over.
bool meansMissingData(int code)
{
    switch (code) {
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_MUST_RESYNC:
    case JWRN_JPEG_EOF:
    case JWRN_ARITH_BAD_CODE:
        return true;
    default:
        return false;
    }
}

const char* causeOf(int code)
{
    switch (code) {
    case JERR_BAD_PRECISION:
        return "JPEG pictures of more than 8 bits are not supported";
    case JERR_SOF_UNSUPPORTED:
        return "this kind of JPEG is not supported";
    case JERR_ARITH_NOTIMPL:
        return "JPEG pictures with arithmetic coding are not supported";
    case JERR_OUT_OF_MEMORY:
        return cause::kNoMemory;
    case JERR_IMAGE_TOO_BIG:
        return cause::kTooLarge;
    default:
        return cause::kDamaged;
    }
}

} // namespace

JPEGInput::JPEGInput(ByteSource& source, const DecodeOptions& options)
    : JPEGInput(&source, options)
{
}

JPEGInput::JPEGInput(const DecodeOptions& options)
    : JPEGInput(nullptr, options)
{
}

JPEGInput::JPEGInput(ByteSource* source, const DecodeOptions& options)
    : m_source(source)
    , m_options(options)
{
    m_info.err = jpeg_std_error(&m_errors);
    m_errors.error_exit = errorExit;
    m_errors.emit_message = message;
    m_errors.owner = this;
    m_progress.progress_monitor = progressed;
    m_progress.owner = this;
    m_input.init_source = [](j_decompress_ptr) {};
    m_input.fill_input_buffer = fill;
    m_input.skip_input_data = skip;
    m_input.resync_to_restart = jpeg_resync_to_restart;
    m_input.term_source = [](j_decompress_ptr) {};
    m_input.owner = this;
    attempt([this] {
        jpeg_create_decompress(&m_info);
        m_info.src = &m_input;
        m_info.progress = &m_progress;
        // The library's own way to keep segments would keep as many as a file cares to hold.
        jpeg_set_marker_processor(&m_info, JPEG_APP0 + 1, applicationSegment);
        jpeg_set_marker_processor(&m_info, JPEG_APP0 + 2, applicationSegment);
    });
}

JPEGInput::~JPEGInput()
{
    jpeg_destroy_decompress(&m_info);
}

void JPEGInput::giveUp(const char* cause)
{
    m_cause = cause;
    std::longjmp(m_errors.jump, 1);
}

void JPEGInput::errorExit(j_common_ptr info)
{
    owner(info).giveUp(causeOf(info->err->msg_code));
}

void JPEGInput::message(j_common_ptr info, int level)
{
    if (level < 0)
        owner(info).meetDamage(info->err->msg_code);
}

void JPEGInput::meetDamage(int code)
{
    const bool isMissing = meansMissingData(code);
    if (isMissing && !m_options.warning)
        giveUp(cause::kDamaged);
    if (!m_options.warning)
        return;
    if (!m_isEnding && isCut(code))
        giveUp(cause::kTruncated);
    const bool isLeftOver =
        code == JWRN_EXTRANEOUS_DATA && m_info.input_scan_number > 0 && !isPadding(m_errors.msg_parm.i[0]);
    m_isDamaged = m_isDamaged || isMissing || isLeftOver;
}

/// Whether the data end, by a mark, well before the picture does: programs close like this what they could not fetch.
/// Damaged data that are read wrongly may end some blocks too early too.
bool JPEGInput::isCut(int code) const
{
    constexpr JDIMENSION kTolerated = 16;
    const JDIMENSION rows = m_info.total_iMCU_rows;
    return code == JWRN_JPEG_EOF || (code == JWRN_HIT_MARKER && m_info.unread_marker == JPEG_EOI &&
                                     m_info.input_iMCU_row + std::max(JDIMENSION{1}, rows / kTolerated) < rows);
}

/// Whether the `count` bytes that were just skipped are what some cameras fill their scans up with, and not data that
/// no block has used.
bool JPEGInput::isPadding(int count)
{
    std::array<std::uint8_t, 64> bytes;
    if (!m_source)
        return true;
    const std::uint64_t end = m_next - m_input.bytes_in_buffer;
    const std::size_t size = std::min({static_cast<std::uint64_t>(count), std::uint64_t{bytes.size()}, end});
    const auto skipped = std::span(bytes).first(m_source->read(end - size, std::span(bytes).first(size)));
    return std::ranges::all_of(skipped, [](std::uint8_t byte) { return byte == 0 || byte == 0xFF; });
}

// Called for every row that is put out.
void JPEGInput::progressed(j_common_ptr info)
{
    JPEGInput& self = owner(info);
    if (isCancelled(self.m_options))
        self.giveUp(cause::kCancelled);
    const jpeg_decompress_struct& state = self.m_info;
    for (int i = 0; i < state.comps_in_scan; ++i) {
        if (state.cur_comp_info[i]) // not while the head of a scan is coming
            self.m_componentsSeen |= 1u << state.cur_comp_info[i]->component_index;
    }
}

void JPEGInput::takeScansIn()
{
    beginScans();
    while (takeRowIn() != JPEG_REACHED_EOI) {
    }
}

void JPEGInput::beginScans()
{
    m_info.buffered_image = TRUE;
    jpeg_start_decompress(&m_info);
    m_frame = {m_info.image_width,    m_info.image_height,     m_info.data_precision,
               m_info.num_components, m_info.progressive_mode, m_info.arith_code};
    m_takesScansIn = true;
}

/// A second header of a frame, between scans, is an error that the library finds when it has taken over what stands
/// there, or has waited for the rest. Rows made after that would go by it.
void JPEGInput::restoreFrame()
{
    if (!m_takesScansIn)
        return;
    m_info.image_width = m_frame.width;
    m_info.image_height = m_frame.height;
    m_info.data_precision = m_frame.precision;
    m_info.num_components = m_frame.components;
    m_info.progressive_mode = m_frame.isProgressive;
    m_info.arith_code = m_frame.isArithmetic;
}

int JPEGInput::takeRowIn()
{
    const int taken = jpeg_consume_input(&m_info);
    if (taken != JPEG_REACHED_EOI && taken != JPEG_SUSPENDED) {
        progressed(reinterpret_cast<j_common_ptr>(&m_info));
        countVisits();
    } else if (taken == JPEG_SUSPENDED) {
        restoreFrame();
    }
    return taken;
}

bool JPEGInput::endScans()
{
    if (!m_takesScansIn)
        return false;
    m_isEnding = true;
    m_info.unread_marker = JPEG_EOI; // the library makes up the rest of the scan that it is in, and stops
    while (jpeg_consume_input(&m_info) != JPEG_REACHED_EOI)
        progressed(reinterpret_cast<j_common_ptr>(&m_info));
    return true;
}

/// Adds a row of units, which holds a row of blocks for each step of a component that stands alone.
void JPEGInput::countVisits()
{
    const int rows = m_info.comps_in_scan == 1 ? m_info.cur_comp_info[0]->v_samp_factor : 1;
    m_visits += std::uint64_t{m_info.MCUs_per_row} * static_cast<std::uint64_t>(m_info.blocks_in_MCU * rows);
    if ((m_isFinal && !hasWorkLeft()) || m_info.input_scan_number > kMostScans)
        giveUp(cause::kDamaged);
}

bool JPEGInput::passesOver()
{
    // Where a mark amid damaged data has misled it the library may search for more behind the file's end.
    const bool isMisled = m_isDamaged && hasAllRows();
    if (!m_options.warning || m_cause == cause::kCancelled || m_cause == cause::kNoMemory ||
        m_cause == cause::kTooLarge || (m_cause == cause::kTruncated && !isMisled))
        return false;
    m_isDamaged = true;
    return true;
}

/// Of the picture, or of the scan that was last begun.
bool JPEGInput::hasAllRows() const
{
    return m_takesScansIn ? m_info.input_iMCU_row >= m_info.total_iMCU_rows
                          : m_info.output_scanline == m_info.output_height;
}

boolean JPEGInput::fill(j_decompress_ptr info)
{
    JPEGInput& self = owner(info);
    if (!self.m_source && !(self.m_isFinal && self.m_isAllShown))
        return FALSE;
    const std::size_t count = self.m_source ? self.m_source->read(self.m_next, self.m_buffer) : 0;
    if (count == 0)
        self.giveUp(cause::kTruncated);
    self.m_next += count;
    self.m_bytesRead += count;
    if (isCancelled(self.m_options))
        self.giveUp(cause::kCancelled);
    if (self.m_bytesRead > self.m_mostBytes)
        self.giveUp(cause::kDamaged);
    self.m_input.next_input_byte = self.m_buffer.data();
    self.m_input.bytes_in_buffer = count;
    return TRUE;
}

void JPEGInput::skip(j_decompress_ptr info, long count)
{
    if (count <= 0)
        return;
    Source& input = owner(info).m_input;
    const std::size_t buffered = std::min(input.bytes_in_buffer, static_cast<std::size_t>(count));
    input.next_input_byte += buffered;
    input.bytes_in_buffer -= buffered;
    owner(info).m_next += static_cast<std::uint64_t>(count) - buffered;
    owner(info).m_skipped += static_cast<std::uint64_t>(count);
}

void JPEGInput::show(std::span<const std::uint8_t> data, bool isFinal)
{
    const std::uint64_t start = hide();
    // What can't be taken piece by piece, such as the bytes that fill up before a marker, gets longer ones.
    const bool isStuck = start == m_pieceStart && !m_isAllShown;
    m_pieceSize = isStuck ? 2 * m_pieceSize : kPiece; // at most all there is
    m_pieceStart = start;
    const auto rest = data.subspan(static_cast<std::size_t>(std::min<std::uint64_t>(start, data.size())));
    const auto piece = rest.first(std::min(rest.size(), m_pieceSize));
    m_isFinal = isFinal;
    m_isAllShown = piece.size() == rest.size();
    m_input.next_input_byte = piece.data();
    m_input.bytes_in_buffer = piece.size();
    m_next += piece.size();
    if (isCancelled(m_options))
        m_cause = cause::kCancelled;
    else if (m_next - m_skipped > m_mostBytes)
        m_cause = cause::kDamaged;
}

std::uint64_t JPEGInput::hide()
{
    m_next -= m_input.bytes_in_buffer;
    m_input.bytes_in_buffer = 0;
    return m_next;
}

/// Whether the segment that begins here, with its length, can be read without waiting.
bool JPEGInput::hasWholeSegment() const
{
    const std::span<const std::uint8_t> ahead(m_input.next_input_byte, m_input.bytes_in_buffer);
    return ahead.size() >= 2 && ahead.size() >= static_cast<std::size_t>(ahead[0] * 256 + ahead[1]);
}

int JPEGInput::nextByte()
{
    if (m_input.bytes_in_buffer == 0)
        fill(&m_info);
    --m_input.bytes_in_buffer;
    return *m_input.next_input_byte++;
}

boolean JPEGInput::applicationSegment(j_decompress_ptr info)
{
    JPEGInput& self = owner(info);
    if (!self.m_source && !self.hasWholeSegment())
        return fill(info);
    const int high = self.nextByte();
    const int length = high * 256 + self.nextByte() - 2;
    if (length < 0)
        self.giveUp(cause::kDamaged);
    const auto size = static_cast<std::size_t>(length);
    for (std::size_t done = 0; done < size;) {
        if (self.m_input.bytes_in_buffer == 0)
            fill(info);
        const std::size_t count = std::min(size - done, self.m_input.bytes_in_buffer);
        std::memcpy(self.m_segment.data() + done, self.m_input.next_input_byte, count);
        self.m_input.next_input_byte += count;
        self.m_input.bytes_in_buffer -= count;
        done += count;
    }
    bool kept = true;
    try { // an exception can't pass through the library
        self.keepSegment(info->unread_marker, std::span(self.m_segment).first(size));
    } catch (...) {
        kept = false;
    }
    if (!kept)
        self.giveUp(cause::kNoMemory);
    return TRUE;
}

void JPEGInput::keepSegment(int marker, std::span<const std::uint8_t> content)
{
    if (m_info.input_scan_number > 0) // too late for a picture that may be on the screen already
        return;
    if (marker == JPEG_APP0 + 1) {
        if (m_exif.empty() && beginsWith(content, kExifMark))
            m_exif.assign(content.begin(), content.end());
        return;
    }
    if (!beginsWith(content, kProfileMark) || content.size() < kProfileMark.size() + 2)
        return;
    const std::size_t number = content[kProfileMark.size()];
    const std::size_t count = content[kProfileMark.size() + 1];
    if (m_profileParts.empty()) {
        m_profileParts.resize(256);
        m_profilePartCount = count;
    }
    const auto part = content.subspan(kProfileMark.size() + 2);
    if (number == 0 || number > count || count != m_profilePartCount || !m_profileParts[number].empty() || part.empty())
        m_profileBroken = true;
    else if (!m_profileBroken)
        m_profileParts[number].assign(part.begin(), part.end());
}

std::vector<std::uint8_t> JPEGInput::profile() const
{
    std::vector<std::uint8_t> whole;
    if (m_profileBroken || m_profileParts.empty())
        return whole;
    for (std::size_t number = 1; number <= m_profilePartCount; ++number) {
        const auto& part = m_profileParts[number];
        if (part.empty())
            return {};
        whole.insert(whole.end(), part.begin(), part.end());
    }
    return whole;
}

void JPEGInput::limitWork(std::uint64_t blocks, std::uint64_t fileBytes)
{
    constexpr std::uint64_t kMostBytesPerBlock = 512; // four times its coefficients
    m_mostBytes = kMostHeaderBytes + kMostBytesPerBlock * blocks;
    m_mostVisits = kVisitsOfAnyFile + kVisitsPerByte * std::min(fileBytes, m_mostBytes);
}

void JPEGInput::packCoefficients(std::uint64_t mostBytes)
{
    m_coefficients.emplace(mostBytes).serve(m_info);
}

bool JPEGInput::sawAllComponents() const
{
    return m_componentsSeen == (1u << m_info.num_components) - 1;
}

} // namespace lamina
