#include "platform/photos/PhotoLoad.h"

#include "platform/base/Causes.h"
#include "platform/base/DispatchQueue.h"
#include "platform/image/codecs/PictureDecoding.h"

#include <utility>

namespace lamina {

struct PhotoLoad::Job {
    PhotoSource source;
    DecodeOptions options;
    std::atomic<bool> cancelled = false;
    Completion completion; ///< main thread; empty once it has run or is not wanted any more
};

namespace {

/// Photos are read one after another: one at a time uses all cores and bounds the memory. Never destroyed.
DispatchQueue& readingQueue()
{
    static auto* const queue = new DispatchQueue("photo reading");
    return *queue;
}

Result<UIImage> read(const PhotoSource& source, const DecodeOptions& options)
{
    Result<UIImage> photo =
        source.bytes ? decodePicture(*source.bytes, source.name, options) : loadPicture(source.path, options);
    if (!photo)
        return Error{source.name, photo.error().cause};
    if (*options.cancelled) // turning a large photo takes a while as well
        return Error{source.name, cause::kCancelled};
    UIImage upright = photo->upright();
    if (!upright)
        return Error{source.name, cause::kNoMemory};
    return upright;
}

} // namespace

PhotoLoad::PhotoLoad(PhotoSource source, int shortSide, Completion completion)
    : m_job(std::make_shared<Job>())
{
    m_job->source = std::move(source);
    m_job->options.shortSide = shortSide;
    m_job->options.cancelled = &m_job->cancelled;
    m_job->completion = std::move(completion);
    readingQueue().async([job = m_job, expected = DispatchQueue::main().expectWork()]() mutable {
        auto photo = std::make_shared<Result<UIImage>>(read(job->source, job->options));
        DispatchQueue::main().async([job = std::move(job), photo] {
            if (const Completion done = std::exchange(job->completion, {}))
                done(std::move(*photo));
        });
        expected.reset();
    });
}

PhotoLoad::~PhotoLoad()
{
    cancel();
}

void PhotoLoad::cancel()
{
    m_job->cancelled = true;
    m_job->completion = {};
}

} // namespace lamina
