#pragma once

#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

namespace lamina {

/// How far a reader has come.
enum class AVAssetReaderStatus { Unknown = 0, Reading = 1, Completed = 2, Failed = 3, Cancelled = 4 };

/// What a track holds.
enum class AVTrackMediaType { Video, Audio };

/// One track of an asset on its way out of a reader: frames in one pixel format, or sound as numbers or as it is
/// stored. Each output reads the file by itself, so that none waits for another.
class AVAssetReaderOutput {
public:
    virtual ~AVAssetReaderOutput() = default;
    /// What its pieces are.
    virtual AVTrackMediaType mediaType() const = 0;
    /// The next piece, in the order of presentation (packets: as stored); blocks until it is there. Nothing at the end,
    /// and when the reader has failed or was cancelled. By one thread at a time.
    virtual std::optional<CMSampleBuffer> copyNextSampleBuffer() = 0;
};

/// Reads a movie once, from a moment to another. Frames have the asset's `naturalSize` whatever sizes the stream
/// changes to; times are the movie's own, counted from `AVURLAsset::startTime` as zero.
///
/// Colours: by the matrix and range that the movie tags (BT.601, BT.709, SMPTE 240M, BT.2020); without a tag BT.709
/// from 720 stored lines on, BT.601 below; buffers carry the matrix that was taken. More than 8 bits are rounded to 8.
/// BGRA is what FFmpeg's own conversion gives, opaque; transfer curves and primaries stay (HDR comes flat). `AsDecoded`
/// is the decoder's frame where that is 4:2:0 of 8 bits in `naturalSize`, else it is converted to that, in video range.
/// Where recordings were joined and the clock begins anew, time goes on.
///
/// At most four frames are decoded ahead. A reader fails, with the cause, where the file ends before its time, packets
/// are damaged beyond use, or decoding isn't possible; what could be read was given before.
///
/// From any thread; `cancelReading` ends what waits within 100 ms.
class AVAssetReader {
public:
    virtual ~AVAssetReader() = default;

    /// One that has read nothing yet. It keeps the asset.
    static std::unique_ptr<AVAssetReader> make(std::shared_ptr<const AVURLAsset> asset);

    /// Before `startReading`: the asset's picture in such a format; null without one.
    virtual std::shared_ptr<AVAssetReaderOutput> addVideoOutput(CVPixelFormat format) = 0;
    /// Before `startReading`: the asset's sound, as numbers or (`stored`) as packets; null without one.
    virtual std::shared_ptr<AVAssetReaderOutput> addAudioOutput(bool stored) = 0;
    /// In the order of adding.
    virtual const std::vector<std::shared_ptr<AVAssetReaderOutput>>& outputs() const = 0;
    /// Before `startReading`. Pieces that end before it, or begin after it, are not given; times stay the asset's.
    virtual void setTimeRange(const CMTimeRange& range) = 0;

    /// Opens the file for each output. Once.
    virtual Outcome startReading() = 0;
    /// Completed, or failed, once every output has given its last piece.
    virtual AVAssetReaderStatus status() const = 0;
    /// Why it failed; nothing otherwise. The subject is the movie's path.
    virtual std::optional<Error> error() const = 0;
    /// Ends it for good; nothing after its end.
    virtual void cancelReading() = 0;
};

} // namespace lamina
