#pragma once

#include "gpu/core/GPUImageInput.h"
#include "gpu/core/GPUImageOutput.h"
#include "gpu/core/GPUImageStage.h"
#include "gpu/core/PictureTexture.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

namespace lamina {

/// A still picture as a source: uploaded once, pushed as often as it is asked.
///
/// What goes up, and how, is told at `PictureTexture`. The orientation of a UIImage is dropped.
///
/// Construction uploads, on the video processing queue, and waits. Pushes run there too, without waiting. The target
/// list may change at any time. An empty picture goes on with the zero size.
class GPUImagePicture : public GPUImageOutput {
public:
    explicit GPUImagePicture(CGImage image, PictureUpload upload = {});
    explicit GPUImagePicture(UIImage image, PictureUpload upload = {});
    /// From a file. A picture that can't be read is an empty one, and logged.
    static std::shared_ptr<GPUImagePicture> makeWithURL(const std::string& path);
    /// The same from the bytes of a file.
    static std::shared_ptr<GPUImagePicture> makeWithData(std::span<const std::uint8_t> bytes);
    ~GPUImagePicture() override;

    /// Pushes the picture to the targets; at once when called on the queue.
    void processImage();
    /// False, and no push, while one is on its way. The handler is called on the queue after the targets.
    bool processImageWithCompletionHandler(std::function<void()> completion);
    /// Pushes and hands over what comes out of `filter`, on the queue.
    void processImageUpToFilter(const std::shared_ptr<GPUImageStage>& filter,
                                std::function<void(const UIImage& processed)> completion);

    /// Pushes the picture a last time and waits until all is drawn. Its texture goes as soon as no target needs it any
    /// more, and this is an empty picture from then on: for one that is too large to be held beside what is made of
    /// it.
    void processImageAndLetGo();

    /// What targets are told: the picture's pixels after the fit into the texture limit.
    CGSize outputImageSize() const { return m_texture.pictureSize(); }

    /// A picture that has been pushed before hands its frame to the new target at once.
    using GPUImageOutput::addTarget;
    void addTarget(const std::shared_ptr<GPUImageInput>& target, int textureLocation) override;
    /// Also forgets that the picture has been pushed.
    void removeAllTargets() override;

    /// Puts a picture over a part of the texture, without `rect` at its top left in the picture's own size, else
    /// stretched over it (pixels, cut to whole ones). A rectangle that does not lie within the texture changes nothing
    /// and is logged. Waits for the queue.
    void replaceTextureWithSubCGImage(const CGImage& image);
    void replaceTextureWithSubCGImage(const CGImage& image, CGRect rect);
    /// The same with the pixels of a UIImage.
    void replaceTextureWithSubimage(const UIImage& image) { replaceTextureWithSubCGImage(image.cgImage()); }
    void replaceTextureWithSubimage(const UIImage& image, CGRect rect)
    {
        replaceTextureWithSubCGImage(image.cgImage(), rect);
    }

private:
    void push();

    PictureTexture m_texture;
    std::atomic<bool> m_hasProcessedImage{false};
    DispatchSemaphore m_imageUpdateSemaphore{1};
};

} // namespace lamina
