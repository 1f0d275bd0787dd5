#pragma once

#include "gpu/core/GPUImageOutput.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// A texture of somebody else's as a source: nothing is copied.
///
/// The texture belongs to the graph's context or to one that shares its objects, and holds colours as targets are to
/// see them, the top row first. It is sampled as its owner has set it, and is the owner's to delete, after this object.
/// Whoever draws into it from another context ends with glFlush before pushing, and begins the next drawing when the
/// push is over. From any thread; pushes run on the video processing queue, without waiting.
class GPUImageTextureInput : public GPUImageOutput {
public:
    /// `textureSize`: of the texture's first level, in pixels.
    GPUImageTextureInput(GLuint texture, CGSize textureSize);
    ~GPUImageTextureInput() override;

    /// Pushes what the texture holds then; at once when called on the queue.
    void processTextureWithFrameTime(const CMTime& frameTime);

    CGSize textureSize() const { return m_textureSize; }

private:
    const CGSize m_textureSize;
};

} // namespace lamina
