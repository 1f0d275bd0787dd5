#pragma once

#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/TextureUpload.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/AlphaForm.h"
#include "platform/image/pixels/CGImage.h"

#include <memory>

namespace lamina {

/// How a still picture becomes a texture.
struct PictureUpload {
    /// Mipmaps, for pictures that are drawn much smaller: the texture is the picture stretched to powers of two.
    bool smoothlyScaleOutput = false;
    /// Divides colours by alpha where what goes up is premultiplied.
    bool removePremultiplication = false;
    /// Multiplies colours by alpha where the picture's are straight.
    bool premultiply = false;

    /// For a filter that works on such colours. Straight leaves colours as they are.
    static PictureUpload as(AlphaForm form) { return {.premultiply = form == AlphaForm::Premultiplied}; }
};

/// A still picture in a texture from the pool, for as long as this lives.
///
/// Pictures of four bytes a pixel without padding go up as they are: straight or premultiplied RGBA, and BGRA in 32-bit
/// little order. All others, and those over the texture limit, are drawn anew first, which premultiplies them. Nothing
/// is converted on the GPU: filters see the values as they went up. A part that is replaced is premultiplied as the
/// whole was.
///
/// From any thread; construction, replacing and destruction wait for the video processing queue.
class PictureTexture {
public:
    /// Uploads the picture. An empty one has the zero size, and memory that is short leaves the texture's content
    /// undefined.
    /// Whoever gives the last handle on the picture away has its memory back before the texture's is taken, where the
    /// pixels are changed on their way, and else as soon as they are up.
    explicit PictureTexture(CGImage image, PictureUpload how = {});
    ~PictureTexture();
    PictureTexture(const PictureTexture&) = delete;
    PictureTexture& operator=(const PictureTexture&) = delete;

    /// A texture only, whose users are not counted. Null once it was released.
    const std::shared_ptr<GPUImageFramebuffer>& framebuffer() const { return m_framebuffer; }
    /// The texture, its users counted from now on, with one count, the caller's; this is an empty picture then. On the
    /// queue.
    std::shared_ptr<GPUImageFramebuffer> release();
    /// The picture's pixels after the fit into the texture limit.
    CGSize pictureSize() const { return m_pictureSize; }

    /// Puts a picture over a part of the texture, stretched over `rect` (pixels, cut to whole ones). A rectangle that
    /// does not lie within the texture changes nothing and is logged.
    void replace(const CGImage& image, CGRect rect);

private:
    void upload(CGImage image, PictureUpload how, bool redraw);

    CGSize m_pictureSize;
    CGSize m_textureSize;
    Mipmaps m_mipmaps;
    bool m_premultiplies;
    std::shared_ptr<GPUImageFramebuffer> m_framebuffer;
};

} // namespace lamina
