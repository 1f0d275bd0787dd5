#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/files/FileReading.h"
#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace lamina {

/// What reading all of a clip came to, whatever the file was.
struct ClipReport {
    int frames = 0;
    std::size_t samples = 0;
    std::string cause; ///< of the failure; empty without one
    std::string fault; ///< what was wrong with what came; empty when nothing was

    /// "6 frames and sound", "3 frames; the file ends too early", or the cause alone where nothing was read.
    std::string outcome() const
    {
        const std::string read = std::to_string(frames) + " frames" + (samples > 0 ? " and sound" : "");
        if (frames == 0 && samples == 0)
            return cause.empty() ? "nothing" : cause;
        return cause.empty() ? read : read + "; " + cause;
    }
};

/// Reads a clip's frames as BGRA, and then its sound as numbers.
class ClipCheck {
public:
    /// Pieces of a track; what has more is given up.
    static constexpr int kMostPieces = 2000;

    static ClipReport read(const std::string& path)
    {
        ClipCheck check;
        check.readAll(path);
        return check.m_report;
    }

    /// The same with the bytes of a file.
    static ClipReport read(std::span<const std::uint8_t> bytes)
    {
        const FileDescriptor file(::memfd_create("clip", MFD_CLOEXEC));
        if (file.get() < 0 || ::write(file.get(), bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
            return {};
        return read("/proc/self/fd/" + std::to_string(file.get()));
    }

private:
    void readAll(const std::string& path)
    {
        const auto asset = AVURLAsset::make(path);
        if (!asset)
            return fail(asset.error(), path);
        const std::unique_ptr<AVAssetReader> reader = AVAssetReader::make(*asset);
        const auto video = reader->addVideoOutput(CVPixelFormat::BGRA);
        const auto sound = reader->addAudioOutput(false);
        if (!video && !sound)
            return blame("neither tracks nor a cause");
        if (const Outcome started = reader->startReading(); !started)
            return fail(started.error(), path);
        const IntSize size = video ? (*asset)->videoTracks().front().naturalSize : IntSize{};
        int pieces = 0;
        for (std::optional<CMSampleBuffer> next;
             video && pieces < kMostPieces && (next = video->copyNextSampleBuffer()); ++pieces)
            look(*next, size);
        for (std::optional<CMSampleBuffer> next;
             sound && pieces < kMostPieces && (next = sound->copyNextSampleBuffer()); ++pieces)
            listen(*next);
        if (pieces == kMostPieces)
            reader->cancelReading();
        else if (const std::optional<Error> error = reader->error())
            fail(*error, path);
        else if (reader->status() != AVAssetReaderStatus::Completed)
            blame("an end that is none");
    }

    void look(const CMSampleBuffer& sample, IntSize size)
    {
        ++m_report.frames;
        if (!sample.imageBuffer || sample.imageBuffer->size() != size || sample.imageBuffer->planes().size() != 1)
            return blame("a frame of another form");
        if (!sample.presentationTime.isNumeric() || (m_time.isNumeric() && sample.presentationTime < m_time))
            blame("frames out of order");
        m_time = sample.presentationTime;
        const CVPixelBuffer::Plane& plane = sample.imageBuffer->planes().front();
        const std::size_t rowBytes = 4 * static_cast<std::size_t>(size.width);
        std::uint8_t opaque = 255;
        for (std::size_t y = 0; y < static_cast<std::size_t>(size.height); ++y) {
            const std::uint8_t* row = plane.bytes + y * plane.bytesPerRow;
            for (std::size_t x = 3; x < rowBytes; x += 4)
                opaque &= row[x];
        }
        if (opaque != 255)
            blame("a frame that isn't opaque");
    }

    void listen(const CMSampleBuffer& sample)
    {
        const AudioBuffer* audio = sample.audio.get();
        if (!audio || audio->channels <= 0 || audio->sampleRate <= 0 || !sample.presentationTime.isNumeric())
            return blame("sound of another form");
        m_report.samples += audio->samples.size();
        if (!std::ranges::all_of(audio->samples, [](float value) { return std::isfinite(value); }))
            blame("sound that is no number");
    }

    void fail(const Error& error, const std::string& path)
    {
        m_report.cause = error.cause;
        if (error.cause.empty() || error.cause.find('\n') != std::string::npos || error.subject != path)
            blame("a failure without a subject, or without a cause");
    }
    void blame(const std::string& fault)
    {
        if (m_report.fault.empty())
            m_report.fault = fault;
    }

    ClipReport m_report;
    CMTime m_time;
};

} // namespace lamina
