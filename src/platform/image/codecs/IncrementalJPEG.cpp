#include "platform/image/codecs/ArrivingRows_p.h"
#include "platform/image/codecs/CGImageSource.h"
#include "platform/image/codecs/Exif_p.h"
#include "platform/image/codecs/IncrementalDecoders_p.h"
#include "platform/image/codecs/JPEGInput_p.h"
#include "platform/image/codecs/JPEGOutput_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/CGImage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>

namespace lamina {

namespace {

/// JPEG, by libjpeg-turbo, which is suspended where the data so far end. The rows of a single scan are decoded as they
/// come. Of several scans only the coefficients are, and a pass over all of them makes rows when a picture is asked
/// for.
class IncrementalJPEG final : public CGImageSource {
public:
    explicit IncrementalJPEG(const DecodeOptions& options)
        : m_options{.cancelled = options.cancelled, .memoryLimit = options.memoryLimit}
        , m_input(m_options)
        , m_stage(m_input.failed() ? Stage::Ended : Stage::Header)
    {
    }

    void updateData(std::span<const std::uint8_t> data, bool isFinal) override;
    std::optional<CGImageProperties> propertiesAtIndex() const override { return m_properties; }
    CGImage imageAtIndex() override;

private:
    enum class Stage {
        Header,
        Claim, ///< the header is known, and more bytes are needed before it is believed
        OneScan,
        Scans,
        Ended, ///< nothing more will be read
    };
    jpeg_decompress_struct& info() { return m_input.info(); }
    bool advance(std::size_t size);
    void readHeader();
    void start(std::size_t size);
    void takeRows();
    void takeScans();
    void refine();
    bool hasPassLeft();
    bool beginPass(int scan);
    int rowsThatCanBeMade();
    bool makeRows(ArrivingRows& rows, int& done, int end);
    void end() { m_stage = Stage::Ended; }

