#include "platform/media/AVAssetWriter.h"

#include "platform/media/AssetWriting_p.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/MovieWriting_p.h"

#include <cmath>
#include <cstddef>
#include <utility>

namespace lamina {

namespace {

class AssetWriterInput final : public AVAssetWriterInput {
public:
    AssetWriterInput(std::shared_ptr<AssetWriting> writing, std::size_t index)
        : m_writing(std::move(writing))
        , m_index(index)
    {
    }

    AVTrackMediaType mediaType() const override { return m_writing->mediaType(m_index); }
    void setExpectsMediaDataInRealTime(bool realTime) override { m_writing->setKind(m_index, {transform(), realTime}); }
    bool expectsMediaDataInRealTime() const override { return m_writing->kind(m_index).realTime; }
    void setTransform(const AVTrackTransform& transform) override
    {
        m_writing->setKind(m_index, {transform, expectsMediaDataInRealTime()});
    }
    AVTrackTransform transform() const override { return m_writing->kind(m_index).transform; }
    bool isReadyForMoreMediaData() const override { return m_writing->isReady(m_index); }
    bool waitUntilReady(double seconds) override { return m_writing->waitUntilReady(m_index, seconds); }
    bool appendSampleBuffer(const CMSampleBuffer& sample) override { return m_writing->append(m_index, sample); }
    void markAsFinished() override { m_writing->end(m_index); }
    bool isFinished() const override { return m_writing->isEnded(m_index); }
    void requestMediaDataWhenReady(DispatchQueue& queue, std::function<void()> block) override
    {
        m_writing->request(m_index, queue, std::move(block));
    }

private:
    const std::shared_ptr<AssetWriting> m_writing;
    const std::size_t m_index;
};

class AssetWriter final : public AVAssetWriter {
public:
    explicit AssetWriter(std::shared_ptr<AssetWriting> writing)
        : m_writing(std::move(writing))
    {
    }
    ~AssetWriter() override { m_writing->cancel(); }
    AssetWriter(const AssetWriter&) = delete;
    AssetWriter& operator=(const AssetWriter&) = delete;

    void setMovieFragmentInterval(const CMTime& interval) override
    {
        const double seconds = interval.isNumeric() ? interval.seconds() : 0;
        m_writing->setFragmentSeconds(std::fmax(0, seconds));
    }
    void setMetadata(const std::map<std::string, std::string>& metadata) override { m_writing->setMetadata(metadata); }
    const std::map<std::string, std::string>& metadata() const override { return m_writing->metadata(); }

    Result<std::shared_ptr<AVAssetWriterInput>> addVideoInput(const AVVideoSettings& settings) override
    {
        return addInput(AVTrackMediaType::Video, [&](MovieWriting& movie) { return movie.addVideo(settings); });
    }
    Result<std::shared_ptr<AVAssetWriterInput>> addAudioInput(const AVAudioSettings& settings) override
    {
        return addInput(AVTrackMediaType::Audio, [&](MovieWriting& movie) { return movie.addAudio(settings); });
    }
    Result<std::shared_ptr<AVAssetWriterInput>> addStoredAudioInput(const AVURLAsset& asset) override
    {
        constexpr Patience kPatience{nullptr, 10};
        constexpr std::size_t kMemoryLimit = std::size_t{1} << 30;
        const ClipFile clip{asset.descriptor(), kMemoryLimit, kPatience};
        return addInput(AVTrackMediaType::Audio, [&](MovieWriting& movie) { return movie.addStoredAudio(clip); });
    }

    Outcome startWriting() override { return m_writing->start(); }
    void startSessionAtSourceTime(const CMTime& time) override { m_writing->startSession(time); }
    AVAssetWriterStatus status() const override { return m_writing->status(); }
    std::optional<Error> error() const override { return m_writing->error(); }
    void cancelWriting() override { m_writing->cancel(); }
    void finishWriting(std::function<void()> handler) override { m_writing->finish(std::move(handler)); }

private:
    Result<std::shared_ptr<AVAssetWriterInput>> addInput(AVTrackMediaType type,
                                                         const std::function<Outcome(MovieWriting& movie)>& add)
    {
        const Result<std::size_t> index = m_writing->addInput(type, add);
        if (!index)
            return index.error();
        return std::shared_ptr<AVAssetWriterInput>(std::make_shared<AssetWriterInput>(m_writing, *index));
    }

    const std::shared_ptr<AssetWriting> m_writing;
};

/// FFmpeg's name for a container; null where there is none.
const char* containerOf(const std::string& fileType)
{
    static constexpr std::pair<const char*, const char*> kContainers[] = {
        {kAVFileTypeQuickTimeMovie, "mov"}, {kAVFileTypeMPEG4, "mp4"}, {kAVFileTypeMatroska, "matroska"}};
    for (const auto& [type, container] : kContainers)
        if (fileType == type)
            return container;
    return nullptr;
}

} // namespace

Result<std::unique_ptr<AVAssetWriter>> AVAssetWriter::make(const std::string& path, const std::string& fileType)
{
    const char* container = containerOf(fileType);
    if (!container)
        return Error{path, "movies of this type can't be written"};
    const Result<const MediaModule*> module = mediaModule();
    if (!module)
        return Error{path, module.error().cause};
    Result<std::unique_ptr<MovieWriting>> movie = (*module)->writeMovie(container);
    if (!movie)
        return Error{path, movie.error().cause};
    auto writing = std::make_shared<AssetWriting>(path, container, **module, std::move(*movie));
    return std::unique_ptr<AVAssetWriter>(std::make_unique<AssetWriter>(std::move(writing)));
}

} // namespace lamina
