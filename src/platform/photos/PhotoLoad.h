#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PhotoSource.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace lamina {

/// A photo on its way from file to screen: read on the picture queue, turned upright, and handed over on the main
/// queue. Until then the main queue does not count as idle. Main thread.
class PhotoLoad {
public:
    using Completion = std::function<void(Result<UIImage>)>;

    /// Begins at once. `shortSide`: pixels that the shorter side has to keep, 0 for all. The completion runs once,
    /// unless the load is cancelled or destroyed before.
    PhotoLoad(PhotoSource source, int shortSide, Completion completion);
    /// Cancels.
    ~PhotoLoad();
    PhotoLoad(const PhotoLoad&) = delete;
    PhotoLoad& operator=(const PhotoLoad&) = delete;

    /// Ends the reading within some rows; the completion is not called any more. The second time nothing happens.
    void cancel();
    /// What is to be said of a photo that could be read, as in `DecodeOptions`; to be asked for by the completion.
    const std::string& warning() const;

private:
    struct Job;
    std::shared_ptr<Job> m_job;
};

} // namespace lamina
