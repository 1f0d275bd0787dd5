#include "cli/capture/CaptureStill.h"

#include "cli/filters/FilterDrawing.h"
#include "cli/movie/MovieWriting.h"
#include "gpu/core/DrawingFailures.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageFilterPipeline.h"
#include "gpu/core/GPUImageStage.h"
#include "gpu/endpoints/GPUImageStillCamera.h"
#include "platform/base/DispatchQueue.h"
#include "platform/media/AVCaptureTypes.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace lamina {

namespace {

CapturedStill failed(Error error, ExitCode code)
{
    return {{}, code, std::move(error)};
}

/// What a camera's threads tell, perhaps later than anybody waits for it.
class StillAnswer {
public:
    void set(Result<UIImage> still)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (!m_still)
                m_still = std::move(still);
        }
        DispatchQueue::main().async([] {}); // wakes who waits
    }
    Result<UIImage> wait() const
    {
        DispatchQueue::main().runUntil([this] { return peek().has_value(); });
        return *peek();
    }

private:
    std::optional<Result<UIImage>> peek() const
    {
        const std::lock_guard lock(m_mutex);
        return m_still;
    }

    mutable std::mutex m_mutex;
    std::optional<Result<UIImage>> m_still;
};

CapturedStill takeStill(GPUImageStillCamera& camera, const std::shared_ptr<GPUImageStage>& last, const CaptureJob& job)
{
    const DrawingFailures failures;
    const auto answer = std::make_shared<StillAnswer>();
    camera.setEndHandler([answer](const Error& error) { answer->set(error); });
    camera.startCameraCapture();
    camera.capturePhotoAsImageProcessedUpToFilter(last, UIImageOrientation::Up,
                                                  [answer](Result<UIImage> still) { answer->set(std::move(still)); });
    Result<UIImage> still = answer->wait();
    camera.stopCameraCapture();
    if (const std::optional<std::string> cause = failures.first())
        return failed({job.drawerName(), "gives no picture: " + *cause}, ExitCode::Failed);
    if (!still)
        return failed(job.ofCamera(still.error()), ExitCode::Input);
    return {*std::move(still)};
}

} // namespace

CapturedStill captureStill(const CaptureJob& job)
{
    if (const Outcome possible = drawingIsPossible(); !possible)
        return failed(possible.error(), ExitCode::Failed);
    Result<std::shared_ptr<GPUImageStillCamera>> made =
        GPUImageStillCamera::make(kAVCaptureSessionPresetPhoto, job.camera);
    if (!made)
        return failed(job.ofCamera(made.error()), ExitCode::Input);
    std::shared_ptr<GPUImageStillCamera> camera = *std::move(made);
    camera->followDeviceOrientation();
    Result<std::unique_ptr<GPUImageFilterPipeline>> pipeline = job.chain->connect(camera);
    if (!pipeline)
        return failed(pipeline.error(), ExitCode::Failed);
    if (job.chain->isEmpty())
        (*pipeline)->addFilter(std::make_shared<GPUImageFilter>()); // of which the picture is taken
    CapturedStill still = takeStill(*camera, (*pipeline)->filters().back(), job);
    pipeline->reset();
    letGoAsLast(camera); // it is held while the still is handed over
    return still;
}

} // namespace lamina
