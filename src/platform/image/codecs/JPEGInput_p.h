#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/JPEGCoefficients_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"

#include <array>
#include <csetjmp>
#include <cstdint>
#include <cstdio> // jpeglib.h names FILE without asking for it
#include <jpeglib.h>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lamina {

/// The decompressor of libjpeg over a ByteSource or over data that arrive, with its error jumps kept in, its warnings
/// sorted, the EXIF and profile segments before the first scan gathered within bounds and hostile scan scripts stopped.
/// Damage in the data is an error, or, where the options ask for a warning, remembered.
///
/// Every call into the library goes through `attempt`. Afterwards a failed one has a cause. Not movable: the library
/// points into it.
class JPEGInput {
public:
    JPEGInput(ByteSource& source, const DecodeOptions& options);
    /// Over data that arrive: the library waits (is suspended) where what `show` has given ends.
    explicit JPEGInput(const DecodeOptions& options);
    ~JPEGInput();
    JPEGInput(const JPEGInput&) = delete;
    JPEGInput& operator=(const JPEGInput&) = delete;

    jpeg_decompress_struct& info() { return m_info; }

    /// Runs `body`; false when the library gave up in it. The jump passes over `body`, which may therefore not own
    /// anything.
    template <class Body>
    bool attempt(Body body)
    {
        if (setjmp(m_errors.jump) != 0) { // NOLINT: the library's only way to report
            restoreFrame();
            return false;
        }
        body();
        return true;
    }

    bool failed() const { return !m_cause.empty(); }
    /// Why the library gave up.
    Error error() const { return {{}, m_cause}; }

    /// The first EXIF block, empty when there is none.
    std::span<const std::uint8_t> exif() const { return m_exif; }
    /// The profile put together from its segments; empty when there is none or a segment is missing.
    std::vector<std::uint8_t> profile() const;

    /// Limits how many blocks a file of several scans may go over, and how long its data may be, given its blocks of
    /// 8 × 8 coefficients and its size.
    void limitWork(std::uint64_t blocks, std::uint64_t fileBytes);
    /// Lets a file of several scans hold its coefficients packed, in at most `mostBytes`.
    void packCoefficients(std::uint64_t mostBytes);
    /// How many blocks all scans together may go over.
    std::uint64_t mostVisits() const { return m_mostVisits; }
    /// Starts a file of several scans and takes all of them in; to be called within `attempt`. Cancelling is looked at
    /// after each row of blocks.
    void takeScansIn();
    /// The two steps of it, for data that arrive: the second takes a row of blocks, and says what the library says.
    void beginScans();
    int takeRowIn();
    /// False while the data so far do not allow for the blocks that were gone over.
    bool hasWorkLeft() const { return m_visits <= m_mostVisits; }
    /// After scans could not be taken in: has the picture end there. To be called within `attempt`; false when nothing
    /// of it has come.
    bool endScans();
    /// Whether the last failed attempt may be passed over, since the picture that came before it is to be shown as far
    /// as it goes.
    bool passesOver();
    /// Whether there were data that libjpeg could not read and has made up for.
    bool isDamaged() const { return m_isDamaged; }
    /// True when every colour component was in some scan.
    bool sawAllComponents() const;

    /// Gives the library the next piece of all data so far, from where it stands; may fail. `isFinal`: no more will
    /// come.
    void show(std::span<const std::uint8_t> data, bool isFinal);
    /// Whether that piece reached to the end of the data.
    bool isAllShown() const { return m_isAllShown; }
    /// Takes the piece away, before the data go. Returns where the library stands.
    std::uint64_t hide();

private:
    // Reached by profiles and private segments only; without it a large file of zeros would be searched for markers to
    // its end.
    static constexpr std::uint64_t kMostHeaderBytes = std::uint64_t{64} << 20;

    // Of data that arrive the library gets so many bytes at a time, so that cancelling is looked at between markers
    // too.
    static constexpr std::size_t kPiece = std::size_t{1} << 20;

    JPEGInput(ByteSource* source, const DecodeOptions& options);

    /// What the header of the frame says.
    struct Frame {
        JDIMENSION width;
        JDIMENSION height;
        int precision;
        int components;
        boolean isProgressive;
        boolean isArithmetic;
    };
    struct Errors : jpeg_error_mgr {
        JPEGInput* owner;
        std::jmp_buf jump;
    };
    struct Progress : jpeg_progress_mgr {
        JPEGInput* owner;
    };
    struct Source : jpeg_source_mgr {
        JPEGInput* owner;
    };

    static JPEGInput& owner(j_common_ptr info) { return *static_cast<Errors*>(info->err)->owner; }
    static JPEGInput& owner(j_decompress_ptr info) { return *static_cast<Source*>(info->src)->owner; }
    static void errorExit(j_common_ptr info);
    static void message(j_common_ptr info, int level);
    static void progressed(j_common_ptr info);
    static boolean fill(j_decompress_ptr info);
    static void skip(j_decompress_ptr info, long count);
    static boolean applicationSegment(j_decompress_ptr info);

    [[noreturn]] void giveUp(const char* cause);
    void meetDamage(int code);
    bool isCut(int code) const;
    bool isPadding(int count);
    bool hasAllRows() const;
    void countVisits();
    void restoreFrame();
    bool hasWholeSegment() const;
    int nextByte();
    void keepSegment(int marker, std::span<const std::uint8_t> content);

    ByteSource* m_source; ///< null for data that arrive
    const DecodeOptions& m_options;
    std::uint64_t m_next = 0;      ///< where in the source the buffer ends
    std::uint64_t m_bytesRead = 0; ///< segments that were leapt over not counted
    std::uint64_t m_skipped = 0;
    std::size_t m_pieceSize = kPiece;
    std::uint64_t m_pieceStart = 0;
    bool m_isAllShown = false;
    bool m_isFinal = true;
    std::string m_cause;
    std::vector<std::uint8_t> m_exif;
    std::vector<std::vector<std::uint8_t>> m_profileParts; ///< by their number, which starts at 1
    std::size_t m_profilePartCount = 0;
    bool m_profileBroken = false;
    std::uint64_t m_mostBytes = kMostHeaderBytes;
    std::uint64_t m_mostVisits = 0; ///< of blocks, by all scans together
    std::uint64_t m_visits = 0;
    unsigned m_componentsSeen = 0;
    bool m_isDamaged = false;
    bool m_takesScansIn = false;
    Frame m_frame{}; ///< when scans are taken in
    bool m_isEnding = false;
    std::optional<PackedCoefficients> m_coefficients;

    jpeg_decompress_struct m_info{};
    Errors m_errors{};
    Progress m_progress{};
    Source m_input{};
    std::array<std::uint8_t, 65536> m_segment;
    std::array<std::uint8_t, 65536> m_buffer;
};

} // namespace lamina
