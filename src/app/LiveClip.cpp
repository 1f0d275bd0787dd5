#include "app/LiveClip.h"

#include "export/functions/ExportPlaces.h"
#include "gpu/endpoints/GPUImageMovieWriter.h"
#include "platform/base/DispatchQueue.h"
#include "platform/media/AVAssetWriter.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <utility>

namespace lamina {

namespace {

bool isTaken(const std::string& path)
{
    std::error_code failure;
    return std::filesystem::exists(std::filesystem::symlink_status(path, failure));
}

/// Named by the moment; nothing that is there is written over.
Result<std::string> freshPath()
{
    const QString moment = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH.mm.ss"));
    constexpr int kMostNames = 100;
    for (int number = 1;; ++number) {
        const std::string count = number > 1 ? ' ' + std::to_string(number) : std::string();
        Result<std::string> path = exportPath({}, "Clip " + moment.toStdString() + count + ".mp4");
        if (!path || !isTaken(*path) || number == kMostNames)
            return path;
    }
}

/// Films of one colour for every four pixels have even sides.
CGSize even(CGSize size)
{
    return {2 * std::max(1.0, std::floor(size.width / 2)), 2 * std::max(1.0, std::floor(size.height / 2))};
}

} // namespace

Result<std::unique_ptr<LiveClip>> LiveClip::begin(std::shared_ptr<LiveChain> chain, std::shared_ptr<LiveSource> source,
                                                  CGSize size, std::function<void(const Error&)> failed)
{
    Result<std::string> path = freshPath();
    if (!path)
        return path.error();
    std::unique_ptr<LiveClip> clip(new LiveClip(std::move(chain), std::move(source), *std::move(path)));
    const auto writer = std::make_shared<GPUImageMovieWriter>(
        clip->m_path, even(size), kAVFileTypeMPEG4,
        GPUImageMovieWriterSettings{.encodingLiveVideo = clip->m_source->isLive()});
    if (const auto error = writer->error())
        return *error;
    writer->setFailureBlock([failed = std::move(failed)](const Error& error) {
        DispatchQueue::main().async([failed, error] { failed(error); });
    });
    if (clip->m_source->hasSound())
        writer->setHasAudioTrack(true);
    writer->startRecording();
    clip->m_writer = writer;
    clip->m_chain->addAfter(writer);
    clip->m_source->setRecorder(writer);
    return clip;
}

LiveClip::LiveClip(std::shared_ptr<LiveChain> chain, std::shared_ptr<LiveSource> source, std::string path)
    : m_chain(std::move(chain))
    , m_source(std::move(source))
    , m_path(std::move(path))
{
}

LiveClip::~LiveClip()
{
    finish({});
}

void LiveClip::setPaused(bool paused)
{
    if (m_writer)
        m_writer->setPaused(paused);
}

double LiveClip::seconds() const
{
    return m_writer ? m_writer->duration().seconds() : 0;
}

void LiveClip::finish(std::function<void(const Result<std::string>& path)> done)
{
    const auto writer = std::exchange(m_writer, nullptr);
    if (!writer)
        return;
    m_source->setRecorder(nullptr);
    m_chain->removeAfter(writer);
    writer->setFailureBlock({});
    // Who leaves the process waits for it.
    writer->finishRecordingWithCompletionHandler(
        [writer, path = m_path, done = std::move(done), expected = DispatchQueue::main().expectWork()] {
            const auto error = writer->error();
            DispatchQueue::main().async([error, path, done, expected] {
                if (done && error)
                    done(*error);
                else if (done)
                    done(isTaken(path) ? path : std::string());
            });
        });
}

} // namespace lamina