    const DecodeOptions m_options;
    JPEGInput m_input;
    Stage m_stage;
    GrowthGate m_gate;
    std::optional<CGImageProperties> m_properties;
    std::optional<JPEGColors> m_colors;
    bool m_hasScans = false;
    int m_scansTaken = 0; ///< to their end
    int m_passScan = 0;   ///< the last that is in the present pass; 0 before the first
    bool m_canMakeRows = true;
    std::uint64_t m_passVisits = 0; ///< of blocks, by all passes together
    ArrivingRows m_rows;            ///< what pictures are made of
    int m_rowsMade = 0;
};

void IncrementalJPEG::updateData(std::span<const std::uint8_t> data, bool isFinal)
{
    const std::uint64_t stands = m_input.hide();
    const std::size_t rest = data.size() - static_cast<std::size_t>(std::min<std::uint64_t>(stands, data.size()));
    if (m_stage == Stage::Ended || !m_gate.opens(rest, isFinal))
        return;
    do
        m_input.show(data, isFinal);
    while (advance(data.size()) && !m_input.isAllShown());
    const std::uint64_t left = m_input.hide();
    m_gate.wasNotEnough(data.size() - static_cast<std::size_t>(std::min<std::uint64_t>(left, data.size())));
    if (isFinal)
        end();
}

/// Reads as far as the piece goes that is shown; whether another one is wanted.
bool IncrementalJPEG::advance(std::size_t size)
{
    if (m_input.failed())
        end();
    if (m_stage == Stage::Header)
        readHeader();
    if (m_stage == Stage::Claim)
        start(size);
    else if (m_stage == Stage::Scans)
        m_input.limitWork(blockCount(info()), size);
    if (m_stage == Stage::OneScan)
        takeRows();
    if (m_stage == Stage::Scans)
        takeScans();
    return m_stage != Stage::Ended && m_stage != Stage::Claim && (m_stage != Stage::Scans || m_input.hasWorkLeft());
}

void IncrementalJPEG::readHeader()
{
    bool isRead = false;
    if (!m_input.attempt([&] { isRead = jpeg_read_header(&info(), TRUE) == JPEG_HEADER_OK; }))
        return end();
    if (!isRead)
        return;
    m_properties = {static_cast<std::int32_t>(info().image_width), static_cast<std::int32_t>(info().image_height),
                    exifOrientationTag(m_input.exif())};
    m_stage = Stage::Claim;
}

void IncrementalJPEG::start(std::size_t size)
{
    if (!prepareOutput(m_input, size, m_options))
        return;
    m_hasScans = jpeg_has_multiple_scans(&info()) != 0;
    m_colors.emplace(m_input);
    m_rows = ArrivingRows(static_cast<int>(info().output_width), static_cast<int>(info().output_height));
    const bool isStarted = m_rows && m_input.attempt([&] {
        if (m_hasScans)
            m_input.beginScans();
        else
            jpeg_start_decompress(&info());
    });
    m_stage = !isStarted ? Stage::Ended : m_hasScans ? Stage::Scans : Stage::OneScan;
}

void IncrementalJPEG::takeRows()
{
    if (!makeRows(m_rows, m_rowsMade, m_rows.height()) || m_rowsMade == m_rows.height())
        end();
}

void IncrementalJPEG::takeScans()
{
    int taken = JPEG_SUSPENDED;
    const bool isSound = m_input.attempt([&] {
        while (m_input.hasWorkLeft()) {
            taken = m_input.takeRowIn();
            if (taken == JPEG_SUSPENDED || taken == JPEG_REACHED_EOI)
                break;
            if (taken == JPEG_SCAN_COMPLETED)
                m_scansTaken = info().input_scan_number;
        }
    });
    if (!isSound || taken == JPEG_REACHED_EOI)
        end();
}

/// Makes rows until `end`, or until data are missing. False where the library has given up; what was made before stays.
bool IncrementalJPEG::makeRows(ArrivingRows& rows, int& done, int end)
{
    const int before = done;
    const bool isSound = m_input.attempt([&] {
        while (done < end) {
            std::uint8_t* row = rows.row(done);
            if (jpeg_read_scanlines(&info(), &row, 1) == 0)
                break;
            ++done;
        }
    });
    m_colors->convertRows(rows.rows(before, done - before), m_options.cancelled);
    if (!isCancelled(m_options))
        return isSound;
    done = before;
    return false;
}

/// Brings the rows to the state of the last scan that has come whole; those of the first are made while it comes.
void IncrementalJPEG::refine()
{
    const int scan = std::max(m_scansTaken, 1);
    const int end = rowsThatCanBeMade();
    if (scan == m_passScan || end <= 0) {
        if (end > m_rowsMade)
            m_canMakeRows = makeRows(m_rows, m_rowsMade, end);
        return;
    }
    if (!hasPassLeft())
        return;
    // What was handed out stays as it is.
    ArrivingRows rows = m_rowsMade == 0 ? m_rows : ArrivingRows(m_rows.width(), m_rows.height());
    if (!rows || !beginPass(scan))
        return;
    int made = 0;
    m_canMakeRows = makeRows(rows, made, end);
    if (made >= m_rowsMade) {
        m_rows = std::move(rows);
        m_rowsMade = made;
    }
}

/// Scripts of many scans that say little would take long to look at: passes may cost as much as the scans, but the last
/// is always made.
bool IncrementalJPEG::hasPassLeft()
{
    return m_stage == Stage::Ended || m_passVisits + blockCount(info()) <= m_input.mostVisits();
}

bool IncrementalJPEG::beginPass(int scan)
{
    m_passVisits += blockCount(info());
    m_canMakeRows = m_input.attempt([&] {
        if (m_passScan > 0)
            jpeg_finish_output(&info());
        jpeg_start_output(&info(), scan);
    });
    m_passScan = scan;
    return m_canMakeRows;
}

/// The library interpolates from the units below. It must never want data of the scan that is coming.
int IncrementalJPEG::rowsThatCanBeMade()
{
    if (m_scansTaken > 0)
        return m_rows.height();
    const int units = static_cast<int>(info().input_iMCU_row) - 1;
    return std::min(units * info().max_v_samp_factor * DCTSIZE, m_rows.height());
}

CGImage IncrementalJPEG::imageAtIndex()
{
    if (m_hasScans && m_canMakeRows)
        refine();
    return m_rows.picture(m_rowsMade, CGImageAlphaInfo::NoneSkipLast);
}

} // namespace

std::unique_ptr<CGImageSource> makeIncrementalJPEG(const DecodeOptions& options)
{
    return std::make_unique<IncrementalJPEG>(options);
}

} // namespace lamina
