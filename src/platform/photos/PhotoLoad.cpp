#include "platform/photos/PhotoLoad.h"

#include "platform/base/DispatchQueue.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/photos/PhotoLoading.h"
#include "platform/photos/PictureQueue.h"

#include <utility>

namespace lamina {

struct PhotoLoad::Job {
    PhotoSource source;
    DecodeOptions options;
    std::string warning; ///< of the picture queue until the completion runs
    std::atomic<bool> cancelled = false;
    Completion completion; ///< main thread; empty once it has run or is not wanted any more
};

PhotoLoad::PhotoLoad(PhotoSource source, int shortSide, Completion completion)
    : m_job(std::make_shared<Job>())
{
    m_job->source = std::move(source);
    m_job->options.shortSide = shortSide;
    m_job->options.cancelled = &m_job->cancelled;
    m_job->options.warning = &m_job->warning;
    m_job->completion = std::move(completion);
    pictureQueue().async([job = m_job, expected = DispatchQueue::main().expectWork()]() mutable {
        auto photo = std::make_shared<Result<UIImage>>(loadUpright(job->source, job->options));
        DispatchQueue::main().async([job = std::move(job), photo] {
            if (const Completion done = std::exchange(job->completion, {}))
                done(std::move(*photo));
        });
        expected.reset();
    });
}

const std::string& PhotoLoad::warning() const
{
    return m_job->warning;
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
